// Paper: one page for the field, half a page for each chosen well, in light colours.
import {el} from './dom.js';
import {draw, erase} from './charts.js';
import {legend, paintAll, wellBar} from './holds.js';
import {chartsOf, chosenWells} from './wells.js';
import {data, isProducer, warningsOf} from './data.js';
import {set, state} from './store.js';

const FIELD_CHART = [338, 176];
const WELL_CHART = [228, 168];
const TALL_CHART = [228, 372];

const sheets = el('div', {id: 'sheets'});

/** Half a page: the well's name, its warnings, what held it, and its charts. */
function sheetOf(well) {
  const figures = chartsOf(well).filter(Boolean);
  const sheet = el('article.sheet', {}, el('h3', {}, well.name, ' ', el('span.soft', {}, well.kind)),
      ...(warningsOf.get(well.name) ?? []).slice(0, 2).map((w) =>
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
  for (const figure of document.querySelectorAll('#field figure')) drawAt(figure, FIELD_CHART);
  if (state.chosen.size > 0) document.body.append(sheets);
  for (const well of chosenWells()) {
    const [sheet, figures] = sheetOf(well);
    sheets.append(sheet);
    figures.forEach((figure, i) => drawAt(figure, i === 0 && well.curves ? TALL_CHART : WELL_CHART));
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
