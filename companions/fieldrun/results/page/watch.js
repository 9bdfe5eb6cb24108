// While the run goes on, a small script beside the page says how far it is. The page loads it again
// and again, and itself anew when there is more. The last page of a run has no such script to look at.
import {data} from './data.js';
import {el} from './dom.js';
import {keep} from './store.js';

const PAUSE = 1000;

/** Looks at the file and calls back with what it says, or with null where it is gone. */
function look(file, tell) {
  const script = el('script', {src: `${file}?${Date.now()}`});
  window.gantryRun = (run) => { script.told = run; };
  script.addEventListener('load', () => { script.remove(); tell(script.told ?? null); });
  script.addEventListener('error', () => { script.remove(); tell(null); });
  document.head.append(script);
}

/** Loads the page anew, once for each state of the file. */
function loadAnew(stamp) {
  const key = `gantry-watch-${data.run.id}`;
  if (sessionStorage.getItem(key) === stamp) return false;
  sessionStorage.setItem(key, stamp);
  keep();
  location.reload();
  return true;
}

const ago = (seconds) => seconds < 90 ? `${Math.round(seconds)} s` :
  seconds < 5400 ? `${Math.round(seconds / 60)} min` : `${Math.round(seconds / 3600)} h`;

/** Follows a run that goes on. */
export function watch() {
  if (!data.watch) return;
  const line = document.getElementById('ended');
  const text = line.textContent;
  const turn = () => look(data.watch, (run) => {
    if (run === null) {
      if (!loadAnew(`gone after ${data.run.steps}`)) line.textContent = `${text} Nothing more is heard of it.`;
      return;
    }
    if ((run.id !== data.run.id || run.steps !== data.run.steps) && loadAnew(`${run.id} ${run.steps}`)) {
      return;
    }
    line.textContent = `${text} Last heard of ${ago(Date.now() / 1000 - run.time)} ago.`;
    setTimeout(turn, PAUSE);
  });
  turn();
}
