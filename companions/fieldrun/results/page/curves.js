// The inflow of a well with the lift curve of its tubing and its operating point, at the step.
import {curvesOf, data, holdsOf, units} from './data.js';
import {colour} from './dom.js';
import {shown} from './format.js';
import {rangeWith, valueAxis} from './charts.js';
import {state} from './store.js';
import {holdText} from './holds.js';

/** The curves of a step: those that the page has of the last step up to it. */
const at = (curves, step) => curves.findLast((moment) => moment.step <= data.steps[step]) ?? curves[0];

/** A line as points with both numbers, along the rate. */
const line = (xs, ys) => xs.map((x, i) => [x, ys?.[i] ?? null])
    .filter(([x, y]) => x !== null && y !== null).sort((a, b) => a[0] - b[0]);

const inflowOf = (moment) => line(moment.rate, moment.pressure);

/** Where the tubing alone holds the well, its curve goes through the operating point. */
function liftOf(moment, isHeldByTubing) {
  const lift = line(moment.rate, moment.lift);
  if (lift.length && isHeldByTubing && moment.point) lift.push(moment.point);
  return lift.sort((a, b) => a[0] - b[0]);
}

/** The height of a line at a rate; null beside its ends. */
function heightAt(points, x) {
  const next = points.findIndex((point) => point[0] >= x);
  if (next < 0 || (next === 0 && points[0][0] !== x)) return null;
  if (points[next][0] === x) return points[next][1];
  const [[x0, y0], [x1, y1]] = [points[next - 1], points[next]];
  return y0 + (y1 - y0) * (x - x0) / (x1 - x0);
}

/** Lines of their own places as the one table of places that a chart takes. */
function joined(lines) {
  const xs = [...new Set(lines.flatMap((points) => points.map(([x]) => x)))].sort((a, b) => a - b);
  const placeOf = new Map(xs.map((x, i) => [x, i]));
  return [xs, ...lines.map((points) => {
    const ys = Array(xs.length).fill(undefined);
    for (const [x, y] of points) ys[placeOf.get(x)] = y;
    return ys;
  })];
}

/** The ranges of both axes over all steps, so that they stand still while the steps go by. */
function rangesOf(curves) {
  const inflows = curves.flatMap((moment) =>
    [...inflowOf(moment), ...(moment.point ? [moment.point] : [])]);
  const feet = curves.flatMap((moment) => liftOf(moment, false));
  const most = inflows.reduce((high, [x]) => Math.max(high, x), 0);
  const high = inflows.reduce((top, [, y]) => Math.max(top, y), -Infinity);
  const low = [...inflows, ...feet].reduce((bottom, [, y]) => Math.min(bottom, y), Infinity);
  return {x: [0, most * 1.04 || 1],
    y: Number.isFinite(high) ? rangeWith(false)(null, low, high) : [0, 1]};
}

function optionsOf(chart, ranges, width, height) {
  return {
    width, height, legend: {show: false}, padding: [8, 16, 0, 0],
    cursor: {drag: {x: true, y: true, uni: 20}, points: {show: false}},
    scales: {x: {time: false, range: ranges.x}, y: {range: ranges.y}},
    axes: [{...valueAxis(chart.xLabel), size: 24, labelSize: 16, space: 60}, valueAxis(chart.label)],
    series: [{}, ...chart.series.map(({tint, dash, points, name}) => ({
      label: name, stroke: () => colour(tint), width: tint === 'now' ? 2.2 : 1.4, dash,
      spanGaps: true, paths: points ? () => null : dash ? uPlot.paths.spline() : undefined,
      points: points ? {show: true, size: 11, width: 2, fill: () => colour(tint),
        stroke: () => colour('card')} : {show: false},
    }))],
    hooks: {setCursor: [(u) => chart.tell(u)]},
  };
}

/** The chart of a well, for `figure`. */
export function curveChart(well) {
  const curves = curvesOf(well);
  const hasLift = Boolean(well.curves.lift);
  const rateUnit = well.showsGas ? units.gasRate : units.liquidRate;
  const phase = well.showsGas ? 'gas' : 'liquid';
  const ranges = rangesOf(curves);
  const hold = () => holdText(holdsOf(well)[state.step]);
  const lines = () => {
    const moment = at(curves, state.step);
    return [inflowOf(curves[0]), inflowOf(curves.at(-1)), inflowOf(moment),
      ...(hasLift ? [liftOf(moment, hold() === 'tubing')] : []),
      moment.point ? [moment.point] : []];
  };
  const pressureAt = (x, lineAt, i) => {
    if (i === chart.series.length - 1) return lineAt[0]?.[1] ?? null;
    return x === null ? null : heightAt(lineAt, x);
  };
  const chart = {
    title: 'Inflow and lift', owner: well.name, unit: units.pressure,
    label: `pressure, ${units.pressure}`, xLabel: `${phase} rate, ${rateUnit}`,
    series: [
      {name: 'inflow, first step', tint: 'first'},
      {name: 'last step', tint: 'last'},
      {name: 'this step', tint: 'now'},
      ...(hasLift ? [{name: 'tubing', tint: 'lift', dash: [6, 4]}] : []),
      {name: 'operating point', tint: 'now', points: true},
    ],
    values: () => joined(lines()),
    options: (width, height) => optionsOf(chart, ranges, width, height),
    table: () => [['curve', `${phase} (${rateUnit})`, `pressure (${units.pressure})`],
      ...lines().flatMap((points, i) => points.map((p) => [chart.series[i].name, ...p]))],
    tell(u) {
      const now = lines();
      if (u.shownStep !== state.step) {
        u.shownStep = state.step;
        u.setData(joined(now), false);
        u.redraw();
      }
      const x = u.cursor.left >= 0 ? u.posToVal(u.cursor.left, 'x') : null;
      now.forEach((points, i) => {
        const value = pressureAt(x, points, i);
        chart.told[i].textContent = value === null ? '' : shown(value, 4);
      });
      const [point] = now.at(-1);
      const where = point ? `${shown(point[0], 4)} ${rateUnit}, ` : '';
      chart.note.textContent = x === null ? where + hold() : `at ${shown(x, 4)} ${rateUnit}`;
    },
  };
  return chart;
}
