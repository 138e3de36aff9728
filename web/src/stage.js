// The model with its controls: what is shown, and what the pointer and the keyboard do.

import {HistoryChart} from './charts.js';
import {ColourScale, formatNumber, ticksOf} from './colour.js';
import {checkbox, fill, labelled, make, select, setOptions, table} from './dom.js';
import {DifferenceField} from './fields.js';
import {Parts, section} from './panels.js';
import {VIEW_NAMES, View} from './view.js';

const KEYS = 'Arrows turn, with Shift they move; + and − zoom, Home shows all, [ and ] go to the step before and behind.';

/** @returns {number} 1, 2 or 5 times a power of ten, the greatest not above the number */
function roundedDown(number) {
  const power = 10 ** Math.floor(Math.log10(number));
  return power * [5, 2, 1].find((factor) => factor * power <= number * (1 + 1e-12));
}

function indexOfLeast(values, isShown, sign) {
  let best = -1;
  for (let i = 0; i < values.length; ++i)
    if (isShown[i] && values[i] === values[i] && (best < 0 || sign * values[i] < sign * values[best])) best = i;
  return best;
}

export class Stage {
  constructor(header, model, blobs, {fields, displacement, solver}) {
    this.header = header;
    this.blobs = blobs;
    this.model = model;
    this.fields = fields;
    this.displacement = displacement;
    this.solver = solver;
    this.steps = header.steps.length ? header.steps : [{label: 'no step', time: null}];
    this.step = this.steps.length - 1;
    this.field = fields.find((field) => field.name === 'nodal-stress') ?? displacement ?? fields[0];
    this.component = this.field.start;
    this.factor = 0;
    this.rangeOf = 'step';
    this.compares = Boolean(header.compared);
    this.sides = []; // one a pane: {title, field, side}
    this.shown = []; // one a pane: {values, ofElements, scale}
    this.picked = []; // points, or elements of fields of elements
    this.turn = 0; // counts updates: one that is overtaken is dropped
    this.makeElements();
  }

  async start() {
    this.view = new View(this.canvas, this.model, () => this.placeMarks());
    const dark = matchMedia('(prefers-color-scheme: dark)');
    const setInk = () => this.view.setInk(dark.matches);
    dark.addEventListener('change', () => (setInk(), this.showHistory()));
    setInk();
    this.lines.value = this.model.edges.length > 60000 ? 'outline' : 'mesh';
    this.view.showLines(this.lines.value);
    await this.update();
  }

  // ---- elements of the page

  makeElements() {
    this.canvas = make('canvas', {
      tabindex: 0, role: 'img', 'aria-label': 'Model with its result', 'aria-describedby': 'keys readout',
    });
    this.marks = make('div.marks', {'aria-hidden': 'true'});
    this.titles = make('div.titles');
    this.bars = make('div.bars');
    this.readout = make('p.readout', {id: 'readout', role: 'status'}, 'Point at the model');
    this.extremes = make('p.extremes', {'aria-live': 'polite'});
    this.listenTo(this.canvas);
    const stage = make('div.stage', {}, this.canvas, this.titles, this.marks, this.bars, this.readout);
    this.element = make('section.model', {id: 'model', 'aria-label': 'Model'}, stage, this.makeControls());
    this.makeHistory();
    this.makeWorst();
  }

  makeControls() {
    this.fieldChoice = select(
      this.fields.map((field, i) => ({value: String(i), text: field.title})), String(this.fields.indexOf(this.field)),
      (value) => this.choose(this.fields[Number(value)]));
    this.componentChoice = select([], '', (value) => this.choose(this.field, value));
    this.fillComponents();
    return make('form.controls', {onsubmit: (event) => event.preventDefault(), 'aria-label': 'What is shown'},
      labelled('Field', this.fieldChoice), labelled('Component', this.componentChoice), this.makeStepControls(),
      this.makeDeformation(), this.makeCut(), this.makeLook(), this.makeRange(), this.extremes, this.makeFind(),
      this.makeParts(), make('p.hint', {id: 'keys'}, `On the model: ${KEYS}`));
  }

  fillComponents() {
    setOptions(this.componentChoice, this.field.components.map((name) => ({value: name, text: name})), this.component);
  }

