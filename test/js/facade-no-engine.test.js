'use strict';
// A wrapper made with `new` has no engine before `initialize`: every member
// answers its fixed value and none reaches the engine. Argument errors of the
// facade's members use the uniform messages.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva, control, thrown } = require('./lib/orva');
const { settings, journalOf } = require('./lib/facade');

const window = new orva.Rect(); // any proxy stands for a native window handle
const NO_DEVICE = { name: '', guid: '', index: -1, isDefault: false, isCommunicationDefault: false };

function screenSource(type) {
  return Object.assign(new orva.ScreenCaptureSourceInfo(), { type, id: '1', title: 'Screen', mode: 0 });
}

const record = (value) => Object.fromEntries(Object.keys(value).map((key) => [key, value[key]]));
/** The script class (its template's name) and the length of a list or vector. */
const classAndSize = (list) => [list.constructor.name, typeof list.Size === 'function' ? list.Size() : list.size()];

// [member, call, what it answers without an engine]
const ANSWERS = [
  ['getSDK', (w) => w.getSDK(), null],
  ['getLastError', (w) => w.getLastError(), -100],
  ['enterRoom', (w) => w.enterRoom('room-1', settings({ a: 'b' })), -1],
  ['getCurrentMicDeviceVolume', (w) => w.getCurrentMicDeviceVolume(), 0],
  ['getSystemMicVolume', (w) => w.getSystemMicVolume(), 0],
  ['getCurrentSpeakerVolume', (w) => w.getCurrentSpeakerVolume(), 0],
  ['getSystemSpeakerVolume', (w) => w.getSystemSpeakerVolume(), 0],
  ['getCurrentMicDeviceMute', (w) => w.getCurrentMicDeviceMute(), false],
  ['getSystemMicMute', (w) => w.getSystemMicMute(), false],
  ['getCurrentSpeakerDeviceMute', (w) => w.getCurrentSpeakerDeviceMute(), false],
  ['getSystemSpeakerMute', (w) => w.getSystemSpeakerMute(), false],
  ['isSupportHevcEncode', (w) => w.isSupportHevcEncode(), false],
  ['getAGCStatus', (w) => w.getAGCStatus(), false],
  ['getAECStatus', (w) => w.getAECStatus(), false],
  ['getANSStatus', (w) => w.getANSStatus(), false],
  ['getStereoMicrophoneStatus', (w) => w.getStereoMicrophoneStatus(), false],
  ['getCurrentMicDevice', (w) => record(w.getCurrentMicDevice()), NO_DEVICE],
  ['getSystemMicDevice', (w) => record(w.getSystemMicDevice()), NO_DEVICE],
  ['getCurrentSpeakerDevice', (w) => record(w.getCurrentSpeakerDevice()), NO_DEVICE],
  ['getSystemSpeakerDevice', (w) => record(w.getSystemSpeakerDevice()), NO_DEVICE],
  ['GetAdapterInfo', (w) => record(w.GetAdapterInfo()), { description: '', vendorId: 0, deviceId: 0, dedicatedVideoMemory: 0 }],
  ['getMicDevicesList', (w) => classAndSize(w.getMicDevicesList()), ['_exports_MicrophoneList', 0]],
  ['getSpeakerDevicesList', (w) => classAndSize(w.getSpeakerDevicesList()), ['_exports_SpeakerList', 0]],
  ['getCameraDevicesList', (w) => classAndSize(w.getCameraDevicesList()), ['_exports_CameraList', 0]],
  ['getScreenList', (w) => classAndSize(w.getScreenList()), ['_exports_ScreenVector', 0]],
  ['getWindowList', (w) => classAndSize(w.getWindowList()), ['_exports_WindowVector', 0]],
  ['getScreenCaptureSources', (w) => w.getScreenCaptureSources(), []],
  ['isSupportShareTexture', (w) => w.isSupportShareTexture('Loopback Display Adapter luid_1_0'), false],
  ['setLogDirPath', (w) => w.setLogDirPath('/tmp/orva-facade-unused'), undefined],
  ['destroy', (w) => w.destroy(), undefined],
  ['setCameraVideoProcessor', (w) => w.setCameraVideoProcessor(null), undefined],
  ['setMixedVideoRenderView', (w) => w.setMixedVideoRenderView(window), undefined],
  ['setJsMixedVideoRenderView', (w) => w.setJsMixedVideoRenderView(65537), undefined],
  ['setRemoteVideoRenderView', (w) => w.setRemoteVideoRenderView(window), undefined],
  ['exitRoom', (w) => w.exitRoom(), undefined],
  ['publishAudio', (w) => w.publishAudio(orva.MicrophoneSource), undefined],
  ['unPublishAudio', (w) => w.unPublishAudio(), undefined],
  ['publishVideo', (w) => w.publishVideo(orva.CameraSource), undefined],
  ['unPublishVideo', (w) => w.unPublishVideo(), undefined],
  ['muteLocalAudio', (w) => w.muteLocalAudio(true), undefined],
  ['muteLocalVideo(true)', (w) => w.muteLocalVideo(true, 0), undefined],
  ['muteLocalVideo(false)', (w) => w.muteLocalVideo(false, 0), undefined],
  ['sendSEIMsg', (w) => w.sendSEIMsg('sei', 3), undefined],
  ['setCurrentMicDevice', (w) => w.setCurrentMicDevice('mic-1'), undefined],
  ['setCurrentSpeakerDevice', (w) => w.setCurrentSpeakerDevice('spk-1'), undefined],
  ['setAudioCaptureVolume', (w) => w.setAudioCaptureVolume(10), undefined],
  ['setAudioPlayoutVolume', (w) => w.setAudioPlayoutVolume(10), undefined],
  ['setSystemAudioLoopbackVolume', (w) => w.setSystemAudioLoopbackVolume(10), undefined],
  ['startSystemAudioLoopback', (w) => w.startSystemAudioLoopback('spk-0'), undefined],
  ['stopSystemAudioLoopback', (w) => w.stopSystemAudioLoopback(), undefined],
  ['startScreenSource screen', (w) => w.startScreenSource(screenSource(1)), undefined],
  ['startScreenSource window', (w) => w.startScreenSource(screenSource(0)), undefined],
  ['stopScreenSource screen', (w) => w.stopScreenSource(screenSource(1)), undefined],
  ['stopScreenSource window', (w) => w.stopScreenSource(screenSource(0)), undefined],
  ['updateScreenCaptureProperty', (w) => w.updateScreenCaptureProperty('1', new orva.ScreenCaptureProperty()), undefined],
  ['setVideoMuteImage', (w) => w.setVideoMuteImage('/img/mute.png'), undefined],
  ['setVideoMuteImage with a rate', (w) => w.setVideoMuteImage('/img/mute.png', 5), undefined],
  ['startTranscoding', (w) => w.startTranscoding(new orva.LocalMediaTranscodingParams()), undefined],
  ['updateTranscodingParams', (w) => w.updateTranscodingParams(new orva.LocalMediaTranscodingParams()), undefined],
  ['stopTranscoding', (w) => w.stopTranscoding(), undefined],
  ['startRemoteTranscoding', (w) => w.startRemoteTranscoding(new orva.LocalMediaTranscodingParams()), undefined],
  ['updateRemoteTranscodingParams', (w) => w.updateRemoteTranscodingParams(new orva.LocalMediaTranscodingParams()),
    undefined],
  ['stopRemoteTranscoding', (w) => w.stopRemoteTranscoding(), undefined],
  ['startCameraSource', (w) => w.startCameraSource('cam-0'), undefined],
  ['stopCameraSource', (w) => w.stopCameraSource('cam-0'), undefined],
  ['startCameraSourceWithCaptureParams', (w) => w.startCameraSourceWithCaptureParams('cam-0', new orva.CameraCaptureParams()),
    undefined],
  ['setCameraCaptureParams', (w) => w.setCameraCaptureParams('cam-0', new orva.CameraCaptureParams()), undefined],
  ['setRenderFPS', (w) => w.setRenderFPS(15), undefined],
  ['addImageSource', (w) => w.addImageSource('/img/logo.png'), undefined],
  ['addImageSource with an order', (w) => w.addImageSource('/img/logo.png', 2), undefined],
  ['removeImageSource', (w) => w.removeImageSource('/img/logo.png'), undefined],
  ['enableCameraGreenScreen', (w) => w.enableCameraGreenScreen('cam-0', new orva.SourceGreenInfo()), undefined],
  ['enableBeauty', (w) => w.enableBeauty('cam-0'), undefined],
  ['disableBeauty', (w) => w.disableBeauty('cam-0'), undefined],
  ['setBeautyParameter', (w) => w.setBeautyParameter('smooth', '0.5'), undefined],
  ['enableBeautyParameter', (w) => w.enableBeautyParameter('cam-0', new orva.BeautyInfo()), undefined],
  ['enableBeautySkinSeg', (w) => w.enableBeautySkinSeg('cam-0', true), undefined],
  ['setBeautyFace2DPath', (w) => w.setBeautyFace2DPath('/face'), undefined],
  ['enableCameraVideoProcessor', (w) => w.enableCameraVideoProcessor(true), undefined],
  ['enableCameraVideoYuvOutput', (w) => w.enableCameraVideoYuvOutput(true), undefined],
  ['startCameraRecord', (w) => w.startCameraRecord('cam-0', new orva.CameraRecordInfo()), undefined],
  ['stopCameraRecord', (w) => w.stopCameraRecord('cam-0'), undefined],
  ['enableAudioAGC', (w) => w.enableAudioAGC(true), undefined],
  ['enableAudioAGC with a level', (w) => w.enableAudioAGC(true, 2), undefined],
  ['enableAudioANS', (w) => w.enableAudioANS(true), undefined],
  ['enableAudioANS with a level', (w) => w.enableAudioANS(true, 2), undefined],
  ['enableAudioAEC', (w) => w.enableAudioAEC(true), undefined],
  ['enableStereoMicrophone', (w) => w.enableStereoMicrophone(true), undefined],
  ['enableAudioCaptureFixDelay', (w) => w.enableAudioCaptureFixDelay(true, 100), undefined],
  ['createTraceWindow', (w) => w.createTraceWindow(0, 0, 'trace', false), undefined],
  ['createTraceWindow with flags', (w) => w.createTraceWindow(0, 0, 'trace', false, 1), undefined],
  ['destroyTraceWindow', (w) => w.destroyTraceWindow(), undefined],
  ['updateRtmpUrl', (w) => w.updateRtmpUrl('rtmp://example/live'), undefined],
  ['startRenderVideo', (w) => w.startRenderVideo('peer', window, 1), undefined],
  ['stopRenderVideo', (w) => w.stopRenderVideo('peer'), undefined],
  ['stopAllRenderVideo', (w) => w.stopAllRenderVideo(), undefined],
  ['startPlayAudio', (w) => w.startPlayAudio('peer'), undefined],
  ['stopPlayAudio', (w) => w.stopPlayAudio('peer'), undefined],
  ['stopAllPlayAudio', (w) => w.stopAllPlayAudio(), undefined],
  ['startEchoTest', (w) => w.startEchoTest(orva.Network), undefined],
  ['stopEchoTest', (w) => w.stopEchoTest(orva.Network), undefined],
];

