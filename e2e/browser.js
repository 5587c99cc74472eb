// Starts Debian's Chromium headless through playwright-core. The browser is
// the system's own; playwright-core never downloads one.
'use strict';
const { chromium } = require('playwright-core');

const ARGS = ['--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run',
  '--disable-background-networking', '--disable-component-update', '--disable-sync',
  '--disable-dev-shm-usage'];

function launch() {
  return chromium.launch({ executablePath: process.env.CHROMIUM || '/usr/bin/chromium', args: ARGS });
}

module.exports = { launch };
