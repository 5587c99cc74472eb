// The sample application in headless Chromium on auxserve with a copy of the
// samples: a clinic's steps one after another on one database, the quick
// calculation, and every page served checked by tidy, at two widths.
'use strict';
const { test, before, after } = require('node:test');
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { launch } = require('./browser');
const { startAppServer, decodePage, tidyProblems } = require('./appserver');

const SAMPLES = path.resolve(__dirname, '..', 'samples');
const NEW_NAME = 'Zkušební Anna';
let server, browser, page;
const served = [];  // every HTML page the browser got: { url, html }

before(async () => {
  server = await startAppServer();
  browser = await launch();
  page = await newPage();
});

// The server ends cleanly, also when it runs under the sanitizers
// (AUXSERVE=build-asan/bin/auxserve), whose reports go to its error output.
after(async () => {
  if (browser) await browser.close();
  if (!server) return;
  const { code, log } = await server.stop();
  assert.equal(code, 0, log);
  assert.doesNotMatch(log, /AddressSanitizer|LeakSanitizer|runtime error:/);
});

async function newPage(width = 1280) {
  const p = await browser.newPage({ viewport: { width, height: 900 } });
  p.on('response', (response) => response.request().resourceType() === 'document' && response.body()
    .then((body) => served.push({ url: response.url(), html: decodePage(body) }), () => {}));  // or left early
  return p;
}

const at = (p) => new URL(p, server.url).href;
const submit = (p, selector) => Promise.all([p.waitForNavigation(), p.click(selector)]);
const text = async (selector, p = page) => (await p.textContent(selector)).replace(/\s+/g, ' ');
const fill = async (fields, p = page) => { for (const [f, value] of Object.entries(fields)) await p.fill(f, value); };

// Names in the list as a user sees them (the stylesheet hides a paging row).
const visibleNames = (p = page) => p.$$eval('#probands tbody tr', (rows) =>
  rows.filter((r) => r.offsetParent !== null).map((r) => r.cells[0].textContent.trim()));

// The visits table, one array of cells a row, without the edit cell.
const visitRows = (p = page) => p.$$eval('#visits tbody tr', (rows) =>
  rows.map((r) => [...r.cells].slice(1).map((c) => c.textContent.trim())));

const openProband = () => page.goto(at('/?_page=list&_srch=Zku'))
  .then(() => submit(page, `#probands a:text-is("${NEW_NAME}")`));

// The SD score and percentile of a height on a summary, within rounding of
// the hand-worked values.
function assertHeightScore(summary, height, sd, percentile) {
  const m = new RegExp(`Height ${height} cm\\s*:\\s*(-?[\\d.]+) SD\\s*,\\s*percentile ([\\d.]+) %`).exec(summary);
  assert.ok(m && Math.abs(Number(m[1]) - sd) <= 0.011 && Math.abs(Number(m[2]) - percentile) <= 0.3, summary);
}

test('the list shows 20 probands a page, pages through all of them, and searches', async () => {
  // The probands of the sample database, read from its XML twin without the engine.
  const xml = decodePage(fs.readFileSync(path.join(SAMPLES, 'probands.xml')));
  const all = [...xml.matchAll(/<p_record>\s*<p_name>([^<]*)<\/p_name>\s*(?:<p_comment>([^<]*)<\/p_comment>)?/g)]
    .map((m) => [m[1], m[2] || '']);
  assert.equal(all.length, 32);
  await page.goto(server.url);
  const first = await visibleNames();
  assert.equal(first.length, 20);
  assert.match(await text('.pager'), /32 probands in the database/);
  // The stylesheet comes from the image folder: the top bar takes its colour.
  assert.equal(await page.$eval('.topbar', (e) => getComputedStyle(e).backgroundColor), 'rgb(28, 79, 130)');
  await submit(page, 'a[rel=next]');
  // The last window is filled up from the end: 20 rows, 12 of them new.
  const second = await visibleNames();
  assert.equal(second.length, 20);
  assert.deepEqual(new Set([...first, ...second]), new Set(all.map((p) => p[0])));
  assert.equal(await page.isVisible('a[rel=next]'), false);

  await fill({ 'input[name=_srch]': 'nov' });
  await submit(page, 'form.search button');
  const expected = all.filter(([n, c]) => (n + '\n' + c).toLowerCase().includes('nov')).map((p) => p[0]);
  assert.deepEqual((await visibleNames()).sort(), expected.sort());
  assert.match(await text('#search-status'), /contains nov\./);
  await fill({ 'input[name=_srch]': 'zzzz' });
  await submit(page, 'form.search button');
  assert.match(await text('#not-found'), /No proband matches zzzz\. All probands are shown\./);
  assert.equal((await visibleNames()).length, 20);
});

