// The model: which triangles are there, what they look like to the graphics card, and what a ray meets. Points and elements
// that are drawn come first; behind them stand those inside of solids, once a cut needs them.

import {BufferAttribute, BufferGeometry} from 'three';
import {concatenated} from './data.js';
import {Section} from './section.js';

/** Cosine of the angle from which on an edge is sharp: 30 degrees. */
const SHARP = Math.cos(Math.PI / 6);
const BEAM_SIDES = 6;
export const NO_VALUE = 1e9; // shaders draw it grey

export class Model {
  static async load(blobs, header) {
    const model = new Model();
    const names = ['ids', 'triangles', 'triangleElements', 'edges', 'beams', 'beamElements', 'elementIds'];
    await Promise.all(names.map(async (name) => (model[name] = await blobs.integers(header.blobs[name]))));
    const [x, y, z] = await blobs.values(header.blobs.points, 3, 32);
    model.numPoints = x.length; // drawn
    model.columns = [x, y, z];
    model.points = interleaved(model.columns);
    model.origin = header.origin;
    model.parts = header.parts;
    model.materials = header.materials;
    model.sets = header.sets;
    model.leavesOutSets = header.leavesOutSets;
    model.nodeSets = header.nodeSets;
    model.setNodes = () => (model.nodesOfSets ??= blobs.integers(header.blobs.setNodes));
    model.shown = header.parts.map(() => true);
    model.seesInside = false; // whether the inside counts as visible
    model.hasSolids = header.parts.some((part) => part.solids[1] > 0);
    model.measure();
    model.makeCorners();
    return model;
  }

  /** Reads what sections of solids need. @param {Object} header "inside" of the page's */
  async loadInside(blobs, header) {
    const names = ['ids', 'elementIds', 'solidTypes', 'solidElements', 'solidPoints'];
    const [points, ids, elementIds, types, elements, solidPoints] = await Promise.all(
      [blobs.values(header.blobs.points, 3, 32), ...names.map((name) => blobs.integers(header.blobs[name]))]);
    this.columns = this.columns.map((column, k) => concatenated(column, points[k]));
    this.points = interleaved(this.columns);
    this.ids = concatenated(this.ids, ids);
    this.elementIds = concatenated(this.elementIds, elementIds);
    this.solidElements = elements;
    this.section = new Section({types, points: solidPoints}, this.columns);
  }

  /** Cuts what is shown of the solids. @param {number[]|null} plane see pick() */
  cut(plane) {
    if (plane) this.section?.cut(plane, this.parts.filter((_, i) => this.shown[i]).map((part) => part.solids));
    else this.section?.clear();
  }

  measure() {
    this.least = [Infinity, Infinity, Infinity];
    this.greatest = [-Infinity, -Infinity, -Infinity];
    for (let i = 0; i < this.points.length; ++i) {
      this.least[i % 3] = Math.min(this.least[i % 3], this.points[i]);
      this.greatest[i % 3] = Math.max(this.greatest[i % 3], this.points[i]);
    }
    this.size = Math.hypot(...this.greatest.map((value, k) => value - this.least[k])) || 1;
  }

  /** Corners of the faces that are drawn: their points, their elements, and where each part begins. */
  makeCorners() {
    const numTriangles = this.triangleElements.length;
    const perBeam = 6 * BEAM_SIDES;
    const numCorners = 3 * numTriangles + perBeam * this.beamElements.length;
    this.cornerPoints = new Uint32Array(numCorners);
    this.cornerElements = new Uint32Array(numCorners);
    this.cornerPlaces = new Float32Array(3 * numCorners);
    this.cornerPoints.set(this.triangles);
    for (let i = 0; i < numTriangles; ++i) this.cornerElements.fill(this.triangleElements[i], 3 * i, 3 * i + 3);
    this.radius = this.size / 250;
    for (let beam = 0; beam < this.beamElements.length; ++beam) this.makePrism(beam, 3 * numTriangles + perBeam * beam);
    for (let i = 0; i < 3 * numTriangles; ++i)
      this.cornerPlaces.set(this.points.subarray(3 * this.cornerPoints[i], 3 * this.cornerPoints[i] + 3), 3 * i);
    this.numTriangles = numTriangles;
    this.perBeam = perBeam;
    this.positions = new BufferAttribute(this.cornerPlaces, 3);
  }

