// Where a plane cuts solids, as host/plot/PlaneSection.h finds it: solids are cut by cells of their own coordinates.

// Nodes stand in the order of decks; shapes are numbered as type codes of the .frd. Bricks live in [-1, 1]^3, tetrahedra
// have their corners at the origin and at one along each axis, wedges are the triangle of these times [-1, 1].
const BRICK = [
  [-1, -1, -1], [1, -1, -1], [1, 1, -1], [-1, 1, -1], [-1, -1, 1], [1, -1, 1], [1, 1, 1], [-1, 1, 1],
];
const BRICK_EDGES = [
  [0, 1], [1, 2], [2, 3], [3, 0], [4, 5], [5, 6], [6, 7], [7, 4], [0, 4], [1, 5], [2, 6], [3, 7],
];
const BRICK_MIDDLES = BRICK_EDGES.map(([a, b]) => [0, 1, 2].map((k) => (BRICK[a][k] + BRICK[b][k]) / 2));
const TET_EDGES = [[0, 1], [1, 2], [2, 0], [0, 3], [1, 3], [2, 3]];
const TRIANGLE_EDGES = [[0, 1], [1, 2], [2, 0]];

// Shape functions: O. C. Zienkiewicz, R. L. Taylor, The Finite Element Method, vol. 1, 5th ed., 2000, ch. 8.

function brick8(r, s, t, w) {
  for (let n = 0; n < 8; ++n) w[n] = ((1 + BRICK[n][0] * r) * (1 + BRICK[n][1] * s) * (1 + BRICK[n][2] * t)) / 8;
}

function brick20(r, s, t, w) {
  brick8(r, s, t, w);
  for (let n = 0; n < 8; ++n) w[n] *= BRICK[n][0] * r + BRICK[n][1] * s + BRICK[n][2] * t - 2;
  const along = (middle, x) => (middle === 0 ? 1 - x * x : 1 + middle * x);
  for (let n = 0; n < 12; ++n) {
    const [x, y, z] = BRICK_MIDDLES[n];
    w[8 + n] = (along(x, r) * along(y, s) * along(z, t)) / 4;
  }
}

function tet4(r, s, t, w) {
  [w[0], w[1], w[2], w[3]] = [1 - r - s - t, r, s, t];
}

function tet10(r, s, t, w) {
  const l = [1 - r - s - t, r, s, t];
  for (let n = 0; n < 4; ++n) w[n] = l[n] * (2 * l[n] - 1);
  TET_EDGES.forEach(([a, b], n) => (w[4 + n] = 4 * l[a] * l[b]));
}

function wedge6(r, s, t, w) {
  const l = [1 - r - s, r, s];
  for (let n = 0; n < 6; ++n) w[n] = (l[n % 3] * (n < 3 ? 1 - t : 1 + t)) / 2;
}

function wedge15(r, s, t, w) {
  const l = [1 - r - s, r, s];
  for (let n = 0; n < 6; ++n) {
    const z = n < 3 ? -t : t;
    w[n] = (l[n % 3] * (1 + z) * (2 * l[n % 3] - 2 + z)) / 2;
  }
  TRIANGLE_EDGES.forEach(([a, b], n) => {
    w[6 + n] = 2 * l[a] * l[b] * (1 - t);
    w[9 + n] = 2 * l[a] * l[b] * (1 + t);
  });
  for (let n = 0; n < 3; ++n) w[12 + n] = l[n] * (1 - t * t);
}

/** Six tetrahedra along the long diagonal of each of steps^3 boxes. */
function boxes(steps) {
  const cells = [];
  const at = (i) => (2 * i) / steps - 1;
  const orders = [[0, 1, 2], [0, 2, 1], [1, 0, 2], [1, 2, 0], [2, 0, 1], [2, 1, 0]];
  for (let k = 0; k < steps; ++k)
    for (let j = 0; j < steps; ++j)
      for (let i = 0; i < steps; ++i)
        for (const order of orders) {
          const place = [i, j, k];
          const cell = [place.map(at)];
          for (const axis of order) {
            ++place[axis];
            cell.push(place.map(at));
          }
          cells.push(cell);
        }
  return cells;
}

/** Three tetrahedra of each part of a triangle times an interval. */
function wedges(steps) {
  const cells = [];
  const add = (triangle, low, high) => {
    const at = (i, t) => [...triangle[i], t];
    cells.push([at(0, low), at(1, low), at(2, low), at(2, high)], [at(0, low), at(1, low), at(1, high), at(2, high)],
      [at(0, low), at(0, high), at(1, high), at(2, high)]);
  };
  const d = 1 / steps;
  for (let k = 0; k < steps; ++k)
    for (let j = 0; j < steps; ++j)
      for (let i = 0; i + j < steps; ++i) {
        const [low, high] = [(2 * k) / steps - 1, (2 * (k + 1)) / steps - 1];
        const [r, s] = [i / steps, j / steps];
        add([[r, s], [r + d, s], [r, s + d]], low, high);
        if (i + j + 1 < steps) add([[r + d, s], [r + d, s + d], [r, s + d]], low, high);
      }
  return cells;
}

