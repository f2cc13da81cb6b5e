// Converts a small drawing with the program, asking for the HTML page by the output name
// ("dm2020 plan.dxf 'Plan é 1.html'"), and opens the SVG file and the page in headless Chromium:
// the drawing must put ink where its layers are, and the page's check boxes ("All Off", "All On",
// one per layer) must hide and show the layer groups.
//   node svg_page_check.js <dm2020 program> <output directory>
// Exits 77 (skipped) only when Chromium is not installed.
'use strict';

const fs = require('fs');
const http = require('http');
const path = require('path');
const { execFileSync } = require('child_process');

const CHROMIUM = '/usr/bin/chromium';
const SKIP = 77;

if (!fs.existsSync(CHROMIUM)) {
  console.log(`skipped: ${CHROMIUM} is not installed`);
  process.exit(SKIP);
}
let chromium;
try {
  ({ chromium } = require('playwright-core'));
} catch (e) {
  console.error('playwright-core is missing: run "npm ci" in tests/browser (setup.sh does)');
  process.exit(1);
}

const [givenProgram, outDir] = process.argv.slice(2);
if (!givenProgram || !outDir) {
  console.error('usage: node svg_page_check.js <dm2020 program> <output directory>');
  process.exit(2);
}

const program = path.resolve(givenProgram);

let failures = 0;
let passes = 0;
function check(ok, what) {
  if (ok) {
    passes++;
  } else {
    failures++;
    console.error(`FAILED: ${what}`);
  }
}

// Three layers side by side in metres: dark grey, red and blue, each with a filled solid (whose ink
// stays when the page scales the drawing down) beside its line work.
function drawingText() {
  const tags = [];
  const add = (...pairs) => { for (const p of pairs) tags.push(String(p)); };
  const layer = (name, colour) => add(0, 'LAYER', 2, name, 70, 0, 62, colour);
  const polyline = (layerName, points) => {
    add(0, 'LWPOLYLINE', 8, layerName, 90, points.length, 70, 1);
    for (const [x, y] of points) add(10, x, 20, y);
  };
  const line = (layerName, x1, y1, x2, y2) => add(0, 'LINE', 8, layerName, 10, x1, 20, y1, 11, x2, 21, y2);
  const solid = (layerName, x1, y1, x2, y2) =>
    add(0, 'SOLID', 8, layerName, 10, x1, 20, y1, 11, x2, 21, y1, 12, x1, 22, y2, 13, x2, 23, y2);
  add(0, 'SECTION', 2, 'HEADER', 9, '$INSUNITS', 70, 6, 0, 'ENDSEC');
  add(0, 'SECTION', 2, 'TABLES', 0, 'TABLE', 2, 'LAYER');
  layer('Walls', 250);
  layer('Doors', 1);
  layer('Room Notes', 5);
  add(0, 'ENDTAB', 0, 'ENDSEC', 0, 'SECTION', 2, 'ENTITIES');
  polyline('Walls', [[0, 0], [20, 0], [20, 50], [0, 50]]);
  line('Walls', 0, 25, 20, 25);
  solid('Walls', 2, 30, 18, 48);
  polyline('Doors', [[30, 5], [50, 5], [50, 25], [30, 25]]);
  add(0, 'CIRCLE', 8, 'Doors', 10, 40, 20, 40, 40, 6);
  solid('Doors', 32, 7, 48, 23);
  for (let i = 0; i <= 4; i++) line('Room Notes', 60, 10 + 8 * i, 80, 12 + 8 * i);
  solid('Room Notes', 62, 0, 78, 8);
  add(0, 'ENDSEC', 0, 'EOF');
  return tags.join('\n') + '\n';
}

function serve(root) {
  const types = { '.svg': 'image/svg+xml', '.htm': 'text/html', '.html': 'text/html' };
  const server = http.createServer((req, res) => {
    const name = path.join(root, decodeURIComponent(new URL(req.url, 'http://localhost').pathname));
    if (!name.startsWith(root) || !fs.existsSync(name)) {
      res.writeHead(404);
      res.end();
      return;
    }
    res.writeHead(200, { 'Content-Type': types[path.extname(name)] || 'application/octet-stream' });
    res.end(fs.readFileSync(name));
  });
  return new Promise((resolve) => server.listen(0, '127.0.0.1', () => resolve(server)));
}

