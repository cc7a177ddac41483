'use strict';
// The web demo end to end: the page it serves draws the composed frames the
// engine makes (the canvas holds the conversion of the last frame that came,
// and the canvas colour the script asked for), shows the statistics and the
// events, and the server ends by itself or when interrupted, closing pages.
const test = require('node:test');
const assert = require('node:assert/strict');
const { spawn } = require('child_process');
const http = require('http');
const path = require('path');
const { once } = require('events');
const WebSocket = require('ws');
const { launch } = require('./chromium');
const { CANVAS } = require('../../examples/scene');

const SERVER = path.resolve(__dirname, '..', '..', 'examples', 'web', 'server.js');

/** The server running for `seconds`, once it has printed its address. */
async function startDemo(seconds) {
  const child = spawn(process.execPath, [SERVER, String(seconds)], { stdio: ['ignore', 'pipe', 'inherit'] });
  let output = '';
  child.stdout.setEncoding('utf8');
  const address = await new Promise((resolve, reject) => {
    child.stdout.on('data', (chunk) => {
      output += chunk;
      const match = /open (http:\/\/127\.0\.0\.1:\d+\/)/.exec(output);
      if (match) resolve(match[1]);
    });
    child.once('exit', (code) => reject(new Error(`the demo ended (${code}) before serving: ${output}`)));
  });
  const exited = once(child, 'exit').then(([code, signal]) => ({ code, signal, output }));
  return { child, address, exited };
}

// In the page, once it has drawn a few frames: how far the canvas is from
// the conversion of the last frame, and the colour of a pixel of the canvas
// background.
async function inspect() {
  const { i420ToRgba } = await import('/renderer/index.js');
  const { frame, pixels } = orvaDemo.lastFrame;
  const canvas = document.getElementById('video');
  const copy = Object.assign(document.createElement('canvas'), { width: frame.width, height: frame.height });
  const context = copy.getContext('2d');
  context.drawImage(canvas, 0, 0);
  const seen = context.getImageData(0, 0, frame.width, frame.height).data;
  const expected = i420ToRgba(pixels, frame);
  const worst = expected.reduce((w, value, i) => Math.max(w, Math.abs(value - seen[i])), 0);
  const corner = Array.from(seen.subarray(0, 3));
  return { worst, corner, size: [canvas.width, canvas.height], text: document.body.innerText };
}

let browser;
test.before(async () => {
  browser = await launch();
});
test.after(() => browser?.close());

for (const renderer of ['webgl', '2d']) {
  test(`the page shows the live session with ${renderer}, and closes when the demo is interrupted`, async () => {
    const demo = await startDemo(600);
    try {
      const page = await browser.newPage();
      await page.goto(`${demo.address}?renderer=${renderer}`);
      await page.waitForFunction(() => orvaDemo.frames >= 3 && orvaDemo.stats >= 1 && orvaDemo.events >= 1, {
        timeout: 0,
      });
      const seen = await page.evaluate(inspect);
      assert.equal(await page.evaluate(() => orvaDemo.renderer), renderer);
      assert.deepEqual(seen.size, [CANVAS.width, CANVAS.height]);
      assert.ok(seen.worst <= 1, `the canvas is ${seen.worst} away from the last frame's conversion`);
      const asked = [16, 8, 0].map((shift) => (CANVAS.color >> shift) & 0xff);
      assert.ok(seen.corner.every((value, i) => Math.abs(value - asked[i]) <= 2), `canvas colour ${seen.corner}`);
      assert.match(seen.text, /frames drawn with/);
      assert.match(seen.text, /Mbit\/s/);
      assert.match(seen.text, /OnSessionStateChanged/);

      demo.child.kill('SIGINT');
      const { code, output } = await demo.exited;
      assert.equal(code, 0, output);
      assert.match(output, /demo:web: ended/);
      await page.waitForFunction(() => orvaDemo.ended, { timeout: 0 });
    } finally {
      demo.child.kill('SIGKILL');
    }
  });
}

/** The status of a request to `address` with a raw path (no URL normalising on the way). */
function status(address, method, path) {
  const { hostname, port } = new URL(address);
  return new Promise((resolve, reject) => {
    http.request({ hostname, port, method, path }, (response) => {
      response.resume();
      resolve(response.statusCode);
    }).on('error', reject).end();
  });
}

test('the server serves the page and the renderer only, and answers anything else without falling over', async () => {
  const demo = await startDemo(600);
  const requests = [
    ['GET', '//', 404],
    ['GET', '/renderer/../../package.json', 404],
    ['GET', '/renderer/%2e%2e%2fpackage.json', 404],
    ['GET', '/renderer/index.js?x=1', 200],
    ['POST', '/', 405],
  ];
  try {
    const seen = await Promise.all(requests.map(([method, path]) => status(demo.address, method, path)));
    // Pages only listen; one that sends a broken frame (opcode 3 is reserved)
    // or one larger than the limit loses its socket, and the server goes on.
    for (const send of [(socket) => socket._socket.write(Buffer.from([0x83, 0x80, 0, 0, 0, 0])),
      (socket) => socket.send(Buffer.alloc(1 << 20))]) {
      const socket = new WebSocket(`${demo.address.replace('http', 'ws')}live`);
      socket.on('error', () => {}); // the close below is what counts
      await once(socket, 'open');
      send(socket);
      await once(socket, 'close');
    }
    seen.push(await status(demo.address, 'GET', '/'));
    requests.push(['GET', '/', 200]);
    demo.child.kill('SIGINT');
    const { code, output } = await demo.exited;
    assert.deepEqual(seen, requests.map(([, , expected]) => expected));
    assert.equal(code, 0, output);
  } finally {
    demo.child.kill('SIGKILL');
  }
});

test('the demo stops by itself after the seconds it was given', async () => {
  const demo = await startDemo(1);
  const { code, output } = await demo.exited;
  assert.equal(code, 0, output);
  assert.match(output, /stops after 1 s[\s\S]*demo:web: ended/);
});
