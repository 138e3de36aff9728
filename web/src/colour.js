// From values to colours: the maps of host/plot/ColourScale.cpp.

// Every eighth colour of "viridis" by S. van der Walt and N. Smith (2015), CC0, and its last, 255.
const VIRIDIS = `440154 470d60 48186a 482374 472d7b 453781 424086 3e4989 3b528b 375b8d 33638d 2f6b8e 2c728e 297a8e 26828e
23898e 21918c 1f988b 1fa088 22a785 28ae80 32b67a 3fbc73 4ec36b 5ec962 70cf57 84d44b 98d83e addc30 c2df23 d8e219 ece51b
fde725`;

// The smooth diverging map of K. Moreland, Diverging Color Maps for Scientific Visualization (2009), evenly spaced.
const COOLWARM = `3b4cc0 445acc 4e68d7 5875e1 6282ea 6c8ef1 779af7 82a5fb 8db0fe 98b9ff a3c2ff aec9fd b8d0f9 c2d5f4
ccd9ee d5dbe6 dddddd e5d8d1 ecd3c6 f1ccb9 f5c4ad f7bba0 f7b194 f7a687 f49a7b f18d6f ec7f63 e57057 de614c d55042 cb3e38
c0282f b40426`;

const parse = (text) => text.split(/\s+/).map((hex) => [0, 2, 4].map((i) => parseInt(hex.slice(i, i + 2), 16)));
const MAPS = {viridis: parse(VIRIDIS), coolwarm: parse(COOLWARM)};

/** @returns {number[]} red, green and blue, 0 to 255 @param {number} position 0 to 1 */
export function colourAt(map, position) {
  const colours = MAPS[map];
  let place = Math.max(0, Math.min(1, position)) * (colours.length - 1);
  if (map === 'viridis') {
    // The last two colours of the table are 7 steps of 255 apart, all others 8.
    const step = Math.max(0, Math.min(1, position)) * 255;
    place = step <= 248 ? step / 8 : 31 + (step - 248) / 7;
  }
  const index = Math.min(Math.floor(place), colours.length - 2);
  return [0, 1, 2].map((k) => colours[index][k] + (colours[index + 1][k] - colours[index][k]) * (place - index));
}

/** Colours for a range of values, as a table that shaders look up. */
export class ColourScale {
  /** @param {[number, number]} range least and greatest value that has a colour of its own */
  constructor([least, greatest]) {
    this.range = [least, greatest];
    const [below, above] = [-least, greatest];
    const isDiverging = Math.min(below, above) > 0 && Math.min(below, above) >= 0.05 * Math.max(below, above);
    this.map = isDiverging ? 'coolwarm' : 'viridis';
    const depth = Math.max(Math.abs(least), Math.abs(greatest));
    this.first = isDiverging ? -depth : least;
    this.length = isDiverging ? 2 * depth : greatest - least;
  }

  positionOf(value) {
    if (!(this.length > 0)) return 0.5;
    return (Math.max(this.range[0], Math.min(this.range[1], value)) - this.first) / this.length;
  }

  /** @returns {Uint8Array} size colours of four bytes over the whole map */
  table(size) {
    const bytes = new Uint8Array(4 * size);
    for (let i = 0; i < size; ++i) bytes.set([...colourAt(this.map, i / (size - 1)), 255], 4 * i);
    return bytes;
  }

  css(value) {
    return `rgb(${colourAt(this.map, this.positionOf(value)).map(Math.round).join(' ')})`;
  }
}

/** @returns {number[]} rounded values, evenly spaced, inside the range */
export function ticksOf([least, greatest], most) {
  const length = greatest - least;
  if (!(length > 0)) return [least];
  const raw = length / most;
  const power = 10 ** Math.floor(Math.log10(raw));
  const step = power * ([1, 2, 5, 10].find((factor) => factor * power >= raw * (1 - 1e-12)) ?? 10);
  const ticks = [];
  for (let i = Math.ceil(least / step - 1e-9); i * step <= greatest + 1e-9 * length; ++i) ticks.push(i * step);
  return ticks;
}

/** A number for people: six digits. */
export function formatNumber(value) {
  if (typeof value === 'string') return value; // nan and inf of the header
  if (!Number.isFinite(value)) return Number.isNaN(value) ? 'nan' : value > 0 ? 'inf' : '-inf';
  if (value === 0) return '0';
  const size = Math.abs(value);
  if (size >= 1e6 || size < 1e-4) {
    const [digits, power] = value.toExponential(5).split('e');
    return `${digits.includes('.') ? digits.replace(/\.?0+$/, '') : digits}e${Number(power)}`;
  }
  return String(Number(value.toPrecision(6)));
}
