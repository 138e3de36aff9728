// Draws the model, in one pane or several side by side with one camera.

import {
  BufferAttribute, BufferGeometry, DataTexture, DoubleSide, LinearFilter, LinearSRGBColorSpace, LineSegments, Mesh,
  OrthographicCamera, Points, Scene, ShaderMaterial, Vector3, Vector4, WebGLRenderer,
} from 'three';
import {OrbitControls} from 'three/examples/jsm/controls/OrbitControls.js';
import {meet, toPlaces} from './model.js';

const PLACE = `
uniform float factor;
varying vec3 rest;
vec4 placed(vec3 displacement) { rest = position; return modelViewMatrix * vec4(position + factor * displacement, 1.0); }`;
const CUT = `
uniform vec4 cut;
varying vec3 rest;
bool isCutOff() { return dot(cut.xyz, rest) > cut.w; }`;

const FACE_VERTEX = `${PLACE}
attribute vec3 displacement;
attribute float place;
varying float colour;
varying vec3 seen;
void main() { vec4 p = placed(displacement); seen = p.xyz; colour = place; gl_Position = projectionMatrix * p; }`;
// The light comes from the eye; what lies askew is darker by a third at most, so that colours can be read.
const FACE_FRAGMENT = `${CUT}
uniform sampler2D colours;
uniform vec3 none;
varying float colour;
varying vec3 seen;
void main() {
  if (isCutOff()) discard;
  vec3 normal = normalize(cross(dFdx(seen), dFdy(seen)));
  vec3 base = colour > 1e6 ? none : texture2D(colours, vec2(clamp(colour, 0.0, 1.0), 0.5)).rgb;
  gl_FragColor = vec4(base * (0.68 + 0.32 * abs(normal.z)), 1.0);
}`;
const LINE_VERTEX = `${PLACE}
attribute vec3 displacement;
void main() { gl_Position = projectionMatrix * placed(displacement); }`;
const LINE_FRAGMENT = `${CUT}
uniform vec4 ink;
void main() { if (isCutOff()) discard; gl_FragColor = ink; }`;

// Nodes of sets are discs that stand a little before the surface, so that it hides no half of them.
const DISC_VERTEX = `${PLACE}
attribute vec3 displacement;
attribute vec3 ink;
uniform float size;
varying vec3 colour;
void main() {
  gl_Position = projectionMatrix * placed(displacement);
  gl_Position.z -= 8e-4 * gl_Position.w;
  gl_PointSize = size;
  colour = ink;
}`;
const DISC_FRAGMENT = `${CUT}
varying vec3 colour;
void main() {
  float radius = length(gl_PointCoord - 0.5);
  if (isCutOff() || radius > 0.5) discard;
  gl_FragColor = vec4(radius > 0.36 ? vec3(1.0) : colour, 1.0);
}`;

const NOWHERE = {value: new Vector4(0, 0, 0, 1)}; // a plane that cuts nothing off

const VIEWS = {
  iso: [1, -1, 1], front: [0, -1, 0], back: [0, 1, 0], right: [1, 0, 0], left: [-1, 0, 0],
  top: [0, 0, 1], bottom: [0, 0, -1],
};
export const VIEW_NAMES = Object.keys(VIEWS);

/** One picture of the model. */
class Pane {
  constructor(model, shared) {
    this.model = model;
    this.scene = new Scene();
    this.factor = {value: 0};
    this.colours = {value: new DataTexture(new Uint8Array(1024), 256, 1)};
    this.colours.value.magFilter = this.colours.value.minFilter = LinearFilter;
    this.geometry = model.makeFaceGeometry();
    const makeFaces = (cut, depth) => new ShaderMaterial({
      vertexShader: FACE_VERTEX, fragmentShader: FACE_FRAGMENT, side: DoubleSide,
      polygonOffset: true, polygonOffsetFactor: depth, polygonOffsetUnits: depth,
      uniforms: {factor: this.factor, colours: this.colours, cut, none: shared.none},
    });
    const makeLines = (cut) => new ShaderMaterial({
      vertexShader: LINE_VERTEX, fragmentShader: LINE_FRAGMENT, transparent: true, depthWrite: false,
      uniforms: {factor: this.factor, cut, ink: shared.ink},
    });
    this.lineMaterial = makeLines(shared.cut);
    this.add(new Mesh(this.geometry, [makeFaces(shared.cut, 2)]));
    // Where faces lie on the cut, its section is before them.
    this.section = new Mesh(new BufferGeometry(), makeFaces(NOWHERE, 1));
    this.sectionLines = new LineSegments(new BufferGeometry(), makeLines(NOWHERE));
    this.discs = new Points(new BufferGeometry(), new ShaderMaterial({
      vertexShader: DISC_VERTEX, fragmentShader: DISC_FRAGMENT,
      uniforms: {factor: this.factor, cut: shared.cut, size: shared.discSize},
    }));
    this.discNodes = [];
    for (const object of [this.section, this.sectionLines, this.discs]) {
      object.visible = false;
      this.add(object);
    }
    this.lines = new Map();
    this.displacements = null;
    this.places = model.points;
  }

