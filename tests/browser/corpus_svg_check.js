// Converts every DXF and DWG of the corpus to SVG, once with the default view on the light palette
// ("-B=-1": colour 7 black on a white page) and once with every view ("-ALL"), and checks what a user would: no crash or hang, every written SVG is well-formed XML,
// and headless Chromium draws ink for every SVG that holds drawing elements.
//   node corpus_svg_check.js <dm2020> <corpus directory> <output directory>
// Exits 77 (skipped) when Chromium or the corpus is missing.
'use strict';

const fs = require('fs');
const path = require('path');
const { spawnSync } = require('child_process');
const http = require('http');

const CHROMIUM = '/usr/bin/chromium';
const SKIP = 77;
const TIMEOUT_MS = 180000;

const [dm2020, corpusDir, outDir] = process.argv.slice(2);
if (!dm2020 || !corpusDir || !outDir) {
  console.error('usage: node corpus_svg_check.js <dm2020> <corpus directory> <output directory>');
  process.exit(2);
}
if (!fs.existsSync(CHROMIUM) || !fs.existsSync(corpusDir)) {
  console.log('skipped: Chromium or the corpus is missing');
  process.exit(SKIP);
}
const { chromium } = require('playwright-core');

function findDrawings(dir, out = []) {
  for (const entry of fs.readdirSync(dir, { withFileTypes: true })) {
    const full = path.join(dir, entry.name);
    if (entry.isDirectory()) findDrawings(full, out);
    else if (/\.(dxf|dwg)$/i.test(entry.name)) out.push(full);
  }
  return out.sort();
}

// Drawings for which no SVG is the right answer (a DXF and the DWG of the same drawing alike): the
// driver writes no file for a view where nothing was drawn, and these have nothing to draw.
const NOTHING_TO_DRAW = [
  [/^dxf\/Minimal_DXF_AC10(09|21)\.dxf$/, 'no entities'],
  [/^dxf\/integration\/small_r14\.dxf$/, 'no entities'],
  [/^dxf\/integration\/dxf_unicode\.dxf$/, 'no entities in model or paper space'],
  [/^dxf\/integration\/layout_(broken_links(_2)?|missing_block_(definition|record))\.dxf$/,
   'no entities in model or paper space'],
  [/^dxf\/integration\/(r12|r2000)_blocks_with_no_name.*\.dxf$/, 'no entities in model or paper space'],
  [/^dwg\/2000\/PolyLine2D\.(dxf|dwg)$/,
   'model space is empty; the layouts hold only their viewports'],
  [/^dwg\/r2\.10\/block\.(dxf|dwg)$/, 'only a block definition, never inserted'],
  [/^dxf\/circle_radius_le_0\.dxf$/, 'only circles of zero or negative radius'],
  [/^dwg\/[0-9]+\/ConstructionLine\.(dxf|dwg)$/, 'construction lines are not drawn'],
  [/^dwg\/[0-9]+\/RAY\.(dxf|dwg)$/, 'rays are not drawn'],
  [/^dxf\/clockwise_arcs_hatch\.dxf$/, 'the saved view looks beside the hatch; -EXTENTS draws it'],
  [/^dwg\/r1\.4\/entities\.dxf$/, 'not a DXF file (refused with "No valid Input File")'],
];
const nothingToDraw = (relative) => NOTHING_TO_DRAW.some(([pattern]) => pattern.test(relative));

const failures = [];
function fail(what) {
  failures.push(what);
  console.error(`FAILED: ${what}`);
}

// One conversion into its own directory; returns the SVG files it wrote.
function convert(drawing, index, mode) {
  const dir = path.resolve(outDir, `${index}-${mode}`);
  fs.rmSync(dir, { recursive: true, force: true });
  fs.mkdirSync(dir, { recursive: true });
  const args = [drawing, path.join(dir, 'out.svg'), '-Q'];
  args.push(mode === 'all' ? '-ALL' : '-B=-1');
  const run = spawnSync(dm2020, args, { cwd: dir, timeout: TIMEOUT_MS, encoding: 'latin1' });
  const name = `${path.relative(path.resolve(corpusDir), drawing)} (${mode})`;
  if (run.error || run.signal) {
    fail(`${name}: ${run.error ? run.error.message : 'killed by ' + run.signal}`);
    return [];
  }
  if (/Error: signal/.test(run.stderr)) {
    fail(`${name}: crashed\n${run.stderr.slice(0, 800)}`);
    return [];
  }
  const svgs = fs.readdirSync(dir).filter((f) => f.endsWith('.svg')).map((f) => path.join(dir, f));
  const relative = path.relative(path.resolve(corpusDir), drawing);
  if (svgs.length === 0 && !nothingToDraw(relative)) {
    fail(`${name}: no SVG written (exit ${run.status}): ${run.stdout.slice(-300)}`);
  }
  for (const svg of svgs) {
    const lint = spawnSync('xmllint', ['--noout', '--huge', svg], { encoding: 'latin1' });
    if (lint.status !== 0) fail(`${name}: ${path.basename(svg)} is not well-formed: ${lint.stderr.slice(0, 300)}`);
  }
  return svgs.map((svg) => ({ svg, name: `${name} ${path.basename(svg)}` }));
}

