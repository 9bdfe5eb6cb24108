// The wells: a table with what held each over time, and a card of charts for each, made when it is
// looked at. A search narrows both down.
import {columnOf, data, dateOf, eventsOf, fromStart, holdsOf, isProducer, liquidOf, stepCount, times, units,
  warningsOf} from './data.js';
import {el} from './dom.js';
import {counted, shown} from './format.js';
import {draw, erase, figure} from './charts.js';
import {curveChart} from './curves.js';
import {holdText, legend, wellBar} from './holds.js';
import {on, set, state} from './store.js';
import {table} from './tables.js';

const atStep = (well, name) => columnOf(well, name)[state.step] ?? null;
const holdOf = (well) => holdText(holdsOf(well)[state.step]);
const warningsAbout = (well) => warningsOf.get(well.name) ?? [];

const cards = new Map();

/** Whether a well has all the words of the search: in its name, its kind, its hold or its warnings. */
function isFound(well) {
  const text = [well.name, well.kind, holdOf(well),
    ...warningsAbout(well).map((w) => `warning ${w.topic}`)].join(' ').toLowerCase();
  return state.query.toLowerCase().split(/\s+/).every((word) => text.includes(word));
}

function chooser(well) {
  const place = data.wells.indexOf(well);
  const box = el('input', {type: 'checkbox', title: 'Print this well',
    'aria-label': `print ${well.name}`, change: () => {
      const chosen = new Set(state.chosen);
      box.checked ? chosen.add(place) : chosen.delete(place);
      set('chosen', chosen);
    }});
  box.checked = state.chosen.has(place);
  on('chosen', (chosen) => { box.checked = chosen.has(place); });
  return box;
}

const mark = (well) => warningsAbout(well).length === 0 ? '' : el('span.mark', {
  title: warningsAbout(well).map((w) => `${w.date}: ${w.text}`).join('\n')}, ' ⚠');

const rateColumns = () => [
  {name: `oil, ${units.liquidRate}`, value: (w) => atStep(w, 'oil')},
  {name: `water, ${units.liquidRate}`, value: (w) => atStep(w, 'water')},
  {name: `gas, ${units.gasRate}`, value: (w) => atStep(w, 'gas')},
  {name: `pressure, ${units.pressure}`, value: (w) => atStep(w, 'pressure')},
];

/** The table, once the page has room for it. */
let list = null;

const makeList = () => table('wells', [
  {name: 'print', isPicture: true, cell: (w) => w.chooser ??= chooser(w)},
  {name: 'well', value: (w) => w.name, isText: true, cell: (w) => w.link ??= el('span', {},
      el('a', {href: `#${encodeURIComponent(w.name)}`}, w.name), mark(w))},
  {name: 'kind', value: (w) => w.kind, isText: true},
  {name: 'held by, over time', isPicture: true, cell: (w) => w.bar ??= wellBar(w)},
  {name: 'at the step', value: holdOf, isText: true},
  ...rateColumns(),
  {name: 'days open', value: (w) => w.daysOpen},
  {name: `total oil, ${units.liquid}`, value: (w) => w.total[0]},
  {name: `total water, ${units.liquid}`, value: (w) => w.total[1]},
  {name: `total gas, ${units.gas}`, value: (w) => w.total[2]},
], data.wells);

const count = el('span.soft', {id: 'found', role: 'status'});
const cardList = el('div', {id: 'cards'});

