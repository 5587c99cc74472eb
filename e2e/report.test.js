// `auxtool report` (AUX_BIN_DIR, default build/bin) writes the growth charts
// of a sample boy and girl, graphs beside the page: every image must load in
// Chromium. AUX_SCREENSHOTS=DIR saves DIR/report-boy.png and report-girl.png.
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

test('report pages show every graph image', async (t) => {
  assert.ok(fs.existsSync(AUXTOOL), `${AUXTOOL} is missing: build it first (make e2e does)`);
  const dir = fs.mkdtempSync(path.join(os.tmpdir(), 'aux-report-'));
  const browser = await launch();
  t.after(async () => {
    await browser.close();
    fs.rmSync(dir, { recursive: true, force: true });
  });
  const page = await browser.newPage({ viewport: { width: 1100, height: 900 } });
  // Both followed from birth, the boy to 15 years, the girl to 8; each text
  // has five graphs (four charts and the auxogram or the height velocity).
  // The names go through the shell's printf: node would pass them as UTF-8.
  for (const [who, name] of [['boy', 'Svoboda Martin'], ['girl', 'Urbanov\\xe1 Nela']]) {
    for (const text of ['growth_charts', 'growth_charts_sd']) {
      await t.test(`${text} for the ${who}`, async () => {
        // A folder for each page: two runs in the same second may name their graph files alike.
        const file = path.join(dir, `${who}-${text}`, 'index.html');
        fs.mkdirSync(path.dirname(file));
        execFileSync('bash', ['-c', 'exec "$0" report "$1/knowledge.xml" "$1/probands.xml" "$(printf "$2")" "$3" ' +
          '--setup "$1/setup.txt" --today 1.6.2024 --out "$4"', AUXTOOL, path.join(ROOT, 'samples'), name, text, file]);
        const sources = [...fs.readFileSync(file, 'latin1').matchAll(/<img src="([^"]+)"/g)].map((m) => m[1]);
        assert.strictEqual(sources.length, 5);
        await page.goto(pathToFileURL(file).href, { waitUntil: 'load' });
        const images = await page.$$eval('img', (all) => all.map((i) => [i.getAttribute('src'), i.complete && i.naturalWidth]));
        assert.deepStrictEqual(images.map((i) => i[0]), sources);
        for (const [src, width] of images) assert.ok(width > 0, `${src} did not load`);
        if (text === 'growth_charts' && process.env.AUX_SCREENSHOTS)
          await page.screenshot({ path: path.join(process.env.AUX_SCREENSHOTS, `report-${who}.png`), fullPage: true });
      });
    }
  }
});
