// Blobs of numbers: where they come from and how they are decoded. The encoding is that of host/report/BlobCode.h.

/** @returns {Uint8Array} the bytes of base64 */
function fromBase64(text) {
  const binary = atob(text);
  const bytes = new Uint8Array(binary.length);
  for (let i = 0; i < bytes.length; ++i) bytes[i] = binary.charCodeAt(i);
  return bytes;
}

async function inflate(bytes) {
  const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream('deflate'));
  return new Uint8Array(await new Response(stream).arrayBuffer());
}

/** Undoes planes and differences. */
function toIntegers(bytes, size) {
  const count = bytes.length / size;
  const numbers = size === 4 ? new Uint32Array(count) : new Uint16Array(count);
  let last = 0;
  for (let i = 0; i < count; ++i) {
    let difference = bytes[i] | (bytes[count + i] << 8);
    if (size === 4) difference |= (bytes[2 * count + i] << 16) | (bytes[3 * count + i] << 24);
    last = (last + difference) >>> 0;
    if (size === 2) last &= 0xffff;
    numbers[i] = last;
  }
  return numbers;
}

/** Columns of one blob, component by component. */
function splitColumns(values, numComponents) {
  const count = values.length / numComponents;
  return Array.from({length: numComponents}, (_, i) => values.subarray(i * count, (i + 1) * count));
}

function fromHalves(steps, ranges, numComponents) {
  const count = steps.length / numComponents;
  return Array.from({length: numComponents}, (_, component) => {
    const least = ranges.getFloat64(16 * component, true);
    const greatest = ranges.getFloat64(16 * component + 8, true);
    const column = new Float32Array(count);
    for (let i = 0; i < count; ++i) {
      const step = steps[component * count + i];
      column[i] = step === 65535 ? NaN : least + (step / 65534) * (greatest - least);
    }
    return column;
  });
}

/** @returns {Float32Array|Uint32Array} two of a type, one behind the other */
export function concatenated(head, tail) {
  const both = new head.constructor(head.length + tail.length);
  both.set(head);
  both.set(tail, head.length);
  return both;
}

/** The blobs of a page: embedded in it, or fetched from the server that it comes from. */
export class Blobs {
  /** @param {{bits: number, base?: string}} header */
  constructor(header) {
    this.bits = header.bits;
    this.base = header.base;
    this.columns = new Map(); // decoded, the least recently used first
    this.bytes = 0;
    this.hasInside = false; // whether values are those of the inside of solids, too
  }

  async read(blob) {
    if (this.base === undefined) return fromBase64(document.getElementById(`blob${blob}`).textContent);
    const response = await fetch(`${this.base}${blob}`);
    if (!response.ok) throw new Error(`the server answers ${response.status}: ${await response.text()}`);
    return new Uint8Array(await response.arrayBuffer());
  }

  /** @returns {Promise<Uint32Array>} */
  async integers(blob) {
    return toIntegers(await inflate(await this.read(blob)), 4);
  }

  async decode(blob, numComponents, bits) {
    const bytes = await this.read(blob);
    if (bits === 32)
      return splitColumns(new Float32Array(toIntegers(await inflate(bytes), 4).buffer), numComponents);
    const ranges = new DataView(bytes.buffer, bytes.byteOffset, 16 * numComponents);
    return fromHalves(toIntegers(await inflate(bytes.subarray(16 * numComponents)), 2), ranges, numComponents);
  }

  /** @returns {Promise<Float32Array[]>} a column for each component. What was used last stays in memory. */
  values(blob, numComponents, bits = this.bits) {
    return this.keep(blob, () => this.decode(blob, numComponents, bits));
  }

  /** @returns {Promise<Float32Array[]>} the values of two blobs, one behind the other */
  joined(first, next, numComponents) {
    return this.keep(`${first}, ${next}`, async () => {
      const [head, tail] = await Promise.all([first, next].map((blob) => this.decode(blob, numComponents, this.bits)));
      return head.map((column, k) => concatenated(column, tail[k]));
    });
  }

  async keep(key, make) {
    let columns = this.columns.get(key);
    if (columns) {
      this.columns.delete(key);
    } else {
      columns = await make();
      this.drop(key); // another one may have made it meanwhile
      this.bytes += columns[0].length * 4 * columns.length;
    }
    this.columns.set(key, columns);
    for (const old of this.columns.keys()) {
      if (this.bytes <= 256e6 || old === key) break;
      this.drop(old);
    }
    return columns;
  }

  drop(key) {
    const columns = this.columns.get(key);
    if (!columns) return;
    this.bytes -= columns[0].length * 4 * columns.length;
    this.columns.delete(key);
  }
}
