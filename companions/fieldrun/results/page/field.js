// The top of the page: what run this is, how it ended, its warnings, and the field as a whole.
import {columnOf, data, dateOf, daysOf, fieldColumn, fromStart, hasKind, stepCount, times, units,
  unpack} from './data.js';
import {el} from './dom.js';
import {counted, short, shown} from './format.js';
import {figure} from './charts.js';
import {bar} from './holds.js';
import {table} from './tables.js';

const {run} = data;
const makes = hasKind('producer');
const takesWater = hasKind('water injector');
const takesGas = hasKind('gas injector');

/** How the run ended, and whether that is bad news. */
function howItEnded() {
  const failure = run.failure ? `The run failed in step ${run.steps + 1}: ${run.failure}` : '';
  switch (run.state) {
    case 'going': return [`The run is going on. This shows the ${counted(run.steps, 'step')} of ` +
        `${run.planned} that it has written.`, 'going'];
    case 'cut': return [`The run was cut off. This shows the ${counted(run.steps, 'step')} of ` +
        `${run.planned} that it has written.`, 'bad'];
    case 'user': return [`The run was ended by the user after ${run.steps} of ` +
        `${counted(run.planned, 'step')}. ${failure}`, failure ? 'bad' : 'good'];
    case 'simulator': return ['The simulator came to its own end.', 'good'];
    case 'failed': return [failure, 'bad'];
    default: return ['The run is complete.', 'good'];
  }
}

function tile(name, value, unit) {
  return el('div.tile', {}, el('b', {}, value === null ? '–' : unit === '%' ? shown(100 * value, 4) :
    short(value)), el('span', {}, unit ? `${name}, ${unit}` : name));
}

function tiles() {
  const {produced, injected, oilRate, ratio, waterCut} = data.totals;
  return el('div.tiles', {},
      ...(makes ? [tile('oil produced', produced[0], units.liquid),
        tile('gas produced', produced[2], units.gas),
        tile('water produced', produced[1], units.liquid),
        tile('oil rate at the end', oilRate, units.liquidRate),
        tile('gas-oil ratio at the end', ratio, units.ratio),
        tile('water cut at the end', waterCut, '%')] : []),
      takesWater ? tile('water injected', injected[1], units.liquid) : null,
      takesGas ? tile('gas injected', injected[2], units.gas) : null);
}

function warnings() {
  if (data.warnings.length === 0) return null;
  const list = table('warnings', [
    {name: 'date', value: (w) => w.date, isText: true},
    {name: 'well', value: (w) => w.well, isText: true,
      cell: (w) => w.well ? el('a', {href: `#${encodeURIComponent(w.well)}`}, w.well) : ''},
    {name: 'about', value: (w) => w.topic, isText: true},
    {name: 'warning', value: (w) => w.text, isText: true},
  ], data.warnings);
  return el('section.warnings', {id: 'warnings', role: 'alert'},
      el('h2', {}, `⚠ ${counted(data.warnings.length, 'warning')}: numbers of this run may be wrong`,
          list.button), list.element);
}

/** The head of the page. */
export function head() {
  const [ended, tone] = howItEnded();
  const thinned = run.steps > stepCount ?
    ` The page shows ${stepCount} of the steps; the tables beside it hold all.` : '';
  return el('section.head', {},
      el('h1', {}, data.title),
      el('p.soft', {}, `${dateOf(times[0])} to ${dateOf(times.at(-1))} in ` +
        `${counted(run.steps, 'step')}, ${counted(data.wells.length, 'well')}. ${run.driver}. ` +
        `Simulator: ${run.simulator}. Run ${run.id}.${thinned}`),
      el(`p.${tone}`, {id: 'ended'}, ended), warnings(), stepCount ? tiles() : null);
}

const rate = (name, tint, column) => ({name, tint, values: fromStart(fieldColumn(column))});
const total = (name, tint, column) => ({name, tint, values: [0, ...fieldColumn(column)]});

/** A chart, where there is anything to show in it. */
function chart(title, quantity, unit, series, options = {}) {
  if (series.length === 0) return null;
  return figure({title, unit, label: unit ? `${quantity}, ${unit}` : quantity, series, zero: true,
    ...options});
}

/** The charts of the field. */
export function charts() {
  const liquids = [...(makes ? [['oil', 'oil', 'oil'], ['water', 'water', 'water']] : []),
    ...(takesWater ? [['water injected', 'inj', 'waterIn']] : [])];
  const gases = [...(makes ? [['gas', 'gas', 'gas']] : []),
    ...(takesGas ? [['gas injected', 'inj', 'gasIn']] : [])];
  const totals = (list) => list.map(([name, tint, column]) =>
    total(name, tint, `total${column[0].toUpperCase()}${column.slice(1)}`));
  return el('section', {id: 'field'}, el('h2', {}, 'Field'), el('div.charts', {}, ...[
    chart('Liquid rates', 'rate', units.liquidRate, liquids.map((row) => rate(...row))),
    chart('Gas rates', 'rate', units.gasRate, gases.map((row) => rate(...row))),
    makes ? chart('Gas-oil ratio', 'ratio', units.ratio,
        [rate('gas-oil ratio', 'gas', 'ratio')]) : null,
    chart('Liquid totals', 'total', units.liquid, totals(liquids)),
    chart('Gas totals', 'total', units.gas, totals(gases)),
    makes ? chart('Water cut', 'water cut, fraction', '', [rate('water cut', 'water', 'waterCut')]) : null,
  ].filter(Boolean)));
}

