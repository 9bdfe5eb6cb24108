// Paper: one page for the field, half a page for each chosen well, in light colours.
import {el} from './dom.js';
import {draw, erase} from './charts.js';
import {legend, paintAll, wellBar} from './holds.js';
import {chartsOf, chosenWells} from './wells.js';
import {data, isProducer, warningsOf} from './data.js';
import {set, state} from './store.js';

// In points of the screen, of which a page of A4 is 718 wide and 1030 high between its margins.
const MOST_GROUPS = 8;
const MOST_WARNINGS = 2;

/** What is left for a chart of the field beside head, tiles, warnings and groups, in three rows. */
function fieldChart() {
  const groupRows = Math.min(MOST_GROUPS, data.groups.length);
  const others = 405 + (data.warnings.length ? 130 : 0) + (groupRows ? 40 + 16 * groupRows : 0);
  return [338, Math.min(190, Math.floor((1030 - others) / 3))];
}

/** The same on half a page, in two rows; the inflow takes both. */
function wellCharts(well) {
  const height = 160 - 10 * Math.min(MOST_WARNINGS, (warningsOf.get(well.name) ?? []).length);
  return {usual: [228, height], tall: [228, 2 * height + 40]};
}

const sheets = el('div', {id: 'sheets'});

/** Half a page: the well's name, its warnings, what held it, and its charts. */
function sheetOf(well) {
  const figures = chartsOf(well).filter(Boolean);
  const sheet = el('article.sheet', {}, el('h3', {}, well.name, ' ', el('span.soft', {}, well.kind)),
      ...(warningsOf.get(well.name) ?? []).slice(0, MOST_WARNINGS).map((w) =>
        el('p.warning', {}, `⚠ ${w.date}: ${w.text}`)),
      wellBar(well), legend([well]), el(`div.charts.${isProducer(well) ? 'producer' : 'injector'}`, {}, ...figures));
  return [sheet, figures];
}

let printed = [];
let themeBefore = null;

function drawAt(figure, [width, height]) {
  erase(figure.chart);
  draw(figure.chart, width, height);
  printed.push(figure.chart);
}

function prepare() {
  document.body.classList.add('printing');
  themeBefore = document.documentElement.dataset.theme;
  document.documentElement.dataset.theme = 'light';
  for (const figure of document.querySelectorAll('#field figure')) drawAt(figure, fieldChart());
  if (state.chosen.size > 0) document.body.append(sheets);
  for (const well of chosenWells()) {
    const [sheet, figures] = sheetOf(well);
    sheets.append(sheet);
    const {usual, tall} = wellCharts(well);
    figures.forEach((figure, i) => drawAt(figure, i === 0 && well.curves ? tall : usual));
  }
  paintAll();
}

function restore() {
  document.body.classList.remove('printing');
  if (themeBefore) document.documentElement.dataset.theme = themeBefore;
  else delete document.documentElement.dataset.theme;
  printed.forEach(erase);
  printed = [];
  sheets.remove();
  sheets.replaceChildren();
  for (const figure of document.querySelectorAll('#field figure')) draw(figure.chart);
  set('theme', state.theme);
}

/** Makes the page ready for a printer whenever it is asked to print. */
export function readyForPrint() {
  if (data.steps.length === 0) return;
  window.addEventListener('beforeprint', prepare);
  window.addEventListener('afterprint', restore);
}
