// Remakes the screenshots of the sample application in docs/: the proband
// list, a proband page and a quick calculation, in headless Chromium at
// 1280 pixels, from auxserve on a scratch copy of the samples.
//   node e2e/app-screenshots.js [OUTDIR]
'use strict';
const path = require('node:path');
const { launch } = require('./browser');
const { startAppServer } = require('./appserver');

const OUT = path.resolve(process.argv[2] || path.join(__dirname, '..', 'docs'));

async function main() {
  const server = await startAppServer();
  const browser = await launch();
  try {
    const page = await browser.newPage({ viewport: { width: 1280, height: 900 } });
    const at = (p) => new URL(p, server.url).href;
    const shot = (name) => page.screenshot({ path: path.join(OUT, `app-${name}.png`), fullPage: true });
    const follow = (selector) => Promise.all([page.waitForNavigation(), page.click(selector)]);
    await page.goto(server.url);
    await shot('list');
    await page.goto(at('/?_page=list&_srch=Nov%E1k'));
    await follow('#probands a');
    await follow('nav.toc a:text-is("Growth charts")');
    await shot('proband');
    await page.goto(at('/temp?_page=quick&_p_sex=F&_p_dob=14.3.2017&MOTHER_HT=164&FATHER_HT=178' +
      '&_DATE=2.5.2022&_AGE=&HEIGHT=108.9&WEIGHT=18.1&_DATE=1.6.2024&_AGE=&HEIGHT=121.4&WEIGHT=22.6'));
    await shot('quick');
  } finally {
    await browser.close();
    await server.stop();
  }
}

main().catch((error) => { console.error(error); process.exit(1); });
