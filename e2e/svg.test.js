// The same graph painted as BMP and as SVG (by build/tests/svg_pair, see
// tests/output/svg_test_picture.h), both rasterised by Chromium: the SVG is
// well-formed XML, has the graph's size, and its lines, areas and marks lie
// where the BMP has them, apart from anti-aliasing.
'use strict';
const test = require('node:test');
const assert = require('node:assert');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { execFileSync, spawnSync } = require('node:child_process');
const { launch } = require('./browser');

const PAIR = process.env.SVG_PAIR || path.join(__dirname, '..', 'build', 'tests', 'svg_pair');

// Colours of the default palette.
const [WHITE, BLACK, RED, DARKGREEN, DARKSLATEBLUE, GREY11, GREY86, GREY96, BLUE] = [[255, 255, 255], [0, 0, 0],
  [255, 0, 0], [0, 100, 0], [72, 61, 139], [28, 28, 28], [219, 219, 219], [245, 245, 245], [0, 0, 255]];

// Pixels worked out by hand from the calls in svg_test_picture.h.
const KNOWN = [
  ['frame corner', 30, 10, BLACK], ['frame corner', 229, 10, BLACK], ['frame corner', 30, 149, BLACK],
  ['frame corner', 229, 149, BLACK], ['inside the frame', 31, 11, WHITE], ['analysis area', 5, 170, GREY96],
  ['band', 200, 60, GREY86], ['big raster dash', 33, 80, RED], ['big raster dash', 35, 80, RED],
  ['big raster gap', 32, 80, WHITE], ['big raster gap', 36, 80, WHITE], ['small raster dash', 130, 11, DARKGREEN],
  ['small raster dash', 130, 12, DARKGREEN], ['small raster gap', 130, 13, WHITE],
  ['sloping raster dash', 142, 139, DARKGREEN], ['sloping raster gap', 144, 138, WHITE],
  ['sloping raster dash', 146, 137, DARKGREEN],
  ['reference line', 40, 112, DARKSLATEBLUE], ['data line of pen 2', 90, 105, BLACK],
  ['arrow shaft', 150, 75, GREY11], ['mark centre', 60, 120, BLACK], ['mark ring', 64, 120, BLACK],
  ['second mark centre', 120, 90, BLACK], ['range bar rule', 212, 110, BLUE], ['range bar stem', 215, 120, BLUE],
];

// Each image as Chromium draws it at its natural size: width, height, RGBA.
async function rasterise(files) {
  const browser = await launch();
  try {
    const page = await browser.newPage();
    const types = { bmp: 'image/bmp', svg: 'image/svg+xml' };
    await page.route('http://svg.test/**', (route) => {
      const name = new URL(route.request().url()).pathname.slice(1);
      if (name === '') return route.fulfill({ contentType: 'text/html', body: '<html></html>' });
      return route.fulfill({ contentType: types[name], body: fs.readFileSync(files[name]) });
    });
    await page.goto('http://svg.test/');
    return await page.evaluate(async (names) => {
      const result = {};
      for (const name of names) {
        const img = new Image();
        img.src = '/' + name;
        await img.decode();
        const canvas = Object.assign(document.createElement('canvas'), { width: 240, height: 180 });
        const context = canvas.getContext('2d');
        context.drawImage(img, 0, 0);
        const rgba = Array.from(context.getImageData(0, 0, canvas.width, canvas.height).data);
        result[name] = { width: img.naturalWidth, height: img.naturalHeight, rgba };
      }
      return result;
    }, ['bmp', 'svg']);
  } finally {
    await browser.close();
  }
}

const pixel = (image, x, y) => image.rgba.slice((y * image.width + x) * 4, (y * image.width + x) * 4 + 3);
const distance = (a, b) => Math.max(...a.map((v, i) => Math.abs(v - b[i])));

test('SVG graph renders at its size and agrees with the BMP of the same drawing', async (t) => {
  if (!fs.existsSync(PAIR)) return t.skip(`${PAIR} not built (cmake --build build --target svg_pair)`);
  const dir = fs.mkdtempSync(path.join(os.tmpdir(), 'svgpair-'));
  t.after(() => fs.rmSync(dir, { recursive: true, force: true }));
  const files = Object.fromEntries(execFileSync(PAIR, [dir], { encoding: 'latin1' }).trim().split('\n')
    .map((line) => line.split(' ')));
  assert.match(fs.readFileSync(files.svg, 'latin1'), /^<\?xml /);
  const xmllint = spawnSync('xmllint', ['--noout', files.svg], { encoding: 'utf8' });
  if (!xmllint.error) assert.strictEqual(xmllint.status, 0, xmllint.stderr);
  const images = await rasterise(files);
  for (const name of ['bmp', 'svg']) assert.deepStrictEqual([images[name].width, images[name].height], [240, 180], name);
  // The BMP is exact; the SVG may blend a pixel on a sloping edge, but
  // keeps it nearer its colour than half way to any other.
  for (const [label, x, y, colour] of KNOWN) {
    const where = `${label} at (${x}, ${y})`;
    assert.deepStrictEqual(pixel(images.bmp, x, y), colour, `BMP ${where}`);
    const seen = pixel(images.svg, x, y);
    assert.ok(distance(seen, colour) <= 80, `SVG ${where}: ${seen} instead of ${colour}`);
  }
});