  makeStepControls() {
    const last = this.steps.length - 1;
    this.stepSlider = make('input', {
      type: 'range', min: 0, max: last, step: 1, value: this.step, disabled: last === 0,
      oninput: () => this.goToStep(Number(this.stepSlider.value)),
    });
    this.stepText = make('output', {for: 'step'});
    this.stepSlider.id = 'step';
    return make('div.control', {}, make('label', {for: 'step'}, 'Step ', this.stepText), this.stepSlider);
  }

  makeDeformation() {
    if (!this.displacement) return null;
    this.factorInput = make('input', {
      type: 'number', step: 'any', value: 0, onchange: () => this.deform(Number(this.factorInput.value) || 0),
    });
    const auto = make('button', {type: 'button', onclick: async () => this.deform(await this.autoFactor())}, 'auto');
    const none = make('button', {type: 'button', onclick: () => this.deform(0)}, 'none');
    const control = labelled('Deformation, times', this.factorInput);
    control.append(auto, none);
    control.classList.add('row');
    return control;
  }

  makeCut() {
    this.cutAxis = select(
      ['none', 'x', 'y', 'z', '-x', '-y', '-z'].map((name) => ({value: name, text: name === 'none' ? 'none' : `along ${name}`})),
      'none', () => this.cut());
    this.cutPlace = make('input', {type: 'range', min: 0, max: 1000, value: 500, disabled: true, oninput: () => this.cut(),
      'aria-label': 'Place of the cut'});
    this.cutText = make('output');
    this.cutHint = make('p.hint', {role: 'status'});
    const control = labelled('Cut', this.cutAxis);
    control.append(this.cutPlace, this.cutText, this.cutHint);
    return control;
  }

  makeLook() {
    const views = VIEW_NAMES.map((name) =>
      make('button', {type: 'button', onclick: () => this.view.look(name)}, name));
    this.lines = select(
      [{value: 'mesh', text: 'mesh'}, {value: 'outline', text: 'outline'}, {value: 'none', text: 'none'}], 'outline',
      (value) => this.view.showLines(value));
    return make('div.control', {}, make('div.row', {role: 'group', 'aria-label': 'Look at the model from'}, ...views),
      labelled('Lines', this.lines));
  }

  makeRange() {
    this.rangeChoice = select(
      [{value: 'step', text: 'of this step'}, {value: 'all', text: 'of all steps'}, {value: 'own', text: 'given'}], 'step',
      (value) => {
        this.rangeOf = value;
        for (const input of this.rangeInputs) input.disabled = value !== 'own';
        this.update();
      });
    this.rangeInputs = ['Least colour', 'Greatest colour'].map((label) => make('input', {
      type: 'number', step: 'any', 'aria-label': label, disabled: true, onchange: () => this.update(),
    }));
    const control = labelled('Colours over the range', this.rangeChoice);
    control.append(make('div.row', {}, ...this.rangeInputs));
    return control;
  }

  makeFind() {
    const input = make('input', {type: 'text', inputmode: 'numeric', onkeydown: (event) => {
      if (event.key === 'Enter') this.find(input.value);
    }});
    const control = labelled('Go to node', input);
    this.findText = make('p.hint', {role: 'status'});
    control.append(make('button', {type: 'button', onclick: () => this.find(input.value)}, 'Go'), this.findText);
    control.classList.add('row');
    return control;
  }

  makeParts() {
    this.parts = new Parts(this.model, {
      onparts: () => {
        this.view.showParts();
        this.update();
        this.showNodeSets();
      },
      onnodes: () => this.showNodeSets(),
    });
    const hasSeveral = this.model.parts.length > 1 || this.model.nodeSets.length > 0;
    return make('details', {open: hasSeveral}, make('summary', {}, 'Parts and sets'), this.parts.place);
  }

  /** Marks the nodes of sets, those of parts that are shown. */
  async showNodeSets() {
    const turn = (this.discTurn = (this.discTurn ?? 0) + 1);
    const shown = this.parts.shownNodeSets();
    const all = shown.length ? await this.model.setNodes() : [];
    if (turn !== this.discTurn) return;
    const {points} = this.model.visible();
    const [nodes, inks] = [[], []];
    for (const {points: [first, count], ink} of shown)
      for (const point of all.subarray(first, first + count)) {
        if (!points[point]) continue;
        nodes.push(point);
        inks.push(...ink);
      }
    this.view.showDiscs(nodes, inks);
  }

