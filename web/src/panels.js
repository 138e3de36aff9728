// What the page tells beside the model.

import {formatNumber} from './colour.js';
import {checkbox, fill, make, table} from './dom.js';

export function formatBytes(bytes) {
  const units = ['B', 'KiB', 'MiB', 'GiB', 'TiB'];
  let unit = 0;
  for (; bytes >= 1024 && unit + 1 < units.length; ++unit) bytes /= 1024;
  return `${unit ? bytes.toPrecision(bytes < 10 ? 2 : 3) : bytes} ${units[unit]}`;
}

export function section(id, title, ...children) {
  return make('section', {id, 'aria-labelledby': `${id}-title`}, make('h2', {id: `${id}-title`}, title), ...children);
}

export function describeModel({overview}) {
  const types = overview.elements.map(({type, count}) => `${count} ${type}`).join(', ');
  const count = (number, noun) => `${number} ${noun}${number === 1 ? '' : 's'}`;
  return [count(overview.nodes, 'node'), types, count(overview.steps, 'step')].filter(Boolean).join(' · ');
}

/** How far averages are from the solver's own. */
export function exactness(deviations) {
  if (!deviations.length) return make('p', {}, 'The solver printed no averages of its own to compare with.');
  return table('Our nodal averages less the solver’s, as a fraction of the largest magnitude',
    ['kind', 'step', 'largest deviation'],
    deviations.map(({kind, step, deviation}) => [kind, step, formatNumber(deviation)]));
}

export function balance({results, reason}, onNode) {
  if (reason) return make('p', {}, `Not judged: ${reason}.`);
  const rows = results.map((result) => [
    result.step,
    result.holds === undefined ? '–' : result.holds ? 'holds' : 'FAILS',
    result.verdict,
    make('span', {}, ...(result.worst ?? []).slice(0, 3).map(({node, residual}) =>
      make('button.link', {type: 'button', onclick: () => onNode(node)}, `node ${node} (${formatNumber(residual)})`))),
  ]);
  return table('Element nodal forces against what the solver says acts on each node',
    ['step', 'balance', 'verdict', 'worst nodes'], rows);
}

export function imports(list) {
  if (!list.length) return make('p', {}, 'The database does not keep what it was imported from.');
  return make('div', {}, ...list.flatMap(({iteration, files, settings}) => [
    table(`Files of iteration ${iteration}`, ['role', 'file', 'bytes', 'checksum (XXH3)', 'changed'],
      files.map((file) => [file.role, file.name, file.bytes, make('code', {}, file.checksum), file.changed])),
    make('p', {}, settings.map(({name, value}) => `${name}: ${value}`).join(' · ')),
  ]));
}

const MOST_ROWS = 400;

/** All blocks of the database, with a filter. */
export function blocks(list) {
  const place = make('div');
  const count = make('p', {role: 'status'});
  const show = (text) => {
    const words = text.toLowerCase().split(/\s+/).filter(Boolean);
    const found = list.filter(({onf, kind, step}) => {
      const all = `${onf} ${kind} ${step}`.toLowerCase();
      return words.every((word) => all.includes(word));
    });
    count.textContent = `${found.length} of ${list.length} blocks` +
      (found.length > MOST_ROWS ? `, the first ${MOST_ROWS} are listed` : '');
    fill(place, table('Blocks', ['onf', 'kind', 'step', 'records', 'size', 'least', 'greatest', 'nan'],
      found.slice(0, MOST_ROWS).map((block) => [
        block.onf, block.kind, block.step, block.records, formatBytes(block.bytes),
        block.least === null ? '' : formatNumber(block.least),
        block.greatest === null ? '' : formatNumber(block.greatest), block.nan,
      ])));
  };
  const filter = make('input', {type: 'search', id: 'block-filter', oninput: () => show(filter.value)});
  show('');
  return make('div', {},
    make('div.control', {}, make('label', {for: 'block-filter'}, 'Filter by kind or step'), filter), count, place);
}

/**
 * Materials and element sets on and off. An element is shown when its material is, and all sets that it is in.
 * @param {() => void} onchange
 */
export class Parts {
  constructor(model, onchange) {
    this.model = model;
    this.onchange = onchange;
    this.hidden = {materials: new Set(), sets: new Set()};
    this.place = make('div');
    this.fill();
  }

  fill() {
    fill(this.place,
      ...this.group('Materials', 'materials', this.model.materials),
      ...(this.model.sets.length ? this.group('Element sets', 'sets', this.model.sets) : []),
      make('button', {type: 'button', onclick: () => this.showAll()}, 'Show all'));
  }

  group(title, kind, names) {
    const box = (name, i) => {
      const check = checkbox(name, !this.hidden[kind].has(i), (isShown) => {
        this.hidden[kind][isShown ? 'delete' : 'add'](i);
        this.apply();
      });
      const only = make('button.link', {type: 'button', 'aria-label': `only ${name}`, onclick: () => this.only(kind, i)},
        'only');
      check.append(only);
      return check;
    };
    return [make('fieldset', {}, make('legend', {}, title), ...names.map(box))];
  }

  showAll() {
    this.hidden = {materials: new Set(), sets: new Set()};
    this.isOnly = null;
    this.fill();
    this.apply();
  }

  only(kind, index) {
    this.showAll();
    this.isOnly = {kind, index};
    this.apply();
  }

  apply() {
    const {materials, sets} = this.hidden;
    this.model.show((part) => {
      if (materials.has(part.material) || part.sets.some((set) => sets.has(set))) return false;
      if (!this.isOnly) return true;
      const {kind, index} = this.isOnly;
      return kind === 'materials' ? part.material === index : part.sets.includes(index);
    });
    this.onchange();
  }
}
