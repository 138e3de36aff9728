// Builds the page: src/ becomes dist/page.js and dist/page.css, and dist/page.csp the hashes by which a content security
// policy lets in exactly these two. The same sources and lock file give the same bytes.
import {createHash} from 'node:crypto';
import {mkdirSync, readFileSync, writeFileSync} from 'node:fs';
import {dirname, join} from 'node:path';
import {fileURLToPath} from 'node:url';
import {build} from 'esbuild';

const root = dirname(fileURLToPath(import.meta.url));
const dist = process.argv[2] ?? join(root, 'dist');
mkdirSync(dist, {recursive: true});
await build({
  absWorkingDir: root,
  entryPoints: {page: 'src/main.js'},
  outdir: dist,
  bundle: true,
  minify: true,
  format: 'iife',
  charset: 'ascii',
  target: ['chrome110', 'firefox115', 'safari16.4'],
  legalComments: 'none',
  banner: {js: '/* quilon page; contains three.js (MIT) and uPlot (MIT), see web/LICENSES */'},
});
const hashes = ['page.js', 'page.css'].map((name) => {
  const bytes = readFileSync(join(dist, name));
  // Raw string literals of the program end at this.
  if (bytes.includes(')page"') || bytes.some((byte) => byte > 126)) throw new Error(`${name}: cannot be embedded`);
  return `'sha256-${createHash('sha256').update(bytes).digest('base64')}'\n`;
});
writeFileSync(join(dist, 'page.csp'), hashes.join(''));