  qualityButtons() {
    const buttons = [];
    const add = (text, run) => buttons.push(make('button', {type: 'button', onclick: () => {
      run();
      this.element.scrollIntoView();
    }}, text), ' ');
    for (const field of this.fields) {
      if (/-error($|-)/.test(field.name)) add(`Error measure: ${field.name}`, () => this.choose(field));
      if (/-spread($|-)/.test(field.name)) add(`Spread at nodes: ${field.name}`, () => this.choose(field));
    }
    if (!this.compares)
      for (const ours of this.solver.keys())
        add(`Ours beside the solver’s: ${ours.name}`, () => {
          this.beside = ours;
          this.choose(ours, undefined, true);
        });
    return buttons.length ? buttons : ['There is no measure of quality in the page.'];
  }

  makeHistory() {
    this.chartPlace = make('div.chart');
    this.chart = new HistoryChart(this.chartPlace);
    this.pickedList = make('ul.picked');
    this.historyTable = make('div');
    this.history = section('history', 'History',
      make('p.hint', {}, 'Click on the model, or go to a node, to follow its value over the steps.'),
      this.pickedList, this.chartPlace,
      make('details', {}, make('summary', {}, 'As a table'), this.historyTable));
  }

  makeWorst() {
    const {compared} = this.header;
    if (!compared) return;
    const rows = compared.worst.map((worst) => [
      worst.field === null ? worst.place
        : make('button.link', {type: 'button', onclick: () => this.showWorst(worst)}, worst.place),
      worst.kind, worst.component, worst.step, worst.first, worst.second, formatNumber(worst.distance),
      formatNumber(worst.excess),
    ]);
    this.worst = section('worst', 'Worst places', make('p', {}, compared.summary), ...(rows.length
      ? [table('Differences, the worst first', ['place', 'kind', 'component', 'step', ...compared.titles, 'apart',
          'times what is allowed'], rows)]
      : []), ...(compared['one-sided'].length
      ? [table('Blocks of one side alone', ['kind', 'block', 'records', 'in'],
        compared['one-sided'].map((row) => [row.kind, row.block, row.records, row.in]))]
      : []));
  }

  // ---- what is shown

  choose(field, component, isBeside = false) {
    if (!isBeside) this.beside = null;
    this.field = field;
    this.component = component ?? (field.components.includes(this.component) && this.component !== 'value'
      ? this.component : field.start);
    if (!field.components.includes(this.component)) this.component = field.start;
    this.fieldChoice.value = String(this.fields.indexOf(field));
    this.fillComponents();
    return this.update();
  }

  goToStep(step) {
    this.step = Math.max(0, Math.min(this.steps.length - 1, step));
    this.stepSlider.value = this.step;
    return this.update();
  }

  deform(factor) {
    this.factor = factor;
    this.factorInput.value = factor;
    return this.update();
  }

  /** As pictures have it: the largest displacement becomes a tenth of the model's size. */
  async autoFactor() {
    const columns = await this.displacement.columns(this.step);
    if (!columns) return 0;
    let largest = 0;
    for (let i = 0; i < columns[0].length; ++i)
      largest = Math.max(largest, Math.hypot(columns[0][i], columns[1][i], columns[2][i]) || 0);
    return largest > 0 ? roundedDown((0.1 * this.model.size) / largest) : 0;
  }

  async cut() {
    const name = this.cutAxis.value;
    this.cutPlace.disabled = name === 'none';
    if (name === 'none') {
      this.cutText.textContent = '';
      this.cutHint.textContent = '';
    } else {
      await this.loadInside();
      if (name !== this.cutAxis.value) return;
    }
    const plane = this.findPlane(name);
    const seesInside = Boolean(plane && this.model.section);
    if (seesInside !== this.model.seesInside) {
      this.model.seesInside = seesInside;
      await this.update();
      if (name !== this.cutAxis.value) return;
    }
    this.view.cut(plane);
  }

  /** @returns {number[]|null} a, b, c, d of the plane; what has ax + by + cz > d goes */
  findPlane(name) {
    if (name === 'none') return null;
    const axis = 'xyz'.indexOf(name.at(-1));
    const sign = name.startsWith('-') ? -1 : 1;
    const part = Number(this.cutPlace.value) / 1000;
    const place = this.model.least[axis] + part * (this.model.greatest[axis] - this.model.least[axis]);
    const plane = [0, 0, 0, sign * place];
    plane[axis] = sign;
    this.cutText.textContent = `${'xyz'[axis]} = ${formatNumber(place + this.model.origin[axis])}`;
    return plane;
  }

