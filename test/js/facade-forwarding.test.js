'use strict';
// The process-wide facade reaches the engine: initialize, every forwarding
// member with its arguments, the members that make several engine calls, a
// session, the frames of local transcoding and destroy.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva, control, thrown } = require('./lib/orva');
const { settings, FAST_PROD, callsOf, journalOf, low32, waitFor } = require('./lib/facade');

const engine = orva.OrvaEngineWrapper.createOrvaEngine();
const events = [];
const onEvent = (...args) => events.push(args);

test.after(() => engine.destroy());

// --- Records the members take, and how the journal writes them -------------

const window = new orva.Rect(); // any proxy stands for a native window handle

function captureParams() {
  const params = new orva.CameraCaptureParams();
  Object.assign(params, { mode: orva.CameraCaptureMode_HighQuality, width: 1280, height: 720, maxfps: 30 });
  params.captureType = orva.CaptureDataType_CaptureDataTypeI420;
  return params;
}
const CAPTURE_TEXT = '{mode:2,width:1280,height:720,maxfps:30,captureType:3}';

function greenInfo() {
  return Object.assign(new orva.SourceGreenInfo(), { green_enable: true, green_threshold: 0.25, green_color: 65280 });
}
const GREEN_TEXT = '{green_enable:true,green_threshold:0.25,green_color:65280}';

function beautyInfo() {
  return Object.assign(new orva.BeautyInfo(), {
    aiModelPath: '/models/ai', beautyResPathV3: '/models/v3', version: 3, skinSegPath: '/models/seg',
  });
}
const BEAUTY_TEXT =
  '{aiModelPath:"/models/ai",beautyResPathV2:"",beautyResPathV3:"/models/v3",filterResPath:"",version:3,skinSegPath:"/models/seg"}';

function recordInfo() {
  return Object.assign(new orva.CameraRecordInfo(), {
    fps: 25, bitrate: 2000, path: '/rec', mp4path: '/rec/a.mp4', pngpath: '/rec/a.png',
  });
}
const RECORD_TEXT = '{fps:25,bitrate:2000,path:"/rec",mp4path:"/rec/a.mp4",mp4path2:"",pngpath:"/rec/a.png",pngpath2:""}';

function captureProperty() {
  return Object.assign(new orva.ScreenCaptureProperty(), {
    enableCaptureMouse: true, enableHighPerformance: true, highLightColor: 16711680, highLightWidth: 3,
  });
}
const PROPERTY_TEXT =
  '{enableCaptureMouse:true,enableHighLight:false,enableHighPerformance:true,highLightColor:16711680,' +
  'highLightWidth:3,enableCaptureChildWindow:false}';

function transcodingParams() {
  const params = new orva.LocalMediaTranscodingParams();
  const image = new orva.LocalMediaTranscodingSource();
  image.sourceType = orva.kLocalMediaTranscodingSourceType_MediaSourceImage;
  image.imagePath = '/img/logo.png';
  Object.assign(image.rect, { x: 8, y: 4, width: 320, height: 180 });
  image.zOrder = 1;
  params.inputSourceList.Add(image);
  Object.assign(params.videoEncoderParams, { width: 640, height: 360, fps: 15 });
  params.canvasColor = 255;
  params.autoSized = true;
  return params;
}
const PARAMS_TEXT =
  '{inputSourceList:[{sourceType:2,cameraDeviceId:"",screenSourceId:"",imagePath:"/img/logo.png",userId:"",' +
  'rect:{x:8,y:4,width:320,height:180},zOrder:1,renderParams:{mirror:false,rotation:0,alpha:0},' +
  'greenParams:{green_enable:false,green_threshold:0,green_color:0},enableGreen:false,fillMode:0}],' +
  'videoEncoderParams:{width:640,height:360,fps:15,minBitrate:0,input_width:0,input_height:0,canvas_width:0,' +
  'canvas_height:0,targetBitrate:0},canvasColor:255,addVisibility:false,hideOther:false,autoSized:true,' +
  'updateVideoEncParam:false}';

/** The lines of `fn`, with the pointer of `window` written as <window>. */
function callsWithWindow(fn) {
  return callsOf(fn).map((line) =>
    line.replace(/0x[0-9a-f]+/g, (pointer) => (low32(pointer) === window.getCPtr() ? '<window>' : pointer)));
}

