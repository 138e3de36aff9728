// The page: the model with its controls, and what the database tells.

import {Blobs} from './data.js';
import {fill, make} from './dom.js';
import {makeFields} from './fields.js';
import {Model} from './model.js';
import * as panels from './panels.js';
import {Stage} from './stage.js';
import './style.css';

function makeTop(header) {
  const link = (id, text) => make('a', {href: `#${id}`}, text);
  return make('header', {},
    make('h1', {}, header.title),
    make('p', {}, header.compared ? `Compared: ${header.compared.titles.join(', ')}` : panels.describeModel(header.facts)),
    make('nav', {'aria-label': 'Sections'}, link('model', 'Model'), link('history', 'History'),
      ...(header.compared ? [link('worst', 'Worst places')] : []),
      link('quality', 'Quality'), link('blocks', 'Blocks'), link('origin', 'Origin')));
}

function makeQuality(header, stage) {
  const {facts} = header;
  return panels.section('quality', 'Quality',
    make('p', {}, ...stage.qualityButtons()),
    make('h3', {}, 'Averages beside the solver’s own'), panels.exactness(facts.deviations),
    ...(header.balance
      ? [make('h3', {}, 'Balance of forces'), panels.balance(header.balance, (node) => stage.goToNode(node))] : []));
}

async function start() {
  const header = JSON.parse(document.getElementById('header').textContent);
  document.title = header.title;
  const status = make('p.loading', {role: 'status'}, 'Reading the model …');
  const main = make('main', {}, status);
  document.body.append(make('a.skip', {href: '#model'}, 'To the model'), makeTop(header), main);
  try {
    const blobs = new Blobs(header);
    const model = await Model.load(blobs, header.model);
    const stage = new Stage(header, model, blobs, makeFields(blobs, header));
    fill(main, stage.element, stage.history,
      ...(header.compared ? [stage.worst] : []),
      makeQuality(header, stage),
      panels.section('blocks', 'Blocks', panels.blocks(header.facts.blocks)),
      panels.section('origin', 'Origin', panels.imports(header.facts.imports),
        ...(header.compared
          ? [make('h3', {}, header.compared.titles[1]), panels.imports(header.compared.imports)] : []),
        make('p', {}, `Written by ${header.program}. Values have ${header.bits === 32 ? 'seven digits' : '16 bits'}.`)));
    await stage.start();
    document.body.dataset.state = 'ready';
  } catch (error) {
    status.textContent = `The page cannot be shown: ${error.message}`;
    status.setAttribute('role', 'alert');
    fill(main, status);
    document.body.dataset.state = 'failed';
    throw error;
  }
}

start();
