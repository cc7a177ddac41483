'use strict';
// Four engine threads raising a quarter of a million events each while the
// handler calls back into the engine: every event arrives exactly once, in
// order per thread, and nothing deadlocks.
const test = require('node:test');
const assert = require('node:assert/strict');
const { control } = require('./lib/orva');
const { startRecording, raise } = require('./lib/events');

const THREADS = 4;
const PER_THREAD = 250000;

test('a million events from four threads, each exactly once and in order', async () => {
  const next = new Array(THREADS).fill(0);
  let delivered = 0;
  let disorder = 0;
  let foreign = 0;
  let done;
  const finished = new Promise((resolve) => { done = resolve; });
  let marked;
  const marker = new Promise((resolve) => { marked = resolve; });
  const recorder = startRecording();
  recorder.received = { push() {}, length: 0 };
  recorder.onEvent = ([name, thread, sequence]) => {
    if (name === 'OnMediaChannelTerminate') return marked();
    if (name !== 'OnPlayFilePosChanged' || thread < 0 || thread >= THREADS) {
      foreign += 1;
      return;
    }
    if (sequence !== next[thread]) disorder += 1;
    next[thread] = sequence + 1;
    delivered += 1;
    // Script calls into the engine from the handler while events keep coming.
    if (delivered % 1000 === 0) recorder.engine.getAGCStatus();
    if (delivered === THREADS * PER_THREAD) done();
  };
  control().clearJournal();
  assert.equal(control().raiseConcurrently({ threads: THREADS, perThread: PER_THREAD }), true);
  // Only a guard against a lost event: the checks below then fail.
  const timer = setTimeout(() => done(), 240000);
  await finished;
  clearTimeout(timer);
  control().joinRaisers();
  // Raised after every raiser ended, the marker arrives after all they
  // raised, and after anything delivered twice.
  raise('MediaChannelListener', 'OnMediaChannelTerminate');
  await marker;
  assert.equal(delivered, THREADS * PER_THREAD);
  assert.equal(disorder, 0);
  assert.equal(foreign, 0);
  assert.deepEqual(next, new Array(THREADS).fill(PER_THREAD));
  control().clearJournal();
});