/** A script value as plain data: lists as arrays, records as objects. */
function plain(value) {
  if (value === null || typeof value !== 'object') return value;
  if (typeof value.Size === 'function') {
    return Array.from({ length: value.Size() }, (_, i) => plain(value.Get(i)));
  }
  return Object.fromEntries(Object.keys(value).sort().map((key) => [key, plain(value[key])]));
}

const INITIALIZE_LINE = /^OrvaEngine\.initialize\((\{.*\}), (0x[0-9a-f]+)\)$/;
let handlerPointer;

// --- Tests ----------------------------------------------------------------

test('the process-wide wrapper has no engine until setCallback fetches it', () => {
  assert.ok(orva.OrvaEngineWrapper.createOrvaEngine().equals(engine), 'one wrapper per process');
  assert.equal(engine.getSDK(), null);
  assert.deepEqual(journalOf(() => assert.equal(engine.getLastError(), -100)), []);
  assert.deepEqual(journalOf(() => engine.setCallback(onEvent)), ['OrvaEngine.SDK()']);
  assert.ok(engine.getSDK().equals(orva.OrvaEngine.SDK()));
  assert.deepEqual(journalOf(() => engine.setCallback(onEvent)), [], 'asks nothing once the wrapper has an engine');
});

test("initialize fetches the engine, updates crash reports, then starts the engine with the wrapper's own handler", () => {
  const listener = new orva.OrvaEngineListener();
  const entries = settings(FAST_PROD);
  let result;
  const lines = journalOf(() => { result = engine.initialize(entries, listener); });
  assert.equal(result, 0);
  const text = '{"environment":"prod","loopback.join.delay.ms":"5","loopback.peer.delay.ms":"5"}';
  assert.equal(lines.length, 3, lines.join('\n'));
  assert.equal(lines[0], 'OrvaEngine.SDK()');
  assert.equal(lines[1], `OrvaEngine.updateOrvaSentry(${text})`);
  const [, initialized, pointer] = INITIALIZE_LINE.exec(lines[2]) ?? [];
  assert.equal(initialized, text, lines[2]);
  assert.notEqual(low32(pointer), listener.getCPtr(), "the script's listener is not passed on");
  handlerPointer = pointer;

  // Again, without a listener: every step once more, the same handler.
  const again = journalOf(() => { result = engine.initialize(settings(FAST_PROD), null); });
  assert.equal(result, 0);
  assert.deepEqual(again, [
    'OrvaEngine.SDK()',
    `OrvaEngine.updateOrvaSentry(${text})`,
    `OrvaEngine.initialize(${text}, ${handlerPointer})`,
  ]);
});