/** The limits of groups, and when each was in force. */
export function groups() {
  if (data.groups.length === 0) return null;
  const before = (group) => columnOf(group, 'before');
  const most = (group) => Math.max(...before(group).map((value) => value ?? -Infinity));
  const list = table('group limits', [
    {name: 'group', value: (g) => g.name, isText: true},
    {name: 'limit on', value: (g) => g.limit, isText: true},
    {name: 'in force over time', isPicture: true, cell: (g) => g.bar ??= bar(
        () => before(g).map((value) => value === null ? null : 'group1'),
        (step) => before(g)[step] === null ? 'not in force' :
          `in force; the wells would have made ${shown(before(g)[step])} ${g.unit}`)},
    {name: 'steps in force', value: (g) => g.steps},
    {name: 'most that the wells would have made', value: most,
      cell: (g) => `${shown(most(g))} ${g.unit}`},
  ], data.groups);
  return el('section', {id: 'groups'}, el('h2', {}, 'Group limits in force', list.button), list.element);
}

/** What has happened by the case's schedule. */
export function events() {
  if (data.events.length === 0) return null;
  const list = table('events', [
    {name: 'date', value: (e) => e.date, isText: true},
    ...['target', 'name', 'what', 'cause', 'reason']
        .map((name) => ({name, value: (e) => e[name], isText: true})),
  ], data.events);
  return el('section', {id: 'events'}, el('h2', {}, 'Events', list.button), list.element);
}

/** The field step by step. */
export function steps() {
  const column = (name, unit, key) => ({name: unit ? `${name}, ${unit}` : name,
    value: (i) => fieldColumn(key)[i]});
  const list = table('steps', [
    {name: 'step', value: (i) => data.steps[i] + 1},
    {name: 'begins', value: (i) => dateOf(times[i]), isText: true},
    {name: 'ends', value: (i) => dateOf(times[i + 1]), isText: true},
    {name: 'days', value: (i) => daysOf(times[i + 1]), digits: 7},
    ...(makes ? [column('oil', units.liquidRate, 'oil'), column('water', units.liquidRate, 'water'),
      column('gas', units.gasRate, 'gas'), column('gas-oil ratio', units.ratio, 'ratio'),
      column('water cut', '', 'waterCut'), column('total oil', units.liquid, 'totalOil'),
      column('total water', units.liquid, 'totalWater'), column('total gas', units.gas, 'totalGas'),
      column('open producers', '', 'producers')] : []),
    ...(takesWater ? [column('water injected', units.liquidRate, 'waterIn'),
      column('total water injected', units.liquid, 'totalWaterIn')] : []),
    ...(takesGas ? [column('gas injected', units.gasRate, 'gasIn'),
      column('total gas injected', units.gas, 'totalGasIn')] : []),
    ...(takesWater || takesGas ? [column('open injectors', '', 'injectors')] : []),
  ], [...Array(stepCount).keys()]);
  return section('steps', 'Field by steps', list);
}

const PART_COLOURS = {simulator: 'now', sweep: 'lift', wire: 'inj', network: 'oil', writing: 'water',
  other: 'first'};

/** Where the time of the run went. */
export function profile() {
  if (!data.profile) return null;
  const all = data.profile.reduce((sum, part) => sum + part.sum, 0);
  const list = table('profile', [
    {name: 'part', value: (p) => p.name, isText: true},
    {name: 'share', isPicture: true, cell: (p) => el('div.share', {
      style: `--part: ${100 * p.sum / all}%; --tint: var(--${PART_COLOURS[p.name]})`})},
    {name: 'seconds', value: (p) => p.sum, digits: 4},
    {name: '%', value: (p) => 100 * p.sum / all, digits: 3},
    {name: 'of it before the first step', value: (p) => p.start, digits: 4},
    {name: 'in a step at most', value: (p) => Math.max(...unpack(p.steps)), digits: 4},
  ], data.profile);
  return el('section', {id: 'profile'},
      el('h2', {}, `Where the time went: ${shown(all, 4)} seconds`, list.button), list.element,
      el('div.charts.single', {}, figure({title: 'Time of each step', unit: 's', label: 'seconds', zero: true,
        series: data.profile.map((part) => ({name: part.name, tint: PART_COLOURS[part.name],
          values: fromStart(unpack(part.steps))}))})));
}

/** A section with one table, open when it is wanted. */
function section(id, title, list) {
  return el('section', {id}, el('details', {},
      el('summary', {}, el('h2', {}, title)), list.button, list.element));
}