  /** Reads the inside of solids, once. @returns {Promise<boolean>} whether it is there */
  async loadInside() {
    if (!this.model.hasSolids) return false;
    if (!this.header.inside) {
      this.cutHint.textContent =
        'The inside of the solids is not in this page: a cut shows no section. One with fewer steps or kinds may have ' +
        'room for it; quilon serve shows it.';
      return false;
    }
    this.insideIsRead ??= this.readInside();
    await this.insideIsRead;
    return true;
  }

  async readInside() {
    this.cutHint.textContent = 'Reading the inside …';
    await this.model.loadInside(this.blobs, this.header.inside);
    this.blobs.hasInside = true;
    await this.update();
    this.cutHint.textContent = '';
  }

  /** One a pane. */
  listSides() {
    if (this.compares) {
      const [first, second] = this.header.compared.titles;
      const [a, b] = [0, 1].map((side) => ({field: this.field, side}));
      return [{title: first, ...a}, {title: second, ...b},
        {title: 'difference', field: new DifferenceField(a, b, 'difference'), side: 0}];
    }
    const theirs = this.beside && this.solver.get(this.beside);
    if (theirs) {
      const [a, b] = [this.field, theirs].map((field) => ({field, side: 0}));
      return [{title: 'ours', ...a}, {title: 'the solver’s', ...b},
        {title: 'the solver’s less ours', field: new DifferenceField(a, b, 'difference'), side: 0}];
    }
    return [{title: '', field: this.field, side: 0}];
  }

  async update() {
    const turn = ++this.turn;
    const step = this.step;
    const sides = this.listSides();
    const [values, displacements] = await Promise.all([
      Promise.all(sides.map(({field, side}) => field.values(step, this.component, side))),
      Promise.all(sides.map(({side}) => this.displacement?.columns(step, this.displacementSide(side, step)) ?? null)),
    ]);
    const scales = await this.makeScales(sides, values);
    if (turn !== this.turn) return;
    this.sides = sides;
    if (this.view.panes.length !== sides.length) this.view.setPanes(sides.length);
    this.shown = sides.map(({field}, i) => ({values: values[i], ofElements: field.ofElements, scale: scales[i]}));
    sides.forEach(({field}, i) => {
      const pane = this.view.panes[i];
      pane.deform(this.factor === 0 ? null : displacements[i], this.factor);
      pane.colour(field.ofElements, values[i], scales[i]);
    });
    this.describe();
    this.view.draw();
    await this.showHistory();
  }

  /** What has no displacements of its own is deformed as the first. */
  displacementSide(side, step) {
    return this.displacement.has(step, side) ? side : 0;
  }

  async makeScales(sides, values) {
    const {points, elements} = this.model.visible();
    const ranges = await Promise.all(sides.map(async ({field, side}, i) => {
      const isShown = field.ofElements ? elements : points;
      const range = [Infinity, -Infinity];
      const add = (of) => {
        if (!of) return;
        for (const sign of [1, -1]) {
          const at = indexOfLeast(of, isShown, sign);
          if (at >= 0 && Number.isFinite(of[at]))
            [range[0], range[1]] = [Math.min(range[0], of[at]), Math.max(range[1], of[at])];
        }
      };
      add(values[i]);
      if (this.rangeOf === 'all')
        for (let step = 0; step < this.steps.length; ++step) add(await field.values(step, this.component, side));
      return range[0] <= range[1] ? range : [0, 0];
    }));
    // What is looked at side by side has one range.
    if (ranges.length > 1) {
      const joined = [Math.min(ranges[0][0], ranges[1][0]), Math.max(ranges[0][1], ranges[1][1])];
      ranges[0] = ranges[1] = joined;
    }
    const [least, greatest] = this.rangeInputs.map((input) => (input.value === '' ? NaN : Number(input.value)));
    if (this.rangeOf === 'own' && least < greatest) {
      for (let i = 0; i < Math.min(2, ranges.length); ++i) ranges[i] = [least, greatest];
    } else if (this.rangeOf !== 'own') {
      this.rangeInputs.forEach((input, k) => (input.value = Number(ranges[0][k].toPrecision(6))));
    }
    return ranges.map((range) => new ColourScale(range));
  }