/** A tetrahedron, or its eight between corners and middles of edges; the octahedron inside is cut along ab-cd. */
function tetrahedra(steps) {
  const [a, b, c, d] = [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1]];
  if (steps === 1) return [[a, b, c, d]];
  const middle = (p, q) => p.map((x, k) => (x + q[k]) / 2);
  const [ab, ac, ad] = [b, c, d].map((p) => middle(a, p));
  const [bc, bd, cd] = [middle(b, c), middle(b, d), middle(c, d)];
  return [[a, ab, ac, ad], [ab, b, bc, bd], [ac, bc, c, cd], [ad, bd, cd, d], [ab, cd, ac, ad], [ab, cd, ad, bd],
    [ab, cd, bd, bc], [ab, cd, bc, ac]];
}

const SHAPES = [
  null,
  {numNodes: 8, weigh: brick8, divide: boxes},
  {numNodes: 6, weigh: wedge6, divide: wedges},
  {numNodes: 4, weigh: tet4, divide: () => tetrahedra(1)},
  {numNodes: 20, weigh: brick20, divide: boxes},
  {numNodes: 15, weigh: wedge15, divide: wedges},
  {numNodes: 10, weigh: tet10, divide: tetrahedra},
];

export const numNodesOf = (type) => SHAPES[type].numNodes;

/** Points of the cells of a shape, the shape functions there, and for each cell which of its faces are of the element. */
function makeCells({numNodes, weigh, divide}, steps) {
  const numbers = new Map();
  const points = [];
  const cells = divide(steps).map((cell) => cell.map((point) => {
    const key = point.join();
    if (!numbers.has(key)) numbers.set(key, points.push(point) - 1);
    return numbers.get(key);
  }));
  const weights = points.map((point) => {
    const w = new Float64Array(numNodes);
    weigh(...point, w);
    return w;
  });
  const faceOf = (cell, corner) => cell.filter((_, i) => i !== corner).sort((a, b) => a - b).join();
  const counts = new Map();
  for (const cell of cells)
    for (let i = 0; i < 4; ++i) counts.set(faceOf(cell, i), (counts.get(faceOf(cell, i)) ?? 0) + 1);
  const areOuter = cells.map((cell) => cell.map((_, i) => counts.get(faceOf(cell, i)) === 1));
  return {points, weights, cells, areOuter};
}

// The corners of a cell that come first are kept, as many as the first index. A vertex lies between two corners; the edge
// from it to the next one lies on the face that has not the corner that stands behind.
const POLYGONS = [
  null,
  [[0, 1, 3], [0, 2, 1], [0, 3, 2]],
  [[0, 2, 1], [0, 3, 2], [1, 3, 0], [1, 2, 3]],
  [[0, 3, 2], [1, 3, 0], [2, 3, 1]],
];

/** Places within solids: which solid, and where in its own coordinates. */
class Places {
  constructor() {
    this.solids = [];
    this.locals = [];
  }

  get length() {
    return this.solids.length;
  }

  add(solid, [r, s, t]) {
    this.solids.push(solid);
    this.locals.push(r, s, t);
  }
}

/** Finer cells follow curves, and cost time. */
const MOST_FINE = 8000;

/** The cut of solids by a plane. */
export class Section {
  /**
   * @param {{types: Uint32Array, points: Uint32Array}} solids points: one solid behind the other
   * @param {Float32Array[]} columns coordinates of the points
   */
  constructor({types, points}, columns) {
    this.types = types;
    this.points = points;
    this.columns = columns;
    this.first = new Uint32Array(types.length + 1);
    for (let i = 0; i < types.length; ++i) this.first[i + 1] = this.first[i] + numNodesOf(types[i]);
    this.cells = new Map();
    this.weights = new Float64Array(20);
    this.clear();
  }

  clear() {
    this.corners = new Places(); // three a triangle
    this.ends = new Places(); // two a line, where the plane meets sides of elements
  }

  cellsOf(type, steps) {
    const key = 10 * steps + type;
    if (!this.cells.has(key)) this.cells.set(key, makeCells(SHAPES[type], steps));
    return this.cells.get(key);
  }

  /**
   * @param {number[]} plane a, b, c, d: what has ax + by + cz < d is kept
   * @param {[number, number][]} rows of solids that are there: first and count
   */
  cut(plane, rows) {
    this.clear();
    const sides = this.sidesOf(plane);
    const met = [];
    for (const [first, count] of rows)
      for (let solid = first; solid < first + count; ++solid) if (this.isMet(solid, sides)) met.push(solid);
    const steps = met.length > MOST_FINE ? 1 : 2;
    for (const solid of met) this.cutSolid(solid, sides, this.cellsOf(this.types[solid], steps));
  }

