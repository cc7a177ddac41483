'use strict';
// How the drain hands events to script: in order, all that are waiting in one
// turn, a frame alone in its turn, and a throwing handler stopping nothing.
const test = require('node:test');
const assert = require('node:assert/strict');
const path = require('path');
const { spawnSync } = require('child_process');
const { orva, control, root, buildDir } = require('./lib/orva');
const { startRecording, raise } = require('./lib/events');

const recorder = startRecording();

// Microtasks run when a drain turn ends, so a marker queued from a handler
// tells which events arrived in the same turn as the one that queued it.
function markTurns() {
  let turn = 0;
  const turns = [];
  recorder.onEvent = ([name]) => {
    if (turns.length === 0 || turns[turns.length - 1].turn !== turn) {
      turns.push({ turn, names: [] });
      queueMicrotask(() => { turn += 1; });
    }
    turns[turns.length - 1].names.push(name);
  };
  return () => turns.map((entry) => entry.names);
}

// [label, what raises the events (after the recorder settled), the events to
// wait for, the names each turn delivered]
const TURNS = [
  ['ten events raised before one wake-up arrive in order in one turn', () => {
    for (let i = 0; i < 10; i += 1) raise('AudioServiceListener', 'OnPlayFilePosChanged', 1, i, 0);
  }, 10, [Array(10).fill('OnPlayFilePosChanged')]],
  ['an event raised while the handler runs arrives in the same turn', () => {
    const mark = recorder.onEvent;
    recorder.onEvent = (event, r) => {
      mark(event, r);
      if (event[0] === 'OnPlayFileStart') raise('AudioServiceListener', 'OnPlayFileEnd', 1, 0);
    };
    raise('AudioServiceListener', 'OnPlayFileStart', 1, 100);
  }, 2, [['OnPlayFileStart', 'OnPlayFileEnd']]],
  ['a frame ends its turn; what follows arrives in the next one', () => {
    recorder.engine.setVideoFrameRenderBuffer({ buffer: Buffer.alloc(12), id: 1, userId: 'me', width: 4, height: 2 });
    assert.equal(control().deliverFrame({ width: 4, height: 2, data: Buffer.alloc(12, 1) }), true);
    raise('MediaChannelListener', 'OnStreamAdd', 'peer', 1, 0, [], null);
    raise('MediaChannelListener', 'OnStreamAdd', 'peer', 0, 0, [], null);
  }, 3, [['OnVideoFrame'], ['OnStreamAdd', 'OnStreamAdd']]],
];

test('the drain delivers what waits in one turn, and a frame alone', async () => {
  // The handler's frame face is registered with the engine by startTranscoding.
  recorder.engine.startTranscoding(new orva.LocalMediaTranscodingParams());
  recorder.engine.stopTranscoding();
  for (const [label, raising, count, expected] of TURNS) {
    await recorder.settle();
    const turns = markTurns();
    raising();
    const received = await recorder.until(count);
    assert.deepEqual(turns(), expected, label);
    if (count === 10) assert.deepEqual(received.map((event) => event[2]), [0, 1, 2, 3, 4, 5, 6, 7, 8, 9], label);
    recorder.onEvent = null;
  }
});

// [label, what the script installs, stdout, stderr pattern, status]. The
// handler throws on the first of three events; the other two always arrive,
// except where Node.js itself ends the process, as it does for any
// uncaught exception whose listener throws.
const HANDLER_ERRORS = [
  ['nobody listens: written to standard error', '',
    'event 2\nevent 3\n', /^orvaEngine: the event handler threw: Error: handler failure\n {4}at /, 0],
  ['an uncaughtException listener gets it', `process.on('uncaughtException', (e, origin) => console.log(origin, e.message));`,
    'uncaughtException handler failure\nevent 2\nevent 3\n', /^$/, 0],
  ['the capture callback gets it', `process.setUncaughtExceptionCaptureCallback((e) => console.log('captured', e.message));`,
    'captured handler failure\nevent 2\nevent 3\n', /^$/, 0],
  ['a monitor alone does not count as handling it', `process.on('uncaughtExceptionMonitor', () => console.log('monitor'));`,
    'event 2\nevent 3\n', /^orvaEngine: the event handler threw: Error: handler failure\n/, 0],
  ['a listener that throws ends the process as Node.js does', `process.on('uncaughtException', () => { throw new Error('listener failure'); });`,
    '', /Error: listener failure/, 7],
  ['a listener that replaced listenerCount with a throwing one is not asked', `
    process.on('uncaughtException', () => console.log('listener'));
    process.listenerCount = () => { throw new Error('no count'); };`,
    'event 2\nevent 3\n', /^orvaEngine: the event handler threw: Error: handler failure\n/, 0],
];

test('an exception of the handler goes where Node.js sends uncaught exceptions, and later events still arrive', () => {
  for (const [label, installs, stdout, stderr, status] of HANDLER_ERRORS) {
    const result = spawnSync(process.execPath, ['-e', `
      const orva = require(${JSON.stringify(root)});
      const control = require(${JSON.stringify(path.join(buildDir, 'orva_test_control.node'))});
      const engine = orva.OrvaEngineWrapper.createOrvaEngine();
      ${installs}
      engine.setCallback((name, fileId) => {
        if (fileId === 1) throw new Error('handler failure');
        console.log('event', fileId);
        if (fileId === 3) engine.destroy();
      });
      const settings = new orva.Settings();
      settings.add('environment', 'prod');
      engine.initialize(settings, null);
      for (let fileId = 1; fileId <= 3; fileId += 1) control.raise('AudioServiceListener', 'OnPlayFileStart', fileId, 0);
    `], { cwd: root, encoding: 'utf8', timeout: 60000 });
    assert.equal(result.signal, null, `${label}: ${result.stderr}`);
    assert.equal(result.stdout, stdout, label);
    assert.match(result.stderr, stderr, label);
    assert.equal(result.status, status, label);
  }
});

// The drain runs in the poll phase of the loop turn after a wake-up: two
// check phases later it has run.
const afterNextDrain = () => new Promise((resolve) => setImmediate(() => setImmediate(resolve)));

test('events that arrive while the handler is not a function are dropped', async () => {
  await recorder.settle();
  recorder.engine.setCallback(undefined);
  raise('AudioServiceListener', 'OnPlayFileStart', 9, 0);
  await afterNextDrain();
  const again = startRecording.rebind(recorder);
  raise('AudioServiceListener', 'OnPlayFileStart', 10, 0);
  const received = await again.until(1);
  assert.deepEqual(received.map((event) => event[1]), [10]);
});
