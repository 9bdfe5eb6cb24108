// What holds a well or a group, over time: bars of one colour for each reason.
import {data, dateOf, holdsOf, stepCount, times} from './data.js';
import {el} from './dom.js';
import {on, state} from './store.js';

const COLOUR_OF = {
  'tubing': 'lift', 'inflow': 'inflow', 'minimum pressure': 'pressure', 'pressure': 'pressure',
  'maximum pressure': 'pressure', 'oil limit': 'oil', 'gas limit': 'gas', 'water limit': 'water',
  'liquid limit': 'liquid', 'water rate': 'inj', 'gas rate': 'gasinj',
};
const OTHERS = [1, 2, 3, 4, 5, 6, 7, 8].map((place) => `group${place}`);
const others = new Map();

/** The colour of a reason: one of the style's variables. Groups and the like take the rest in turn. */
function colourName([reason, isOpen]) {
  if (!isOpen) return 'shut';
  if (COLOUR_OF[reason]) return COLOUR_OF[reason];
  if (!others.has(reason)) others.set(reason, OTHERS[others.size % OTHERS.length]);
  return others.get(reason);
}

/** The hold of a place in data.holds as a word: a well that is shut says so. */
export const holdText = (place) => {
  const [reason, isOpen] = data.holds[place];
  return isOpen || reason.startsWith('shut') ? reason : reason ? `shut: ${reason}` : 'shut';
};

export const holdColour = (place) => colourName(data.holds[place]);

const bars = [];

/** The part of the bar at which a time lies, in percent. */
const percent = (time) => {
  const [from, to] = state.zoom ?? [times[0], times.at(-1)];
  return 100 * (time - from) / (to - from);
};

/** Stripes of a bar: one for each run of steps with the same colour. */
function stripes(colours) {
  const parts = [];
  for (let i = 0, first = 0; i < stepCount; i++) {
    if (i + 1 < stepCount && colours[i + 1] === colours[i]) continue;
    const name = colours[i] ? `var(--${colours[i]})` : 'transparent';
    parts.push(`${name} ${percent(times[first]).toFixed(3)}% ${percent(times[i + 1]).toFixed(3)}%`);
    first = i + 1;
  }
  return `linear-gradient(90deg, ${parts.join(', ')})`;
}

/** Frames the step in a bar. */
function markStep({style}) {
  style.setProperty('--from', `${percent(times[state.step]).toFixed(2)}%`);
  style.setProperty('--to', `${percent(times[state.step + 1]).toFixed(2)}%`);
}

const painter = new IntersectionObserver((entries) => {
  for (const {target, isIntersecting} of entries) {
    target.isSeen = isIntersecting;
    if (isIntersecting) target.paint();
  }
}, {rootMargin: '200px'});

/**
 * A bar over the steps, painted when it is looked at.
 * @param {function(): (?string)[]} coloursOf the colour's name for each step, null for none
 * @param {function(number): string} textOf what a step shows when it is pointed at
 */
export function bar(coloursOf, textOf) {
  const element = el('div.held', {
    mousemove: (event) => {
      const box = element.getBoundingClientRect();
      const [from, to] = state.zoom ?? [times[0], times.at(-1)];
      const time = from + (to - from) * (event.clientX - box.left) / box.width;
      const step = Math.max(0, times.findIndex((end) => end > time) - 1);
      element.title = `${dateOf(times[step])}: ${textOf(step)}`;
    },
  });
  element.paint = () => {
    element.style.backgroundImage = stripes(coloursOf());
    markStep(element);
  };
  bars.push(element);
  painter.observe(element);
  return element;
}

/** The bar of a well. */
export const wellBar = (well) => bar(() => holdsOf(well).map(holdColour),
    (step) => holdText(holdsOf(well)[step]));

/** Names and colours of the holds, those with most well-steps first. */
export function legend(wells) {
  const weight = new Map();
  for (const well of wells) {
    for (let i = 0; i < well.held.length; i += 2) {
      weight.set(well.held[i], (weight.get(well.held[i]) ?? 0) + well.held[i + 1]);
    }
  }
  const places = [...weight].sort((a, b) => b[1] - a[1]).slice(0, 12).map(([place]) => place);
  return el('ul.keys', {}, ...places.map((place) => el('li', {},
      el('i', {style: `background: var(--${holdColour(place)})`}), holdText(place))));
}

/** Paints all bars, as for print, in which nobody looks. */
export const paintAll = () => { for (const element of bars) element.paint(); };

on('zoom', () => { for (const element of bars) if (element.isSeen) element.paint(); });
on('step', () => { for (const element of bars) if (element.isSeen) markStep(element); });