  /** Distances from the plane. Nodes on it, within what floats tell, are at 0 and count as taken away. */
  sidesOf([a, b, c, d]) {
    const [x, y, z] = this.columns;
    const sides = new Float64Array(x.length);
    let [least, greatest] = [Infinity, -Infinity];
    for (let i = 0; i < sides.length; ++i) {
      const side = a * x[i] + b * y[i] + c * z[i] - d;
      sides[i] = side;
      least = Math.min(least, side);
      greatest = Math.max(greatest, side);
    }
    const limit = 1e-6 * (greatest - least);
    for (let i = 0; i < sides.length; ++i) if (Math.abs(sides[i]) <= limit) sides[i] = 0;
    return sides;
  }

  isMet(solid, sides) {
    let [hasKept, hasTaken] = [false, false];
    for (let i = this.first[solid]; i < this.first[solid + 1]; ++i) {
      if (sides[this.points[i]] < 0) hasKept = true;
      else hasTaken = true;
    }
    return hasKept && hasTaken;
  }

  cutSolid(solid, sides, {points, weights, cells, areOuter}) {
    const first = this.first[solid];
    const own = Float64Array.from(this.points.subarray(first, this.first[solid + 1]), (point) => sides[point]);
    const scale = own.reduce((most, side) => Math.max(most, Math.abs(side)), 0);
    const pointSides = weights.map((w) => {
      const side = w.reduce((sum, weight, i) => sum + weight * own[i], 0);
      return Math.abs(side) <= 1e-12 * scale ? 0 : side; // what cancels between nodes on the plane is on it, too
    });
    const known = new Map();
    const meet = (a, b) => {
      const key = a * points.length + b;
      if (!known.has(key)) known.set(key, this.meet(solid, own, scale, [points[a], pointSides[a]], [points[b], pointSides[b]]));
      return known.get(key);
    };
    cells.forEach((cell, number) => {
      const isKept = (i) => pointSides[cell[i]] < 0;
      const numKept = isKept(0) + isKept(1) + isKept(2) + isKept(3);
      if (numKept === 0 || numKept === 4) return;
      const order = [0, 1, 2, 3].sort((i, j) => isKept(j) - isKept(i));
      const polygon = POLYGONS[numKept];
      const vertices = polygon.map(([a, b]) => meet(cell[order[a]], cell[order[b]]));
      for (let i = 2; i < vertices.length; ++i)
        for (const vertex of [vertices[0], vertices[i - 1], vertices[i]]) this.corners.add(solid, vertex);
      polygon.forEach(([, , opposite], i) => {
        if (!areOuter[number][order[opposite]]) return;
        this.ends.add(solid, vertices[i]);
        this.ends.add(solid, vertices[(i + 1) % vertices.length]);
      });
    });
  }

  /** The point on the way from one to another where the plane is: between them the side is no straight line. */
  meet(solid, own, scale, [from, kept], [to, taken]) {
    let [low, high] = [0, 1];
    let [lowSide, highSide] = [kept, taken];
    let point = from;
    for (let turn = 0; turn < 8; ++turn) {
      const share = low + ((high - low) * lowSide) / (lowSide - highSide);
      point = from.map((x, k) => x + share * (to[k] - x));
      SHAPES[this.types[solid]].weigh(...point, this.weights);
      let side = 0;
      for (let i = 0; i < own.length; ++i) side += this.weights[i] * own[i];
      if (Math.abs(side) <= 1e-9 * scale) break;
      if (side < 0) [low, lowSide] = [share, side];
      else [high, highSide] = [share, side];
    }
    return point;
  }

  /** @returns {number[]} a value a column at a place of a solid; columns are of points */
  at(solid, [r, s, t], columns) {
    SHAPES[this.types[solid]].weigh(r, s, t, this.weights);
    const first = this.first[solid];
    const count = this.first[solid + 1] - first;
    return columns.map((column) => {
      let sum = 0;
      for (let i = 0; i < count; ++i) {
        // A node without a value counts where it is met alone.
        if (this.weights[i] !== 0) sum += this.weights[i] * column[this.points[first + i]];
      }
      return sum;
    });
  }

  /** @returns {Float32Array} shape [places, columns] */
  interpolate({solids, locals}, columns) {
    const values = new Float32Array(solids.length * columns.length);
    for (let i = 0; i < solids.length; ++i)
      values.set(this.at(solids[i], [locals[3 * i], locals[3 * i + 1], locals[3 * i + 2]], columns), columns.length * i);
    return values;
  }

  /** @returns {{solid: number, local: number[]}} the place in a triangle of the section */
  placeIn(triangle, u, v) {
    const {solids, locals} = this.corners;
    const weights = [1 - u - v, u, v];
    const local = [0, 1, 2].map((k) =>
      weights.reduce((sum, weight, i) => sum + weight * locals[9 * triangle + 3 * i + k], 0));
    return {solid: solids[3 * triangle], local};
  }
}
