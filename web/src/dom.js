// Elements of the page. Names come from files of unknown people: they become text and never markup.

/**
 * @param {string} tag such as "div.panel"
 * @param {Object} attributes attributes; those that begin with "on" are listeners
 * @param {...(Node|string|number|null)} children
 */
export function make(tag, attributes = {}, ...children) {
  const [name, ...classes] = tag.split('.');
  const element = document.createElement(name);
  if (classes.length) element.className = classes.join(' ');
  for (const [key, value] of Object.entries(attributes)) {
    if (key.startsWith('on')) element.addEventListener(key.slice(2), value);
    else if (value === true) element.setAttribute(key, '');
    else if (value !== false && value !== null && value !== undefined) element.setAttribute(key, String(value));
  }
  element.append(...children.filter((child) => child !== null && child !== undefined).map(toNode));
  return element;
}

const toNode = (child) => (child instanceof Node ? child : document.createTextNode(String(child)));

/** Puts other children into an element. */
export function fill(element, ...children) {
  element.replaceChildren(...children.map(toNode));
}

let lastId = 0;

/** A control below its label. */
export function labelled(text, control) {
  control.id ||= `control${++lastId}`;
  return make('div.control', {}, make('label', {for: control.id}, text), control);
}

/** A control behind which its label stands. */
export function checkbox(text, isChecked, onchange) {
  const box = make('input', {type: 'checkbox', id: `control${++lastId}`, onchange: () => onchange(box.checked)});
  box.checked = isChecked;
  return make('div.check', {}, box, make('label', {for: box.id}, text));
}

/** @param {{value: string, text: string}[]} options */
export function select(options, value, onchange) {
  const element = make('select', {onchange: () => onchange(element.value)});
  setOptions(element, options, value);
  return element;
}

export function setOptions(element, options, value) {
  fill(element, ...options.map((option) => make('option', {value: option.value}, option.text)));
  element.value = value;
}

/**
 * A table with a caption. Rows are arrays of texts, numbers and elements; numbers stand at the right.
 * @param {string[]} columns
 */
export function table(caption, columns, rows) {
  return make(
    'div.scroll', {tabindex: 0, role: 'region', 'aria-label': caption},
    make('table', {}, make('caption', {}, caption),
      make('thead', {}, make('tr', {}, ...columns.map((name) => make('th', {scope: 'col'}, name)))),
      make('tbody', {}, ...rows.map((row) =>
        make('tr', {}, ...row.map((cell) =>
          make(typeof cell === 'number' ? 'td.number' : 'td', {}, typeof cell === 'number' ? cell : cell ?? '')))))));
}