  describe() {
    const {label, time, quantity} = this.steps[this.step];
    const when = time === null ? '' : `, ${quantity ?? 'time'} ${formatNumber(time)}`;
    this.stepText.textContent = `${this.step + 1} of ${this.steps.length}: ${label}${when}`;
    this.stepSlider.setAttribute('aria-valuetext', this.stepText.textContent);
    const what = `${this.field.title}${this.component === 'value' ? '' : ` ${this.component}`}`;
    this.canvas.setAttribute('aria-label', `Model with ${what}, ${label}${when}`);
    fill(this.titles, ...this.sides.map(({title}) => make('div', {}, title ? make('span', {}, title) : what,
      ...(title ? [make('small', {}, what)] : []))));
    fill(this.bars, ...this.shown.map((shown) => this.makeBar(shown.scale)));
    this.findExtremes();
  }

  makeBar(scale) {
    const [least, greatest] = scale.range;
    const length = greatest - least;
    const picture = make('canvas', {width: 1, height: 256, 'aria-hidden': 'true'});
    const context = picture.getContext('2d');
    for (let i = 0; i < 256; ++i) {
      context.fillStyle = scale.css(greatest - (i / 255) * length);
      context.fillRect(0, i, 1, 1);
    }
    const ticks = length > 0 ? [greatest, ...ticksOf(scale.range, 5).filter((tick) =>
      tick - least > 0.06 * length && greatest - tick > 0.06 * length).reverse(), least] : [least];
    const labels = ticks.map((tick) => {
      const text = make('span', {}, formatNumber(Math.abs(tick) < 1e-9 * length ? 0 : tick));
      text.style.top = `${length > 0 ? (100 * (greatest - tick)) / length : 50}%`;
      return text;
    });
    return make('div.bar', {role: 'img', 'aria-label': `Colours from ${formatNumber(least)} to ${formatNumber(greatest)}`},
      picture, ...labels);
  }

  findExtremes() {
    const {points, elements} = this.model.visible();
    this.extremeRows = this.shown.map(({values, ofElements}) =>
      values ? [1, -1].map((sign) => indexOfLeast(values, ofElements ? elements : points, sign)) : [-1, -1]);
    const {values, ofElements} = this.shown[0];
    const [least, greatest] = this.extremeRows[0];
    this.extremes.textContent = !values ? 'This step has no values of the field.'
      : least < 0 ? 'Nothing that is shown has a value.'
      : `${this.model.seesInside ? 'Inside and out' : 'On the outside'}, least ${formatNumber(values[least])} at ${this.nameOf(least, ofElements)}, ` +
        `greatest ${formatNumber(values[greatest])} at ${this.nameOf(greatest, ofElements)}.`;
    fill(this.marks, ...this.extremeRows.flatMap(([low, high], pane) => [[low, 'least'], [high, 'greatest']]
      .filter(([row]) => row >= 0)
      .map(([row, what]) => {
        const of = this.shown[pane];
        const mark = make(`div.mark.${what}`, {},
          `${what === 'least' ? '▽' : '△'} ${formatNumber(of.values[row])}`);
        mark.place = () => this.placeOf(row, of.ofElements, pane);
        mark.rest = () => this.restOf(row, of.ofElements);
        mark.pane = pane;
        return mark;
      })));
    this.ring = make('div.ring', {hidden: true});
    this.marks.append(this.ring);
  }

  nameOf(row, ofElements) {
    return ofElements ? `element ${this.model.elementIds[row]}` : `node ${this.model.ids[row]}`;
  }

  /** @returns {number[]} where it is undeformed */
  restOf(row, ofElements) {
    return ofElements ? this.model.middleOf(row, this.model.points) : this.model.pointAt(row);
  }

  placeOf(row, ofElements, pane) {
    const {places} = this.view.panes[pane];
    return ofElements ? this.model.middleOf(row, places) : Array.from(places.subarray(3 * row, 3 * row + 3));
  }

  placeMarks() {
    const areas = this.view.areas();
    for (const mark of this.marks.children) {
      if (!mark.place) continue;
      mark.known ??= mark.place();
      const {x, y} = this.view.project(mark.known, mark.pane);
      const {left, top, width, height} = areas[mark.pane];
      mark.hidden = x < left || x > left + width || y < top || y > top + height || this.isCutOff(mark);
      mark.style.transform = `translate(${x}px, ${y}px)`;
    }
    [...this.titles.children].forEach((title, i) => {
      Object.assign(title.style, {left: `${areas[i].left}px`, top: `${areas[i].top}px`, width: `${areas[i].width}px`});
    });
    [...this.bars.children].forEach((bar, i) => {
      Object.assign(bar.style, {left: `${areas[i].left + 12}px`, top: `${areas[i].top + (areas.length > 1 ? 60 : 44)}px`,
        height: `${Math.min(260, areas[i].height * (areas.length > 1 ? 0.28 : 0.6))}px`});
    });
  }