/** The charts of a well. */
export function chartsOf(well) {
  const rate = (name, tint, values) => ({name, tint, values: fromStart(values)});
  const overTime = (title, quantity, unit, series, zero = true) => figure(
      {title, owner: well.name, unit, label: `${quantity}, ${unit}`, series, zero, events});
  const events = eventsOf(well);
  const column = (name) => columnOf(well, name);
  const pressure = overTime('Bottom-hole pressure', 'pressure', units.pressure,
      [rate('pressure', 'pressure', column('pressure'))], false);
  const curves = well.curves ? figure(curveChart(well)) : null;
  if (!isProducer(well)) {
    const isGas = well.kind === 'gas injector';
    return [curves, overTime(isGas ? 'Gas injected' : 'Water injected', 'rate',
        isGas ? units.gasRate : units.liquidRate,
        [rate('injected', 'inj', column(isGas ? 'gas' : 'water'))]), pressure];
  }
  const perOil = units.gasRate === 'MMscf/d' ? 1e6 : 1e3;
  const ratios = column('gas').map((gas, i) => gas === null ? null :
    column('oil')[i] > 0 ? gas * perOil / column('oil')[i] : 0);
  return [curves,
    overTime('Liquid rates', 'rate', units.liquidRate,
        [rate('oil', 'oil', column('oil')), rate('water', 'water', column('water'))]),
    overTime('Gas rate', 'rate', units.gasRate, [rate('gas', 'gas', column('gas'))]),
    overTime('Gas-oil ratio', 'ratio', units.ratio, [rate('gas-oil ratio', 'gas', ratios)]),
    pressure];
}

const facts = (well) => [`${shown(well.daysOpen)} days open`, ...['oil', 'water', 'gas']
    .map((phase, i) => [phase, well.total[i], i === 2 ? units.gas : units.liquid])
    .filter(([, total]) => total)
    .map(([phase, total, unit]) => `${shown(total)} ${unit} ${phase}`)].join(' · ');

/** A card: heading and room at first, and charts once it is looked at. */
function cardOf(well) {
  if (cards.has(well)) return cards.get(well);
  const body = el(`div.charts.${isProducer(well) ? 'producer' : 'injector'}`);
  const card = el('article.well', {id: encodeURIComponent(well.name), tabindex: -1},
      el('h3', {}, chooser(well), ' ', well.name, ' ', el('span.soft', {}, well.kind), mark(well),
          el('span.facts', {}, facts(well))),
      ...warningsAbout(well).slice(0, 5).map((w) => el('p.warning', {}, `⚠ ${w.date}: ${w.text}`)),
      wellBar(well), legend([well]), body);
  card.fill = () => { if (!body.firstChild) body.append(...chartsOf(well).filter(Boolean)); };
  cards.set(well, card);
  opener.observe(card);
  return card;
}

const opener = new IntersectionObserver((entries) => {
  for (const {target, isIntersecting} of entries) if (isIntersecting) target.fill();
}, {rootMargin: '600px'});

function search() {
  list.filter(isFound);
  const found = list.visible();
  count.textContent = state.query ? `${shown(found.length, 9)} of ${counted(data.wells.length, 'well')}` :
    counted(data.wells.length, 'well');
  cardList.replaceChildren(...found.map(cardOf));
  return found;
}

/** The section of the wells, with its table; and the cards. */
export function wells() {
  list = makeList();
  search();
  on('query', search);
  on('step', () => {
    list.update();
    when.textContent = stepText();
    if (state.query) search();
  });
  const stepText = () => stepCount === 0 ? '' : `rates at the end of step ${data.steps[state.step] + 1}, ` +
    `${dateOf(times[state.step + 1])}`;
  const when = el('span.soft', {}, stepText());
  list.element.classList.add('tall');
  list.element.addEventListener('click', (event) => {
    if (event.target.closest('th')) cardList.replaceChildren(...list.visible().map(cardOf));
  });
  return [el('section', {id: 'wells'}, el('h2', {}, 'Wells ', count, ' ', when, list.button),
      legend(data.wells), list.element), cardList];
}

/** The card next to the one that stands at the top of the window. */
export function stepCard(by) {
  const all = [...cardList.children];
  const top = document.getElementById('bar').offsetHeight + 12;
  const below = all.findIndex((card) => card.getBoundingClientRect().top > top + (by > 0 ? 2 : -2));
  const next = by > 0 ? below : (below < 0 ? all.length : below) - 1;
  const card = all[Math.max(0, by > 0 && below < 0 ? all.length - 1 : next)];
  card?.scrollIntoView();
  card?.focus({preventScroll: true});
}

/** The wells that are chosen for print, in the order of the case. */
export const chosenWells = () => [...state.chosen].sort((a, b) => a - b).map((i) => data.wells[i]);
