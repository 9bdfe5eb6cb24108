// What the reader has set: the step, the zoom, the search, the look, the wells to print. Whoever shows
// any of it listens for its changes. It outlives a reload of the page in the same window.
import {data, stepCount} from './data.js';

const KEY = `gantry-report-${data.run.id}`;
const MOST_CHOSEN = 40;

/** Storage isn't open to every page that lies in a folder. */
function stored() {
  try { return JSON.parse(sessionStorage.getItem(KEY)) ?? {}; } catch { return {}; }
}

const before = stored();
const listeners = {step: [], zoom: [], query: [], theme: [], chosen: [], cursor: []};

/** The state. To be changed through `set` alone. */
export const state = {
  step: Math.min(before.step ?? Infinity, stepCount - 1),
  zoom: before.zoom ?? null,     // [from, to] in seconds since 1970; null for all
  query: before.query ?? '',
  theme: before.theme ?? 'auto',
  chosen: new Set(before.chosen ?? (data.wells.length > MOST_CHOSEN ? [] : data.wells.keys())),
  cursor: null,                  // place in `times` under the pointer
};

/** Calls `listener` with the new value whenever a part of the state has changed. */
export const on = (key, listener) => listeners[key].push(listener);

export function set(key, value) {
  if (key === 'step') value = Math.max(0, Math.min(stepCount - 1, value));
  state[key] = value;
  for (const listener of listeners[key]) listener(value);
}

/** The place in `times` whose values are to be told: the pointer's, else the end of the step. */
export const place = () => state.cursor ?? state.step + 1;

/** Keeps the state for the next load; a reader at the last step wants to stay at the last. */
export function keep() {
  const {step, zoom, query, theme, chosen} = state;
  const kept = {zoom, query, theme, scroll: window.scrollY, chosen: [...chosen]};
  if (step < stepCount - 1) kept.step = step;
  if (!before.chosen && chosen.size === data.wells.length) delete kept.chosen;
  try { sessionStorage.setItem(KEY, JSON.stringify(kept)); } catch { /* then nothing is kept */ }
}

window.addEventListener('pagehide', keep);

/** Where the page was scrolled to before it was loaded anew. */
export const scrolledTo = before.scroll ?? 0;