test('a new proband is saved with its anamnestic values', async () => {
  await page.goto(server.url);
  await submit(page, '.page-head a:text("New proband")');
  await page.check('input[name=_p_sex][value=F]');
  await fill({ '#f-name': NEW_NAME, '#f-dob': '3.2.2019', '#f-cmt': 'Přišla z jiné ambulance', '#a-FATHER_HT': '181',
    '#a-MOTHER_HT': '167.4' });
  await submit(page, '#proband-form button[type=submit]');
  assert.equal(await page.textContent('#proband-name'), NEW_NAME);
  assert.equal(await page.textContent('#proband-comment'), 'Přišla z jiné ambulance');
  assert.match(await text('#facts'),
    /Sex female Date of birth 3\.2\.2019 Visits 0 .*Father's height 181\.0 cm Mother's height 167\.4 cm/);
  assert.ok(await page.isVisible('#no-visits'));
  await page.goto(server.url);
  assert.match(await text('.pager'), /33 probands in the database/);
});

test('two visits are added, with ages from the dates', async () => {
  await openProband();
  await submit(page, '#add-visit');
  await fill({ '#f-date': '3.2.2022', '#v-HEIGHT': '95.3', '#v-WEIGHT': '14.2', '#f-cmt': 'první kontrola' });
  await submit(page, '#visit-form button[type=submit]');
  // The second through the form folded into the proband page.
  await page.click('details.inline-visit summary');
  await fill({ '#i-date': '5.8.2023', '#i-HEIGHT': '104.1', '#i-WEIGHT': '16.9' });
  await submit(page, '#inline-visit-form button[type=submit]');
  // Ages: 3.2.2019 to 3.2.2022 is 1096 days, / 365.25 = 3.0007; to 5.8.2023
  // it is 1461 + 183 = 1644 days, / 365.25 = 4.5010.
  const rows = await visitRows();
  assert.deepEqual(rows.map((r) => r.slice(0, 5)),
    [['1', '3.2.2022', '3.00 years', '95.3', '14.20'], ['2', '5.8.2023', '4.50 years', '104.1', '16.90']]);
  assert.equal(rows[0].at(-1), 'první kontrola');
});

test('the proband page shows the reports with every graph loaded', async () => {
  await openProband();
  const titles = await page.$$eval('nav.toc li a', (as) => as.map((a) => a.textContent));
  assert.ok(titles.includes('Growth summary') && titles.includes('Visits'), titles.join());
  // One report at a time: the summary, which the list's link opens.
  assert.equal((await page.$$('section.report')).length, 1);
  // Girl, 4.501 years (day 1644 of the WHO 2006 table: L 1, M 106.1817,
  // S 0.04272), height 104.1 cm: z = (104.1 / 106.1817 - 1) / 0.04272 =
  // -0.459, percentile 100 * Phi(-0.459) = 32.3.
  assertHeightScore(await text('#report'), '104\\.1', -0.459, 32.3);
  // A link between report texts stays on this proband's page.
  await submit(page, '#report a.xref');
  assert.equal(await page.textContent('#proband-name'), NEW_NAME);

  await submit(page, 'nav.toc a:text-is("Growth charts")');
  const images = await page.$$eval('section.report img', (imgs) =>
    imgs.map((i) => ({ src: i.getAttribute('src'), complete: i.complete, width: i.naturalWidth })));
  assert.ok(images.length > 0, 'the reports show no graph');
  for (const image of images) {
    assert.ok(image.complete && image.width > 0, `${image.src} did not load`);
    const response = await page.request.get(at(image.src));
    assert.equal(response.status(), 200);
    assert.equal(response.headers()['content-type'], 'image/svg+xml');  // the sample setup's graph-extension
  }
});

test('an edited visit keeps its place and shows the new value', async () => {
  await openProband();
  await submit(page, '#visits tbody tr:nth-child(1) a:text("Edit")');
  assert.equal(await page.inputValue('#v-HEIGHT'), '95.3');
  await fill({ '#v-HEIGHT': '95.8' });
  await submit(page, '#visit-form button[type=submit]');
  const rows = await visitRows();
  assert.deepEqual(rows.map((r) => r.slice(0, 5)),
    [['1', '3.2.2022', '3.00 years', '95.8', '14.20'], ['2', '5.8.2023', '4.50 years', '104.1', '16.90']]);
  assert.equal(rows[0].at(-1), 'první kontrola');
  assert.equal(await page.textContent('#proband-name'), NEW_NAME);
});