  isCutOff(mark) {
    const {plane} = this.view;
    if (!plane) return false;
    mark.knownRest ??= mark.rest();
    return plane[0] * mark.knownRest[0] + plane[1] * mark.knownRest[1] + plane[2] * mark.knownRest[2] > plane[3];
  }

  // ---- pointer and keyboard

  listenTo(canvas) {
    canvas.addEventListener('pointermove', (event) => this.hover(event.offsetX, event.offsetY));
    canvas.addEventListener('pointerdown', (event) => (this.pressed = [event.offsetX, event.offsetY]));
    canvas.addEventListener('pointerup', (event) => {
      const moved = Math.hypot(event.offsetX - this.pressed?.[0], event.offsetY - this.pressed?.[1]);
      if (moved < 4) this.pick(event.offsetX, event.offsetY);
    });
    canvas.addEventListener('keydown', (event) => this.key(event));
  }

  hover(x, y) {
    this.pointer = [x, y];
    if (this.isHovering) return;
    this.isHovering = true;
    requestAnimationFrame(() => {
      this.isHovering = false;
      this.tell(this.view.pick(...this.pointer));
    });
  }

  tell(met) {
    if (!met) {
      this.readout.textContent = 'Point at the model';
      this.ring.hidden = true;
      return;
    }
    const {point, element, pane, on} = met;
    const {ofElements} = this.shown[pane];
    const row = ofElements ? element : point;
    const rest = met.rest ?? this.model.pointAt(point);
    const at = rest.map((x, k) => formatNumber(x + this.model.origin[k]));
    const of = on ? `${this.nameOf(element, true)}, on the cut`
      : ofElements ? this.nameOf(element, true)
      : [this.nameOf(point, false), ...(element === undefined ? [] : [this.nameOf(element, true)])].join(', ');
    const values = this.tellValues((values) => (on && !ofElements ? this.valueOnCut(on, values) : values[row]));
    this.readout.textContent = `${of}: ${values} at (${at.join(', ')})`;
    const {x, y} = this.view.project(on ? this.placeOnCut(met) : this.placeOf(row, ofElements, pane), pane);
    this.ring.hidden = false;
    this.ring.style.transform = `translate(${x}px, ${y}px)`;
  }

  valueOnCut({solid, local}, values) {
    return this.model.section.at(solid, local, [values])[0];
  }

  /** @returns {number[]} where a place on the cut is, deformed */
  placeOnCut({on: {solid, local}, rest, pane}) {
    const {displacements} = this.view.panes[pane];
    if (!displacements) return rest;
    const moved = this.model.section.at(solid, local, displacements);
    return rest.map((x, k) => x + (this.factor * moved[k] || 0));
  }

  /** @param {(values: number[]) => number} valueOf @returns {string} what it takes of the values of each pane */
  tellValues(valueOf) {
    return this.shown.map(({values}, i) =>
      `${this.sides[i].title ? `${this.sides[i].title} ` : ''}${values ? formatNumber(valueOf(values)) : 'no value'}`)
      .join(' · ');
  }

  key(event) {
    const {shiftKey} = event;
    const turn = {ArrowLeft: [-5, 0], ArrowRight: [5, 0], ArrowUp: [0, 5], ArrowDown: [0, -5]}[event.key];
    if (turn && shiftKey) this.view.pan(turn[0] / 100, turn[1] / 100);
    else if (turn) this.view.turn(...turn);
    else if (event.key === '+' || event.key === '=') this.view.zoom(1.2);
    else if (event.key === '-') this.view.zoom(1 / 1.2);
    else if (event.key === 'Home') this.view.look('iso');
    else if (event.key === '[') this.goToStep(this.step - 1);
    else if (event.key === ']') this.goToStep(this.step + 1);
    else return;
    event.preventDefault();
  }

  pick(x, y) {
    const met = this.view.pick(x, y);
    if (met) this.follow(this.shown[met.pane].ofElements ? {element: met.element} : {point: met.point});
  }