  add(object) {
    object.frustumCulled = false; // shaders move it
    this.scene.add(object);
  }

  /** @param {'mesh'|'outline'|'none'} kind */
  showLines(kind) {
    if (kind !== 'none' && !this.lines.has(kind)) {
      const {edges, rows} = kind === 'mesh'
        ? {edges: this.model.edges, rows: this.model.parts.map((part) => part.edges)}
        : this.model.outline();
      const geometry = this.model.makePointGeometry(edges);
      const object = new LineSegments(geometry, [this.lineMaterial]);
      this.model.setDisplacements(geometry, edges, this.displacements);
      this.model.setLineGroups(geometry, rows);
      this.lines.set(kind, {edges, rows, geometry, object});
      this.add(object);
    }
    for (const [name, {object}] of this.lines) object.visible = name === kind;
    this.hasSectionLines = kind === 'mesh';
    this.sectionLines.visible = this.hasSectionLines && this.section.visible;
  }

  /** Shows the section that the model has. */
  showSection() {
    const {section} = this.model;
    const hasSection = section !== undefined && section.corners.length > 0;
    this.section.visible = hasSection;
    this.sectionLines.visible = hasSection && this.hasSectionLines;
    if (!hasSection) return;
    for (const [object, places] of [[this.section, section.corners], [this.sectionLines, section.ends]]) {
      object.geometry.dispose();
      object.geometry = new BufferGeometry();
      object.geometry.setAttribute('position', new BufferAttribute(section.interpolate(places, this.model.columns), 3));
    }
    this.deformSection();
    this.colourSection();
  }

  deformSection() {
    const {section} = this.model;
    if (!this.section.visible) return;
    for (const [object, places] of [[this.section, section.corners], [this.sectionLines, section.ends]]) {
      const moved = this.displacements ? section.interpolate(places, this.displacements)
        : new Float32Array(3 * places.length);
      object.geometry.setAttribute('displacement', new BufferAttribute(moved, 3));
    }
    const rest = this.section.geometry.getAttribute('position').array;
    const moved = this.section.geometry.getAttribute('displacement').array;
    this.sectionPlaces = rest.map((x, i) => x + (this.factor.value * moved[i] || 0));
  }

  colourSection() {
    const {section, solidElements} = this.model;
    if (!this.section.visible || !this.shown) return;
    const {ofElements, values, placeOf} = this.shown;
    const atCorners = !values ? new Float32Array(section.corners.length).fill(NaN)
      : ofElements ? section.corners.solids.map((solid) => values[solidElements[solid]])
      : section.interpolate(section.corners, [values]);
    this.section.geometry.setAttribute('place', new BufferAttribute(toPlaces(atCorners, placeOf), 1));
  }

  /** @returns {Object|null} the triangle of the section that a ray meets, see meet() */
  pickSection(origin, direction) {
    if (!this.section.visible) return null;
    let best = null;
    for (let first = 0; first < this.model.section.corners.length; first += 3) {
      const met = meet(null, first, origin, direction, this.sectionPlaces, best?.distance ?? Infinity);
      if (met) best = {triangle: first / 3, ...met};
    }
    return best;
  }

  /** @param {number[]} nodes points @param {number[]} inks red, green, blue of each, 0 to 1 */
  showDiscs(nodes, inks) {
    this.discs.geometry.dispose();
    this.discs.geometry = this.model.makePointGeometry(nodes);
    this.discs.geometry.setAttribute('ink', new BufferAttribute(Float32Array.from(inks), 3));
    this.discs.visible = nodes.length > 0;
    this.discNodes = nodes;
    this.model.setDisplacements(this.discs.geometry, nodes, this.displacements);
  }

  showParts() {
    this.model.setGroups(this.geometry);
    for (const {geometry, rows} of this.lines.values()) this.model.setLineGroups(geometry, rows);
  }

  deform(columns, factor) {
    if (columns !== this.displacements) {
      this.displacements = columns;
      this.model.setDisplacements(this.geometry, this.model.cornerPoints, columns);
      for (const {geometry, edges} of this.lines.values()) this.model.setDisplacements(geometry, edges, columns);
      this.model.setDisplacements(this.discs.geometry, this.discNodes, columns);
    }
    this.factor.value = factor;
    this.places = this.model.deformed(columns, factor);
    this.deformSection();
  }

