'use strict';
// Debian's Chromium, headless, for the renderer's tests: WebGL runs on its
// software rasteriser, so no display or GPU is needed.
const puppeteer = require('puppeteer-core');

const EXECUTABLE = process.env.ORVA_CHROMIUM || '/usr/bin/chromium';

function launch() {
  return puppeteer.launch({
    executablePath: EXECUTABLE,
    headless: true,
    args: [
      '--no-sandbox', // CI runs as root
      '--use-angle=swiftshader',
      '--enable-unsafe-swiftshader', // WebGL on the software rasteriser
      // This machine's network is closed: no background connections.
      '--disable-background-networking',
      '--disable-component-update',
      '--disable-sync',
      '--disable-quic',
      '--no-first-run',
    ],
  });
}

module.exports = { launch };