  pointAt(point) {
    return Array.from(this.points.subarray(3 * point, 3 * point + 3));
  }

  /** A beam is drawn as a prism, so that it can be seen: a line of the graphics card is a pixel wide. */
  makePrism(beam, first) {
    const ends = [this.beams[2 * beam], this.beams[2 * beam + 1]];
    const [a, b] = ends.map((end) => this.pointAt(end));
    const along = b.map((value, k) => value - a[k]);
    const aside = Math.abs(along[2]) < 0.9 * Math.hypot(...along) ? [0, 0, 1] : [1, 0, 0];
    const u = normalized(cross(along, aside));
    const v = normalized(cross(along, u));
    const ring = (end, side) => {
      const angle = (2 * Math.PI * side) / BEAM_SIDES;
      return (end ? b : a).map((x, k) => x + this.radius * (Math.cos(angle) * u[k] + Math.sin(angle) * v[k]));
    };
    let corner = first;
    for (let side = 0; side < BEAM_SIDES; ++side) {
      for (const [end, step] of [[0, 0], [0, 1], [1, 1], [0, 0], [1, 1], [1, 0]]) {
        this.cornerPoints[corner] = ends[end];
        this.cornerElements[corner] = this.beamElements[beam];
        this.cornerPlaces.set(ring(end, side + step), 3 * corner);
        ++corner;
      }
    }
  }

  /** Sharp edges and ends of surfaces, of all parts; the same shape as edges, and where the parts begin. */
  outline() {
    if (this.outlineEdges) return this.outlineEdges;
    const kept = [];
    const rows = [];
    for (const part of this.parts) {
      const normals = new Map(); // by edge: of its triangles
      const [first, count] = part.triangles;
      for (let i = first; i < first + count; ++i) {
        const corners = this.triangles.subarray(3 * i, 3 * i + 3);
        const normal = this.normalOf(corners);
        for (let k = 0; k < 3; ++k) {
          const key = keyOf(corners[k], corners[(k + 1) % 3], this.numPoints);
          const met = normals.get(key);
          if (met) met.push(normal);
          else normals.set(key, [normal]);
        }
      }
      const begin = kept.length / 2;
      for (let i = part.edges[0]; i < part.edges[0] + part.edges[1]; ++i) {
        const [a, b] = [this.edges[2 * i], this.edges[2 * i + 1]];
        const met = normals.get(keyOf(a, b, this.numPoints)) ?? [];
        if (met.length === 2 && dot(met[0], met[1]) > SHARP) continue;
        kept.push(a, b);
      }
      rows.push([begin, kept.length / 2 - begin]);
    }
    this.outlineEdges = {edges: Uint32Array.from(kept), rows};
    return this.outlineEdges;
  }

  normalOf([a, b, c]) {
    const p = this.points;
    const edge = (from, to) => [0, 1, 2].map((k) => p[3 * to + k] - p[3 * from + k]);
    return normalized(cross(edge(a, b), edge(a, c)));
  }

  /** Shows parts. @param {(part: Object) => boolean} isShown */
  show(isShown) {
    this.shown = this.parts.map(isShown);
  }

  /** Draws only what is shown. */
  setGroups(geometry) {
    geometry.clearGroups();
    this.addGroups(geometry, this.parts.map((part) => part.triangles), 0, 3);
    this.addGroups(geometry, this.parts.map((part) => part.beams), 3 * this.numTriangles, this.perBeam);
  }

  setLineGroups(geometry, rows) {
    geometry.clearGroups();
    this.addGroups(geometry, rows, 0, 2);
  }