const DRAWING_ELEMENT = /<(path|line|polyline|polygon|circle|ellipse|text|image)[\s>]/;

// The copy of an SVG that the check renders: drawn into 800 x 600 pixels, every stroke one pixel
// wide whatever its width in drawing units (as a viewer shows a whole drawing), on a grey page so
// that white and black ink both show.
function viewCopy(svgFile) {
  const svg = fs.readFileSync(svgFile, 'latin1');
  const root = svg.search(/<svg[\s>]/);
  if (root < 0) return null;
  const close = svg.indexOf('>', root);
  const tag = svg.slice(root, close).replace(/\swidth="[^"]*"/, ' width="800"').replace(/\sheight="[^"]*"/, ' height="600"');
  const style = '<style>*{vector-effect:non-scaling-stroke;stroke-width:1px !important}</style>';
  const copy = svgFile.replace(/\.svg$/, '.view.svg');
  fs.writeFileSync(copy, svg.slice(0, root) + tag + '>' + style + svg.slice(close + 1), 'latin1');
  return copy;
}

// Counts the pixels of one SVG copy, drawn over grey, that differ from the grey.
async function inkOf(page, url) {
  return page.evaluate(async (url) => {
    const image = new Image();
    image.src = url;
    try {
      await image.decode();
    } catch (e) {
      return -1;
    }
    const canvas = document.createElement('canvas');
    canvas.width = 800;
    canvas.height = 600;
    const context = canvas.getContext('2d');
    context.fillStyle = 'rgb(128,128,128)';
    context.fillRect(0, 0, 800, 600);
    context.drawImage(image, 0, 0, 800, 600);
    const pixels = context.getImageData(0, 0, 800, 600).data;
    let ink = 0;
    for (let i = 0; i < pixels.length; i += 4) {
      if (Math.abs(pixels[i] - 128) + Math.abs(pixels[i + 1] - 128) + Math.abs(pixels[i + 2] - 128) > 40) ink++;
    }
    return ink;
  }, url);
}

function serve(root) {
  const server = http.createServer((req, res) => {
    const name = path.join(root, decodeURIComponent(new URL(req.url, 'http://localhost').pathname));
    if (!name.startsWith(root) || !fs.existsSync(name) || fs.statSync(name).isDirectory()) {
      res.writeHead(200, { 'Content-Type': 'text/html' });
      res.end('<html><body></body></html>');
      return;
    }
    res.writeHead(200, { 'Content-Type': 'image/svg+xml' });
    fs.createReadStream(name).pipe(res);
  });
  return new Promise((resolve) => server.listen(0, '127.0.0.1', () => resolve(server)));
}

async function openPage(browser, base) {
  const page = await browser.newPage();
  await page.goto(base + '/');
  return page;
}

(async () => {
  fs.mkdirSync(outDir, { recursive: true });
  const drawings = findDrawings(path.resolve(corpusDir));
  const outputs = [];
  drawings.forEach((drawing, i) => {
    for (const mode of ['default', 'all']) outputs.push(...convert(drawing, i, mode));
  });
  const root = path.resolve(outDir);
  const server = await serve(root);
  const base = `http://127.0.0.1:${server.address().port}`;
  let browser = await chromium.launch({ executablePath: CHROMIUM, args: ['--no-sandbox'] });
  let page = await openPage(browser, base);
  let rendered = 0;
  let blankByDesign = 0;
  for (const { svg, name } of outputs) {
    if (!DRAWING_ELEMENT.test(fs.readFileSync(svg, 'latin1'))) {
      blankByDesign++;
      continue;
    }
    const copy = viewCopy(svg);
    let ink = -1;
    try {
      ink = copy ? await inkOf(page, base + '/' + path.relative(root, copy)) : -1;
    } catch (e) {
      // A browser that gave up on one file is started again for the next.
      await browser.close().catch(() => {});
      browser = await chromium.launch({ executablePath: CHROMIUM, args: ['--no-sandbox'] });
      page = await openPage(browser, base);
    }
    rendered++;
    if (ink <= 0) fail(`${name}: renders without ink`);
  }
  server.close();
  await browser.close();
  console.log(`${drawings.length} drawings, ${outputs.length} SVG files, ${rendered} rendered, ` +
              `${blankByDesign} without drawing elements, ${failures.length} failures`);
  process.exit(failures.length ? 1 : 0);
})().catch((e) => {
  console.error(e);
  process.exit(1);
});