// [member, call, the engine's journal]
const FORWARDED = [
  ['publishAudio', () => engine.publishAudio(orva.MicrophoneAndSpeakerSource), ['OrvaEngine.publishAudio(1)']],
  ['unPublishAudio', () => engine.unPublishAudio(), ['OrvaEngine.unPublishAudio()']],
  ['publishVideo', () => engine.publishVideo(orva.ScreenCaptureSource), ['OrvaEngine.publishVideo(3)']],
  ['unPublishVideo', () => engine.unPublishVideo(), ['OrvaEngine.unPublishVideo()']],
  ['muteLocalAudio(true)', () => engine.muteLocalAudio(true), ['OrvaEngine.muteLocalAudio(true)']],
  ['muteLocalAudio(false)', () => engine.muteLocalAudio(false), ['OrvaEngine.muteLocalAudio(false)']],
  ['muteLocalVideo(true) unpublishes', () => engine.muteLocalVideo(true, orva.VideoStreamType_VideoStreamTypeSmall),
    ['OrvaEngine.unPublishVideo()']],
  ['muteLocalVideo(false) publishes the mixed source', () => engine.muteLocalVideo(false, orva.VideoStreamType_VideoStreamTypeSub),
    ['OrvaEngine.publishVideo(4, 2)']],
  ['muteLocalVideo(false) keeps the stream type', () => engine.muteLocalVideo(false, orva.VideoStreamType_VideoStreamTypeBig),
    ['OrvaEngine.publishVideo(4, 0)']],
  ['exitRoom', () => engine.exitRoom(),
    ['OrvaEngine.unPublishAudio()', 'OrvaEngine.unPublishVideo()', 'OrvaEngine.exitRoom()']],
  ['sendSEIMsg count 0', () => engine.sendSEIMsg('sei', 0), []],
  ['sendSEIMsg count -2', () => engine.sendSEIMsg('sei', -2), []],
  ['sendSEIMsg count 1', () => engine.sendSEIMsg('sei', 1), ['OrvaEngine.sendSEIMsg("sei")']],
  ['sendSEIMsg count 3', () => engine.sendSEIMsg('{"k":1}', 3), Array(3).fill('OrvaEngine.sendSEIMsg("{\\"k\\":1}")')],
  ['setCurrentMicDevice', () => engine.setCurrentMicDevice('mic-1'), ['OrvaEngine.setCurrentMicDevice("mic-1")']],
  ['setCurrentSpeakerDevice', () => engine.setCurrentSpeakerDevice('spk-1'), ['OrvaEngine.setCurrentSpeakerDevice("spk-1")']],
  ['setAudioCaptureVolume', () => engine.setAudioCaptureVolume(40), ['OrvaEngine.setAudioCaptureVolume(40)']],
  ['setAudioPlayoutVolume', () => engine.setAudioPlayoutVolume(-5), ['OrvaEngine.setAudioPlayoutVolume(-5)']],
  ['setSystemAudioLoopbackVolume', () => engine.setSystemAudioLoopbackVolume(100),
    ['OrvaEngine.setSystemAudioLoopbackVolume(100)']],
  ['startSystemAudioLoopback', () => engine.startSystemAudioLoopback('spk-1'), [
    'OrvaEngine.setSystemAudioLoopbackDevice("spk-1")',
    'OrvaEngine.enableSystemAudioLoopback("spk-1")',
    'OrvaEngine.startSystemAudioLoopback()',
  ]],
  ['stopSystemAudioLoopback', () => engine.stopSystemAudioLoopback(),
    ['OrvaEngine.enableSystemAudioLoopback("")', 'OrvaEngine.setSystemAudioLoopbackDevice()']],
  ['updateScreenCaptureProperty', () => engine.updateScreenCaptureProperty('65538', captureProperty()),
    [`OrvaEngine.updateScreenCaptureProperty("65538", ${PROPERTY_TEXT})`]],
  ['setCameraVideoProcessor(null)', () => engine.setCameraVideoProcessor(null), ['OrvaEngine.setCameraVideoProcessor(null)']],
  ['setMixedVideoRenderView', () => engine.setMixedVideoRenderView(window), ['OrvaEngine.setMixedVideoRenderView(<window>)']],
  ['setMixedVideoRenderView(null)', () => engine.setMixedVideoRenderView(null), ['OrvaEngine.setMixedVideoRenderView(null)']],
  ['setJsMixedVideoRenderView with a number that is no window', () => engine.setJsMixedVideoRenderView(65537), []],
  ['setRemoteVideoRenderView', () => engine.setRemoteVideoRenderView(window), ['OrvaEngine.setRemoteVideoRenderView(<window>)']],
  ['startRenderVideo', () => engine.startRenderVideo('loopback-peer', window, 2),
    ['OrvaEngine.startRenderVideo("loopback-peer", <window>, 2)']],
  ['stopRenderVideo', () => engine.stopRenderVideo('loopback-peer'), ['OrvaEngine.stopRenderVideo("loopback-peer")']],
  ['stopAllRenderVideo', () => engine.stopAllRenderVideo(), ['OrvaEngine.stopAllRenderVideo()']],
  ['startPlayAudio', () => engine.startPlayAudio('loopback-peer'), ['OrvaEngine.startPlayAudio("loopback-peer")']],
  ['stopPlayAudio', () => engine.stopPlayAudio('loopback-peer'), ['OrvaEngine.stopPlayAudio("loopback-peer")']],
  ['stopAllPlayAudio', () => engine.stopAllPlayAudio(), ['OrvaEngine.stopAllPlayAudio()']],
  ['setVideoMuteImage with the default rate', () => engine.setVideoMuteImage('/img/mute.png'),
    ['OrvaEngine.setVideoMuteImage("/img/mute.png", 15)']],
  ['setVideoMuteImage with a rate', () => engine.setVideoMuteImage('/img/mute.png', 5),
    ['OrvaEngine.setVideoMuteImage("/img/mute.png", 5)']],
  ['updateTranscodingParams', () => engine.updateTranscodingParams(transcodingParams()),
    [`OrvaEngine.updateTranscodingParams(${PARAMS_TEXT})`]],
  ['stopTranscoding', () => engine.stopTranscoding(), ['OrvaEngine.stopTranscoding()']],
  ['startRemoteTranscoding', () => engine.startRemoteTranscoding(transcodingParams()),
    [`OrvaEngine.startRemoteTranscoding(${PARAMS_TEXT})`]],
  ['updateRemoteTranscodingParams', () => engine.updateRemoteTranscodingParams(transcodingParams()),
    [`OrvaEngine.updateRemoteTranscodingParams(${PARAMS_TEXT})`]],
  ['stopRemoteTranscoding', () => engine.stopRemoteTranscoding(), ['OrvaEngine.stopRemoteTranscoding()']],
  ['startCameraSource', () => engine.startCameraSource('cam-0'), ['OrvaEngine.startCameraSource("cam-0")']],
  ['stopCameraSource', () => engine.stopCameraSource('cam-0'), ['OrvaEngine.stopCameraSource("cam-0")']],
  ['startCameraSourceWithCaptureParams', () => engine.startCameraSourceWithCaptureParams('cam-1', captureParams()),
    [`OrvaEngine.startCameraSourceWithCaptureParams("cam-1", ${CAPTURE_TEXT})`]],
  ['setCameraCaptureParams', () => engine.setCameraCaptureParams('cam-1', captureParams()),
    [`OrvaEngine.setCameraCaptureParams("cam-1", ${CAPTURE_TEXT})`]],
  ['setRenderFPS', () => engine.setRenderFPS(24), ['OrvaEngine.setRenderFPS(24)']],
  ['addImageSource with the default order', () => engine.addImageSource('/img/logo.png'),
    ['OrvaEngine.addImageSource("/img/logo.png", 0)']],
  ['addImageSource with an order', () => engine.addImageSource('/img/logo.png', 7),
    ['OrvaEngine.addImageSource("/img/logo.png", 7)']],
  ['removeImageSource', () => engine.removeImageSource('/img/logo.png'), ['OrvaEngine.removeImageSource("/img/logo.png")']],
  ['enableCameraGreenScreen', () => engine.enableCameraGreenScreen('cam-0', greenInfo()),
    [`OrvaEngine.enableCameraGreenScreen("cam-0", ${GREEN_TEXT})`]],
  ['enableBeauty', () => engine.enableBeauty('cam-0'), ['OrvaEngine.enableBeauty("cam-0")']],
  ['disableBeauty', () => engine.disableBeauty('cam-0'), ['OrvaEngine.disableBeauty("cam-0")']],
  ['setBeautyParameter', () => engine.setBeautyParameter('smooth', '0.5'), ['OrvaEngine.setBeautyParameter("smooth", "0.5")']],
  ['enableBeautyParameter', () => engine.enableBeautyParameter('cam-0', beautyInfo()),
    [`OrvaEngine.enableBeautyParameter("cam-0", ${BEAUTY_TEXT})`]],
  ['enableBeautySkinSeg', () => engine.enableBeautySkinSeg('cam-0', true), ['OrvaEngine.enableBeautySkinSeg("cam-0", true)']],
  ['setBeautyFace2DPath with quotes, backslashes and UTF-8', () => engine.setBeautyFace2DPath('C:\\face "2d"\\\u4e2d\u6587'),
    ['OrvaEngine.setBeautyFace2DPath("C:\\\\face \\"2d\\"\\\\\u4e2d\u6587")']],
  ['enableCameraVideoProcessor', () => engine.enableCameraVideoProcessor(true), ['OrvaEngine.enableCameraVideoProcessor(true)']],
  ['enableCameraVideoYuvOutput', () => engine.enableCameraVideoYuvOutput(false), ['OrvaEngine.enableCameraVideoYuvOutput(false)']],
  ['startCameraRecord', () => engine.startCameraRecord('cam-0', recordInfo()),
    [`OrvaEngine.startCameraRecord("cam-0", ${RECORD_TEXT})`]],
  ['stopCameraRecord', () => engine.stopCameraRecord('cam-0'), ['OrvaEngine.stopCameraRecord("cam-0")']],
  ['enableAudioAGC with the default level', () => engine.enableAudioAGC(true), ['OrvaEngine.enableAudioAGC(true, 0)']],
  ['enableAudioAGC with a level', () => engine.enableAudioAGC(false, 2), ['OrvaEngine.enableAudioAGC(false, 2)']],
  ['enableAudioANS with the default level', () => engine.enableAudioANS(false), ['OrvaEngine.enableAudioANS(false, 0)']],
  ['enableAudioANS with a level', () => engine.enableAudioANS(true, 3), ['OrvaEngine.enableAudioANS(true, 3)']],
  ['enableAudioAEC', () => engine.enableAudioAEC(true), ['OrvaEngine.enableAudioAEC(true)']],
  ['enableStereoMicrophone', () => engine.enableStereoMicrophone(false), ['OrvaEngine.enableStereoMicrophone(false)']],
  ['enableAudioCaptureFixDelay', () => engine.enableAudioCaptureFixDelay(true, 120),
    ['OrvaEngine.enableAudioCaptureFixDelay(true, 120)']],
  ['createTraceWindow with the default flags', () => engine.createTraceWindow(10, 20, 'trace', true),
    ['OrvaEngine.createTraceWindow(10, 20, "trace", true, 0)']],
  ['createTraceWindow with flags', () => engine.createTraceWindow(-1, 0, '', false, 4),
    ['OrvaEngine.createTraceWindow(-1, 0, "", false, 4)']],
  ['destroyTraceWindow', () => engine.destroyTraceWindow(), ['OrvaEngine.destroyTraceWindow()']],
  ['updateRtmpUrl', () => engine.updateRtmpUrl('rtmp://example/live?k=1'), ['OrvaEngine.updateRtmpUrl("rtmp://example/live?k=1")']],
  ['startEchoTest', () => engine.startEchoTest(orva.Network), ['OrvaEngine.startEchoTest(1)']],
  ['stopEchoTest', () => engine.stopEchoTest(orva.Network), ['OrvaEngine.stopEchoTest(1)']],
  ['setLogDirPath stores the directory only', () => engine.setLogDirPath(''), []],
];