test('before initialize every member answers its no-engine value and reaches no engine', () => {
  const wrapper = new orva.OrvaEngineWrapper();
  control().clearCrashReports();
  for (const [member, call, expected] of ANSWERS) {
    let answer;
    assert.deepEqual(journalOf(() => { answer = call(wrapper); }), [], member);
    assert.deepEqual(answer, expected, member);
  }
  assert.deepEqual(control().crashReports(), []);
  assert.equal(wrapper.getSDK(), null, 'still no engine: destroy does not fetch one');
});

test('a wrapper made with new is not the process-wide one', () => {
  const made = new orva.OrvaEngineWrapper();
  const shared = orva.OrvaEngineWrapper.createOrvaEngine();
  assert.ok(shared.equals(orva.OrvaEngineWrapper.createOrvaEngine()));
  assert.ok(!made.equals(shared));
  assert.ok(!made.equals(new orva.OrvaEngineWrapper()));
});

const wrapper = new orva.OrvaEngineWrapper();
const Wrapper = orva.OrvaEngineWrapper;

// [call, message]
const ARGUMENT_ERRORS = [
  [() => wrapper.enterRoom(5, null), "in method 'OrvaEngineWrapper_enterRoom', argument 2 of type 'std::string const &'"],
  [() => wrapper.enterRoom(null, null),
    "invalid null reference in method 'OrvaEngineWrapper_enterRoom', argument 2 of type 'std::string const &'"],
  [() => wrapper.enterRoom('room-1', {}), "in method 'OrvaEngineWrapper_enterRoom', argument 3 of type 'Orva::Rtc::Settings *'"],
  [() => wrapper.enterRoom('room-1'), 'Illegal number of arguments for _wrap_OrvaEngineWrapper_enterRoom.'],
  [() => wrapper.initialize(new orva.Rect(), null),
    "in method 'OrvaEngineWrapper_initialize', argument 2 of type 'Orva::Rtc::Settings *'"],
  [() => wrapper.initialize(null, new orva.Rect()),
    "in method 'OrvaEngineWrapper_initialize', argument 3 of type 'Orva::Rtc::OrvaEngineListener *'"],
  [() => wrapper.getLastError(1), 'Illegal number of arguments for _wrap_OrvaEngineWrapper_getLastError.'],
  [() => Wrapper.prototype.getLastError.call(new orva.Rect()),
    "in method 'OrvaEngineWrapper_getLastError', argument 1 of type 'Orva::Rtc::OrvaEngineWrapper *'"],
  [() => wrapper.muteLocalVideo(1, 0), "in method 'OrvaEngineWrapper_muteLocalVideo', argument 2 of type 'bool'"],
  [() => wrapper.muteLocalVideo(true, '0'),
    "in method 'OrvaEngineWrapper_muteLocalVideo', argument 3 of type 'Orva::Rtc::VideoStreamType'"],
  [() => wrapper.sendSEIMsg('sei', '3'), "in method 'OrvaEngineWrapper_sendSEIMsg', argument 3 of type 'int'"],
  [() => wrapper.setJsMixedVideoRenderView(-1),
    "in method 'OrvaEngineWrapper_setJsMixedVideoRenderView', argument 2 of type 'uint32_t'"],
  [() => wrapper.setJsMixedVideoRenderView(2147483648),
    "in method 'OrvaEngineWrapper_setJsMixedVideoRenderView', argument 2 of type 'uint32_t'"],
  [() => wrapper.setMixedVideoRenderView(5), "in method 'OrvaEngineWrapper_setMixedVideoRenderView', argument 2 of type 'void *'"],
  [() => wrapper.startRenderVideo('peer', null, 'x'), "in method 'OrvaEngineWrapper_startRenderVideo', argument 4 of type 'int'"],
  [() => wrapper.setCameraVideoProcessor(new orva.Rect()),
    "in method 'OrvaEngineWrapper_setCameraVideoProcessor', argument 2 of type 'Orva::Rtc::VideoFrameProcessor *'"],
  [() => wrapper.startScreenSource(null),
    "invalid null reference in method 'OrvaEngineWrapper_startScreenSource', argument 2 of type " +
    "'Orva::Rtc::ScreenCaptureSourceInfo const &'"],
  [() => wrapper.stopScreenSource(new orva.Rect()),
    "in method 'OrvaEngineWrapper_stopScreenSource', argument 2 of type 'Orva::Rtc::ScreenCaptureSourceInfo const &'"],
  [() => wrapper.startCameraSourceWithCaptureParams('cam-0', null),
    "invalid null reference in method 'OrvaEngineWrapper_startCameraSourceWithCaptureParams', argument 3 of type " +
    "'Orva::Rtc::CameraCaptureParams &'"],
  [() => wrapper.enableBeautySkinSeg('cam-0', 'yes'), "in method 'OrvaEngineWrapper_enableBeautySkinSeg', argument 3 of type 'bool'"],
  [() => wrapper.startEchoTest('1'), "in method 'OrvaEngineWrapper_startEchoTest', argument 2 of type 'Orva::Rtc::EchoCheckType'"],
  [() => wrapper.isSupportShareTexture(1),
    "in method 'OrvaEngineWrapper_isSupportShareTexture', argument 2 of type 'std::string const &'"],
  [() => wrapper.addImageSource(1), 'Illegal arguments for function addImageSource.'],
  [() => wrapper.addImageSource(), 'Illegal arguments for function addImageSource.'],
  [() => wrapper.setVideoMuteImage('/img/mute.png', '5'), 'Illegal arguments for function setVideoMuteImage.'],
  [() => wrapper.enableAudioAGC(1), 'Illegal arguments for function enableAudioAGC.'],
  [() => wrapper.enableAudioANS(true, 1, 2), 'Illegal arguments for function enableAudioANS.'],
  [() => wrapper.createTraceWindow(0, 0, 'trace', 1), 'Illegal arguments for function createTraceWindow.'],
  [() => new Wrapper(1), 'Illegal number of arguments for _wrap_new_OrvaEngineWrapper.'],
  [() => Wrapper.createOrvaEngine(1), 'Illegal number of arguments for _wrap_OrvaEngineWrapper_createOrvaEngine.'],
  [() => Wrapper.createOrvaSentry({}), "in method 'OrvaEngineWrapper_createOrvaSentry', argument 1 of type 'Orva::Rtc::Settings *'"],
  [() => Wrapper.enableOrvaSentry(1), "in method 'OrvaEngineWrapper_enableOrvaSentry', argument 1 of type 'bool'"],
  [() => Wrapper.reportOrvaSentryEvent('x', 'orva', 'text'),
    "in method 'OrvaEngineWrapper_reportOrvaSentryEvent', argument 1 of type 'Orva::Rtc::SentryReportType'"],
  [() => Wrapper.reportOrvaSentryEvent(1, 2, 'text'),
    "in method 'OrvaEngineWrapper_reportOrvaSentryEvent', argument 2 of type 'std::string const &'"],
  [() => Wrapper.getScreenCaptureModeList(1), 'Illegal number of arguments for _wrap_OrvaEngineWrapper_getScreenCaptureModeList.'],
];

test("argument errors of the facade's members use the uniform messages and reach no engine", () => {
  for (const [call, message] of ARGUMENT_ERRORS) {
    let text;
    assert.deepEqual(journalOf(() => { text = thrown(call); }), [], message);
    assert.equal(text, message);
  }
});
