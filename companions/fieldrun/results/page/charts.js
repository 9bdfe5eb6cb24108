// A chart: a figure with its title, its legend and its values under the pointer, drawn when it is
// looked at. Charts over time share pointer and zoom.
import {data, dateOf, daysOf, times} from './data.js';
import {colour, download, downloadText, el, fileName, wordButton} from './dom.js';
import {csv, short, shown} from './format.js';
import {on, place, set, state} from './store.js';

const FONT = '11px system-ui, "DejaVu Sans", sans-serif';
const YEAR = 365 * 86400;
const MONTH = 28 * 86400;
const EVENT_REACH = 5;  // pixels from an event's line at which it tells itself

const live = new Set();  // the figures that are drawn

/** Dates as long as they need to be for marks so far apart. */
const dateLabels = (u, marks, axis, space, apart) => marks.map((time) =>
  dateOf(time).slice(0, apart >= YEAR ? 4 : apart >= MONTH ? 7 : 10));

const axisBase = () => ({
  font: FONT, labelFont: FONT, stroke: () => colour('soft'),
  grid: {stroke: () => colour('line'), width: 1},
  ticks: {stroke: () => colour('line'), width: 1, size: 4},
});

/** The y axis with its unit, as wide as its numbers. */
export const valueAxis = (label) => ({
  ...axisBase(), label, labelSize: 18, labelGap: 0, gap: 3,
  values: (u, marks) => marks.map(short),
  size: (u, labels) => 14 + 6.2 * Math.max(2, ...(labels ?? []).map((text) => text.length)),
});

/** The range of an axis around its values, with 0 where that is asked for. */
export const rangeWith = (zero) => (u, low, high) => {
  if (low === null || high === null) return [0, 1];
  const size = Math.max(Math.abs(low), Math.abs(high));
  if (zero) return [Math.min(0, low * 1.05), high > 0 ? high * 1.05 : low < 0 ? 0 : 1];
  const room = Math.max(0.06 * (high - low), 0.02 * size, size === 0 ? 1 : 0);
  return [low - room, high + room];
};

/** The events of a chart near enough to the pointer. */
const eventsAt = (chart, u) => chart.events.filter((event) =>
  u.cursor.left >= 0 && Math.abs(u.valToPos(event.time, 'x') - u.cursor.left) <= EVENT_REACH);

/** Draws the lines of the events that concern a chart. */
function drawEvents(u, events) {
  const {ctx, bbox} = u;
  ctx.save();
  ctx.strokeStyle = ctx.fillStyle = colour('event');
  ctx.lineWidth = 2;
  ctx.setLineDash([3, 5]);
  const drawn = new Set();
  for (const event of events) {
    const x = Math.round(u.valToPos(event.time, 'x', true));
    if (drawn.has(x)) continue;
    drawn.add(x);
    if (x < bbox.left || x > bbox.left + bbox.width) continue;
    ctx.beginPath();
    ctx.moveTo(x, bbox.top);
    ctx.lineTo(x, bbox.top + bbox.height);
    ctx.stroke();
    ctx.beginPath();
    ctx.moveTo(x - 7, bbox.top);
    ctx.lineTo(x + 7, bbox.top);
    ctx.lineTo(x, bbox.top + 10);
    ctx.fill();
  }
  ctx.restore();
}

/** Lays the band of the step over a chart. */
function placeBand(u) {
  const [left, right] = [times[state.step] ?? 0, times[state.step + 1] ?? 0]
      .map((time) => Math.max(0, Math.min(u.over.clientWidth, u.valToPos(time, 'x'))));
  u.band.style.transform = `translateX(${left}px)`;
  u.band.style.width = `${Math.max(1, right - left)}px`;
}

function optionsOverTime(chart, width, height) {
  return {
    width, height, legend: {show: false}, padding: [8, 18, 0, 0],
    tzDate: (time) => uPlot.tzDate(new Date(time * 1000), 'Etc/UTC'),
    cursor: {sync: {key: 'time', setSeries: false, scales: ['x', null]}, drag: {x: true, y: false},
      points: {size: 7}, y: false},
    scales: {y: {range: rangeWith(chart.zero)}},
    axes: [{...axisBase(), values: dateLabels, space: 64, size: 26, gap: 4}, valueAxis(chart.label)],
    series: [{}, ...chart.series.map(({name, tint, dash}) => ({
      label: name, stroke: () => colour(tint), width: 1.6, dash, points: {show: false},
    }))],
    hooks: {
      draw: [(u) => drawEvents(u, chart.events)],
      setCursor: [(u) => chart.tell(u)],
      setScale: [(u, key) => {
        if (key === 'x') takeZoom(u.scales.x);
        placeBand(u);
      }],
      setSize: [placeBand],
    },
  };
}

let isZooming = false;

/** All charts over time show the part that one of them has been brought to. */
function takeZoom({min, max}) {
  if (isZooming || min === undefined || min === null) return;
  const isAll = min <= times[0] && max >= times.at(-1);
  const before = state.zoom ?? [times[0], times.at(-1)];
  if (isAll ? state.zoom === null : before[0] === min && before[1] === max) return;
  set('zoom', isAll ? null : [min, max]);
}

on('zoom', (zoom) => {
  isZooming = true;
  const [min, max] = zoom ?? [times[0], times.at(-1)];
  for (const {plot, isOverTime} of live) if (isOverTime) plot.setScale('x', {min, max});
  queueMicrotask(() => { isZooming = false; });
});

