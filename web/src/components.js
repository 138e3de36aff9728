// Components and invariants of records, as host/kinds/Component.h defines them.

/** Principal values of xx yy zz xy yz zx, descending, by the trigonometric form of the characteristic equation. */
export function principalValues(xx, yy, zz, xy, yz, zx) {
  const size = Math.max(Math.abs(xx), Math.abs(yy), Math.abs(zz), Math.abs(xy), Math.abs(yz), Math.abs(zx));
  if (!(size > 0)) return [size, size, size];
  const mean = (xx + yy + zz) / 3;
  const a = (xx - mean) / size;
  const b = (yy - mean) / size;
  const c = (zz - mean) / size;
  const d = xy / size;
  const e = yz / size;
  const f = zx / size;
  const half = (a * a + b * b + c * c) / 2 + d * d + e * e + f * f;
  const radius = Math.sqrt(half / 3);
  if (radius === 0) return [mean, mean, mean];
  const det = a * (b * c - e * e) - d * (d * c - e * f) + f * (d * e - b * f);
  const angle = Math.acos(Math.max(-1, Math.min(1, det / (2 * radius ** 3)))) / 3;
  const at = (turn) => mean + size * 2 * radius * Math.cos(angle + turn);
  return [at(0), at((-2 * Math.PI) / 3), at((2 * Math.PI) / 3)];
}

const mises = (xx, yy, zz, xy, yz, zx) =>
  Math.sqrt(((xx - yy) ** 2 + (yy - zz) ** 2 + (zz - xx) ** 2) / 2 + 3 * (xy * xy + yz * yz + zx * zx));

const octahedral = ([p1, p2, p3]) => Math.sqrt((p1 - p2) ** 2 + (p2 - p3) ** 2 + (p3 - p1) ** 2) / 3;

const signed = (...t) => {
  const [p1, , p3] = principalValues(...t);
  return p1 >= -p3 * (1 - 1e-6) ? mises(...t) : -mises(...t);
};

const OF_TENSORS = {
  p1: (...t) => principalValues(...t)[0],
  p2: (...t) => principalValues(...t)[1],
  p3: (...t) => principalValues(...t)[2],
  mises,
  'signed-mises': signed,
  tresca: (...t) => principalValues(...t)[0] - principalValues(...t)[2],
  'max-shear': (...t) => (principalValues(...t)[0] - principalValues(...t)[2]) / 2,
  hydrostatic: (xx, yy, zz) => (xx + yy + zz) / 3,
  'octahedral-shear': (...t) => octahedral(principalValues(...t)),
  triaxiality: (...t) => (t[0] + t[1] + t[2]) / 3 / mises(...t),
  'equivalent-strain': (...t) => (2 / 3) * mises(...t),
};

/** Of a strain mises is the equivalent strain. */
const OF_STRAINS = {
  ...OF_TENSORS,
  mises: OF_TENSORS['equivalent-strain'],
  'signed-mises': (...t) => (2 / 3) * signed(...t),
};

/**
 * @param {{components: string[], isStrain: boolean}} field
 * @returns {string[]} the components that evaluate() knows, of those that the kind has
 */
export function componentsOf(field) {
  return field.all.filter((name) => field.components.includes(name) || invariantOf(field, name));
}

function invariantOf(field, name) {
  if (field.components.length === 3 && name === 'magnitude') return (x, y, z) => Math.hypot(x, y, z);
  if (field.components.length === 6) return (field.isStrain ? OF_STRAINS : OF_TENSORS)[name];
  return undefined;
}

/** @returns {Float32Array|Float64Array} one value a record, of the columns' type; a stored component is the column */
export function evaluate(field, columns, name) {
  const stored = field.components.indexOf(name);
  if (stored >= 0) return columns[stored];
  const invariant = invariantOf(field, name);
  const values = new columns[0].constructor(columns[0].length);
  if (columns.length === 3) {
    const [x, y, z] = columns;
    for (let i = 0; i < values.length; ++i) values[i] = invariant(x[i], y[i], z[i]);
  } else {
    const [a, b, c, d, e, f] = columns;
    for (let i = 0; i < values.length; ++i) values[i] = invariant(a[i], b[i], c[i], d[i], e[i], f[i]);
  }
  return values;
}
