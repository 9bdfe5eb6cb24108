// Tables that sort by a click on a heading and go out as CSV as they are shown.
import {data} from './data.js';
import {downloadText, el, fileName, wordButton} from './dom.js';
import {csv, shown} from './format.js';

/**
 * @typedef {Object} Column
 * @property {string} name
 * @property {function(*): (number|string|null)} value of a row: what is sorted by and goes out
 * @property {?function(*): (Node|string)} cell what is shown, where it isn't the value
 * @property {?number} digits of a number
 * @property {?boolean} isText
 * @property {?boolean} isPicture shown alone, neither sorted nor sent out
 */

/**
 * A table of objects.
 * @param {string} name of its file
 * @param {Column[]} columns
 * @param {*[]} rows
 * @returns {{element: HTMLElement, button: HTMLElement, update: function(), filter: function(function)}}
 */
export function table(name, columns, rows) {
  let order = [...rows];
  let isWanted = () => true;
  let sortedBy = null;
  let direction = 1;
  let changes = 0;
  const body = el('tbody');
  const lines = new Map();

  const fill = (row, line, cells) => columns.forEach((column, i) => {
    const value = column.value?.(row);
    const content = column.cell ? column.cell(row) :
      typeof value === 'number' || value === null ? shown(value, column.digits) : value;
    if (!(content instanceof Node && cells[i].firstChild === content)) cells[i].replaceChildren(content);
  });
  const lineOf = (row) => {
    if (lines.has(row)) return lines.get(row);
    const cells = columns.map((column) => el(column.isText || column.isPicture ? 'td.left' : 'td'));
    const line = el('tr', {}, ...cells);
    line.columns = cells;
    line.change = changes;
    fill(row, line, cells);
    lines.set(row, line);
    return line;
  };
  const visible = () => order.filter(isWanted);
  const layOut = () => {
    body.replaceChildren(...visible().map(lineOf));
    if (changes > 0) refresh();
  };
  /** Fills the rows in sight with what holds since the last change. */
  const refresh = () => {
    const height = body.firstChild?.offsetHeight || 26;
    const first = Math.max(0, Math.floor(element.scrollTop / height) - 2);
    for (const row of visible().slice(first, first + Math.ceil(element.clientHeight / height) + 4)) {
      const line = lines.get(row);
      if (line.change !== changes) fill(row, line, line.columns);
      line.change = changes;
    }
  };
  const sortBy = (column, heading) => {
    direction = sortedBy === column ? -direction : column.isText ? 1 : -1;
    sortedBy = column;
    for (const other of head.cells) other.removeAttribute('aria-sort');
    heading.setAttribute('aria-sort', direction > 0 ? 'ascending' : 'descending');
    resort();
  };
  const resort = () => {
    if (sortedBy) order.sort((a, b) => direction * compare(sortedBy.value(a), sortedBy.value(b)));
    layOut();
  };
  const head = el('tr', {}, ...columns.map((column) => {
    const heading = el(column.isText || column.isPicture ? 'th.left' : 'th', {scope: 'col'});
    heading.append(column.isPicture ? column.name :
      el('button', {type: 'button', click: () => sortBy(column, heading)}, column.name));
    return heading;
  }));
  const sent = columns.filter((column) => !column.isPicture);
  const button = wordButton('CSV', 'This table as it is shown', () => downloadText(
      `${fileName(`${data.title} ${name}`)}.csv`,
      csv([sent.map((column) => column.name),
        ...visible().map((row) => sent.map((column) => column.value(row)))])));
  const element = el('div.wide', {scroll: refresh}, el('table', {}, el('thead', {}, head), body));
  layOut();
  return {
    element,
    button,
    /** Shows the values anew. */
    update() {
      changes++;
      refresh();
    },
    /** Shows only the rows that a function takes. */
    filter(wanted) { isWanted = wanted; layOut(); },
    visible,
  };
}

/** Numbers by size, texts by the alphabet, what nobody tells last. */
function compare(a, b) {
  if (a === null || b === null) return (a === null) - (b === null);
  return typeof a === 'number' ? a - b : String(a).localeCompare(String(b), 'en', {numeric: true});
}