/** The picture of a chart, with its title and legend. */
function picture(chart) {
  const source = chart.plot.ctx.canvas;
  const ratio = source.width / chart.plot.width;
  const canvas = el('canvas', {width: source.width, height: source.height + 44 * ratio});
  const ctx = canvas.getContext('2d');
  ctx.fillStyle = colour('card');
  ctx.fillRect(0, 0, canvas.width, canvas.height);
  ctx.drawImage(source, 0, 44 * ratio);
  ctx.scale(ratio, ratio);
  ctx.fillStyle = colour('ink');
  ctx.font = `600 13px ${FONT.slice(5)}`;
  ctx.fillText(`${chart.owner}${chart.title}`, 10, 18);
  ctx.font = FONT;
  let x = 10;
  for (const {name, tint} of chart.series) {
    ctx.fillStyle = colour(tint);
    ctx.fillRect(x, 32, 14, 3);
    ctx.fillStyle = colour('soft');
    ctx.fillText(name, x + 18, 37);
    x += 34 + ctx.measureText(name).width;
  }
  return canvas;
}

const nameOf = (chart) => fileName(`${data.title} ${chart.owner}${chart.title}`);

function savePicture(chart) {
  draw(chart);
  chart.plot.ctx.canvas && queueMicrotask(() => picture(chart).toBlob((blob) =>
    download(`${nameOf(chart)}.png`, blob)));
}

/** A chart's numbers as a table: dates, days, and a column for each curve. */
export const tableOverTime = (chart) => [
  ['date', 'days', ...chart.series.map(({name}) => `${name} (${chart.unit || '1'})`)],
  ...times.map((time, i) => [dateOf(time), daysOf(time), ...chart.series.map((s) => s.values[i])]),
];

/** Draws a chart that isn't drawn yet. */
export function draw(chart, width = chart.body.clientWidth, height = chart.body.clientHeight) {
  if (chart.plot || width < 40) return;
  const options = chart.isOverTime ? optionsOverTime(chart, width, height) :
    chart.options(width, height);
  const values = chart.isOverTime ? [times, ...chart.series.map((s) => s.values)] : chart.values();
  chart.plot = new uPlot(options, values, chart.body);
  if (chart.isOverTime) {
    chart.plot.band = chart.plot.over.appendChild(el('div.band'));
    if (state.zoom) chart.plot.setScale('x', {min: state.zoom[0], max: state.zoom[1]});
    placeBand(chart.plot);
  }
  if (live.size === 0) queueMicrotask(() => performance.mark('first chart'));
  live.add(chart);
  chart.tell(chart.plot);
}

/** Takes a drawing away, for it is out of sight or is to be drawn anew. */
export function erase(chart) {
  if (!chart.plot) return;
  live.delete(chart);
  chart.plot.destroy();
  chart.plot = null;
}

const watcher = new IntersectionObserver((entries) => {
  for (const {target, isIntersecting} of entries) {
    if (isIntersecting) draw(target.chart); else if (!document.body.classList.contains('printing'))
      erase(target.chart);
  }
}, {rootMargin: '500px'});

/** The values of a legend at the pointer, or at the step where there is none. */
function tellOverTime(chart, u) {
  const at = u.cursor.idx ?? place();
  if (u.cursor.idx !== undefined) state.cursor = u.cursor.left >= 0 ? u.cursor.idx : null;
  chart.series.forEach((series, i) => {
    chart.told[i].textContent = shown(series.values[at]);
  });
  const events = eventsAt(chart, u);
  chart.note.textContent = events.length ? events.map((e) => e.text).join('; ') : '';
}

/**
 * The figure of a chart.
 * @param {{title: string, unit: string, label: string, owner: ?string, zero: ?boolean,
 *   series: {name: string, tint: string, values: number[], dash: ?number[]}[]}} chart with `options`
 *   and `values` where it isn't over time
 * @returns {HTMLElement} that holds the chart as `chart`
 */
export function figure(chart) {
  chart.owner = chart.owner ? `${chart.owner}: ` : '';
  chart.isOverTime = !chart.options;
  chart.events ??= data.events;
  chart.body = el('div.plot');
  chart.note = el('span.note');
  chart.told = chart.series.map(() => el('b'));
  chart.tell ??= (u) => tellOverTime(chart, u);
  chart.table ??= () => tableOverTime(chart);
  const keys = chart.series.map(({name, tint, dash, points}, i) => el('li', {},
      el(points ? 'i.dot' : dash ? 'i.dashed' : 'i', {style: `--tint: var(--${tint})`}),
      name, ' ', chart.told[i]));
  const element = el('figure', {'aria-label': chart.title, tabindex: 0},
      el('figcaption', {}, el('strong', {}, chart.title), chart.note,
          el('span.tools', {},
              wordButton('CSV', 'The numbers of this chart as a table',
                  () => downloadText(`${nameOf(chart)}.csv`, csv(chart.table()))),
              wordButton('PNG', 'This chart as a picture', () => savePicture(chart)))),
      el('ul.keys', {}, ...keys), chart.body);
  element.chart = chart.body.chart = chart;
  watcher.observe(chart.body);
  return element;
}

/** All charts that are drawn tell the values of the step, or of the pointer. */
on('step', () => {
  for (const chart of live) {
    if (chart.isOverTime) placeBand(chart.plot);
    chart.tell(chart.plot);
  }
});

on('theme', () => { for (const {plot} of live) plot.redraw(false, true); });

window.addEventListener('resize', () => {
  for (const {plot, body} of live) {
    plot.setSize({width: body.clientWidth, height: body.clientHeight});
  }
});