  follow(place) {
    const isSame = (other) => other.point === place.point && other.element === place.element;
    if (!this.picked.some(isSame)) this.picked.push(place);
    return this.showHistory();
  }

  async find(text) {
    const id = Number(text);
    const point = Number.isInteger(id) ? await this.findNode(id) : -1;
    this.findText.textContent = point < 0 ? `No node ${text} ${this.header.inside ? 'in' : 'on the outside of'} the model` : '';
    if (point >= 0) this.goToPoint(point);
  }

  /** Looks inside of solids, too. @returns {Promise<number>} a point, -1 without any */
  async findNode(id) {
    const point = this.model.findNode(id);
    if (point >= 0 || !this.header.inside) return point;
    await this.loadInside();
    return this.model.findNode(id);
  }

  async goToNode(id) {
    this.element.scrollIntoView();
    const point = await this.findNode(id);
    if (point >= 0) this.goToPoint(point);
    else this.readout.textContent = `Node ${id} is inside the model`;
  }

  goToPoint(point) {
    this.view.flyTo(this.placeOf(point, false, 0));
    if (!this.field.ofElements) this.follow({point});
    this.readout.textContent = `node ${this.model.ids[point]}` + (this.field.ofElements ? '' : `: ${this.tellValues((values) => values[point])}`);
  }

  async showWorst(worst) {
    this.step = worst.position;
    this.stepSlider.value = worst.position;
    const field = this.fields.find(({name}) => name === worst.field);
    await this.choose(field, field.components.includes(worst.component) ? worst.component : undefined);
    this.element.scrollIntoView();
    const find = () => (field.ofElements ? this.model.elementIds : this.model.ids).indexOf(worst.id);
    if (find() < 0) await this.loadInside();
    const row = find();
    if (row < 0) {
      this.readout.textContent = `${worst.place} is inside the model`;
      return;
    }
    this.view.flyTo(this.placeOf(row, field.ofElements, 0));
    this.tell(field.ofElements ? {element: row, point: this.pointOf(row), pane: 0} : {point: row, pane: 0});
    await this.follow(field.ofElements ? {element: row} : {point: row});
  }

  /** @returns {number} a point of an element */
  pointOf(element) {
    const triangle = this.model.triangleElements.indexOf(element);
    if (triangle >= 0) return this.model.triangles[3 * triangle];
    const beam = this.model.beamElements.indexOf(element);
    return beam >= 0 ? this.model.beams[2 * beam] : this.model.pointsInside(element)[0];
  }

  // ---- histories

  async showHistory() {
    const kind = this.field.ofElements ? 'element' : 'point';
    const rows = this.picked.filter((place) => place[kind] !== undefined);
    const turn = this.turn;
    const series = [];
    for (const {field, side, title} of rows.length ? this.sides : []) {
      const lines = rows.map((place) => ({
        label: `${title ? `${title}, ` : ''}${this.nameOf(place[kind], field.ofElements)}`, values: [], row: place[kind],
      }));
      for (let step = 0; step < this.steps.length; ++step) {
        const values = await field.values(step, this.component, side);
        for (const line of lines) {
          const value = values ? values[line.row] : NaN;
          line.values.push(Number.isFinite(value) ? value : null);
        }
      }
      series.push(...lines);
    }
    if (turn !== this.turn) return;
    const times = this.steps.map(({time}) => time);
    const isTimed = times.every((time, i) => typeof time === 'number' && (i === 0 || time > times[i - 1]));
    const label = isTimed ? (this.steps[0].quantity ?? 'time') : 'step';
    const abscissas = isTimed ? times : times.map((_, i) => i + 1);
    this.chart.show(label, abscissas, series);
    fill(this.pickedList, ...rows.map((place) => make('li', {}, this.nameOf(place[kind], this.field.ofElements), ' ',
      make('button.link', {type: 'button', 'aria-label': `forget ${this.nameOf(place[kind], this.field.ofElements)}`,
        onclick: () => {
          this.picked = this.picked.filter((other) => other !== place);
          this.showHistory();
        }}, 'forget'))));
    fill(this.historyTable, ...(series.length ? [table('Values over the steps', [label, ...series.map((of) => of.label)],
      abscissas.map((at, i) => [formatNumber(at), ...series.map((of) => of.values[i] === null ? '' : formatNumber(of.values[i]))]))] : []));
  }
}
