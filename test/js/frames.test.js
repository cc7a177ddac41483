'use strict';
// Frames land in the buffer that script registered; the event carries the
// metadata and whether this frame was copied.
const test = require('node:test');
const assert = require('node:assert/strict');
const v8 = require('v8');
const vm = require('vm');
const { MessageChannel, receiveMessageOnPort } = require('worker_threads');
const { orva, control, collect } = require('./lib/orva');
const { startRecording } = require('./lib/events');

const recorder = startRecording();
const engine = recorder.engine;

// The handler's frame face is registered with the engine by startTranscoding.
engine.startTranscoding(new orva.LocalMediaTranscodingParams());
engine.stopTranscoding();

async function deliver(frame) {
  await recorder.settle();
  assert.equal(control().deliverFrame(frame), true);
  const [event] = await recorder.until(1);
  return event;
}

function register(buffer, width, height, extra = {}) {
  engine.setVideoFrameRenderBuffer({ buffer, id: 42, userId: 'viewer', width, height, ...extra });
}

const logTail = (count) => control().logLines().slice(-count);

test('a frame that fits is copied and its event carries the metadata in order', async () => {
  const buffer = Buffer.alloc(12);
  register(buffer, 4, 2);
  assert.deepEqual(logTail(1), ['setVideoFrameRenderBuffer:width:4, height:2, size:12']);
  const pixels = Buffer.from([1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12]);
  const event = await deliver({ width: 4, height: 2, data: pixels, strideY: 4, strideU: 2, strideV: 2, extra: 77 });
  assert.deepEqual(event.slice(0, 6), ['OnVideoFrame', 0, 0, 0, '', '']);
  const payload = event[6];
  assert.deepEqual(Object.keys(payload), ['type', 'data', 'id', 'userId', 'valid', 'size', 'width', 'height',
    'strideY', 'strideU', 'strideV', 'dataY', 'dataU', 'dataV', 'extra', 'handle']);
  assert.deepEqual({ ...payload, data: undefined, dataY: undefined, dataU: undefined, dataV: undefined }, {
    type: orva.kI420, data: undefined, id: 42, userId: 'viewer', valid: true, size: 12, width: 4, height: 2,
    strideY: 4, strideU: 2, strideV: 2, dataY: undefined, dataU: undefined, dataV: undefined, extra: 77, handle: 0,
  });
  assert.ok(Buffer.isBuffer(payload.data) && payload.data.length === 0);
  for (const view of [payload.dataY, payload.dataU, payload.dataV]) {
    assert.ok(view instanceof Uint8Array && view.length === 0 && view.buffer.byteLength === 0);
  }
  assert.deepEqual(buffer, pixels);
});

test('frames that do not fit are not copied, and the mismatch is logged', async () => {
  const cases = [
    ['another width', { width: 6, height: 2, size: 12 }, 'jswidth:4, jsheight:2, jssize:12, width:6, height:2, size:12'],
    ['another height', { width: 4, height: 3, size: 12 }, 'jswidth:4, jsheight:2, jssize:12, width:4, height:3, size:12'],
    ['larger than the buffer', { width: 4, height: 2, size: 16 }, 'jswidth:4, jsheight:2, jssize:12, width:4, height:2, size:16'],
  ];
  for (const [label, frame, message] of cases) {
    const buffer = Buffer.alloc(12, 0xee);
    register(buffer, 4, 2);
    control().clearLogLines();
    const event = await deliver({ ...frame, data: Buffer.alloc(frame.size, 1) });
    assert.equal(event[6].valid, false, label);
    assert.deepEqual(buffer, Buffer.alloc(12, 0xee), `${label}: the buffer is untouched`);
    assert.deepEqual(control().logLines(), [`OnOrvaEngineVideoFrame:${message}`], label);
  }
});

test('a smaller frame is copied to the start and the rest keeps its bytes', async () => {
  const buffer = Buffer.alloc(12, 0xee);
  register(buffer, 4, 2);
  const event = await deliver({ width: 4, height: 2, size: 8, data: Buffer.alloc(8, 5) });
  assert.equal(event[6].valid, true);
  assert.deepEqual(buffer, Buffer.concat([Buffer.alloc(8, 5), Buffer.alloc(4, 0xee)]));
});