// Counts dark pixels of a PNG screenshot inside each rectangle (page pixels), decoding it in a
// blank page's canvas.
async function inkCounts(decoder, png, rects) {
  return decoder.evaluate(async ({ data, rects }) => {
    const image = new Image();
    image.src = 'data:image/png;base64,' + data;
    await image.decode();
    const canvas = document.createElement('canvas');
    canvas.width = image.width;
    canvas.height = image.height;
    const context = canvas.getContext('2d');
    context.drawImage(image, 0, 0);
    return rects.map((r) => {
      const x = Math.max(0, Math.floor(r.x)), y = Math.max(0, Math.floor(r.y));
      const w = Math.min(image.width - x, Math.ceil(r.width)), h = Math.min(image.height - y, Math.ceil(r.height));
      if (w <= 0 || h <= 0) return 0;
      const pixels = context.getImageData(x, y, w, h).data;
      let dark = 0;
      for (let i = 0; i < pixels.length; i += 4) {
        if (pixels[i] + pixels[i + 1] + pixels[i + 2] < 600) dark++;
      }
      return dark;
    });
  }, { data: png.toString('base64'), rects });
}

// The layer groups of the SVG shown in the page's object, with their boxes in page pixels.
async function layerBoxes(page) {
  return page.evaluate(() => {
    const object = document.getElementById('SVGPage');
    const doc = object.contentDocument;
    const origin = object.getBoundingClientRect();
    return Array.from(doc.querySelectorAll('g[id^="layer_"]')).map((g) => {
      const r = g.getBoundingClientRect();
      return {
        id: g.id,
        visibility: doc.defaultView.getComputedStyle(g).visibility,
        rect: { x: origin.x + r.x, y: origin.y + r.y, width: r.width, height: r.height },
      };
    });
  });
}

async function checkBoxes(page) {
  return page.evaluate(() => Array.from(document.forms.layer_form.elements).map((e) => ({ name: e.name, checked: e.checked })));
}

