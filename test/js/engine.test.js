'use strict';
// Engine and service calls reach the engine with their arguments, in order.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva, control } = require('./lib/orva');

const sdk = orva.OrvaEngine.SDK();

function settings(entries) {
  const result = new orva.Settings();
  for (const [key, value] of Object.entries(entries)) result.add(key, value);
  return result;
}

function journalOf(fn) {
  control().clearJournal();
  fn();
  return control().journal();
}

// [what script does, what the engine's journal records]
const CALLS = [
  [() => sdk.JoinSession('room-1', settings({ a: 'b' })), ['OrvaEngine.JoinSession("room-1", {"a":"b"})']],
  [() => sdk.JoinSession(null, null), ['OrvaEngine.JoinSession(null, null)']],
  [() => sdk.Initialize(settings({ k: 'v' })), ['OrvaEngine.Initialize({"k":"v"})']],
  [() => sdk.ScaleMicrophone(0.25), ['OrvaEngine.ScaleMicrophone(0.25)']],
  [() => sdk.SetMicrophone('mic-guid'), ['OrvaEngine.SetMicrophone("mic-guid")']],
  [() => sdk.SetMicrophone(1), ['OrvaEngine.SetMicrophone(1)']],
  [() => sdk.EnableAudioAGC(true), ['OrvaEngine.EnableAudioAGC(true)']],
  [() => sdk.EnableAudioAGC(false, 3), ['OrvaEngine.EnableAudioAGC(false, 3)']],
  [() => sdk.StopRender(), ['OrvaEngine.StopRender()']],
  [() => sdk.StopRender('peer'), ['OrvaEngine.StopRender("peer")']],
  [() => sdk.PublishVideo(orva.ScreenCaptureSource, 'screen-1'), ['OrvaEngine.PublishVideo(3, "screen-1")']],
  [() => sdk.SetCameraRotation(orva.kVideoRotation_270), ['OrvaEngine.SetCameraRotation(270)']],
  [() => sdk.MuteOtherAudio('peer', true), ['OrvaEngine.MuteOtherAudio("peer", true)']],
  [() => sdk.Device().OpenCamera(1), ['OrvaEngine.Device()', 'MediaDevice.OpenCamera(1)']],
  [() => sdk.RealtimeChannel().PublishAudio(orva.MicrophoneSource),
    ['OrvaEngine.RealtimeChannel()', 'RealtimeChannel.PublishAudio(0)']],
  [() => sdk.GroupChannel().StopAllPlayout(true), ['OrvaEngine.GroupChannel()', 'GroupChannel.StopAllPlayout(true)']],
  [() => sdk.Audio().SeekFile(3, 500), ['OrvaEngine.Audio()', 'AudioService.SeekFile(3, 500)']],
  [() => sdk.MediaTranscoder().setRenderFPS(15), ['OrvaEngine.MediaTranscoder()', 'LocalMediaTranscoder.setRenderFPS(15)']],
  [() => sdk.BeautyEngine().SetBeautyParam('smooth', '0.5'),
    ['OrvaEngine.BeautyEngine()', 'IBeautyEngine.SetBeautyParam("smooth", "0.5")']],
  [() => sdk.MediaService().SetNetworkType(orva.kNetworkTypeWIFI),
    ['OrvaEngine.MediaService()', 'IMediaService.SetNetworkType(2)']],
  [() => sdk.MediaService().Live().StartLive('rtmp://example/live'),
    ['OrvaEngine.MediaService()', 'IMediaService.Live()', 'MediaLive.StartLive("rtmp://example/live")']],
  [() => orva.RtcEngine.SDK().GetVersion(), ['RtcEngine.SDK()', 'RtcEngine.GetVersion()']],
];

test('engine and service calls reach the engine with their arguments', () => {
  for (const [call, expected] of CALLS) assert.deepEqual(journalOf(call), expected, call.toString());
});

test('records and lists reach the engine by value', () => {
  const window = new orva.Window();
  window.id = 65538;
  window.title = 'Browser';
  Object.assign(window.rect, { x: 1, y: 2, width: 3, height: 4 });
  assert.deepEqual(journalOf(() => sdk.StartCaptureWindow(window, 2)),
    ['OrvaEngine.StartCaptureWindow({id:65538,title:"Browser",rect:{x:1,y:2,width:3,height:4}}, 2)']);
  const params = new orva.CameraCaptureParams();
  params.width = 1280;
  assert.deepEqual(journalOf(() => sdk.SetCameraCaptureParams('cam', params)),
    ['OrvaEngine.SetCameraCaptureParams("cam", {mode:0,width:1280,height:0,maxfps:0,captureType:0})']);
});

test('statuses come back unchanged, texts as copies', () => {
  assert.equal(sdk.SetMicrophoneVolume(150) < 0, true, 'an out-of-range volume is refused');
  assert.equal(sdk.SetMicrophoneVolume(40), 0);
  assert.equal(sdk.GetMicrophoneVolume(), 40);
  assert.equal(typeof sdk.GetVersion(), 'string');
});

test('crash-report statics reach the engine unchanged', () => {
  control().clearCrashReports();
  orva.OrvaEngine.reportOrvaSentryEvent(orva.ERROR_TYPE_CRITICAL, 'tag', '\u4e2d\u6587 text');
  assert.deepEqual(control().crashReports(), [{ type: 3, tag: 'tag', message: '\u4e2d\u6587 text' }]);
});

test('sub-objects are borrowed: the same object every time', () => {
  assert.ok(sdk.Device().equals(sdk.Device()));
  assert.ok(orva.OrvaEngine.SDK().equals(sdk));
  assert.ok(sdk.MediaService().equals(orva.RtcEngine.SDK().MediaService()));
});

test('lists come back as new copies that script owns', () => {
  const cameras = sdk.Cameras();
  const count = cameras.Size();
  assert.ok(count >= 2);
  cameras.Add(new orva.Camera());
  cameras.Get(0).name = 'renamed';
  assert.equal(sdk.Cameras().Size(), count, "changing the copy leaves the engine's devices alone");
  assert.notEqual(sdk.Cameras().Get(0).name, 'renamed');
  assert.ok(!sdk.Cameras().equals(sdk.Cameras()));
  assert.ok(sdk.Device().Cameras().Size() >= 2);
});