test('forwarding members reach the engine with their arguments, in order', () => {
  for (const [member, call, expected] of FORWARDED) {
    let result;
    assert.deepEqual(callsWithWindow(() => { result = call(); }), expected, member);
    assert.equal(result, undefined, member);
  }
});

const MIC_0 = { guid: 'mic-0', index: 0, isCommunicationDefault: true, isDefault: true, name: 'Loopback Microphone' };
const MIC_1 = { guid: 'mic-1', index: 1, isCommunicationDefault: false, isDefault: false, name: 'Loopback Headset Mic' };
const SPK_0 = { guid: 'spk-0', index: 0, isCommunicationDefault: true, isDefault: true, name: 'Loopback Speakers' };
const SPK_1 = { guid: 'spk-1', index: 1, isCommunicationDefault: false, isDefault: false, name: 'Loopback Headphones' };
const resolution = (width, height) => ({ height, maxFps: 30, type: 3, width });
const CAMERAS = [
  { cameraResolutions: [resolution(1280, 720), resolution(1920, 1080)], guid: 'cam-0', index: 0, name: 'Loopback Camera' },
  { cameraResolutions: [resolution(640, 480), resolution(1280, 720), resolution(1920, 1080)], guid: 'cam-1', index: 1,
    name: 'Loopback Document Camera' },
];