  /** One group for parts that stand one behind the other: each is drawn by a call of its own. */
  addGroups(geometry, rows, begin, size) {
    let [first, count] = [0, 0];
    const add = () => {
      if (count) geometry.addGroup(begin + size * first, size * count, 0);
    };
    rows.forEach(([at, length], i) => {
      if (!this.shown[i] || !length) return;
      if (at === first + count) {
        count += length;
        return;
      }
      add();
      [first, count] = [at, length];
    });
    add();
  }

  makeFaceGeometry() {
    const geometry = new BufferGeometry();
    geometry.setAttribute('position', this.positions);
    geometry.setAttribute('displacement', new BufferAttribute(new Float32Array(this.cornerPlaces.length), 3));
    geometry.setAttribute('place', new BufferAttribute(new Float32Array(this.cornerPoints.length), 1));
    this.setGroups(geometry);
    return geometry;
  }

  /** @param {Uint32Array|number[]} rows points @returns {BufferGeometry} their places, and room for displacements */
  makePointGeometry(rows) {
    const geometry = new BufferGeometry();
    const places = new Float32Array(3 * rows.length);
    for (let i = 0; i < rows.length; ++i)
      places.set(this.points.subarray(3 * rows[i], 3 * rows[i] + 3), 3 * i);
    geometry.setAttribute('position', new BufferAttribute(places, 3));
    geometry.setAttribute('displacement', new BufferAttribute(new Float32Array(places.length), 3));
    return geometry;
  }

  /** @param {Float32Array[]|null} columns displacements of the points */
  setDisplacements(geometry, rows, columns) {
    const attribute = geometry.getAttribute('displacement');
    const target = attribute.array;
    if (!columns) {
      target.fill(0);
    } else {
      for (let i = 0; i < rows.length; ++i)
        for (let k = 0; k < 3; ++k) target[3 * i + k] = columns[k][rows[i]] || 0;
    }
    attribute.needsUpdate = true;
  }

  /** @param {Float32Array|null} values @param {(value: number) => number} placeOf where a value is in the colours */
  setPlaces(geometry, ofElements, values, placeOf) {
    const rows = ofElements ? this.cornerElements : this.cornerPoints;
    const attribute = geometry.getAttribute('place');
    const places = toPlaces(values ?? [], placeOf);
    for (let i = 0; i < rows.length; ++i) attribute.array[i] = values ? places[rows[i]] : NO_VALUE;
    attribute.needsUpdate = true;
  }

  /** @returns {Float32Array} places of the points */
  deformed(columns, factor) {
    if (!columns || factor === 0) return this.points;
    const places = new Float32Array(this.points);
    for (let i = 0; i < columns[0].length; ++i)
      for (let k = 0; k < 3; ++k) places[3 * i + k] += factor * (columns[k][i] || 0);
    return places;
  }

  /** Marks points and elements that something shown has. */
  visible() {
    if (this.visibleOf === this.shown && this.visibleInside === this.seesInside) return this.visibleRows;
    const points = new Uint8Array(this.points.length / 3);
    const elements = new Uint8Array(this.elementIds.length);
    this.parts.forEach((part, i) => {
      if (!this.shown[i]) return;
      const [first, count] = part.triangles;
      for (let t = first; t < first + count; ++t) {
        elements[this.triangleElements[t]] = 1;
        for (let k = 0; k < 3; ++k) points[this.triangles[3 * t + k]] = 1;
      }
      for (let beam = part.beams[0]; beam < part.beams[0] + part.beams[1]; ++beam) {
        elements[this.beamElements[beam]] = 1;
        points[this.beams[2 * beam]] = points[this.beams[2 * beam + 1]] = 1;
      }
      if (this.seesInside) this.markSolids(part, points, elements);
    });
    this.visibleOf = this.shown;
    this.visibleInside = this.seesInside;
    this.visibleRows = {points, elements};
    return this.visibleRows;
  }

