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

    await page.goto(server.url);
    await page.screenshot({ path: path.join(OUT, 'app-list.png'), fullPage: true });

    await page.goto(at('/?_page=list&_srch=Nov%E1k'));
    await Promise.all([page.waitForNavigation(), page.click('#probands a')]);
    await Promise.all([page.waitForNavigation(), page.click('nav.toc a:text-is("Growth charts")')]);
    await page.screenshot({ path: path.join(OUT, 'app-proband.png'), fullPage: true });

    await page.goto(at('/temp?_page=quick&_p_sex=F&_p_dob=14.3.2017&MOTHER_HT=164&FATHER_HT=178' +
      '&_DATE=2.5.2022&_AGE=&HEIGHT=108.9&WEIGHT=18.1&_DATE=1.6.2024&_AGE=&HEIGHT=121.4&WEIGHT=22.6'));
    await page.screenshot({ path: path.join(OUT, 'app-quick.png'), fullPage: true });
  } finally {
    await browser.close();
    await server.stop();
  }
}

main().catch((error) => { console.error(error); process.exit(1); });
