// Puts the page together: what is seen first comes first, and the rest once that is drawn.
import {stepCount} from './data.js';
import {draw} from './charts.js';
import {charts, events, groups, head, profile, steps} from './field.js';
import {wells} from './wells.js';
import {fillBar} from './bar.js';
import {readyForPrint} from './print.js';
import {watch} from './watch.js';
import {scrolledTo} from './store.js';

const page = document.getElementById('page');
const add = (...parts) => page.append(...parts.filter(Boolean));

fillBar();
add(head());
if (stepCount > 0) add(charts());
for (const {chart, offsetTop} of document.querySelectorAll('figure')) {
  if (offsetTop < window.innerHeight) draw(chart);
}
watch();
readyForPrint();

requestAnimationFrame(() => setTimeout(() => {
  if (stepCount > 0) {
    const [list, cards] = wells();
    add(groups(), list, events(), steps(), profile(), cards);
  }
  if (location.hash) document.getElementById(location.hash.slice(1))?.scrollIntoView();
  else if (scrolledTo) window.scrollTo(0, scrolledTo);
  document.body.classList.add('ready');
}));
