// The run that the page shows: what report_data.cpp has written, with its columns unpacked.

const DIGITS = 'ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/';
const VALUE_OF = new Map([...DIGITS].map((digit, value) => [digit.charCodeAt(0), value]));
const MISSING = '.'.charCodeAt(0);
const DAY = 86400;

/**
 * Numbers as packed_numbers.h tells them.
 * @param {{e: number, v: string}} packed
 * @param {?number[]} lengths of the rows, where the numbers stand in rows
 * @returns {(number|null)[]} null for what nobody tells
 */
export function unpack(packed, lengths = null) {
  const numbers = [];
  const last = [0];
  const scale = 10 ** Math.abs(packed.e);
  let row = 0;
  let place = 0;
  for (let i = 0; i < packed.v.length;) {
    while (lengths && place === lengths[row]) { row++; place = 0; }
    const at = lengths ? place++ : 0;
    if (packed.v.charCodeAt(i) === MISSING) { numbers.push(null); i++; continue; }
    let whole = 0;
    let shift = 1;
    let digit;
    do {
      digit = VALUE_OF.get(packed.v.charCodeAt(i++));
      whole += (digit & 31) * shift;
      shift *= 32;
    } while (digit & 32);
    const change = whole % 2 ? -(whole - 1) / 2 : whole / 2;
    last[at] = (last[at] ?? 0) + change;
    numbers.push(packed.e < 0 ? last[at] / scale : last[at] * scale);
  }
  return numbers;
}

/** The data as they stand in the page. */
export const data = JSON.parse(document.getElementById('data').textContent);
export const units = data.units;

/** How many steps the page has. Steps are told by their place on the page, from 0. */
export const stepCount = data.steps.length;

const endDays = unpack(data.days);
const startTime = Date.parse(data.run.start) / 1000;

/** The start of the run and the end of each step, in seconds since 1970. */
export const times = [startTime, ...endDays.map((days) => startTime + days * DAY)];

/** What has happened by the schedule, each with its time. */
for (const event of data.events) event.time = startTime + event.days * DAY;

/** The events that a chart of a well shows: its own, and those of groups and the field. */
export const eventsOf = (well) => data.events.filter(
    ({target, name}) => target !== 'well' || name === well.name);

/** @returns {string} the day on which a time falls, like 2020-01-31 */
export const dateOf = (time) => new Date(time * 1000).toISOString().slice(0, 10);

/** Days from the start of the run to a time. */
export const daysOf = (time) => (time - startTime) / DAY;

/** A rate of each step, drawn from the start of the run: the first step's holds from there. */
export const fromStart = (column) => [column[0] ?? null, ...column];

const unpacked = new Map();

/** A packed column of an object of the data, unpacked when it is first asked for. */
export function columnOf(owner, name) {
  if (!unpacked.has(owner)) unpacked.set(owner, {});
  const columns = unpacked.get(owner);
  return (columns[name] ??= unpack(owner[name]));
}

/** The column of the field by its name. */
export const fieldColumn = (name) => columnOf(data.field, name);

/** The place in data.holds of what holds a well in each step. */
export function holdsOf(well) {
  if (well.holdOfStep) return well.holdOfStep;
  well.holdOfStep = [];
  for (let i = 0; i < well.held.length; i += 2) {
    for (let n = 0; n < well.held[i + 1]; n++) well.holdOfStep.push(well.held[i]);
  }
  return well.holdOfStep;
}

/** The liquid that a well makes or takes, of each step. */
export const liquidOf = (well) => columnOf(well, 'oil')
    .map((oil, i) => oil === null ? null : oil + columnOf(well, 'water')[i]);

export const isProducer = (well) => well.kind === 'producer';
export const hasKind = (kind) => data.wells.some((well) => well.kind === kind);

/** The warnings of each well by its name; those of no well under ''. */
export const warningsOf = new Map();
for (const warning of data.warnings) {
  warningsOf.set(warning.well, [...(warningsOf.get(warning.well) ?? []), warning]);
}

/**
 * The curves of a well, step by step, as far as the page has them.
 * @returns {?{step: number, rate: number[], pressure: number[], lift: ?number[], point: ?number[]}[]}
 */
export function curvesOf(well) {
  if (!well.curves || well.curveList) return well.curveList ?? null;
  const {curves} = well;
  const lengths = data.curveSteps.map((_, i) => curves.lengths[i] ?? curves.lengths[0]);
  const columns = ['rate', 'pressure', 'lift']
      .map((name) => curves[name] ? unpack(curves[name], lengths) : null);
  const pressures = unpack(curves.pointPressure);
  const points = unpack(curves.pointRate).map((rate, i) => [rate, pressures[i]]);
  let at = 0;
  well.curveList = data.curveSteps.map((step, i) => {
    const [rate, pressure, lift] = columns.map((c) => c && c.slice(at, at + lengths[i]));
    at += lengths[i];
    return {step, rate, pressure, lift, point: points[i][0] === null ? null : points[i]};
  });
  return well.curveList;
}
