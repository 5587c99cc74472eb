// Report pages of the sample database in headless Chromium: `auxtool report`
// writes the growth charts of a boy and of a girl with their graph images
// beside the page, and every image must load in the browser. The pages are
// made by the build's auxtool (AUX_BIN_DIR, default build/bin; `make e2e`
// builds it). With AUX_SCREENSHOTS=DIR the chart pages are also saved as
// full-page screenshots DIR/report-boy.png and DIR/report-girl.png.
'use strict';
const test = require('node:test');
const assert = require('node:assert');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { execFileSync } = require('node:child_process');
const { pathToFileURL } = require('node:url');
const { launch } = require('./browser');

const ROOT = path.resolve(__dirname, '..');
const AUXTOOL = path.join(process.env.AUX_BIN_DIR || path.join(ROOT, 'build', 'bin'), 'auxtool');

// The probands by their stored names, with printf escapes for the bytes of
// Windows-1250 that are not ASCII. Both were followed from
// birth: the boy to 15 years (height with the target height, weight to 10
// years, BMI, head circumference to 5 years), the girl to 8 years.
const PROBANDS = [
  { who: 'boy', name: 'Svoboda Martin' },
  { who: 'girl', name: 'Urbanov\\xe1 Nela' },
];
// Four charts and the auxogram; four charts and the height velocity.
const TEXTS = [
  { id: 'growth_charts', images: 5, screenshot: true },
  { id: 'growth_charts_sd', images: 5, screenshot: false },
];

function writeReport(dir, proband, text) {
  // A folder for each page: two runs in the same second may name their
  // graph files alike.
  const folder = path.join(dir, `${proband.who}-${text.id}`);
  fs.mkdirSync(folder);
  const page = path.join(folder, 'index.html');
  // The shell's printf makes the name's bytes: node would pass the name
  // as UTF-8.
  const script = 'exec "$AUXTOOL" report "$KNOWLEDGE" "$DATABASE" "$(printf "$NAME")" "$TEXT" ' +
    '--setup "$SETUP" --today 1.6.2024 --out "$OUT"';
  execFileSync('bash', ['-c', script], {
    env: {
      ...process.env, AUXTOOL, NAME: proband.name, TEXT: text.id, OUT: page,
      KNOWLEDGE: path.join(ROOT, 'samples', 'knowledge.xml'),
      DATABASE: path.join(ROOT, 'samples', 'probands.xml'),
      SETUP: path.join(ROOT, 'samples', 'setup.txt'),
    },
  });
  return page;
}

test('report pages show every graph image', async (t) => {
  assert.ok(fs.existsSync(AUXTOOL), `${AUXTOOL} is missing: build it first (make e2e does)`);
  const dir = fs.mkdtempSync(path.join(os.tmpdir(), 'aux-report-'));
  const browser = await launch();
  t.after(async () => {
    await browser.close();
    fs.rmSync(dir, { recursive: true, force: true });
  });
  const page = await browser.newPage({ viewport: { width: 1100, height: 900 } });
  for (const proband of PROBANDS) {
    for (const text of TEXTS) {
      await t.test(`${text.id} for the ${proband.who}`, async () => {
        const file = writeReport(dir, proband, text);
        const sources = [...fs.readFileSync(file, 'latin1').matchAll(/<img src="([^"]+)"/g)].map((m) => m[1]);
        assert.strictEqual(sources.length, text.images, `images in ${file}`);
        for (const source of sources) {
          assert.ok(fs.statSync(path.join(path.dirname(file), source)).size > 0, `${source} is written beside the page`);
        }
        await page.goto(pathToFileURL(file).href, { waitUntil: 'load' });
        const images = await page.$$eval('img', (all) => all.map((img) => ({
          src: img.getAttribute('src'), complete: img.complete, width: img.naturalWidth,
        })));
        assert.strictEqual(images.length, text.images);
        for (const image of images) {
          assert.ok(image.complete && image.width > 0, `${image.src} did not load`);
        }
        if (text.screenshot && process.env.AUX_SCREENSHOTS) {
          await page.screenshot({ path: path.join(process.env.AUX_SCREENSHOTS, `report-${proband.who}.png`), fullPage: true });
        }
      });
    }
  }
});