// [member, the engine's journal, the answer of the loopback engine in the state set below]
const ANSWERED = [
  ['getLastError', 'OrvaEngine.getLastError()', 0],
  ['getMicDevicesList', 'OrvaEngine.getMicDevicesList()', [MIC_0, MIC_1]],
  ['getSpeakerDevicesList', 'OrvaEngine.getSpeakerDevicesList()', [SPK_0, SPK_1]],
  ['getCameraDevicesList', 'OrvaEngine.getCameraDevicesList()', CAMERAS],
  ['getCurrentMicDevice', 'OrvaEngine.getCurrentMicDevice()', MIC_1],
  ['getSystemMicDevice', 'OrvaEngine.getSystemMicDevice()', MIC_0],
  ['getCurrentSpeakerDevice', 'OrvaEngine.getCurrentSpeakerDevice()', SPK_1],
  ['getSystemSpeakerDevice', 'OrvaEngine.getSystemSpeakerDevice()', SPK_0],
  ['getCurrentMicDeviceVolume', 'OrvaEngine.getCurrentMicDeviceVolume()', 40],
  ['getSystemMicVolume', 'OrvaEngine.getSystemMicVolume()', 70],
  ['getCurrentSpeakerVolume', 'OrvaEngine.getCurrentSpeakerVolume()', 30],
  ['getSystemSpeakerVolume', 'OrvaEngine.getSystemSpeakerVolume()', 60],
  ['getCurrentMicDeviceMute', 'OrvaEngine.getCurrentMicDeviceMute()', true],
  ['getSystemMicMute', 'OrvaEngine.getSystemMicMute()', true],
  ['getCurrentSpeakerDeviceMute', 'OrvaEngine.getCurrentSpeakerDeviceMute()', true],
  ['getSystemSpeakerMute', 'OrvaEngine.getSystemSpeakerMute()', true],
  ['isSupportHevcEncode', 'OrvaEngine.isSupportHevcEncode()', false],
  ['GetAdapterInfo', 'OrvaEngine.GetAdapterInfo()',
    { dedicatedVideoMemory: 0, description: 'Loopback Display Adapter', deviceId: 0, vendorId: 0 }],
  ['getAGCStatus', 'OrvaEngine.getAGCStatus()', true],
  ['getAECStatus', 'OrvaEngine.getAECStatus()', true],
  ['getANSStatus', 'OrvaEngine.getANSStatus()', true],
  ['getStereoMicrophoneStatus', 'OrvaEngine.getStereoMicrophoneStatus()', true],
];

