'use strict';
// The renderer in a real browser: every size (odd ones, padded strides, one
// renderer resizing from frame to frame) draws the pixels the colour-space
// conversion gives, within its rounding, on WebGL and on the 2D fallback.
const test = require('node:test');
const assert = require('node:assert/strict');
const fs = require('fs');
const http = require('http');
const path = require('path');
const { launch } = require('./chromium');

const RENDERER = path.resolve(__dirname, '..', '..', 'lib', 'renderer');

// Serves the renderer's modules and an empty page to import them from.
function startServer() {
  const server = http.createServer((request, response) => {
    const name = /^\/renderer\/([a-z0-9-]+\.js)$/.exec(request.url)?.[1];
    if (!name) {
      response.writeHead(200, { 'content-type': 'text/html' });
      response.end('<!doctype html><body></body>');
      return;
    }
    fs.readFile(path.join(RENDERER, name), (error, body) => {
      response.writeHead(error ? 404 : 200, { 'content-type': 'text/javascript' });
      response.end(error ? '' : body);
    });
  });
  return new Promise((resolve) => server.listen(0, '127.0.0.1', () => resolve(server)));
}

// In the page: draws each frame with a WebGL and a 2D renderer, one of each
// for all frames (so each resizes from frame to frame), and reads both
// canvases back. Frames are deterministic noise, so every Y, U and V value,
// clamping included, and every 2x2 chroma block gets exercised.
async function drawAll(frames) {
  const { createRenderer, i420Layout, i420ToRgba } = await import('/renderer/index.js');
  const renderers = ['webgl', '2d'].map((prefer) => {
    const canvas = document.body.appendChild(document.createElement('canvas'));
    return { canvas, renderer: createRenderer(canvas, { prefer }) };
  });
  const readBack = (canvas, width, height) => {
    const copy = Object.assign(document.createElement('canvas'), { width, height });
    const context = copy.getContext('2d');
    context.drawImage(canvas, 0, 0);
    return context.getImageData(0, 0, width, height).data;
  };
  const distance = (a, b) => a.reduce((worst, value, i) => Math.max(worst, Math.abs(value - b[i])), 0);
  let seed = 1;
  const noise = () => ((seed = (seed * 1103515245 + 12345) >>> 0) >>> 16) & 0xff;
  return frames.map((frame) => {
    const pixels = Uint8Array.from({ length: i420Layout(frame).size }, noise);
    const expected = i420ToRgba(pixels, frame);
    const seen = renderers.map(({ canvas, renderer }) => {
      renderer.draw(pixels, frame);
      return { kind: renderer.kind, size: [canvas.width, canvas.height], rgba: readBack(canvas, frame.width, frame.height) };
    });
    return {
      drawn: seen.map(({ kind, size, rgba }) => ({ kind, size, worst: distance(expected, rgba) })),
      between: distance(seen[0].rgba, seen[1].rgba),
    };
  });
}

let server;
let browser;
test.before(async () => {
  [server, browser] = await Promise.all([startServer(), launch()]);
});
test.after(async () => {
  await browser?.close();
  server?.close();
});

async function newPage() {
  const page = await browser.newPage();
  await page.goto(`http://127.0.0.1:${server.address().port}/`);
  return page;
}

const FRAMES = [
  { width: 640, height: 360 },
  { width: 1, height: 1 },
  { width: 2, height: 2 },
  { width: 3, height: 5 },
  { width: 17, height: 9 },
  { width: 641, height: 361 },
  { width: 33, height: 7, strideY: 40, strideU: 24, strideV: 20 }, // padded rows, as some engines deliver
  { width: 320, height: 180 },
];

test('the renderer draws the conversion of every frame, at every size, on WebGL and on 2D alike', async () => {
  const page = await newPage();

  const results = await page.evaluate(drawAll, FRAMES);
  FRAMES.forEach((frame, i) => {
    const { drawn, between } = results[i];
    const what = `${frame.width}x${frame.height}`;
    assert.deepEqual(drawn.map((d) => d.kind), ['webgl', '2d'], `${what}: how each renderer draws`);
    for (const { kind, size, worst } of drawn) {
      assert.deepEqual(size, [frame.width, frame.height], `${kind} ${what}: the canvas takes the frame's size`);
      assert.ok(worst <= 1, `${kind} ${what}: a channel is ${worst} away from the conversion`);
    }
    assert.ok(between <= 1, `${what}: WebGL and 2D differ by ${between}`);
  });
});

test('a frame the buffer cannot hold, or a size that is no size, is refused and leaves the canvas as it was', async () => {
  const page = await newPage();
  const outcomes = await page.evaluate(async () => {
    const { createRenderer } = await import('/renderer/index.js');
    const results = [];
    for (const prefer of ['webgl', '2d']) {
      const canvas = document.body.appendChild(document.createElement('canvas'));
      const renderer = createRenderer(canvas, { prefer });
      renderer.draw(new Uint8Array(6), { width: 2, height: 2 });
      for (const [pixels, frame] of [
        [new Uint8Array(5), { width: 2, height: 2 }],
        [new Uint8Array(100), { width: 0, height: 2 }],
        [new Uint8Array(100), { width: 4, height: 4, strideY: 3 }],
        [[1, 2, 3, 4, 5, 6], { width: 2, height: 2 }],
      ]) {
        let error = 'none';
        try {
          renderer.draw(pixels, frame);
        } catch (e) {
          error = `${e.name}: ${e.message}`;
        }
        results.push({ prefer, error, size: [canvas.width, canvas.height], frames: renderer.frames });
      }
    }
    return results;
  });
  const expected = [
    'RangeError: a 2x2 frame needs 6 bytes; this one holds 5',
    'RangeError: a frame of 0x2 pixels cannot be drawn',
    'RangeError: a stride of 3 is less than a row of 4',
    'TypeError: the frame must be a Uint8Array, another typed array or an ArrayBuffer',
  ];
  for (const prefer of ['webgl', '2d']) {
    const mine = outcomes.filter((o) => o.prefer === prefer);
    assert.deepEqual(mine.map((o) => o.error), expected, prefer);
    for (const o of mine) assert.deepEqual([o.size, o.frames], [[2, 2], 1], `${prefer}: ${o.error}`);
  }
});
