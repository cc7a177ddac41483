'use strict';
// orva-engine/testing used the way an application's tests use it: the
// example of docs/testing.md run as it stands, every scenario verb against
// the events the application receives, and misuse.
const test = require('node:test');
const assert = require('node:assert/strict');
require('./lib/orva'); // the build folder the suite runs on
const orva = require('orva-engine');
const testing = require('orva-engine/testing');

// --- The application under test (as in docs/testing.md) ----------------------

function startApp() {
  const engine = orva.OrvaEngineWrapper.createOrvaEngine();
  const app = { engine, status: 'offline', events: [] };
  engine.setCallback((name, int1, int2, int3, str1) => {
    app.events.push(name);
    if (name === 'OnStreamAdd' && int1 === orva.AudioStream) engine.startPlayAudio(str1);
    if (name === 'OnSessionStateChanged') app.status = int1 === orva.Retrying ? 'reconnecting' : 'online';
  });
  const settings = new orva.Settings();
  settings.add('environment', 'prod');
  engine.initialize(settings, null);
  return app;
}

async function until(condition, timeoutMs = 2000) {
  const deadline = Date.now() + timeoutMs;
  while (!condition()) {
    if (Date.now() > deadline) throw new Error('timed out');
    await new Promise((resolve) => setTimeout(resolve, 5));
  }
}

// --- The example -------------------------------------------------------------

let app;
test.beforeEach(() => {
  app = startApp();
});
test.afterEach(() => {
  app.engine.destroy();
  testing.reset();
});

test('the app plays the audio of a remote user who joins', async () => {
  testing.remoteUserJoins('alice');
  const played = await testing.waitForCall('OrvaEngine.startPlayAudio');
  assert.deepEqual(played.args, ['alice']);
});

test('the app shows a dropped session until it comes back', async () => {
  testing.sessionDrops('room-1');
  await until(() => app.status === 'reconnecting');
  testing.sessionReturns('room-1');
  await until(() => app.status === 'online');
  assert.deepEqual(testing.calls('startPlayAudio'), [], 'the previous test left nothing behind');
});

// --- Every verb: [verb, arguments, events in order, crash reports] ------------

const VERBS = [
  ['remoteUserJoins', ['bob'], ['OnStreamAdd', 'OnStreamAdd', 'OnAudioEvent', 'OnVideoEvent', 'OnVideoSizeFirst'], 0],
  ['remoteUserLeaves', ['bob'], ['OnStreamRemove', 'OnStreamRemove'], 0],
  ['remoteUserPublishes', ['bob', 'audio'], ['OnStreamAdd', 'OnAudioEvent'], 0],
  ['remoteUserPublishes', ['bob', 'video'], ['OnStreamAdd', 'OnVideoEvent', 'OnVideoSizeFirst'], 0],
  ['remoteUserUnpublishes', ['bob', 'video'], ['OnStreamRemove'], 0],
  ['networkStats', [{ LiveRtt: 80, CpuAppUsage: 0.5, remoteStatistics: [{ userId: 'bob', finalLoss: 3 }] }],
    ['OnNetworkStats'], 0],
  ['voiceVolumes', [[{ userId: 'bob', microphone_volume: 40 }]], ['OnUserVoiceVolume'], 0],
  ['devicePlugged', ['camera', 'cam-9'], ['onDeviceChange'], 0],
  ['deviceUnplugged', ['microphone', 'mic-1'], ['onDeviceChange'], 0],
  ['cameraFails', ['cam-0'], ['OnCameraSourceError'], 0],
  ['microphoneFails', ['mic-0'], ['onMicSourceError'], 0],
  ['screenFails', ['1', orva.SCREEN_CAPTURE_ERROR], ['OnScreenSourceError'], 1],
  ['sessionDrops', ['room-1'], ['OnSessionStateChanged'], 0],
  ['echoResult', [{ network_result: 1, info: { note: 'ok' } }], ['OnEchoResult'], 0],
  ['reportableError', [], ['OnCameraSourceError'], 1],
];

test('each verb raises its events in order, and crash reports where the app makes them', async () => {
  for (const [verb, args, events, reports] of VERBS) {
    app.events.length = 0;
    testing.control.clearCrashReports();
    testing[verb](...args);
    testing.raise('MediaChannelListener', 'OnMediaChannelTerminate'); // marks the end
    await until(() => app.events.includes('OnMediaChannelTerminate'));
    assert.deepEqual(app.events.slice(0, -1), events, verb);
    assert.equal(testing.crashReports().length, reports, `${verb}: ${JSON.stringify(testing.crashReports())}`);
  }
});

// --- Reading the journal -----------------------------------------------------

test('journal lines read back as operations and argument values', () => {
  const LINES = [
    ['OrvaEngine.enterRoom("r\\"1", {"loopback.join.delay.ms":"5"})', 'OrvaEngine.enterRoom', ['r"1', { 'loopback.join.delay.ms': '5' }]],
    ['MediaDevice.setCameraCaptureParams("cam-0", {width:640,ratio:1.5,list:[1,-2],inner:{on:true}})',
      'MediaDevice.setCameraCaptureParams', ['cam-0', { width: 640, ratio: 1.5, list: [1, -2], inner: { on: true } }]],
    ['OrvaEngine.setMixedVideoRenderView(0x7f00, null)', 'OrvaEngine.setMixedVideoRenderView', ['0x7f00', null]],
    ['OrvaEngine.SDK()', 'OrvaEngine.SDK', []],
  ];
  for (const [line, operation, args] of LINES) assert.deepEqual(testing.parseRecord(line), {
    operation, interface: operation.split('.')[0], member: operation.split('.')[1], args, line,
  });
});

// --- Misuse ------------------------------------------------------------------

test('misuse throws what is wrong instead of raising something else', async () => {
  const MISUSE = [
    [() => testing.raise('Nobody', 'OnThing'), TypeError, /no listener method Nobody\.OnThing; the faces are /],
    [() => testing.raise('AudioServiceListener', 'OnPlayFileStar', 1, 2), TypeError, /AudioServiceListener has .*OnPlayFileStart/],
    [() => testing.raise('AudioServiceListener', 'OnPlayFileStart', '1', 2), TypeError, /argument 1: expected a 32-bit integer, got "1"/],
    [() => testing.raise('AudioServiceListener', 'OnPlayFileStart', 1), TypeError, /expected 2 arguments, got 1/],
    [() => testing.raise('IMediaDeviceCallback', 'onAudioDeviceCaptureVolumeChanged', 5, 1), TypeError, /expected a boolean/],
    [() => testing.networkStats({ Rtt: 5 }), TypeError, /NetworkStats has no field Rtt/],
    [() => testing.networkStats({ remoteStatistics: [{ userId: 7 }] }), TypeError, /remoteStatistics\[0\]\.userId: expected a string or null/],
    [() => testing.devicePlugged('webcam', 'x'), TypeError, /expected one of speaker, microphone, camera/],
    [() => testing.remoteUserPublishes('bob', 'screen'), TypeError, /expected 'audio' or 'video'/],
  ];
  for (const [fn, type, message] of MISUSE) assert.throws(fn, (error) => error.constructor === type && message.test(error.message));
  await assert.rejects(testing.waitForCall('OrvaEngine.exitRoom', { timeoutMs: 20 }),
    /waited 20 ms for OrvaEngine\.exitRoom in the engine's journal; it holds \d+ calls, the last:/);
  app.engine.destroy();
  assert.throws(() => testing.remoteUserJoins('bob'), /engine is not running; the application must call initialize\(\)/);
});