async function main() {
  fs.mkdirSync(outDir, { recursive: true });
  const root = fs.realpathSync(outDir);
  for (const name of fs.readdirSync(root)) fs.rmSync(path.join(root, name), { recursive: true, force: true });
  fs.writeFileSync(path.join(root, 'plan.dxf'), drawingText());
  // A blank, a non-ASCII letter and a "#" in the name: the page must still find its SVG file.
  const stem = 'Plan \u00e9 #1';
  execFileSync(program, ['plan.dxf', stem + '.html', '-Q'], { cwd: root, encoding: 'utf8' });
  const files = { svg: stem + '.svg', htm: stem + '.html' };
  check(fs.existsSync(path.join(root, files.svg)), `${files.svg} is written beside the page`);
  check(fs.existsSync(path.join(root, files.htm)), `${files.htm} is written`);
  const svgText = fs.readFileSync(path.join(root, files.svg), 'utf8');
  files.layers = Array.from(svgText.matchAll(/<g id="(layer_[^"]*)"/g), (m) => m[1]);
  const expected = ['Walls', 'Doors', 'Room'];
  check(files.layers.length === 3 && expected.every((n) => files.layers.some((id) => id.includes(n))),
    `the SVG has a group for each of the three layers: ${files.layers.join(', ')}`);
  const address = (name) => name.split('').map((c) => encodeURIComponent(c)).join('');
  const server = await serve(root);
  const base = `http://127.0.0.1:${server.address().port}/`;
  const browser = await chromium.launch({
    executablePath: CHROMIUM,
    args: ['--headless', '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
      '--disable-background-networking', '--disable-component-update', '--disable-sync'],
  });
  try {
    const context = await browser.newContext({ viewport: { width: 1280, height: 800 } });
    const decoder = await context.newPage();
    await decoder.goto('about:blank');

    // The SVG file alone: ink inside the drawing, none far from it.
    const svgPage = await context.newPage();
    const svgErrors = [];
    svgPage.on('pageerror', (e) => svgErrors.push(String(e)));
    const response = await svgPage.goto(base + address(files.svg));
    check(response.ok(), `${files.svg} loads`);
    // The file's own size is in drawing units scaled for zooming in; fit it to the window as the
    // page's object element does.
    await svgPage.evaluate(() => {
      document.documentElement.setAttribute('width', String(window.innerWidth));
      document.documentElement.setAttribute('height', String(window.innerHeight));
    });
    const boxes = await svgPage.evaluate(() =>
      Array.from(document.querySelectorAll('g[id^="layer_"]')).map((g) => {
        const r = g.getBoundingClientRect();
        return { id: g.id, rect: { x: r.x, y: r.y, width: r.width, height: r.height } };
      }));
    check(boxes.length === files.layers.length, `the SVG holds ${files.layers.length} layer groups (found ${boxes.length})`);
    const shot = await svgPage.screenshot();
    const counts = await inkCounts(decoder, shot, boxes.map((b) => b.rect));
    boxes.forEach((b, i) => check(counts[i] > 50, `layer ${b.id} is drawn in the SVG (${counts[i]} dark pixels)`));
    check(svgErrors.length === 0, `the SVG renders without errors ${svgErrors.join('; ')}`);

    // The HTML page around it.
    const page = await context.newPage();
    const pageErrors = [];
    page.on('pageerror', (e) => pageErrors.push(String(e)));
    await page.goto(base + address(files.htm));
    await page.waitForFunction(() => {
      const o = document.getElementById('SVGPage');
      return o && o.contentDocument && o.contentDocument.querySelector('g[id^="layer_"]');
    }, null, { timeout: 20000 });

    const initial = await checkBoxes(page);
    const names = initial.map((c) => c.name);
    check(JSON.stringify(names) === JSON.stringify([...files.layers, 'All Off', 'All On']),
      `one check box per layer, then All Off and All On: ${names.join(', ')}`);
    check(initial.every((c) => c.checked === (c.name !== 'All Off')), 'init() checks every box but All Off');

    async function inkPerLayer() {
      const layers = await layerBoxes(page);
      const counts = await inkCounts(decoder, await page.screenshot(), layers.map((l) => l.rect));
      return layers.map((l, i) => ({ id: l.id, visibility: l.visibility, ink: counts[i] }));
    }

    const shown = await inkPerLayer();
    shown.forEach((l) => check(l.visibility === 'visible' && l.ink > 50, `${l.id} is shown at first (${l.ink} dark pixels)`));

    await page.click('input[name="All Off"]');
    const off = await inkPerLayer();
    off.forEach((l) => check(l.visibility === 'hidden' && l.ink === 0, `All Off hides ${l.id} (${l.visibility}, ${l.ink} dark pixels)`));
    const boxesOff = await checkBoxes(page);
    check(boxesOff.every((c) => c.checked === (c.name === 'All Off')), 'All Off clears the layer boxes');

    await page.click('input[name="All On"]');
    const on = await inkPerLayer();
    on.forEach((l, i) => check(l.visibility === 'visible' && l.ink === shown[i].ink, `All On shows ${l.id} again (${l.ink} dark pixels)`));

    for (const id of files.layers) {
      await page.click(`input[name="${id}"]`);
      const one = await inkPerLayer();
      for (const l of one) {
        const target = l.id === id;
        check(target ? l.visibility === 'hidden' && l.ink === 0 : l.visibility === 'visible' && l.ink > 50,
          `unchecking ${id}: ${l.id} is ${l.visibility} with ${l.ink} dark pixels`);
      }
      await page.click(`input[name="${id}"]`);
      const back = await inkPerLayer();
      back.forEach((l) => check(l.visibility === 'visible' && l.ink > 50, `checking ${id} again shows ${l.id}`));
    }
    check(pageErrors.length === 0, `the page runs without script errors ${pageErrors.join('; ')}`);
  } finally {
    await browser.close();
    server.close();
  }
  console.log(`${passes} passed, ${failures} failed`);
  process.exit(failures === 0 ? 0 : 1);
}

main().catch((e) => {
  console.error(e);
  process.exit(1);
});
