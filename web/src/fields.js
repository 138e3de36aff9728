// What can be shown on the model: stored fields of one or two databases, and what is calculated from them.

import {componentsOf, evaluate} from './components.js';

/** @returns {Float64Array} for each value of the first the second less it */
const less = (a, b) => Float64Array.from(a, (value, i) => b[i] - value);

/**
 * A field of the header. Side 0 is the database, side 1 what it is compared with: of that the page has the difference,
 * which keeps its own seven digits however small it is.
 */
class StoredField {
  /** @param {Object|undefined} inside numbers of the blobs of the inside of solids */
  constructor(blobs, header, inside) {
    this.blobs = blobs;
    this.header = header;
    this.inside = inside;
    this.name = header.name;
    this.title = header.name;
    this.ofElements = header.ofElements;
    this.components = componentsOf(header);
    this.start = header.start;
  }

  has(step, side = 0) {
    return this.header.blobs[step] != null && (side === 0 || this.header.differences?.[step] != null);
  }

  /** @param {'blobs'|'differences'} what */
  read(what, step) {
    const blob = this.header[what][step];
    const {length} = this.header.components;
    return this.blobs.hasInside ? this.blobs.joined(blob, this.inside[what][step], length) : this.blobs.values(blob, length);
  }

  /** @returns {Promise<(Float32Array|Float64Array)[]|null>} stored columns */
  async columns(step, side = 0) {
    if (!this.has(step, side)) return null;
    const first = await this.read('blobs', step);
    if (side === 0) return first;
    const change = await this.read('differences', step);
    return first.map((column, k) => Float64Array.from(column, (value, i) => value + change[k][i]));
  }

  /** @returns {Promise<Float32Array|Float64Array|null>} a value a point or element; null where the step has none */
  async values(step, component, side = 0) {
    const columns = await this.columns(step, side);
    return columns && evaluate(this.header, columns, component);
  }

  /** @returns {Promise<Float32Array|Float64Array|null>} side 1 less side 0 */
  async differences(step, component) {
    if (!this.has(step, 1)) return null;
    const stored = this.header.components.indexOf(component);
    if (stored >= 0) return (await this.read('differences', step))[stored];
    const first = (await this.columns(step)).map((column) => Float64Array.from(column));
    return less(evaluate(this.header, first, component), await this.values(step, component, 1));
  }
}

/** The square roots of variances: how far the values that met at a node are apart. */
class SpreadField {
  constructor(variance) {
    this.variance = variance;
    this.name = variance.name.replace('-variance', '-spread');
    this.title = `${this.name} (standard deviation)`;
    this.ofElements = variance.ofElements;
    this.components = ['largest', ...variance.header.components];
    this.start = 'largest';
  }

  has(step, side) {
    return this.variance.has(step, side);
  }

  async values(step, component, side) {
    const columns = await this.variance.columns(step, side);
    if (!columns) return null;
    const chosen = component === 'largest' ? columns : [columns[this.variance.header.components.indexOf(component)]];
    return Float32Array.from(columns[0], (_, i) => Math.sqrt(Math.max(...chosen.map((column) => column[i]))));
  }
}

/** The second of two fields less the first. */
export class DifferenceField {
  /** @param {{field: Object, side: number}} first */
  constructor(first, second, name) {
    this.first = first;
    this.second = second;
    this.name = name;
    this.title = name;
    this.ofElements = first.field.ofElements;
    this.components = first.field.components;
    this.start = first.field.start;
  }

  has(step) {
    return this.first.field.has(step, this.first.side) && this.second.field.has(step, this.second.side);
  }

  async values(step, component) {
    const {field} = this.first;
    if (field === this.second.field && field.differences) return field.differences(step, component);
    const [a, b] = await Promise.all(
      [this.first, this.second].map(({field, side}) => field.values(step, component, side)));
    return a && b && less(a, b);
  }
}

/** @returns {{fields: Object[], displacement: Object|undefined, solver: Map<Object, Object>}} */
export function makeFields(blobs, header) {
  const stored = header.fields.map((field, i) => new StoredField(blobs, field, header.inside?.fields[i]));
  const named = (name) => stored.find((field) => field.name === name);
  const fields = [...stored];
  for (const field of stored)
    if (/-variance($|-)/.test(field.name) && field.header.components.length === 6) fields.push(new SpreadField(field));
  const solver = new Map(); // ours, the solver's
  for (const name of ['nodal-stress', 'nodal-strain']) {
    const [ours, theirs] = [named(name), named(`${name}-solver`)];
    if (ours && theirs) solver.set(ours, theirs);
  }
  return {fields, displacement: stored.find((field) => field.header.onf === 510), solver};
}
