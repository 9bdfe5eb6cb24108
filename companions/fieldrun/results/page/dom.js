// Elements of the page, and files that the page hands out.

/**
 * Makes an element.
 * @param {string} tag with classes behind dots, like "div.tile"
 * @param {Object} attributes; those that are functions listen to the event of their name
 * @param {...(Node|string|null)} children
 */
export function el(tag, attributes = {}, ...children) {
  const [name, ...classes] = tag.split('.');
  const element = document.createElement(name);
  element.classList.add(...classes);
  for (const [key, value] of Object.entries(attributes)) {
    if (typeof value === 'function') element.addEventListener(key, value);
    else if (value !== null && value !== undefined) element.setAttribute(key, value);
  }
  element.append(...children.filter((child) => child !== null && child !== undefined));
  return element;
}

/** A small button that looks like a word. */
export const wordButton = (word, title, action) =>
  el('button.word', {type: 'button', title, click: action}, word);

/** A colour of the style sheet by the name of its variable. */
export const colour = (name) =>
  getComputedStyle(document.documentElement).getPropertyValue(`--${name}`).trim();

/** A name that every file system takes. */
export const fileName = (text) => text.replace(/[^\p{L}\p{N}]+/gu, '-').replace(/^-|-$/g, '');

/** Hands a file to the one who reads the page. */
export function download(name, blob) {
  const link = el('a', {href: URL.createObjectURL(blob), download: name});
  document.body.append(link);
  link.click();
  link.remove();
  setTimeout(() => URL.revokeObjectURL(link.href), 10000);
}

export const downloadText = (name, text) => download(name, new Blob([text], {type: 'text/csv'}));