test('a texture-only frame arrives as a texture event and leaves the buffer alone', async () => {
  const buffer = Buffer.alloc(12);
  register(buffer, 4, 2);
  await deliver({ width: 4, height: 2, data: Buffer.alloc(12, 3) });
  const event = await deliver({ width: 4, height: 2, size: 0, data: null, handle: 0x1234 });
  assert.equal(event[0], 'OnVideoFrameTexture');
  assert.equal(event[6].handle, 0x1234);
  assert.equal(event[6].valid, true, 'validity of the last copied frame stays');
  assert.deepEqual(buffer, Buffer.alloc(12, 3));
});

test('clearing the registration makes later frames invalid', async () => {
  const buffer = Buffer.alloc(12);
  register(buffer, 4, 2);
  control().clearLogLines();
  engine.setVideoFrameRenderBuffer(undefined);
  assert.deepEqual(control().logLines(), ['setVideoFrameRenderBuffer:videoBufferObj invalid']);
  const event = await deliver({ width: 4, height: 2, data: Buffer.alloc(12, 9) });
  assert.equal(event[6].valid, false);
  assert.deepEqual(buffer, Buffer.alloc(12));
  assert.deepEqual(logTail(1), ['OnOrvaEngineVideoFrame:jswidth:4, jsheight:2, jssize:0, width:4, height:2, size:12']);
  engine.setVideoFrameRenderBuffer(null);
  assert.deepEqual(logTail(1), ['setVideoFrameRenderBuffer:videoBufferObj invalid']);
});

test('a frame handler may register another buffer while it holds the frame', async () => {
  const first = Buffer.alloc(12);
  const second = Buffer.alloc(24);
  register(first, 4, 2);
  recorder.onEvent = ([name]) => {
    if (name === 'OnVideoFrame') register(second, 4, 4);
  };
  await deliver({ width: 4, height: 2, data: Buffer.alloc(12, 1) });
  recorder.onEvent = null;
  const event = await deliver({ width: 4, height: 4, data: Buffer.alloc(24, 2) });
  assert.equal(event[6].valid, true);
  assert.deepEqual(first, Buffer.alloc(12, 1));
  assert.deepEqual(second, Buffer.alloc(24, 2));
});

test('the registered buffer stays alive while the engine may write into it', async () => {
  register(Buffer.alloc(12), 4, 2);
  await collect();
  const event = await deliver({ width: 4, height: 2, data: Buffer.alloc(12, 4) });
  assert.equal(event[6].valid, true);
});

// Buffers that script can resize came with V8 11 (Node.js 20).
const noResizing = typeof ArrayBuffer.prototype.resize !== 'function' && 'no resizable buffers before Node.js 20';

test('a buffer whose memory script can shrink is not registered', { skip: noResizing }, async () => {
  // Frames of 1024x1024: shrinking gives the pages back, so a write would fault.
  const size = 1 << 20;
  const kept = Buffer.alloc(size);
  register(kept, 1024, 1024);
  const resizable = new ArrayBuffer(size, { maxByteLength: size });
  control().clearLogLines();
  register(Buffer.from(resizable), 1024, 1024);
  assert.deepEqual(control().logLines(), [`setVideoFrameRenderBuffer:width:1024, height:1024, size:${size}`],
    'refused like a value that is not a Buffer: the registered buffer stays');
  resizable.resize(0);
  const event = await deliver({ width: 1024, height: 1024, data: Buffer.alloc(size, 6) });
  assert.equal(event[6].valid, true);
  assert.equal(kept[size - 1], 6);
});

test('a buffer over growable shared memory is registered: it can only grow', { skip: noResizing }, async () => {
  const growable = new SharedArrayBuffer(12, { maxByteLength: 24 });
  register(Buffer.from(growable), 4, 2);
  growable.grow(24);
  const event = await deliver({ width: 4, height: 2, data: Buffer.alloc(12, 5) });
  assert.equal(event[6].valid, true);
  assert.deepEqual(Buffer.from(growable, 0, 12), Buffer.alloc(12, 5));
});

// ArrayBuffer.prototype.transfer sits behind a flag in this V8; a context made
// after setting it has it.
v8.setFlagsFromString('--harmony-rab-gsab-transfer');
const transfer = vm.runInNewContext('ArrayBuffer.prototype.transfer');