test("members with a result answer the engine's answer", () => {
  // Engine state that differs from the no-engine answers wherever the engine allows it.
  engine.setCurrentMicDevice('mic-1');
  engine.setCurrentSpeakerDevice('spk-1');
  engine.setAudioCaptureVolume(40);
  engine.setAudioPlayoutVolume(30);
  engine.enableAudioAGC(true, 2);
  engine.enableAudioANS(true);
  engine.enableAudioAEC(true);
  engine.enableStereoMicrophone(true);
  const sdk = orva.OrvaEngine.SDK();
  assert.equal(sdk.MuteMicrophone(true), 0);
  assert.equal(sdk.MuteSpeaker(true), 0);
  for (const [member, line, expected] of ANSWERED) {
    let answer;
    assert.deepEqual(callsOf(() => { answer = engine[member](); }), [line], member);
    assert.deepEqual(plain(answer), expected, member);
  }
});

test('getSDK and isSupportShareTexture answer without an engine call', () => {
  let sdk;
  let shared;
  assert.deepEqual(journalOf(() => {
    sdk = engine.getSDK();
    shared = engine.isSupportShareTexture('Loopback Display Adapter luid_1_0');
  }), []);
  assert.ok(sdk.equals(orva.OrvaEngine.SDK()));
  assert.equal(shared, false);
});

test("startTranscoding starts composing, then routes the engine's frames to the handler and on to script", async () => {
  const frame = {
    width: 6, height: 4, data: Buffer.alloc(36, 7), strideY: 6, strideU: 3, strideV: 3, extra: 4242,
  };
  engine.setCameraVideoProcessor(null);
  assert.equal(control().deliverFrame(frame), false, 'no frame processor before startTranscoding');

  const lines = callsOf(() => engine.startTranscoding(transcodingParams()));
  assert.equal(lines.length, 2, lines.join('\n'));
  assert.equal(lines[0], `OrvaEngine.startTranscoding(${PARAMS_TEXT})`);
  const [, processor] = /^OrvaEngine\.SetCameraVideoProcessor\((0x[0-9a-f]+)\)$/.exec(lines[1]) ?? [];
  assert.ok(processor, lines[1]);
  assert.notEqual(processor, handlerPointer, "the handler's frame face, not its listener face");

  events.length = 0;
  assert.equal(control().deliverFrame(frame), true);
  const ours = (event) => event[0] === 'OnVideoFrame' && event[6].extra === 4242;
  // The composer's own frames flow now too, and a frame that comes while one
  // is still on its way to script is dropped: ours goes again until it lands.
  await waitFor(() => events.some(ours) || (control().deliverFrame(frame) && false), 'the delivered frame');
  const [name, int1, int2, int3, str1, str2, payload] = events.find(ours);
  assert.deepEqual([name, int1, int2, int3, str1, str2], ['OnVideoFrame', 0, 0, 0, '', '']);
  const { type, size, width, height, strideY, strideU, strideV, extra, handle, valid } = payload;
  assert.deepEqual({ type, size, width, height, strideY, strideU, strideV, extra, handle, valid }, {
    type: orva.kI420, size: 36, width: 6, height: 4, strideY: 6, strideU: 3, strideV: 3, extra: 4242, handle: 0, valid: false,
  });
  assert.deepEqual(callsOf(() => engine.stopTranscoding()), ['OrvaEngine.stopTranscoding()']);
});

