// The bar on top of the page: search, the slider over the steps, and what the keyboard does.
import {data, dateOf, stepCount, times} from './data.js';
import {el, wordButton} from './dom.js';
import {on, set, state} from './store.js';
import {stepCard} from './wells.js';

const THEMES = ['auto', 'light', 'dark'];

const showTheme = () => {
  const {theme} = state;
  if (theme === 'auto') delete document.documentElement.dataset.theme;
  else document.documentElement.dataset.theme = theme;
};
showTheme();

function nextTheme() {
  const isDark = matchMedia('(prefers-color-scheme: dark)').matches;
  const now = state.theme === 'auto' ? (isDark ? 'dark' : 'light') : state.theme;
  state.theme = now === 'dark' ? 'light' : 'dark';
  showTheme();
  set('theme', state.theme);
}

const searchBox = el('input', {type: 'search', id: 'search', placeholder: 'Search wells  /',
  'aria-label': 'Search wells by name, kind, what holds them, or "warning"', value: state.query,
  input: () => set('query', searchBox.value.trim())});

const slider = el('input', {type: 'range', id: 'step', min: 0, max: Math.max(0, stepCount - 1),
  'aria-label': 'Step', input: () => set('step', Number(slider.value))});
const stepText = el('output', {for: 'step'});

function showStep() {
  slider.value = state.step;
  stepText.textContent = stepCount === 0 ? 'no steps' :
    `step ${data.steps[state.step] + 1} of ${data.run.planned} · ${dateOf(times[state.step])}`;
}

/** Zooms by a factor around the step. */
function zoomBy(factor) {
  const [from, to] = state.zoom ?? [times[0], times.at(-1)];
  const centre = Math.max(from, Math.min(to, times[state.step + 1]));
  const zoom = [centre - (centre - from) * factor, centre + (to - centre) * factor];
  const isAll = zoom[0] <= times[0] && zoom[1] >= times.at(-1);
  set('zoom', isAll ? null : [Math.max(zoom[0], times[0]), Math.min(zoom[1], times.at(-1))]);
}

const help = el('dialog', {id: 'help'});

/** @type {[string[], string, function()][]} the keys, what they do, and how */
const KEYS = [
  [['ArrowLeft'], 'one step back', () => set('step', state.step - 1)],
  [['ArrowRight'], 'one step on', () => set('step', state.step + 1)],
  [['Home'], 'the first step', () => set('step', 0)],
  [['End'], 'the last step', () => set('step', stepCount - 1)],
  [['/'], 'search wells', () => { searchBox.focus(); searchBox.select(); }],
  [['j'], 'the next well', () => stepCard(1)],
  [['k'], 'the well before', () => stepCard(-1)],
  [['+', '='], 'zoom in around the step', () => zoomBy(0.5)],
  [['-'], 'zoom out', () => zoomBy(2)],
  [['0'], 'the whole run', () => set('zoom', null)],
  [['t'], 'light or dark', nextTheme],
  [['p'], 'print the field and the chosen wells', () => window.print()],
  [['a'], 'choose all wells for print, or none', () => set('chosen',
      new Set(state.chosen.size ? [] : data.wells.keys()))],
  [['?'], 'this help', () => help.open ? help.close() : help.showModal()],
];

const KEY_NAMES = {ArrowLeft: '←', ArrowRight: '→'};

help.append(el('h2', {}, 'Keyboard and mouse'),
    el('table', {}, el('tbody', {}, ...KEYS.map(([keys, meaning]) => el('tr', {},
        el('td', {}, el('kbd', {}, KEY_NAMES[keys[0]] ?? keys[0])), el('td.left', {}, meaning))),
    ...[['drag', 'in a chart: zoom to that part, in all charts over time'],
      ['double click', 'in a chart: the whole run again'],
      ['click', 'on a heading: sort a table; on a well: its charts']].map(([key, meaning]) =>
      el('tr', {}, el('td', {}, key), el('td.left', {}, meaning))))),
    el('p.soft', {}, 'Printed are one page for the field and half a page for each well that is ticked.'),
    el('form', {method: 'dialog'}, el('button', {}, 'Close')));

window.addEventListener('keydown', (event) => {
  if (event.ctrlKey || event.metaKey || event.altKey) return;
  if (event.target === searchBox) {
    if (event.key === 'Escape') {
      searchBox.value = '';
      set('query', '');
      searchBox.blur();
    } else if (event.key === 'Enter') searchBox.blur();
    return;
  }
  const found = KEYS.find(([keys]) => keys.includes(event.key));
  if (!found || (help.open && event.key !== '?')) return;
  event.preventDefault();
  found[2]();
});

/** Fills the bar. */
export function fillBar() {
  const badge = data.warnings.length === 0 ? null : el('a.badge', {href: '#warnings',
    title: 'Numbers of this run may be wrong'}, `⚠ ${data.warnings.length}`);
  document.getElementById('bar').append(
      el('a.name', {href: '#page'}, data.title), badge ?? '', searchBox,
      el('span.steps', {}, wordButton('◀', 'One step back (←)', () => set('step', state.step - 1)), slider,
          wordButton('▶', 'One step on (→)', () => set('step', state.step + 1)), stepText),
      el('span.tools', {}, wordButton('◐', 'Light or dark (t)', nextTheme),
          wordButton('Print', 'The field and the chosen wells (p)', () => window.print()),
          wordButton('?', 'Keyboard and mouse', () => help.showModal())), help);
  on('step', showStep);
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => set('theme', state.theme));
  showStep();
}
