'use strict';
// orva-engine/events: one EventEmitter over the raw handler, which emits each
// event with its arguments by name, or its payload.
const test = require('node:test');
const assert = require('node:assert/strict');
const events = require('events');
const path = require('path');
const { spawnSync } = require('child_process');
const { orva, control, root, buildDir } = require('./lib/orva');
const { startRecording, raise } = require('./lib/events');
const { attach } = require('orva-engine/events');

const recorder = startRecording();
const engine = recorder.engine;
const emitter = attach(engine);

/** Raises each [face, method, ...args], then waits until all of them have arrived. */
async function deliver(...calls) {
  const done = events.once(emitter, 'OnMediaChannelTerminate');
  for (const [face, method, ...args] of calls) raise(face, method, ...args);
  raise('MediaChannelListener', 'OnMediaChannelTerminate');
  await done;
}

const start = (fileId) => ['AudioServiceListener', 'OnPlayFileStart', fileId, 0];
const frame = () => control().deliverFrame({ width: 4, height: 2, data: Buffer.alloc(12, 7), strideY: 4, strideU: 2,
  strideV: 2, extra: 77 });
const empty = new Uint8Array(0);
const volumes = [{ userId: 'a', microphone_volume: 1, speaker_volume: 2 }];

// [what raises it, the event, what its listener receives]
const RECEIVED = [
  [() => raise('IMediaDeviceCallback', 'onCameraSourceStarted', 'cam-1', -2, 'busy'), 'OnCameraSourceStarted',
    { error: -2, sourceId: 'cam-1', message: 'busy' }],
  [() => raise('AudioServiceListener', 'OnPlayFilePosChanged', 4, 500, 2000), 'OnPlayFilePosChanged',
    { fileId: 4, positionMs: 500, durationMs: 2000 }],
  [() => raise('IMediaDeviceCallback', 'onCameraDidReady'), 'OnCameraDidReady', {}],
  [() => raise('IMediaDeviceCallback', 'onUserVoiceVolume', volumes, 1, 5), 'OnUserVoiceVolume',
    { userVolumes: volumes, userVolumesCount: 1, totalVolume: 5 }],
  [frame, 'OnVideoFrame', { type: orva.kI420, data: Buffer.alloc(0), id: 42, userId: 'viewer', valid: true, size: 12,
    width: 4, height: 2, strideY: 4, strideU: 2, strideV: 2, dataY: empty, dataU: empty, dataV: empty, extra: 77,
    handle: 0 }],
];

test('a listener receives the arguments by name, or the payload: plain, empty, payload and frame events', async () => {
  // The handler's frame face is registered with the engine by startTranscoding.
  engine.startTranscoding(new orva.LocalMediaTranscodingParams());
  engine.stopTranscoding();
  engine.setVideoFrameRenderBuffer({ buffer: Buffer.alloc(12), id: 42, userId: 'viewer', width: 4, height: 2 });
  for (const [raising, name, expected] of RECEIVED) {
    const received = events.once(emitter, name);
    raising();
    assert.deepEqual(await received, [expected], name);
  }
});

test('several listeners, a once listener and an events.on loop each hear what they should', async () => {
  const heard = [];
  const looped = [];
  const first = ({ fileId }) => heard.push(`first ${fileId}`);
  emitter.on('OnPlayFileStart', first).on('OnPlayFileStart', ({ fileId }) => heard.push(`second ${fileId}`))
    .once('OnPlayFileStart', ({ fileId }) => heard.push(`once ${fileId}`));
  const iterating = (async () => {
    for await (const [{ fileId }] of events.on(emitter, 'OnPlayFileStart')) if (looped.push(fileId) === 2) break;
  })();
  await deliver(start(1), ['AudioServiceListener', 'OnPlayFileEnd', 9, 0], start(2));
  emitter.off('OnPlayFileStart', first);
  await deliver(start(3));
  await iterating;
  assert.deepEqual(heard, ['first 1', 'second 1', 'once 1', 'first 2', 'second 2', 'second 3']);
  assert.deepEqual(looped, [1, 2]);
  assert.equal(emitter.listenerCount('OnPlayFileStart'), 1, 'leaving the loop removed its listener');
  emitter.removeAllListeners('OnPlayFileStart');
});

// The drain runs in the poll phase of the loop turn after a wake-up: two
// check phases later it has run.
const afterNextDrain = () => new Promise((resolve) => setImmediate(() => setImmediate(resolve)));

test('attach answers one emitter, refuses wrappers that deliver nothing, binds again after setCallback', async () => {
  assert.equal(attach(orva.OrvaEngineWrapper.createOrvaEngine()), emitter, 'attaching twice');
  const notWrapper = 'attach(engine): engine must be an OrvaEngineWrapper';
  for (const [argument, message] of [[{}, notWrapper], [undefined, notWrapper], [new orva.OrvaEngineWrapper(),
    'attach(engine): only the process-wide wrapper (OrvaEngineWrapper.createOrvaEngine()) delivers events; ' +
    'a wrapper made with new drops its own']]) {
    assert.throws(() => attach(argument), { name: 'TypeError', message });
  }

  const heard = [];
  emitter.on('OnPlayFileStart', ({ fileId }) => heard.push(fileId));
  await deliver(start(1));
  // A handler of script's own replaces the emitter's until attach binds it again.
  startRecording.rebind(recorder).clear();
  raise(...start(2));
  assert.deepEqual((await recorder.until(1)).map((event) => event[1]), [2]);
  attach(engine);
  await deliver(start(3));
  // Detached, events are dropped as without a handler; the listeners stay.
  emitter.detach();
  raise(...start(4));
  await afterNextDrain();
  attach(engine);
  await deliver(start(5));
  emitter.removeAllListeners();
  assert.deepEqual(heard, [1, 3, 5]);
});

test('a throwing listener is reported as the handler is, later events arrive; the main entry loads none of it', () => {
  const result = spawnSync(process.execPath, ['-e', `
    const orva = require('orva-engine');
    const loaded = Object.keys(require.cache).map((file) => path.relative(${JSON.stringify(root)}, file));
    console.log('main entry loads events', loaded.some((file) => file.startsWith('lib/event')));
    const control = require(${JSON.stringify(path.join(buildDir, 'orva_test_control.node'))});
    process.on('uncaughtException', (error, origin) => console.log(origin, error.message));
    const events = require('orva-engine/events');
    const engine = orva.OrvaEngineWrapper.createOrvaEngine();
    const emitter = events.attach(engine);
    emitter.on('OnPlayFileStart', ({ fileId }) => { if (fileId === 1) throw new Error('listener failure'); });
    emitter.on('OnPlayFileStart', ({ fileId }) => {
      console.log('event', fileId);
      if (fileId === 3) import('orva-engine/events').then((esm) => {
        console.log('ES module entry', esm.attach === events.attach && esm.default === events);
        engine.destroy();
      });
    });
    const settings = new orva.Settings();
    settings.add('environment', 'prod');
    engine.initialize(settings, null);
    for (let fileId = 1; fileId <= 3; fileId += 1) control.raise('AudioServiceListener', 'OnPlayFileStart', fileId, 0);
  `], { cwd: root, encoding: 'utf8', timeout: 60000 });
  assert.equal(result.stderr, '');
  assert.equal(result.stdout, 'main entry loads events false\nuncaughtException listener failure\n' +
    'event 2\nevent 3\nES module entry true\n');
  assert.equal(result.status, 0);
});
