// The loopback engine's test-control addon, from JavaScript: journals,
// crash reports, log lines, live instances, raised callbacks, delivered
// frames and concurrent raisers.
'use strict';
const test = require('node:test');
const assert = require('node:assert/strict');
const path = require('node:path');

const buildDir = path.resolve(__dirname, '..', '..', process.env.ORVA_BUILD_DIR || 'build');
const control = require(path.join(buildDir, 'orva_test_control.node'));

const fast = {
  'loopback.join.delay.ms': '5',
  'loopback.peer.delay.ms': '5',
};

test('without a listener nothing is heard', () => {
  control.stopProbe();
  assert.equal(control.raise('AudioServiceListener', 'OnPlayFilePosChanged', 1, 2, 3), false);
  assert.equal(control.deliverFrame({ width: 2, height: 2, data: Buffer.alloc(6) }), false);
  assert.throws(() => control.raise('AudioServiceListener', 'NoSuchMethod'), /no listener method/);
});

test('the journal records engine calls and can be cleared', () => {
  control.clearJournal();
  assert.equal(control.startProbe(fast), 0);
  const journal = control.journal();
  assert.ok(journal.includes('OrvaEngine.SDK()'), journal.join('\n'));
  assert.ok(journal.some((line) => /^OrvaEngine\.initialize\(\{"loopback\.join\.delay\.ms":"5",.*\}, 0x[0-9a-f]+\)$/.test(line)));
  control.clearJournal();
  assert.deepEqual(control.journal(), []);
  control.stopProbe();
});

test('raise reaches the registered listener with records converted', () => {
  control.startProbe(fast);
  assert.equal(control.raise('AudioServiceListener', 'OnPlayFilePosChanged', 4, 500, 1000), true);
  assert.equal(control.raise('MediaServiceListener', 'OnSessionStateChanged', 'room', 2, 0), true);
  assert.equal(control.raise('MediaServiceListener', 'OnSessionStateChanged', null, 4, 1), true);
  assert.equal(
    control.raise('MediaServiceListener', 'OnNetworkStats', {
      InBps: 64000,
      remoteStatistics: [{ userId: 'peer-a', width: 640 }, { userId: 'peer-b', width: 320 }],
    }),
    true,
  );
  const events = control.probeEvents();
  assert.deepEqual(events.slice(-4), [
    'OnPlayFilePosChanged(4,500,1000)',
    'OnSessionStateChanged(room,2,0)',
    'OnSessionStateChanged(null,4,1)',
    'OnNetworkStats(64000,peer-a:640;peer-b:320;)',
  ]);
  control.stopProbe();
});

test('crash reports and log lines are kept', () => {
  control.clearCrashReports();
  control.clearLogLines();
  control.startProbe(fast);
  assert.equal(control.raise('IMediaDeviceCallback', 'onCameraSourceError', 'cam-0', -5), true);
  assert.deepEqual(control.crashReports(), [{ type: 2, tag: 'orva', message: 'camera cam-0 error -5' }]);
  assert.equal(control.deliverFrame({ width: 4, height: 2, data: Buffer.from([9, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11]),
                                      strideY: 4, strideU: 2, strideV: 2, extra: 7 }), true);
  assert.deepEqual(control.logLines(), ['probe frame 4x2']);
  assert.equal(control.probeEvents().at(-1), 'OnVideoFrame(4x2,12,7,0,9)');
  control.clearCrashReports();
  control.clearLogLines();
  assert.deepEqual(control.crashReports(), []);
  assert.deepEqual(control.logLines(), []);
  control.stopProbe();
});

test('texture frames carry their handle without data', () => {
  control.startProbe(fast);
  assert.equal(control.deliverFrame({ width: 1920, height: 1080, data: null, type: 11, handle: 4660, extra: 3 }), true);
  assert.equal(control.probeEvents().at(-1), 'OnVideoFrame(1920x1080,0,3,4660,-)');
  control.stopProbe();
});

test('concurrent raisers deliver every event', () => {
  control.startProbe(fast);
  const before = control.probeEvents().length;
  assert.equal(control.raiseConcurrently({ threads: 4, perThread: 50 }), true);
  control.joinRaisers();
  const raised = control.probeEvents().slice(before).filter((e) => e.startsWith('OnPlayFilePosChanged('));
  assert.equal(raised.length, 200);
  for (let thread = 0; thread < 4; thread++) {
    const seqs = raised.filter((e) => e.startsWith(`OnPlayFilePosChanged(${thread},`)).map((e) => Number(e.split(',')[1]));
    assert.deepEqual(seqs, [...Array(50).keys()], `thread ${thread} in order`);
  }
  control.stopProbe();
});

test('live instances are counted per class', () => {
  const counts = control.liveInstances();
  for (const name of ['SpeakerList', 'MicrophoneList', 'CameraResolutionList', 'CameraList', 'WindowList', 'ScreenList',
    'ScreenCaptureModeList', 'LocalMediaTranscodingSourceList', 'StringVector', 'Settings', 'VideoFrame']) {
    assert.equal(typeof counts[name], 'number', name);
  }
  assert.equal(counts.Settings, 0, 'startProbe frees its Settings');
  assert.equal(counts.VideoFrame, 0, 'delivered frames are freed');
});