  markSolids({solids: [first, count]}, points, elements) {
    const {section} = this;
    for (let solid = first; solid < first + count; ++solid) elements[this.solidElements[solid]] = 1;
    for (let i = section.first[first]; i < section.first[first + count]; ++i) points[section.points[i]] = 1;
  }

  /** @returns {number} the point of a node that is there, -1 without any */
  findNode(id) {
    return this.ids.indexOf(id);
  }

  /** @returns {Uint32Array} the points of a solid */
  pointsInside(element) {
    const solid = this.solidElements.indexOf(element);
    return this.section.points.subarray(this.section.first[solid], this.section.first[solid + 1]);
  }

  /** The middle of an element's outside; of its points where it has none. */
  middleOf(element, places) {
    const sum = [0, 0, 0, 0];
    const add = (point) => {
      for (let k = 0; k < 3; ++k) sum[k] += places[3 * point + k];
      ++sum[3];
    };
    for (let t = 0; t < this.numTriangles; ++t)
      if (this.triangleElements[t] === element) this.triangles.subarray(3 * t, 3 * t + 3).forEach(add);
    for (let beam = 0; beam < this.beamElements.length; ++beam)
      if (this.beamElements[beam] === element) this.beams.subarray(2 * beam, 2 * beam + 2).forEach(add);
    if (sum[3] === 0) this.pointsInside(element).forEach(add);
    return sum.slice(0, 3).map((value) => value / sum[3]);
  }

  /**
   * The first thing that a ray meets.
   * @param {Float32Array} places of points
   * @param {number[]|null} cut plane a, b, c, d: what has ax + by + cz > d, undeformed, is not there
   * @returns {{distance: number, element: number, point: number}|null} point: the nearest of the face met
   */
  pick(origin, direction, places, cut) {
    let best = null;
    let distance = Infinity;
    this.parts.forEach((part, i) => {
      if (!this.shown[i]) return;
      for (let t = part.triangles[0]; t < part.triangles[0] + part.triangles[1]; ++t) {
        const met = meet(this.triangles, 3 * t, origin, direction, places, distance);
        if (!met || (cut && this.isCutOff(t, met, cut))) continue;
        distance = met.distance;
        best = {t, ...met};
      }
    });
    const beam = this.pickBeam(origin, direction, places, cut, distance);
    if (beam) return beam;
    if (!best) return null;
    const weights = [1 - best.u - best.v, best.u, best.v];
    const nearest = weights.indexOf(Math.max(...weights));
    return {distance, element: this.triangleElements[best.t], point: this.triangles[3 * best.t + nearest]};
  }

  /**
   * @param {{triangle: number, u: number, v: number}} met of the section
   * @returns {{element: number, point: number, on: {solid: number, local: number[]}, rest: number[]}} the place on the cut,
   *          undeformed, and the nearest point of its solid
   */
  placeOnCut({triangle, u, v}) {
    const {section} = this;
    const on = section.placeIn(triangle, u, v);
    const rest = section.at(on.solid, on.local, this.columns);
    const element = this.solidElements[on.solid];
    const apart = (point) => Math.hypot(...this.pointAt(point).map((x, k) => x - rest[k]));
    const point = this.pointsInside(element).reduce((best, other) => (apart(other) < apart(best) ? other : best));
    return {element, point, on, rest};
  }

  isCutOff(t, {u, v}, [nx, ny, nz, d]) {
    const weights = [1 - u - v, u, v];
    let side = -d;
    for (let k = 0; k < 3; ++k) {
      const at = 3 * this.triangles[3 * t + k];
      side += weights[k] * (nx * this.points[at] + ny * this.points[at + 1] + nz * this.points[at + 2]);
    }
    return side > 0;
  }