// [label, detach(arrayBuffer) -> where its memory went, why it is skipped]
const DETACHES = [
  ['transferred by ArrayBuffer.prototype.transfer', (memory) => transfer.call(memory),
    transfer === undefined && 'no ArrayBuffer.prototype.transfer before Node.js 20'],
  ['transferred by structuredClone', (memory) => structuredClone(memory, { transfer: [memory] })],
  ['transferred by postMessage', (memory) => {
    const { port1, port2 } = new MessageChannel();
    port1.postMessage(memory, [memory]);
    const { message } = receiveMessageOnPort(port2);
    port1.close();
    return message;
  }],
];

test('a registered buffer that script detaches is written no more once its frame has arrived', async (t) => {
  for (const [label, detach, skip] of DETACHES) {
    if (skip) {
      t.diagnostic(`${label}: skipped, ${skip}`);
      continue;
    }
    const buffer = Buffer.alloc(12);
    register(buffer, 4, 2);
    const moved = new Uint8Array(detach(buffer.buffer));
    // A frame raised before the script thread looks again may still land in
    // the memory, which stays alive; the event says it is not in the buffer.
    let event = await deliver({ width: 4, height: 2, data: Buffer.alloc(12, 7) });
    assert.equal(event[6].valid, false, label);
    moved.fill(0);
    control().clearLogLines();
    event = await deliver({ width: 4, height: 2, data: Buffer.alloc(12, 8) });
    assert.equal(event[6].valid, false, label);
    assert.deepEqual([...moved], Array(12).fill(0), `${label}: the memory is no longer written`);
    assert.deepEqual(control().logLines(),
      ['OnOrvaEngineVideoFrame:jswidth:4, jsheight:2, jssize:0, width:4, height:2, size:12'], label);
  }
});

// [label, options whose reading interferes, the error it throws or null, the
// size then logged]. A registration is read in full, then made at once: one
// that throws changes nothing, and the buffer is taken as it is at the end.
const INTERFERING_OPTIONS = [
  ['a getter that throws', () => ({ buffer: Buffer.alloc(24), get id() { throw new Error('no id'); } }),
    /no id/, null],
  ['a proxy whose trap throws', () => new Proxy({ buffer: Buffer.alloc(24) }, {
    get(target, key) { if (key === 'width') throw new Error('no width'); return target[key]; },
  }), /no width/, null],
  ['a getter that detaches the buffer read before it', () => {
    const buffer = Buffer.alloc(24);
    return { buffer, get id() { structuredClone(buffer.buffer, { transfer: [buffer.buffer] }); return 1; }, width: 4, height: 2 };
  }, null, 0],
  ['a getter that registers another buffer', () => ({
    buffer: Buffer.alloc(24),
    get id() { register(Buffer.alloc(36), 4, 2); return 1; },
    width: 4,
    height: 2,
  }), null, 24],
  ['a getter that clears the registration', () => ({
    buffer: Buffer.alloc(24),
    get userId() { engine.setVideoFrameRenderBuffer(null); return 'me'; },
    width: 4,
    height: 2,
  }), null, 24],
];

test('a registration that script interferes with while it is read is made whole or not at all', async () => {
  for (const [label, options, error, loggedSize] of INTERFERING_OPTIONS) {
    const registered = Buffer.alloc(12);
    register(registered, 4, 2);
    control().clearLogLines();
    if (error) {
      assert.throws(() => engine.setVideoFrameRenderBuffer(options()), error, label);
      assert.deepEqual(control().logLines(), [], label);
      await deliver({ width: 4, height: 2, data: Buffer.alloc(12, 3) });
      assert.deepEqual(registered, Buffer.alloc(12, 3), `${label}: the registration is unchanged`);
    } else {
      engine.setVideoFrameRenderBuffer(options());
      assert.equal(control().logLines().at(-1), `setVideoFrameRenderBuffer:width:4, height:2, size:${loggedSize}`, label);
    }
  }
});

test('a userId too long to be handed back to script is refused', async () => {
  register(Buffer.alloc(12), 4, 2);
  // Its UTF-8 is one byte longer than the longest string V8 makes.
  const userId = '\u20ac'.repeat(Math.ceil(((1 << 29) - 24 + 1) / 3));
  assert.throws(() => register(Buffer.alloc(12), 4, 2, { userId }),
    { name: 'RangeError', message: 'setVideoFrameRenderBuffer: the userId is too long' });
  const event = await deliver({ width: 4, height: 2, data: Buffer.alloc(12, 1) });
  assert.equal(event[6].userId, 'viewer');
});