test('enterRoom and exitRoom run a session; calls during it reach the engine', async () => {
  events.length = 0;
  const state = (value) => (event) => event[0] === 'OnSessionStateChanged' && event[1] === value && event[4] === 'room-1';
  let result;
  assert.deepEqual(callsOf(() => { result = engine.enterRoom('room-1', settings({ 'loopback.join.delay.ms': '5' })); }),
    ['OrvaEngine.enterRoom("room-1", {"loopback.join.delay.ms":"5"})']);
  assert.equal(result, 0);
  await waitFor(() => events.some(state(orva.Joined)), 'Joined');

  assert.deepEqual(callsOf(() => engine.publishAudio(orva.MicrophoneSource)), ['OrvaEngine.publishAudio(0)']);
  assert.deepEqual(callsOf(() => engine.muteLocalVideo(false, orva.VideoStreamType_VideoStreamTypeBig)),
    ['OrvaEngine.publishVideo(4, 0)']);
  assert.deepEqual(callsOf(() => engine.sendSEIMsg('during', 2)),
    ['OrvaEngine.sendSEIMsg("during")', 'OrvaEngine.sendSEIMsg("during")']);
  assert.deepEqual(callsOf(() => engine.exitRoom()),
    ['OrvaEngine.unPublishAudio()', 'OrvaEngine.unPublishVideo()', 'OrvaEngine.exitRoom()']);
  await waitFor(() => events.some(state(orva.Leaved)), 'Leaved');
});

test("enterRoom answers the engine's refusal of an empty room name", () => {
  let result;
  assert.deepEqual(callsOf(() => { result = engine.enterRoom('', settings({})); }), ['OrvaEngine.enterRoom("", {})']);
  assert.equal(result, -1);
});

test('a call refused for its arguments makes no engine call', () => {
  const refused = [
    [() => engine.muteLocalVideo(1, 0), "in method 'OrvaEngineWrapper_muteLocalVideo', argument 2 of type 'bool'"],
    [() => engine.sendSEIMsg('sei', '3'), "in method 'OrvaEngineWrapper_sendSEIMsg', argument 3 of type 'int'"],
    [() => engine.startSystemAudioLoopback(null),
      "invalid null reference in method 'OrvaEngineWrapper_startSystemAudioLoopback', argument 2 of type 'std::string const &'"],
    [() => engine.createTraceWindow(0, 0, 'trace', 1), 'Illegal arguments for function createTraceWindow.'],
    [() => engine.startTranscoding(null),
      "invalid null reference in method 'OrvaEngineWrapper_startTranscoding', argument 2 of type " +
      "'Orva::Rtc::LocalMediaTranscodingParams const &'"],
  ];
  for (const [call, message] of refused) {
    let text;
    assert.deepEqual(callsOf(() => { text = thrown(call); }), [], message);
    assert.equal(text, message);
  }
});

test('destroy stops the engine and keeps it: later calls still reach it', () => {
  assert.deepEqual(callsOf(() => engine.destroy()), ['OrvaEngine.destroy()']);
  assert.ok(engine.getSDK().equals(orva.OrvaEngine.SDK()));
  let error;
  assert.deepEqual(callsOf(() => { error = engine.getLastError(); }), ['OrvaEngine.getLastError()']);
  assert.notEqual(error, -100);
  assert.deepEqual(callsOf(() => engine.unPublishAudio()), ['OrvaEngine.unPublishAudio()']);
});
