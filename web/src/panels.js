// What the page tells beside the model.

import {formatNumber} from './colour.js';
import {checkbox, fill, labelled, make, table} from './dom.js';

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

/** How many names a list has before it needs a filter. */
const MANY_NAMES = 8;

// What marks sets of nodes: colours that no map of values has in its middle.
const DISC_INKS = ['#d0006f', '#111111', '#0a7d00', '#8a2be2', '#b34700', '#00708c', '#7a0010', '#444cff'];
const toRgb = (hex) => [1, 3, 5].map((at) => parseInt(hex.slice(at, at + 2), 16) / 255);

/**
 * Materials, element sets and node sets on and off. An element is shown when its material is, and all sets that it is in.
 * Node sets are marked on what is shown.
 */
export class Parts {
  /** @param {{onparts: () => void, onnodes: () => void}} listeners called when parts, or marked node sets, have changed */
  constructor(model, {onparts, onnodes}) {
    this.model = model;
    this.onparts = onparts;
    this.onnodes = onnodes;
    this.hidden = {materials: new Set(), sets: new Set()};
    this.alone = null; // names of one kind that are shown, and nothing else
    this.marked = new Set();
    this.lists = make('div');
    this.place = make('div', {}, ...this.makeFilter(), this.lists, this.makeButtons());
    this.fill();
  }

  makeFilter() {
    const {materials, sets, nodeSets, leavesOutSets} = this.model;
    const hint = leavesOutSets
      ? [make('p.hint', {}, 'Element sets cut the model into more than 1000 parts: materials alone are listed.')] : [];
    if (materials.length + sets.length + nodeSets.length <= MANY_NAMES) return hint;
    this.filter = make('input', {type: 'search', oninput: () => this.fill()});
    this.count = make('p.hint', {role: 'status'});
    return [...hint, labelled('Filter parts and sets by name', this.filter), this.count];
  }

  makeButtons() {
    const button = (text, onclick) => make('button', {type: 'button', onclick}, text);
    const listed = this.filter === undefined ? []
      : [button('Show listed', () => this.switchListed(true)), button('Hide listed', () => this.switchListed(false))];
    return make('div.row', {}, button('Show all', () => this.showAll()), ...listed);
  }

  /** Lists what the filter lets through. */
  fill() {
    const words = (this.filter?.value ?? '').toLowerCase().split(/\s+/).filter(Boolean);
    const isListed = (name) => words.every((word) => name.toLowerCase().includes(word));
    const choose = (names) => names.map((name, index) => ({name, index})).filter(({name}) => isListed(name));
    const {materials, sets, nodeSets} = this.model;
    this.listed = {materials: choose(materials), sets: choose(sets)};
    const nodes = choose(nodeSets.map(({name}) => name));
    fill(this.lists, ...this.group('Materials', this.listed.materials, (row) => this.makePart('materials', row)),
      ...this.group('Element sets', this.listed.sets, (row) => this.makePart('sets', row)),
      ...this.group('Node sets', nodes, (row) => this.makeNodeSet(row)));
    if (this.count) {
      const all = materials.length + sets.length + nodeSets.length;
      this.count.textContent = `${this.listed.materials.length + this.listed.sets.length + nodes.length} of ${all} names`;
    }
  }

  group(title, rows, makeRow) {
    return rows.length ? [make('fieldset', {}, make('legend', {}, title), ...rows.map(makeRow))] : [];
  }

  makePart(kind, {name, index}) {
    const check = checkbox(name, this.isOn(kind, index), (isShown) => {
      this.switch(kind, index, isShown);
      this.apply();
    });
    check.append(make('button.link', {type: 'button', 'aria-label': `only ${name}`, onclick: () => this.only(kind, index)},
      'only'));
    return check;
  }

  makeNodeSet({name, index}) {
    const {nodes, points: [, count]} = this.model.nodeSets[index];
    const what = `${nodes} node${nodes === 1 ? '' : 's'}${count ? '' : ', all inside'}`;
    const check = checkbox(`${name} (${what})`, this.marked.has(index), (isMarked) => {
      this.marked[isMarked ? 'add' : 'delete'](index);
      this.onnodes();
    });
    const swatch = make('span.swatch', {'aria-hidden': 'true'});
    swatch.style.background = DISC_INKS[index % DISC_INKS.length];
    check.append(swatch);
    return check;
  }

  /** @returns {{points: [number, number], ink: number[]}[]} rows of the model's nodes of sets, and red, green, blue */
  shownNodeSets() {
    return [...this.marked].map((index) =>
      ({points: this.model.nodeSets[index].points, ink: toRgb(DISC_INKS[index % DISC_INKS.length])}));
  }

  isOn(kind, index) {
    return !this.hidden[kind].has(index) && (this.alone?.kind !== kind || this.alone.indices.has(index));
  }

  switch(kind, index, isShown) {
    this.hidden[kind][isShown ? 'delete' : 'add'](index);
    if (this.alone?.kind === kind && isShown) this.alone.indices.add(index);
  }

  switchListed(isShown) {
    for (const [kind, rows] of Object.entries(this.listed))
      for (const {index} of rows) this.switch(kind, index, isShown);
    this.fill();
    this.apply();
  }

  showAll() {
    this.hidden = {materials: new Set(), sets: new Set()};
    this.alone = null;
    this.fill();
    this.apply();
  }

  only(kind, index) {
    this.hidden = {materials: new Set(), sets: new Set()};
    this.alone = {kind, indices: new Set([index])};
    this.fill();
    this.apply();
  }

  apply() {
    const {materials, sets} = this.hidden;
    this.model.show((part) => {
      if (materials.has(part.material) || part.sets.some((set) => sets.has(set))) return false;
      if (!this.alone) return true;
      const {kind, indices} = this.alone;
      return kind === 'materials' ? indices.has(part.material) : part.sets.some((set) => indices.has(set));
    });
    this.onparts();
  }
}