  colour(ofElements, values, scale) {
    const placeOf = (value) => (scale.length > 0 ? (value - scale.first) / scale.length : value === value ? 0.5 : NaN);
    this.model.setPlaces(this.geometry, ofElements, values, placeOf);
    this.shown = {ofElements, values, placeOf};
    this.colourSection();
    const texture = this.colours.value;
    texture.image.data.set(scale.table(256));
    // The ends of the range, not those of the map, are where colours end.
    texture.needsUpdate = true;
  }

  dispose() {
    this.geometry.dispose();
    this.colours.value.dispose();
    for (const {geometry} of [this.section, this.sectionLines, this.discs, ...this.lines.values()]) geometry.dispose();
  }
}

export class View {
  /** @param {HTMLCanvasElement} canvas @param {() => void} ondraw called behind each drawing */
  constructor(canvas, model, ondraw) {
    this.canvas = canvas;
    this.model = model;
    this.ondraw = ondraw;
    this.renderer = new WebGLRenderer({canvas, antialias: true, alpha: true, preserveDrawingBuffer: true});
    this.renderer.outputColorSpace = LinearSRGBColorSpace; // colours are those of the bar, bit by bit
    this.renderer.autoClear = false;
    this.camera = new OrthographicCamera(-1, 1, 1, -1, -10 * model.size, 10 * model.size);
    this.camera.up.set(0, 0, 1);
    this.controls = new OrbitControls(this.camera, canvas);
    this.controls.zoomToCursor = false;
    this.controls.addEventListener('change', () => this.draw());
    this.shared = {
      cut: {value: new Vector4(0, 0, 0, 1)}, none: {value: new Vector3()}, ink: {value: new Vector4()}, discSize: {value: 1},
    };
    this.panes = [];
    this.discs = [[], []];
    this.plane = null;
    this.lines = 'outline';
    this.setPanes(1);
    this.look('iso');
    new ResizeObserver(() => this.draw()).observe(canvas);
  }

  setPanes(count) {
    while (this.panes.length > count) this.panes.pop().dispose();
    while (this.panes.length < count) this.panes.push(new Pane(this.model, this.shared));
    for (const pane of this.panes) pane.showDiscs(...this.discs);
    this.showLines(this.lines);
    this.showSection();
  }

  showSection() {
    this.model.cut(this.plane);
    for (const pane of this.panes) pane.showSection();
    this.draw();
  }

  /** Marks nodes, see Pane.showDiscs(). */
  showDiscs(nodes, inks) {
    this.discs = [nodes, inks];
    for (const pane of this.panes) pane.showDiscs(nodes, inks);
    this.draw();
  }

  showLines(kind) {
    this.lines = kind;
    for (const pane of this.panes) pane.showLines(kind);
    this.draw();
  }

  showParts() {
    for (const pane of this.panes) pane.showParts();
    this.showSection();
  }

  setInk(isDark) {
    this.shared.ink.value.set(...(isDark ? [0.02, 0.02, 0.04, 0.6] : [0.05, 0.05, 0.07, 0.55]));
    this.shared.none.value.set(...(isDark ? [0.42, 0.43, 0.46] : [0.72, 0.73, 0.75]));
    this.draw();
  }

  /** @param {number[]|null} plane a, b, c, d */
  cut(plane) {
    this.plane = plane;
    this.shared.cut.value.set(...(plane ?? [0, 0, 0, 1]));
    this.showSection();
  }

  /** Half of the height that is seen of the whole model. */
  get reach() {
    return 0.62 * this.model.size;
  }

  look(name) {
    const direction = new Vector3(...VIEWS[name]).normalize();
    // A view along the axis that is up has none; a trifle aside it has.
    if (Math.abs(direction.z) === 1) direction.y = -1e-4 * direction.z;
    this.camera.zoom = 1;
    this.controls.target.set(...[0, 1, 2].map((k) => (this.model.least[k] + this.model.greatest[k]) / 2));
    this.camera.position.copy(this.controls.target).addScaledVector(direction, this.model.size);
    this.controls.update();
    this.draw();
  }

  /** Brings a place into the middle. */
  flyTo(place) {
    const shift = new Vector3(...place).sub(this.controls.target);
    this.controls.target.add(shift);
    this.camera.position.add(shift);
    this.camera.zoom = Math.max(this.camera.zoom, 3);
    this.controls.update();
    this.draw();
  }

  /** Turns by degrees about the vertical and the horizontal of the picture. */
  turn(azimuth, elevation) {
    const arm = this.camera.position.clone().sub(this.controls.target);
    const length = arm.length();
    const angle = Math.atan2(arm.y, arm.x) + (azimuth * Math.PI) / 180;
    const limit = Math.PI / 2 - 1e-3;
    const height = Math.asin(arm.z / length) + (elevation * Math.PI) / 180;
    const inside = Math.max(-limit, Math.min(limit, height));
    arm.set(Math.cos(inside) * Math.cos(angle), Math.cos(inside) * Math.sin(angle), Math.sin(inside));
    this.camera.position.copy(this.controls.target).addScaledVector(arm, length);
    this.controls.update();
    this.draw();
  }

