'use strict';
// How the drain hands events to script: in order, all that are waiting in one
// turn, a frame alone in its turn, and a throwing handler stopping nothing.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva, control } = require('./lib/orva');
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

test('ten events raised before one wake-up arrive in order in one turn', async () => {
  await recorder.settle();
  const turns = markTurns();
  for (let i = 0; i < 10; i += 1) raise('AudioServiceListener', 'OnPlayFilePosChanged', 1, i, 0);
  const received = await recorder.until(10);
  assert.deepEqual(received.map((event) => event[2]), [0, 1, 2, 3, 4, 5, 6, 7, 8, 9]);
  assert.deepEqual(turns(), [Array(10).fill('OnPlayFilePosChanged')]);
  recorder.onEvent = null;
});

test('an event raised while the handler runs arrives in the same turn', async () => {
  await recorder.settle();
  const turns = markTurns();
  const mark = recorder.onEvent;
  recorder.onEvent = (event, r) => {
    mark(event, r);
    if (event[0] === 'OnPlayFileStart') raise('AudioServiceListener', 'OnPlayFileEnd', 1, 0);
  };
  raise('AudioServiceListener', 'OnPlayFileStart', 1, 100);
  await recorder.until(2);
  assert.deepEqual(turns(), [['OnPlayFileStart', 'OnPlayFileEnd']]);
  recorder.onEvent = null;
});

test('a frame ends its turn; what follows arrives in the next one', async () => {
  await recorder.settle();
  const params = new orva.LocalMediaTranscodingParams();
  recorder.engine.startTranscoding(params);
  recorder.engine.stopTranscoding();
  await recorder.settle();
  const turns = markTurns();
  recorder.engine.setVideoFrameRenderBuffer({ buffer: Buffer.alloc(12), id: 1, userId: 'me', width: 4, height: 2 });
  assert.equal(control().deliverFrame({ width: 4, height: 2, data: Buffer.alloc(12, 1) }), true);
  raise('MediaChannelListener', 'OnStreamAdd', 'peer', 1, 0, [], null);
  raise('MediaChannelListener', 'OnStreamAdd', 'peer', 0, 0, [], null);
  await recorder.until(3);
  assert.deepEqual(turns(), [['OnVideoFrame'], ['OnStreamAdd', 'OnStreamAdd']]);
  recorder.onEvent = null;
});

test('a handler that throws stops neither the drain nor later events', async () => {
  await recorder.settle();
  recorder.onEvent = ([, fileId]) => {
    if (fileId === 2) throw new Error('handler failure');
  };
  for (let fileId = 1; fileId <= 4; fileId += 1) raise('AudioServiceListener', 'OnPlayFileStart', fileId, 0);
  const received = await recorder.until(4);
  assert.deepEqual(received.map((event) => event[1]), [1, 2, 3, 4]);
  recorder.onEvent = null;
});

test('events wait for a handler that is not a function, and are then dropped', async () => {
  await recorder.settle();
  const handlerBefore = recorder.engine;
  recorder.engine.setCallback(undefined);
  raise('AudioServiceListener', 'OnPlayFileStart', 9, 0);
  await new Promise((resolve) => setTimeout(resolve, 50));
  // Binding the recorder again: the dropped event does not come back.
  recorder.received.length = 0;
  const again = startRecording.rebind(recorder);
  raise('AudioServiceListener', 'OnPlayFileStart', 10, 0);
  const received = await again.until(1);
  assert.deepEqual(received.map((event) => event[1]), [10]);
  assert.ok(handlerBefore);
});
