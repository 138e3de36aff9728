// Pages in a real browser: what is shown is compared with the database, and every control is used.
//
// usage: node test/run.js QUILON FIXTURES OUT     screenshots and pages stay in OUT

import assert from 'node:assert/strict';
import {execFileSync, spawn} from 'node:child_process';
import {cpSync, existsSync, mkdirSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import {get} from 'node:http';
import {join, resolve} from 'node:path';
import {after, before, test} from 'node:test';
import {pathToFileURL} from 'node:url';
import {launch, open} from './browser.js';

const [quilon, fixtures, out] = process.argv.slice(2).map((path) => resolve(path));
rmSync(out, {recursive: true, force: true});
mkdirSync(out, {recursive: true});

const run = (...args) => execFileSync(quilon, ['-q', ...args], {encoding: 'utf8'});

/** @returns {Map<number, string>} by id the value that `quilon show` prints */
function valuesOf(database, selection, ...more) {
  const lines = run('show', database, selection, '--csv', ...more).trim().split('\n');
  const columns = lines[0].split(',');
  const id = columns.indexOf('id');
  const value = columns.length - (columns.at(-1) === 'time' ? 2 : 1);
  return new Map(lines.slice(1).map((line) => line.split(',')).map((row) => [Number(row[id]), Number(row[value])]));
}

function importJob(folder, job) {
  const base = join(fixtures, folder, job);
  const database = join(out, `${job}.fed`);
  if (!existsSync(database)) run('import', `${base}.inp`, `${base}.frd`, `${base}.dat`, '-o', database, '--average-by', 'material');
  return database;
}

function report(database, name, ...more) {
  const file = join(out, `${name}.html`);
  run('report', database, '-o', file, ...more);
  return pathToFileURL(file).href;
}

let browser;
let hex20;
let pageOfHex20;
before(async () => {
  browser = await launch();
  hex20 = importJob('hex20', 'hex20');
  pageOfHex20 = report(hex20, 'hex20');
});
after(() => browser.close());

const settle = (page) => page.evaluate(() => new Promise((done) => setTimeout(done, 120)));
const textOf = (page, selector) => page.$eval(selector, (element) => element.textContent);

/** Waits until an element has a text, or fails. */
const shows = (page, selector, text) =>
  page.waitForFunction((where, expected) => document.querySelector(where)?.textContent === expected, {}, selector, text);

async function choose(page, label, text) {
  await page.evaluate((labelText, optionText) => {
    const of = [...document.querySelectorAll('label')].find((element) => element.textContent === labelText);
    const select = document.getElementById(of.htmlFor);
    select.value = [...select.options].find((option) => option.textContent === optionText).value;
    select.dispatchEvent(new Event('change'));
  }, label, text);
  await settle(page);
}

async function press(page, name) {
  const buttons = await page.$$('button');
  for (const button of buttons) {
    if ((await button.evaluate((element) => element.getAttribute('aria-label') ?? element.textContent)) !== name) continue;
    await button.click();
    return settle(page);
  }
  return assert.fail(`no button ${name}`);
}

const picture = (page) => page.$eval('.stage > canvas', (canvas) => canvas.toDataURL());

/** Goes over the model with the pointer. @returns {{text: string}[]} what was told, where there was something */
async function sweep(page, step) {
  const box = await (await page.$('.stage > canvas')).boundingBox();
  const told = [];
  for (let x = box.x + 7; x < box.x + box.width; x += step)
    for (let y = box.y + 60; y < box.y + box.height - 50; y += step) {
      await page.mouse.move(x, y);
      await page.evaluate(() => new Promise(requestAnimationFrame));
      const text = await textOf(page, '#readout');
      const match = text.match(/^(node|element) (\d+)(?:, element (\d+))?: (.*) at \(/);
      if (match) told.push({entity: match[1], id: Number(match[2]), element: Number(match[3]), value: match[4]});
    }
  return told;
}

/** Six digits are shown of a value that has seven. */
function assertShown(text, value, what) {
  assert.ok(Math.abs(Number(text) - value) <= 5.1e-6 * Math.abs(value) + 1e-30, `${what}: ${text}, expected ${value}`);
}

test('values under the pointer are those of the database', async () => {
  const page = await open(browser, pageOfHex20);
  const last = ['--steps', '3'];
  const cases = [
    ['nodal-stress', 'mises', valuesOf(hex20, 'nodal-stress.mises@group=none', ...last)],
    ['nodal-stress', 'xx', valuesOf(hex20, 'nodal-stress.xx@group=none', ...last)],
    ['displacement', 'z', valuesOf(hex20, 'displacement.z', ...last)],
    ['displacement', 'magnitude', valuesOf(hex20, 'displacement.magnitude', ...last)],
    ['element-stress', 'p1', valuesOf(hex20, 'element-stress.p1', ...last)],
  ];
  let compared = 0;
  for (const [field, component, expected] of cases) {
    await choose(page, 'Field', field);
    await choose(page, 'Component', component);
    for (const {entity, id, value} of await sweep(page, 53)) {
      assert.equal(entity, field.startsWith('element') ? 'element' : 'node');
      assertShown(value, expected.get(id), `${field}.${component} of ${id}`);
      ++compared;
    }
  }
  assert.ok(compared >= 200, `compared ${compared}`);
  assert.deepEqual(page.complaints, []);
  await page.close();
});

test('averages of materials are those of the element under the pointer', async () => {
  const page = await open(browser, pageOfHex20);
  await choose(page, 'Field', 'nodal-stress-group');
  await choose(page, 'Component', 'xx');
  const groups = [1, 2].map((group) => valuesOf(hex20, `nodal-stress.xx@group=${group}`, '--steps', '3'));
  const materials = new Map([[12, 1], [19, 1], [26, 2], [33, 2]]); // of the deck
  const met = new Set();
  for (const {id, element, value} of await sweep(page, 41)) {
    const group = materials.get(element);
    assertShown(value, groups[group - 1].get(id), `node ${id} in material ${group}`);
    met.add(`${group} ${id}`);
  }
  const both = [...groups[0].keys()].filter((id) => met.has(`1 ${id}`) && met.has(`2 ${id}`));
  assert.ok(both.length > 0, 'a node between materials was met from both sides');
  await page.close();
});

test('every control does something', async () => {
  const page = await open(browser, pageOfHex20);
  let last = await picture(page);
  const assertChanges = async (what) => {
    await settle(page);
    const now = await picture(page);
    assert.notEqual(now, last, what);
    last = now;
  };
  await choose(page, 'Field', 'displacement');
  await assertChanges('field');
  assert.match(await textOf(page, '.titles'), /^displacement magnitude$/);
  await choose(page, 'Component', 'y');
  await assertChanges('component');
  await page.focus('#step');
  await page.keyboard.press('ArrowLeft');
  await assertChanges('step');
  assert.match(await textOf(page, 'label[for=step]'), /^Step 2 of 3: load case 2, substep 1, time 1\.5$/);
  await press(page, 'auto');
  await assertChanges('deformation');
  await choose(page, 'Cut', 'along x');
  await assertChanges('cut');
  await page.focus('[aria-label="Place of the cut"]');
  for (let i = 0; i < 5; ++i) await page.keyboard.press('PageUp');
  await assertChanges('place of the cut');
  for (const view of ['front', 'back', 'right', 'left', 'top', 'bottom', 'iso']) {
    await press(page, view);
    await assertChanges(view);
  }
  for (const lines of ['none', 'outline', 'mesh']) {
    await choose(page, 'Lines', lines);
    await assertChanges(lines);
  }
  await choose(page, 'Cut', 'none');
  await choose(page, 'Colours over the range', 'of all steps');
  await assertChanges('range of all steps');
  await choose(page, 'Colours over the range', 'given');
  await page.$eval('[aria-label="Greatest colour"]', (input) => {
    input.value = '5';
    input.dispatchEvent(new Event('change'));
  });
  await assertChanges('given range');
  await press(page, 'none');
  await assertChanges('no deformation');
  await page.evaluate(() => [...document.querySelectorAll('label')].find((of) => of.textContent === 'ALUMINIUM').click());
  await assertChanges('a material off');
  await press(page, 'Show all');
  await assertChanges('all parts');
  await press(page, 'only STEEL');
  await assertChanges('one part');
  await press(page, 'Show all');
  await choose(page, 'Colours over the range', 'of this step');
  for (const name of ['Error measure: nodal-stress-error', 'Spread at nodes: nodal-stress-spread', 'Ours beside the solver’s: nodal-stress']) {
    await press(page, name);
    await assertChanges(name);
  }
  assert.equal((await page.$$('.titles > div')).length, 3);
  await page.screenshot({path: join(out, 'beside.png')});
  assert.deepEqual(page.complaints, []);
  await page.close();
});

/** Cuts along an axis, puts the cut at a part of the way, and looks at it from where it is seen. */
async function cutAt(page, axis, thousandths, view) {
  await choose(page, 'Cut', `along ${axis}`);
  await page.$eval('[aria-label="Place of the cut"]', (slider, value) => {
    slider.value = value;
    slider.dispatchEvent(new Event('input'));
  }, thousandths);
  await press(page, view);
}

/** Goes over the model. @returns {Promise<Object[]>} places on the cut, and the values that are told there */
async function sweepCut(page, step) {
  const texts = await page.$eval('.stage > canvas', async (canvas, apart) => {
    const {left, top, width, height} = canvas.getBoundingClientRect();
    const told = [];
    for (let x = left + 7; x < left + width; x += apart)
      for (let y = top + 60; y < top + height - 50; y += apart) {
        canvas.dispatchEvent(new PointerEvent('pointermove', {clientX: x, clientY: y, bubbles: true}));
        await new Promise(requestAnimationFrame);
        told.push(document.getElementById('readout').textContent);
      }
    return told;
  }, step);
  return texts.map((text) => text.match(/^element (\d+), on the cut: (\S+) at \((.*)\)$/)).filter(Boolean)
    .map(([, element, value, place]) => ({element: Number(element), value: Number(value), place: place.split(', ').map(Number)}));
}

async function zoomIn(page, times) {
  await page.focus('.stage > canvas');
  for (let i = 0; i < times; ++i) await page.keyboard.press('+');
  await settle(page);
}

test('a cut shows its section with values between nodes', async () => {
  // Every shape of solids. The values beside are those of the program's own search for elements and its own formulas.
  const jobs = {mixed_linear: ['C3D4', 'C3D6', 'C3D8'], mixed_quadratic: ['C3D10', 'C3D15', 'C3D20']};
  for (const [job, types] of Object.entries(jobs)) {
    const database = importJob(job, job);
    const page = await open(browser, report(database, `${job}-cut`));
    const before = await picture(page);
    await choose(page, 'Field', 'nodal-stress');
    await choose(page, 'Component', 'xx');
    await cutAt(page, 'z', 430, 'top');
    await zoomIn(page, 2);
    assert.notEqual(await picture(page), before);
    assert.match(await textOf(page, '.extremes'), /^Inside and out, least /);
    const told = await sweepCut(page, 47);
    const points = join(out, `${job}.points`);
    writeFileSync(points, told.map(({place}) => place.join(' ')).join('\n') + '\n');
    const lines = run('path', database, 'nodal-stress@group=none', '--steps', 'last', '--through', points, '--csv').trim().split('\n');
    const columns = lines[0].split(',');
    const [xx, of] = [columns.indexOf('xx'), columns.indexOf('element')];
    const rows = lines.slice(1).map((line) => line.split(','));
    assert.equal(rows.length, told.length, job);
    const expected = rows.map((row) => Number(row[xx]));
    const largest = Math.max(...expected.filter(Number.isFinite).map(Math.abs));
    const compared = new Set();
    told.forEach(({element, value, place}, i) => {
      if (rows[i][of] === '' || Number(rows[i][of]) !== element) return; // on a side, where another element may have the point
      // Places have six digits, values of nodes seven.
      assert.ok(Math.abs(value - expected[i]) <= 2e-5 * largest, `${job} ${place}: ${value}, expected ${expected[i]}`);
      compared.add(element);
    });
    await page.screenshot({path: join(out, `${job}-cut.png`)});
    const typeOf = new Map(run('show', database, 'element-type', '--csv').trim().split('\n').slice(1).map((line) => line.split(','))
      .map(([id, type]) => [Number(id), type.replace(/R$/, '')])); // with fewer points the shape is the same
    assert.deepEqual([...new Set([...compared].map((element) => typeOf.get(element)))].sort(), types);
    await choose(page, 'Cut', 'none');
    assert.deepEqual(await sweepCut(page, 120), []);
    assert.deepEqual(page.complaints, []);
    await page.close();
  }
});

test('a section is of what is shown, deformed as it is, and of elements has their values', async () => {
  const page = await open(browser, pageOfHex20);
  await choose(page, 'Field', 'element-stress');
  await choose(page, 'Component', 'mises');
  await cutAt(page, 'y', 500, 'back');
  const expected = valuesOf(hex20, 'element-stress.mises', '--steps', '3');
  const told = await sweepCut(page, 71);
  assert.ok(told.length > 10);
  for (const {element, value} of told) assertShown(String(value), expected.get(element), `element ${element}`);
  const whole = await picture(page);
  await press(page, 'auto');
  assert.notEqual(await picture(page), whole);
  const moved = await sweepCut(page, 71);
  assert.ok(moved.length > 10);
  for (const {element, value} of moved) assertShown(String(value), expected.get(element), `element ${element}, moved`);
  await press(page, 'none');
  await press(page, 'only STEEL');
  const steel = await sweepCut(page, 71);
  assert.ok(steel.length > 0 && steel.every(({element}) => element <= 19), 'elements 12 and 19 are of steel');
  await page.screenshot({path: join(out, 'cut-part.png')});
  // A node of the section is followed as others are.
  const box = await (await page.$('.stage > canvas')).boundingBox();
  await choose(page, 'Field', 'displacement');
  await press(page, 'Show all');
  await press(page, 'back');
  await page.mouse.click(box.x + box.width / 2, box.y + box.height / 2);
  await settle(page);
  assert.equal((await page.$$('.picked li')).length, 1);
  assert.deepEqual(page.complaints, []);
  await page.close();
});

test('a page without the inside says that cuts show no section', async () => {
  const page = await open(browser, report(hex20, 'no-inside', '--no-inside'));
  await cutAt(page, 'x', 430, 'right');
  assert.deepEqual(await sweepCut(page, 120), []);
  assert.match(await textOf(page, '.control > .hint[role=status]'), /^The inside of the solids is not in this page/);
  assert.deepEqual(page.complaints, []);
  await page.close();
});

test('sets of nodes are marked', async () => {
  const page = await open(browser, pageOfHex20);
  const listed = run('sets', hex20, '--csv').trim().split('\n').slice(1).map((line) => line.split(','));
  const names = await page.$$eval('fieldset', (fields) => [...fields.find((of) => of.textContent.startsWith('Node sets'))
    .querySelectorAll('label')].map((label) => label.textContent));
  assert.ok(names.length > 0);
  for (const name of names) assert.ok(listed.some((row) => row.join().includes(name.replace(/ \(.*/, ''))), name);
  const countInk = () => page.$eval('.stage > canvas', (canvas) => {
    const copy = document.createElement('canvas');
    [copy.width, copy.height] = [canvas.width, canvas.height];
    const context = copy.getContext('2d', {willReadFrequently: true});
    context.drawImage(canvas, 0, 0);
    const {data} = context.getImageData(0, 0, copy.width, copy.height);
    let count = 0;
    for (let i = 0; i < data.length; i += 4) if (data[i] === 0xd0 && data[i + 1] === 0 && data[i + 2] === 0x6f) ++count;
    return count;
  });
  const toggle = async (name) => {
    await page.evaluate((text) => [...document.querySelectorAll('label')].find((of) => of.textContent === text).click(), name);
    await settle(page);
  };
  assert.equal(await countInk(), 0);
  await toggle(names[0]);
  const marked = await countInk();
  assert.ok(marked > 20, `${marked} pixels`);
  await press(page, 'auto');
  assert.ok((await countInk()) > 20, 'deformed, too');
  await page.screenshot({path: join(out, 'node-set.png')});
  await toggle(names[0]);
  assert.equal(await countInk(), 0);
  assert.deepEqual(page.complaints, []);
  await page.close();
});

test('sixty sets are found by name, by the keyboard alone', async () => {
  const base = join(fixtures, 'hex8', 'hex8');
  const elements = [12, 19, 26, 33, 40, 47, 54, 61, 68, 75, 82, 89];
  const sets = Array.from({length: 60}, (_, i) => `*ELSET, ELSET=PART${String(i + 1).padStart(2, '0')}\n${elements[i % 12]}\n`);
  const deck = join(out, 'hex8.inp');
  writeFileSync(deck, readFileSync(`${base}.inp`, 'utf8').replace('*NSET, NSET=NFIX', `${sets.join('')}$&`));
  const database = join(out, 'many.fed');
  rmSync(database, {recursive: true, force: true});
  run('import', deck, `${base}.frd`, '-o', database);
  const page = await open(browser, report(database, 'many'));
  await press(page, 'front'); // which scrolls
  let last = await picture(page);
  const assertChanges = async (what) => {
    await settle(page);
    const now = await picture(page);
    assert.notEqual(now, last, what);
    last = now;
  };
  const boxes = () => page.$$eval('fieldset input', (inputs) => inputs.length);
  assert.ok((await boxes()) >= 62);
  // From the control before the list, the tabulator goes to the filter, then to what it lets through.
  await page.evaluate(() => [...document.querySelectorAll('summary')].find((of) => of.textContent === 'Parts and sets').focus());
  await page.keyboard.press('Tab');
  await page.keyboard.type('part60');
  assert.equal(await boxes(), 1);
  assert.match(await textOf(page, '.controls details [role=status]'), /^1 of \d+ names$/);
  await page.keyboard.press('Tab');
  await page.keyboard.press('Space');
  await assertChanges('PART60 is off');
  await page.keyboard.press('Space');
  await assertChanges('PART60 is on');
  await page.keyboard.press('Tab'); // only
  await page.keyboard.press('Enter');
  await assertChanges('PART60 alone');
  const checked = () => page.$$eval('fieldset', (fields) => [...fields.find((of) => of.textContent.startsWith('Element sets'))
    .querySelectorAll('label')].filter((label) => document.getElementById(label.htmlFor).checked).map((label) => label.textContent));
  await page.focus('input[type=search]');
  await page.keyboard.press('End');
  for (let i = 0; i < 6; ++i) await page.keyboard.press('Backspace');
  assert.deepEqual(await checked(), ['PART60']);
  await page.evaluate(() => [...document.querySelectorAll('label')].find((of) => of.textContent === 'PART59').click());
  await assertChanges('PART59 as well');
  assert.deepEqual(await checked(), ['PART59', 'PART60']);
  await press(page, 'Show all');
  await assertChanges('all');
  assert.ok((await checked()).length >= 60);
  await page.focus('input[type=search]');
  await page.keyboard.type('part60');
  await page.keyboard.press('End');
  for (let i = 0; i < 2; ++i) await page.keyboard.press('Backspace');
  assert.ok((await boxes()) >= 60);
  await press(page, 'Hide listed');
  await assertChanges('none');
  await press(page, 'Show listed');
  await assertChanges('all listed');
  await page.screenshot({path: join(out, 'many.png')});
  assert.deepEqual(page.complaints, []);
  await page.close();
});

test('nodes are found and followed', async () => {
  const page = await open(browser, pageOfHex20);
  const find = async (id) => {
    await page.evaluate(() => document.getElementById([...document.querySelectorAll('label')].find((of) => of.textContent === 'Go to node').htmlFor).select());
    await page.keyboard.type(id);
    await page.keyboard.press('Enter');
    await settle(page);
  };
  await find('5');
  await find('8');
  const expected = [1, 2, 3].map((step) => valuesOf(hex20, 'nodal-stress.mises@group=none', '--steps', String(step)));
  const rows = await page.$$eval('#history .scroll tbody tr', (trs) => trs.map((tr) => [...tr.children].map((td) => td.textContent)));
  assert.deepEqual(rows.map(([time]) => time), ['1', '1.5', '2']);
  rows.forEach((row, step) => {
    assertShown(row[1], expected[step].get(5), 'node 5');
    assertShown(row[2], expected[step].get(8), 'node 8');
  });
  assert.ok(await page.$('#history .uplot canvas'));
  await find('4711');
  await shows(page, '.row > .hint[role=status]', 'No node 4711 in the model'); // which is looked for inside, too
  await press(page, 'forget node 5');
  assert.equal((await page.$$('.picked li')).length, 1);
  await press(page, 'iso'); // which scrolls
  const box = await (await page.$('.stage > canvas')).boundingBox();
  await page.mouse.click(box.x + box.width / 2, box.y + box.height / 2);
  await settle(page);
  assert.equal((await page.$$('.picked li')).length, 2);
  await page.screenshot({path: join(out, 'history.png'), fullPage: true});
  assert.deepEqual(page.complaints, []);
  await page.close();
});

test('the keyboard turns, moves and zooms', async () => {
  const page = await open(browser, pageOfHex20);
  await page.keyboard.press('Tab'); // to the model
  await page.focus('.stage > canvas');
  let last = await picture(page);
  for (const keys of [['ArrowLeft'], ['ArrowUp'], ['+'], ['-', '-'], ['Shift', 'ArrowRight'], ['Home'], ['['], [']']]) {
    const [first, second] = keys;
    if (first === 'Shift') await page.keyboard.down('Shift');
    await page.keyboard.press(second ?? first);
    if (first === 'Shift') await page.keyboard.up('Shift');
    await settle(page);
    const now = await picture(page);
    assert.notEqual(now, last, keys.join(' '));
    last = now;
  }
  await page.close();
});

test('whatever can be used has a name', async () => {
  const page = await open(browser, pageOfHex20);
  const tree = await page.accessibility.snapshot({interestingOnly: false});
  const nameless = [];
  const visit = (node) => {
    const isControl = ['button', 'combobox', 'textbox', 'searchbox', 'slider', 'checkbox', 'spinbutton', 'link', 'image', 'table'].includes(node.role);
    if (isControl && !node.name) nameless.push(node.role);
    (node.children ?? []).forEach(visit);
  };
  visit(tree);
  assert.deepEqual(nameless, []);
  assert.equal(await page.$eval('html', (element) => element.lang), 'en');
  const ids = await page.$$eval('[id]', (elements) => elements.map((element) => element.id));
  assert.equal(new Set(ids).size, ids.length, 'ids are unique');
  await page.close();
});

test('tables tell what the program tells', async () => {
  const page = await open(browser, pageOfHex20);
  const listed = run('ls', hex20, '--csv').trim().split('\n').length - 1;
  const status = await textOf(page, '#blocks [role=status]');
  const provenance = JSON.parse(run('ls', hex20, '--json')).length ?? 0;
  assert.match(status, /^\d+ of \d+ blocks$/);
  assert.ok(Number(status.split(' ')[2]) <= listed && listed >= provenance);
  await page.type('#block-filter', '510 lc=2');
  assert.match(await textOf(page, '#blocks [role=status]'), /^2 of /);
  assert.match(await textOf(page, '#origin'), /hex20\.frd/);
  assert.match(await textOf(page, '#origin'), /[0-9a-f]{16}/);
  assert.match(await textOf(page, '#quality'), /nodal-stress/);
  await page.close();
});

test('a page asks for nothing', async () => {
  const page = await open(browser, pageOfHex20);
  assert.deepEqual(page.requests, [pageOfHex20]);
  const blocked = await page.evaluate(() => fetch('https://example.invalid/').then(() => false, () => true));
  assert.ok(blocked);
  assert.ok(page.complaints.some((text) => text.includes('Content Security Policy')));
  await page.close();
});

test('names are text', async () => {
  const folder = join(out, 'evil');
  run('to-onf', hex20, folder);
  const evil = '</script><img src=x onerror=\\"window.hit=1\\"><script>window.hit=1</script>';
  for (const [file, name] of [['element-set_it0.onf', 'ESTEEL'], ['material_it0.onf', 'STEEL']]) {
    const path = join(folder, file);
    writeFileSync(path, readFileSync(path, 'utf8').replace(`"${name}"`, `"${evil}"`));
  }
  const page = await open(browser, report(folder, 'evil<img src=x onerror=alert(1)>'));
  assert.equal(await page.evaluate(() => window.hit), undefined);
  assert.equal((await page.$$('img')).length, 0);
  const labels = await page.$$eval('.check label', (elements) => elements.map((element) => element.textContent));
  assert.ok(labels.filter((text) => text.startsWith('</script><img src=x onerror="window.hit=1">')).length >= 2, labels.join());
  assert.deepEqual(page.complaints, []);
  await page.close();
});

test('a difference is shown beside its two sides', async () => {
  const folder = join(out, 'changed');
  run('to-onf', hex20, folder);
  const path = join(folder, 'nodal-stress_it0_lc2_sub2_an1.onf');
  writeFileSync(path, readFileSync(path, 'utf8').replace(/^38 (\S+)/m, (_, xx) => `38 ${Number(xx) - 1e-5}`)
    .replace(/^29 (\S+)/m, (_, xx) => `29 ${Number(xx) + 3}`));
  // A lacks what B has.
  const lacking = join(out, 'lacking.fed');
  rmSync(lacking, {recursive: true, force: true});
  cpSync(hex20, lacking, {recursive: true});
  run('prune', lacking, 'reaction@lc=1');
  const file = join(out, 'difference.html');
  assert.throws(() => run('diff', lacking, folder, '--html', file), {status: 1});
  const page = await open(browser, pathToFileURL(file).href, {width: 1400});
  assert.equal((await page.$$('.titles > div')).length, 3);
  const before = await picture(page);
  await press(page, 'node 29');
  assert.notEqual(await picture(page), before);
  const [first, second] = [hex20, folder].map((of) => valuesOf(of, 'nodal-stress.xx@group=none', '--steps', '3'));
  const shown = (text) => text.match(/: .* (\S+) · .* (\S+) · difference (\S+) at/).slice(1);
  const told = shown(await textOf(page, '#readout'));
  assertShown(told[0], first.get(29), 'A');
  assertShown(told[1], second.get(29), 'B');
  assertShown(told[2], 3, 'difference');
  const worst = await textOf(page, '#worst');
  assert.ok(worst.startsWith('Worst places'));
  assert.match(worst, /Blocks of one side alone.*reaction511@it=0,an=1,lc=1,sub=1\d+changed$/);
  // A small difference keeps its digits: it is no difference of rounded values.
  await page.evaluate(() => document.getElementById([...document.querySelectorAll('label')].find((of) => of.textContent === 'Go to node').htmlFor).select());
  await page.keyboard.type('38');
  await page.keyboard.press('Enter');
  await settle(page);
  const small = (await textOf(page, '#readout')).split(' ').at(-1);
  assert.ok(Math.abs(Number(small) - (second.get(38) - first.get(38))) <= 1e-10, small);
  await page.screenshot({path: join(out, 'difference.png')});
  assert.deepEqual(page.complaints, []);
  await page.close();
});

test('a served page is the same, for those who know its address', async () => {
  const server = spawn(quilon, ['-q', 'serve', hex20]);
  const address = await new Promise((done) => server.stdout.once('data', (text) => done(String(text).trim())));
  assert.match(address, /^http:\/\/127\.0\.0\.1:\d+\/[0-9a-f]{32}\/$/);
  const {port, origin} = new URL(address);
  const statusOf = (path, headers = {}) => new Promise((done, fail) => {
    get({host: '127.0.0.1', port, path, headers, agent: false}, (response) => done(response.resume().statusCode)).on('error', fail);
  });
  const path = new URL(address).pathname;
  assert.equal(await statusOf(path), 200);
  assert.equal(await statusOf(`${path}blob/0`), 200);
  assert.equal(await statusOf(`${path}blob/99999999999`), 404);
  assert.equal(await statusOf('/'), 403);
  assert.equal(await statusOf(path.replace(/.\/$/, 'x/')), 403);
  assert.equal(await statusOf(`${path.slice(0, -1)}0/`), 403);
  assert.equal(await statusOf(path, {Host: 'example.invalid'}), 421);
  assert.equal(await statusOf(path, {Host: `127.0.0.1.example.invalid:${port}`}), 421);

  const page = await open(browser, address);
  const expected = valuesOf(hex20, 'nodal-stress.mises@group=none', '--steps', '3');
  const told = await sweep(page, 90);
  assert.ok(told.length > 5);
  for (const {id, value} of told) assertShown(value, expected.get(id), `node ${id}`);
  assert.ok(page.requests.length > 9 && page.requests.every((url) => url.startsWith(origin)));
  assert.deepEqual(page.complaints.filter((text) => !text.includes('favicon')), []);
  await page.close();

  const ended = new Promise((done) => server.once('exit', (code) => done(code)));
  server.kill('SIGINT');
  assert.equal(await ended, 130);
});

test('shells, beams and values of 16 bits', async () => {
  for (const [folder, job] of [['c_shell', 'c_shell3d'], ['d_beam', 'd_beam3d'], ['a_tet', 'a_tet']]) {
    if (!existsSync(join(fixtures, folder, `${job}.frd`))) continue;
    const database = importJob(folder, job);
    const page = await open(browser, report(database, job, '--bits', '16'));
    assert.ok((await sweep(page, 67)).length > 0, job);
    await page.screenshot({path: join(out, `${job}.png`)});
    assert.deepEqual(page.complaints, []);
    await page.close();
  }
});

test('dark, and as wide as a phone', async () => {
  for (const [name, options] of [['dark', {dark: true}], ['phone', {width: 390, height: 780}], ['narrow', {width: 320, height: 640, dark: true}]]) {
    const page = await open(browser, pageOfHex20, options);
    await settle(page);
    const [width, inner] = await page.evaluate(() => [document.documentElement.scrollWidth, innerWidth]);
    assert.ok(width <= inner, `${name}: ${width} of ${inner}`);
    const paper = await page.evaluate(() => getComputedStyle(document.body).backgroundColor);
    assert.equal(paper === 'rgb(255, 255, 255)', !options.dark);
    await page.screenshot({path: join(out, `${name}.png`), fullPage: true});
    assert.deepEqual(page.complaints, []);
    await page.close();
  }
});