  /** Moves what is seen, in parts of the picture. */
  pan(right, up) {
    const {x, y} = this.axes();
    const height = (2 * this.reach) / this.camera.zoom;
    const shift = x.multiplyScalar(-right * height).addScaledVector(y, -up * height);
    this.controls.target.add(shift);
    this.camera.position.add(shift);
    this.controls.update();
    this.draw();
  }

  zoom(factor) {
    this.camera.zoom = Math.max(0.05, Math.min(1000, this.camera.zoom * factor));
    this.camera.updateProjectionMatrix();
    this.draw();
  }

  axes() {
    this.camera.updateMatrixWorld();
    const [x, y, z] = [new Vector3(), new Vector3(), new Vector3()];
    this.camera.matrixWorld.extractBasis(x, y, z);
    return {x, y, z};
  }

  /** @returns {{left: number, top: number, width: number, height: number}[]} where panes are, in CSS pixels */
  areas() {
    const {clientWidth, clientHeight} = this.canvas;
    const count = this.panes.length;
    const isTall = clientHeight > clientWidth;
    // Whole pixels: between parts of pixels the picture before would stand.
    const [width, height] = isTall ? [clientWidth, Math.floor(clientHeight / count)]
      : [Math.floor(clientWidth / count), clientHeight];
    return this.panes.map((_, i) => ({left: isTall ? 0 : i * width, top: isTall ? i * height : 0, width, height}));
  }

  draw() {
    if (this.isWaiting) return;
    this.isWaiting = true;
    requestAnimationFrame(() => {
      this.isWaiting = false;
      this.drawNow();
    });
  }

  drawNow() {
    const {clientWidth, clientHeight} = this.canvas;
    if (!clientWidth || !clientHeight) return;
    const ratio = Math.min(devicePixelRatio, 2);
    this.shared.discSize.value = 9 * ratio;
    if (this.renderer.getPixelRatio() !== ratio) this.renderer.setPixelRatio(ratio);
    if (this.width !== clientWidth || this.height !== clientHeight) {
      this.renderer.setSize(clientWidth, clientHeight, false);
      [this.width, this.height] = [clientWidth, clientHeight];
    }
    const areas = this.areas();
    this.setFrustum(areas[0]);
    this.renderer.setScissorTest(false);
    this.renderer.clear();
    this.renderer.setScissorTest(true);
    this.panes.forEach((pane, i) => {
      const {left, top, width, height} = areas[i];
      const box = [left, clientHeight - top - height, width, height];
      this.renderer.setViewport(...box);
      this.renderer.setScissor(...box);
      this.renderer.render(pane.scene, this.camera);
    });
    this.ondraw();
  }

  setFrustum({width, height}) {
    const aspect = width / height;
    const reach = this.reach * Math.max(1, 1 / aspect);
    Object.assign(this.camera, {left: -reach * aspect, right: reach * aspect, top: reach, bottom: -reach});
    this.camera.updateProjectionMatrix();
    this.camera.updateMatrixWorld();
  }

  /** @returns {{x: number, y: number}} where a place of the model is in a pane, in CSS pixels of the canvas */
  project(place, pane) {
    const area = this.areas()[pane];
    const at = new Vector3(...place).project(this.camera);
    return {x: area.left + ((at.x + 1) / 2) * area.width, y: area.top + ((1 - at.y) / 2) * area.height};
  }

  /** @returns {{origin: number[], direction: number[]}} the ray of a pixel */
  ray(x, y, area) {
    const at = [(2 * (x - area.left)) / area.width - 1, 1 - (2 * (y - area.top)) / area.height];
    const {z} = this.axes();
    const origin = new Vector3(...at, 0).unproject(this.camera).addScaledVector(z, 4 * this.model.size);
    return {origin: origin.toArray(), direction: z.negate().toArray()};
  }

  /** @returns {Object|null} what is at a pixel of the canvas, see Model.pick() and placeOnCut(), and in which pane */
  pick(x, y) {
    const areas = this.areas();
    const pane = areas.findIndex(
      ({left, top, width, height}) => x >= left && x < left + width && y >= top && y < top + height);
    if (pane < 0) return null;
    const {origin, direction} = this.ray(x, y, areas[pane]);
    const met = this.model.pick(origin, direction, this.panes[pane].places, this.plane);
    const cut = this.panes[pane].pickSection(origin, direction);
    // Faces that lie on the cut are behind its section, however little.
    if (!cut || (met && met.distance < cut.distance - 1e-5 * this.model.size)) return met && {...met, pane};
    return {...this.model.placeOnCut(cut), pane};
  }
}
