'use strict';
// The demo does what it says: it reports live lines, leaves the room, ends by
// itself, and writes the last composed frame as a PNG in which every source
// shows at its rectangle, in its order, over the canvas colour.
const test = require('node:test');
const assert = require('node:assert/strict');
const { execFile } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { promisify } = require('util');
const zlib = require('zlib');
const { CANVAS, LAYOUT } = require('../../examples/scene');

const demo = path.resolve(__dirname, '..', '..', 'examples', 'demo.js');

// Bit by bit, independent of the demo's table.
function crc32(bytes) {
  let crc = 0xffffffff;
  for (const byte of bytes) {
    crc ^= byte;
    for (let bit = 0; bit < 8; bit += 1) crc = (crc >>> 1) ^ (crc & 1 ? 0xedb88320 : 0);
  }
  return (crc ^ 0xffffffff) >>> 0;
}

/** Width, height and a pixel reader of an 8-bit RGB PNG; every chunk's CRC checked. */
function decodePng(file) {
  assert.deepEqual([...file.subarray(0, 8)], [0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a], 'PNG signature');
  const chunks = [];
  for (let at = 8; at < file.length;) {
    const length = file.readUInt32BE(at);
    const type = file.toString('latin1', at + 4, at + 8);
    assert.equal(file.readUInt32BE(at + 8 + length), crc32(file.subarray(at + 4, at + 8 + length)), `${type} CRC`);
    chunks.push({ type, data: file.subarray(at + 8, at + 8 + length) });
    at += 12 + length;
  }
  assert.deepEqual([chunks[0].type, chunks.at(-1).type], ['IHDR', 'IEND']);
  const header = chunks[0].data;
  const width = header.readUInt32BE(0);
  const height = header.readUInt32BE(4);
  assert.deepEqual([...header.subarray(8)], [8, 2, 0, 0, 0], '8-bit RGB, not interlaced');
  const raw = zlib.inflateSync(Buffer.concat(chunks.filter((c) => c.type === 'IDAT').map((c) => c.data)));
  const stride = width * 3;
  const rgb = Buffer.alloc(stride * height);
  for (let y = 0; y < height; y += 1) {
    const filter = raw[y * (stride + 1)];
    for (let i = 0; i < stride; i += 1) {
      const a = i >= 3 ? rgb[y * stride + i - 3] : 0;
      const b = y > 0 ? rgb[(y - 1) * stride + i] : 0;
      const c = i >= 3 && y > 0 ? rgb[(y - 1) * stride + i - 3] : 0;
      const p = a + b - c;
      const paeth = Math.abs(p - a) <= Math.abs(p - b) && Math.abs(p - a) <= Math.abs(p - c)
        ? a : Math.abs(p - b) <= Math.abs(p - c) ? b : c;
      const predicted = [0, a, b, (a + b) >> 1, paeth][filter];
      rgb[y * stride + i] = raw[y * (stride + 1) + 1 + i] + predicted;
    }
  }
  const pixel = (x, y) => rgb.readUIntBE((y * width + x) * 3, 3);
  return { width, height, pixel };
}

/** The distinct colours of the pixels of `rect` (inset by `inset` on every side). */
function colours(png, { x, y, width, height }, inset = 2) {
  const seen = new Set();
  for (let row = y + inset; row < y + height - inset; row += 1) {
    for (let column = x + inset; column < x + width - inset; column += 1) seen.add(png.pixel(column, row));
  }
  return seen;
}

const near = (a, b) => [16, 8, 0].every((shift) => Math.abs(((a >> shift) & 0xff) - ((b >> shift) & 0xff)) <= 4);

test('the demo reports, leaves, ends by itself and keeps the last frame as a PNG of the composition', async () => {
  const outputDir = fs.mkdtempSync(path.join(os.tmpdir(), 'orva-demo-'));
  try {
    const { stdout, stderr } = await promisify(execFile)(process.execPath, [demo, '2'], {
      env: { ...process.env, ORVA_DEMO_OUTPUT_DIR: outputDir },
      timeout: 20000,
    });
    assert.equal(stderr, '');
    const lines = stdout.split('\n');
    const live = lines.filter((line) => /^\s+\d+s \| frames ok \d+/.test(line));
    assert.equal(live.length, 2, stdout);
    for (const line of live) assert.ok(Number(/frames ok (\d+)/.exec(line)[1]) > 0, line);
    assert.match(live[0], /OnSessionStateChanged x2.*OnTranscodingStarted/);
    assert.match(live[1], /up \d+\.\d\d Mbit\/s down \d+\.\d\d Mbit\/s rtt \d+ ms, loopback-peer size 1280x720/);
    assert.match(stdout, /^ left \|.*OnTranscodingStopped.*OnSessionStateChanged$/m);
    const file = path.join(outputDir, 'last-frame.png');
    assert.match(stdout, new RegExp(`last frame \\(#\\d+, 1280x720\\): .*${path.basename(outputDir)}/last-frame\\.png`));

    const png = decodePng(fs.readFileSync(file));
    assert.deepEqual([png.width, png.height], [CANVAS.width, CANVAS.height]);
    assert.ok(near(png.pixel(10, 10), CANVAS.color), 'the canvas colour around the sources');
    const image = colours(png, LAYOUT.image.rect);
    assert.equal(image.size, 1, 'the image source is one block');
    assert.ok(!near([...image][0], CANVAS.color), 'the image block stands out from the canvas');
    const { screen, camera } = LAYOUT;
    const screenOnly = { ...screen.rect, width: camera.rect.x - screen.rect.x, height: camera.rect.y - screen.rect.y };
    const tones = colours(png, screenOnly);
    assert.equal(tones.size, 2, 'the screen is a two-tone checkerboard');
    assert.ok(colours(png, camera.rect).size >= 8, "the camera's colour bars");
    const overlap = { ...camera.rect, width: screen.rect.x + screen.rect.width - camera.rect.x,
      height: screen.rect.y + screen.rect.height - camera.rect.y };
    assert.ok([...colours(png, overlap)].every((colour) => !tones.has(colour)), 'the camera is drawn over the screen');
  } finally {
    fs.rmSync(outputDir, { recursive: true, force: true });
  }
});