test('a form sent twice changes the database once', async () => {
  // Two tabs open the same form before either is sent: both carry the same
  // order token, as a form sent again from the history does.
  await openProband();
  const other = await newPage();
  await other.goto(page.url());
  for (const p of [page, other]) {
    await submit(p, '#add-visit');
    await fill({ '#f-date': '1.6.2024', '#v-HEIGHT': '110.2' }, p);
  }
  await submit(page, '#visit-form button[type=submit]');
  assert.equal((await visitRows()).length, 3);
  await submit(other, '#visit-form button[type=submit]');
  assert.equal((await visitRows(other)).length, 3);
  await other.close();
  await openProband();
  assert.equal((await visitRows()).length, 3);
});

test('a visit and then the proband are deleted, the proband after a confirmation', async () => {
  await openProband();
  await submit(page, '#visits tbody tr:nth-child(3) a:text("Edit")');
  await submit(page, '#visit-delete-form button');
  assert.deepEqual((await visitRows()).map((r) => r[1]), ['3.2.2022', '5.8.2023']);
  await submit(page, '#delete-proband');
  assert.equal(await page.textContent('#proband-name'), NEW_NAME);
  assert.match(await text('main'), /with 2 visits/);
  await submit(page, '#delete-form button[type=submit]');
  assert.match(await text('.pager'), /32 probands in the database/);
  assert.ok(!(await visibleNames()).includes(NEW_NAME));
  await page.goto(at('/?_page=list&_srch=Zku'));
  assert.ok(await page.isVisible('#not-found'));
});

test('the quick calculation gives SD score and percentile and saves nothing', async () => {
  const database = path.join(server.dir, 'probands.bin');
  const stored = fs.readFileSync(database);
  await page.goto(at('/temp?_page=quick'));
  assert.ok(await page.isVisible('#no-results'));
  await page.check('input[name=_p_sex][value=M]');
  await fill({ '#g-new': '6', '#n-HEIGHT': '120.7', '#n-WEIGHT': '22.5' });
  await submit(page, '#quick-form button[type=submit]');
  // Boy, 6 years (month 72 of the WHO 2007 table: L 1, M 115.9509,
  // S 0.04249), height 120.7 cm: z = (120.7 / 115.9509 - 1) / 0.04249 =
  // 0.964, percentile 100 * Phi(0.964) = 83.2.
  assertHeightScore(await text('#t-growth_summary'), '120\\.7', 0.964, 83.2);
  for (const width of await page.$$eval('#results img', (imgs) => imgs.map((i) => i.naturalWidth)))
    assert.ok(width > 0);
  // The form keeps what was entered, as a visit of its own.
  assert.deepEqual([await page.inputValue('#g-0'), await page.inputValue('#v0-HEIGHT')], ['6', '120.7']);
  assert.ok(await page.isChecked('input[name=_p_sex][value=M]'));
  assert.deepEqual(fs.readFileSync(database), stored);
});

test('pages fit 800 and 1280 pixels without sideways scrolling, and all are valid HTML5', async (t) => {
  for (const width of [800, 1280]) {
    const p = await newPage(width);
    await p.goto(server.url);
    const id = await p.getAttribute('#probands tbody tr:first-child a', 'href');
    for (const url of ['/', id, '/?_page=proband-new', '/temp?_page=quick&_p_sex=F&_AGE=3&HEIGHT=95']) {
      await p.goto(at(url));
      const overflow = await p.evaluate(() => document.documentElement.scrollWidth - window.innerWidth);
      assert.ok(overflow <= 0, `${url} at ${width} px is ${overflow} px too wide`);
    }
    await p.close();
  }
  assert.ok(served.length > 20);
  if (tidyProblems('<!DOCTYPE html><html lang="en"><head><title>x</title></head><body></body></html>') === null)
    return t.skip('tidy is not installed');
  for (const { url, html } of served) {
    assert.ok(!html.includes('template error'), `${url}: ${html.match(/<!-- template error[^>]*>/)}`);
    assert.deepEqual(tidyProblems(html), [], url);
  }
});