  pickBeam(o, d, p, cut, limit) {
    let best = null;
    this.parts.forEach((part, i) => {
      if (!this.shown[i]) return;
      for (let beam = part.beams[0]; beam < part.beams[0] + part.beams[1]; ++beam) {
        const ends = [this.beams[2 * beam], this.beams[2 * beam + 1]];
        const [a, b] = ends.map((end) => [p[3 * end], p[3 * end + 1], p[3 * end + 2]]);
        const {distance, apart, along} = nearestOnSegment(o, d, a, b);
        if (apart > 1.5 * this.radius || distance - this.radius >= limit) continue;
        const point = ends[along < 0.5 ? 0 : 1];
        if (cut && dot(cut, this.pointAt(point)) > cut[3]) continue;
        limit = distance - this.radius;
        best = {distance: limit, element: this.beamElements[beam], point};
      }
    });
    return best;
  }
}

function interleaved([x, y, z]) {
  const points = new Float32Array(3 * x.length);
  for (let i = 0; i < x.length; ++i) {
    points[3 * i] = x[i];
    points[3 * i + 1] = y[i];
    points[3 * i + 2] = z[i];
  }
  return points;
}

const cross = (a, b) => [a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]];
const dot = (a, b) => a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
const normalized = (a) => {
  const length = Math.hypot(...a) || 1;
  return a.map((value) => value / length);
};
const keyOf = (a, b, size) => (a < b ? a * size + b : b * size + a);

/** Where a ray with a direction of length one comes nearest to a segment. */
function nearestOnSegment(o, d, a, b) {
  const e = b.map((value, k) => value - a[k]);
  const w = a.map((value, k) => value - o[k]);
  const [de, ee, dw, ew] = [dot(d, e), dot(e, e), dot(d, w), dot(e, w)];
  const det = ee - de * de;
  const along = Math.max(0, Math.min(1, det > 1e-12 * ee ? (de * dw - ew) / det : 0));
  const distance = dw + along * de;
  const apart = Math.hypot(...a.map((value, k) => value + along * e[k] - o[k] - distance * d[k]));
  return {distance, apart, along};
}

/** Places of colours. @param {(value: number) => number} placeOf where a value is in the colours */
export function toPlaces(values, placeOf) {
  return Float32Array.from(values, (value) => {
    const place = placeOf(value);
    return Number.isFinite(place) ? Math.max(-1e3, Math.min(1e3, place)) : NO_VALUE;
  });
}

/**
 * What a ray meets of a triangle, nearer than a limit.
 * T. Moeller, B. Trumbore, Fast, minimum storage ray/triangle intersection, J. Graphics Tools 2 (1997) 21-28.
 * @param {Uint32Array|null} corners points of triangles; null: 0, 1, 2 and so on @param {number} first of the three
 * @param {number[]} o origin @param {number[]} d direction @param {Float32Array} p places of points
 */
export function meet(corners, first, o, d, p, limit) {
  const a = 3 * (corners ? corners[first] : first);
  const b = 3 * (corners ? corners[first + 1] : first + 1);
  const c = 3 * (corners ? corners[first + 2] : first + 2);
  const e1x = p[b] - p[a], e1y = p[b + 1] - p[a + 1], e1z = p[b + 2] - p[a + 2];
  const e2x = p[c] - p[a], e2y = p[c + 1] - p[a + 1], e2z = p[c + 2] - p[a + 2];
  const px = d[1] * e2z - d[2] * e2y, py = d[2] * e2x - d[0] * e2z, pz = d[0] * e2y - d[1] * e2x;
  const det = e1x * px + e1y * py + e1z * pz;
  if (det === 0) return null;
  const tx = o[0] - p[a], ty = o[1] - p[a + 1], tz = o[2] - p[a + 2];
  const u = (tx * px + ty * py + tz * pz) / det;
  if (!(u >= 0 && u <= 1)) return null;
  const qx = ty * e1z - tz * e1y, qy = tz * e1x - tx * e1z, qz = tx * e1y - ty * e1x;
  const v = (d[0] * qx + d[1] * qy + d[2] * qz) / det;
  if (!(v >= 0 && u + v <= 1)) return null;
  const distance = (e2x * qx + e2y * qy + e2z * qz) / det;
  return distance < limit ? {distance, u, v} : null;
}
