'use strict';
// The exports object: exactly the classes and constants, constants read-only.
const test = require('node:test');
const assert = require('node:assert/strict');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const vm = require('node:vm');
const { orva, thrown, buildDir, collect } = require('./lib/orva');

const CLASSES = [
  'StringMap', 'ScreenVector', 'WindowVector', 'AsyncResultHandler', 'Settings', 'StringVector', 'Speaker',
  'SpeakerList', 'Microphone', 'MicrophoneList', 'CameraResolution', 'CameraResolutionList', 'Camera', 'CameraList',
  'MediaChannelErrInfo', 'OrvaLocalStatistics', 'OrvaRemoteStatistics', 'NetworkStats', 'VideoFrame', 'AudioFrame',
  'Rect', 'Window', 'WindowList', 'Screen', 'ScreenList', 'RenderParams', 'SourceGreenInfo',
  'LocalMediaTranscodingSource', 'VideoEncParam', 'LocalMediaTranscodingSourceList', 'LocalMediaTranscodingParams',
  'VolumeInfo', 'CameraCaptureParams', 'ScreenCaptureSourceInfo', 'ScreenCaptureProperty', 'CameraRecordInfo',
  'BeautyInfo', 'ScreenCaptureModeList', 'RtmpStatictis', 'DowngradeParam', 'PerformanceCheckResult',
  'DriverCheckResult', 'EchoCheckResult', 'AdapterInfo', 'OrvaServiceListener', 'IOrvaService',
  'MediaServiceListener', 'VideoFrameProcessor', 'OrvaFrameRect', 'OrvaVideoProccessor', 'AudioFrameProcessor',
  'RtcExtEventCallback', 'AudioFileParam', 'AudioServiceListener', 'AudioService', 'ILocalMediaTranscoderCallback',
  'LocalMediaTranscoder', 'IMediaDeviceCallback', 'MediaDevice', 'MediaChannelListener', 'MediaLiveListener',
  'MediaChannel', 'MediaLive', 'IBeautyEngine', 'IMediaService', 'RtcEngineListener', 'RtcEngine',
  'OrvaEngineListener', 'OrvaEngine',
];

// Every enumeration in registration order: [name, value] pairs.
const CONSTANTS = Object.entries({
  kLevelError: 0, kLevelWarning: 1, kLevelInfo: 2, kLevelDebug: 3,
  kUnknown: 0, kI420: 1, kIYUV: 2, kRGB24: 3, kARGB: 4, kRGB565: 5, kYUY2: 6, kYV12: 7, kUYVY: 8, kMJPEG: 9,
  kBGRA: 10, kTexture: 11,
  kVideoRotation_0: 0, kVideoRotation_90: 90, kVideoRotation_180: 180, kVideoRotation_270: 270,
  None: 0, Good: 1, Normal: 2, Bad: 3,
  CaptureDataType_CaptureDataTypeNull: 0, CaptureDataType_CaptureDataTypeNV12: 1,
  CaptureDataType_CaptureDataTypeNV21: 2, CaptureDataType_CaptureDataTypeI420: 3,
  CaptureDataType_CaptureDataTypeYV12: 4, CaptureDataType_CaptureDataTypeYUY2: 5,
  CaptureDataType_CaptureDataTypeYVYU: 6, CaptureDataType_CaptureDataTypeUYVY: 7,
  CaptureDataType_CaptureDataTypeHDYC: 8, CaptureDataType_CaptureDataTypeP010: 9,
  CaptureDataType_CaptureDataTypeXRGB: 10, CaptureDataType_CaptureDataTypeARGB: 11,
  CaptureDataType_CaptureDataTypeRGB24: 12, CaptureDataType_CaptureDataTypeMJPEG: 13,
  CaptureDataType_CaptureDataTypeH264: 14, CaptureDataType_CaptureDataTypeH265: 15,
  NoneStream: -1, AudioStream: 0, VideoStream: 1,
  CameraSource: 0, ExternalVideoSource: 1, WindowCaptureSource: 2, ScreenCaptureSource: 3, MixerCaptureSource: 4,
  MicrophoneSource: 0, MicrophoneAndSpeakerSource: 1, ExternalAudioSource: 2,
  ScreenMediaTypeVideoOnly: 0, ScreenMediaTypeAudioOnly: 1, ScreenMediaTypeVideoAndAudio: 2,
  AudioEventNone: -1, FirstVoice: 0, NoVoice: 1, RecoverVoice: 2, DisconnectedVoice: 3, FirstSendVoice: 4,
  StoppedVoice: 5,
  kMediaChannelNone: 0, kMediaChannelPublished: 1, kMediaChannelError: 2, kMediaChannelStoped: 3,
  VideoEventNone: -1, FirstImage: 0, NoImage: 1, RecoverImage: 2, DisconnectedImage: 3, FirstSendImage: 4,
  StoppedImage: 5,
  kPerformanceAlarmPerformanceNone: -1, kPerformanceAlarmPerformanceFallbacked: 0,
  kPerformanceAlarmPerformanceResumed: 1,
  kLocalMediaTranscodingError_Success: 0, kLocalMediaTranscodingError_Error: -1,
  kLocalMediaTranscodingError_InvalidParams: -2, kLocalMediaTranscodingError_NotFoundSource: -3,
  kLocalMediaTranscodingError_ImageSourceLoadFailed: -4,
  kLocalMediaTranscodingEvent_onTranscodingStarted: 0, kLocalMediaTranscodingEvent_onTranscodingStopped: 1,
  kLocalMediaTranscodingEvent_onCameraSourceStarted: 2, kLocalMediaTranscodingEvent_onCameraSourceStopped: 3,
  kLocalMediaTranscodingEvent_onCameraSourceError: 4, kLocalMediaTranscodingEvent_onImageSourceStarted: 5,
  kLocalMediaTranscodingEvent_onImageSourceStopped: 6, kLocalMediaTranscodingEvent_onScreenSourceStarted: 7,
  kLocalMediaTranscodingEvent_onScreenSourcePaused: 8, kLocalMediaTranscodingEvent_onScreenSourceResumed: 9,
  kLocalMediaTranscodingEvent_onScreenSourceCovered: 10, kLocalMediaTranscodingEvent_onScreenSourceStopped: 11,
  kLocalMediaTranscodingEvent_onScreenSourceError: 12,
  CameraCaptureMode_Auto: 0, CameraCaptureMode_Performance: 1, CameraCaptureMode_HighQuality: 2,
  CameraCaptureMode_Manual: 3,
  kLocalMediaTranscodingSourceType_MediaSourceCamera: 0, kLocalMediaTranscodingSourceType_MediaSourceScreen: 1,
  kLocalMediaTranscodingSourceType_MediaSourceImage: 2, kLocalMediaTranscodingSourceType_MediaSourceRemoteVideo: 3,
  DEVICE_SPEAKER: 0, DEVICE_MIC: 1, DEVICE_CAMERA: 2,
  DeviceStateAdd: 0, DeviceStateRemove: 1, DeviceStateActive: 2,
  AudioQuality_AudioQualitySpeech: 1, AudioQuality_AudioQualityDefault: 2, AudioQuality_AudioQualityMusic: 3,
  VideoStreamType_VideoStreamTypeBig: 0, VideoStreamType_VideoStreamTypeSmall: 1, VideoStreamType_VideoStreamTypeSub: 2,
  ScreenCaptureSourceTypeUnknown: -1, ScreenCaptureSourceTypeWindow: 0, ScreenCaptureSourceTypeScreen: 1,
  DEVICE_UNKOWN_ERROR: -1, DEVICE_NOT_FOUND: -2, DEVICE_CANNOT_CONNECT: -3, DEVICE_ALREADY_CONNECTED: -4,
  DEVICE_OTHER_ERROR: -5, DEVICE_ACCESS_DENIED: -6, DEVICE_LOST: -7, DEVICE_SIZE_NOT_SUPPORT: -8, DEVICE_LOW_FPS: -9,
  Unknown: -1, NotFound: -2, CannotConnect: -3, AlreadyConnected: -4, OtherError: -5, AccessDenied: -6, Lost: -7,
  MIC_START_FAIL: -1000, MIC_SET_PARAM_FAIL: -1001, MIC_STOP_FAIL: -1002, MIC_INIT_FAIL: -1003,
  MIC_SET_DEVICE_FAIL: -1004,
  WINDOWS_MINIMIZING: 1, WINDOWS_OTHER_PAUSE_REASON: 2,
  WINDOWS_SIZE_RESUME: 1, WINDOWS_OTHER_RESUME_REASON: 2,
  SCREEN_CAPTURE_ERROR: 0, SCREEN_CAPTURE_MONITOR_LOST: 1, SCREEN_CAPTURE_WINDOW_LOST: 2,
  SCREEN_CAPTURE_MONITOR_INVALID: 3, SCREEN_CAPTURE_WINDOW_INVALID: 4, SCREEN_CAPTURE_MONITOR_LOW_FPS: 5,
  SCREEN_CAPTURE_WINDOW_LOW_FPS: 6,
  VIDEO_RECORD_UNKOWN_ERROR: 0,
  SCREEN_AUDIO_CAPTURE_ERROR: 0, SCREEN_VIDEO_CAPTURE_ERROR: 1, MIC_CAPTURE_ERROR: 2, CAMERA_CAPTURE_ERROR: 3,
  IMAGE_CAPTURE_ERROR: 4, BEAUTY_ERROR: 5, JOIN_CHANNEL_FAILED: 6, JOIN_CHANNEL_CONNECT_LOST: 7,
  VIDEO_ENCODER_ERROR: 8,
  ERROR_TYPE_UNKOWN: 0, ERROR_TYPE_INFO: 1, ERROR_TYPE_WARNING: 2, ERROR_TYPE_CRITICAL: 3,
  ScreenCaptureModeDefault: 0, ScreenCaptureModeWGC: 1, ScreenCaptureModeDXGI: 2, ScreenCaptureModeGDI: 3,
  WindowCaptureModeDefault: 0, WindowCaptureModeWGC: 1, WindowCaptureModeGDI: 2,
  Init_Successd: 0, Init_Param_Error: -1,
  Join_Successed: 0, Join_Param_Error: -1, Dns_Resolve_Failed: -2, Session_E_Unknow: -100, Session_E_Kicked: -101,
  Session_E_Network: -102, Session_E_Server: -103, Session_E_Auth: -104, Session_E_Forbid: -105,
  Session_E_Device: -106, Session_E_NoServer: -107,
  Unkown: 0, Network: 1, Performance: 2, Driver: 3,
  NONE: 0, GOOD: 1, NORMAL: 2, WARNING: 3, DISABLED: 4,
  UNKNOWN: 0, SYSTEM_NOT_SUPPORTED: 1, VIRTUAL_MACHINE: 2, ARM_SYSTEM: 3, LOW_CPU: 4, CPU_BLACKLIST: 5,
  NO_DEDICATED_GPU: 6, NO_HARDWARE_ENCODING: 7, LOW_GPU_MEMORY: 8, LOW_SYSTEM_MEMORY: 9,
  DRIVER_UNKNOWN: 0, DRIVER_VERSION_TOO_OLD: 1,
  Realtime: 0, Live: 1,
  Push_Unkown: 0, Push_Rtc: 1, Push_Rtmp: 2,
  Init: 0, Joining: 1, Joined: 2, Retrying: 3, Error: 4, Leaved: 5,
  kNetworkTypeUnknown: -1, kNetworkTypeDisconnected: 0, kNetworkTypeLAN: 1, kNetworkTypeWIFI: 2,
  kNetworkTypeMobile2G: 3, kNetworkTypeMobile3G: 4, kNetworkTypeMobile4G: 5, kNetworkTypeMobile5G: 6,
  GroupInit: 0, GroupJoining: 1, GroupJoined: 2, GroupError: 3,
  AudioRouteSpeakerphone: 0, AudioRouteEarpiece: 1,
  E_None: 0, E_Unknow: -100, E_Kicked: -101, E_Network: -102, E_Server: -103, E_Auth: -104, E_Forbid: -105,
  E_Device: -106, E_NoServer: -107, E_UrlTimeExpired: -108, E_EncoderError: -109,
});

// The engine facade is part of the surface once it is built.
const FACADE = typeof orva.OrvaEngineWrapper === 'function' ? ['OrvaEngineWrapper'] : [];

test('the exports are exactly the classes and the 239 constants', () => {
  assert.equal(CONSTANTS.length, 239);
  const expected = [...CLASSES, ...FACADE, ...CONSTANTS.map(([name]) => name)].sort();
  assert.deepEqual(Object.getOwnPropertyNames(orva).sort(), expected);
  for (const name of [...CLASSES, ...FACADE]) assert.equal(typeof orva[name], 'function', name);
});

test('every constant has its value', () => {
  for (const [name, value] of CONSTANTS) assert.equal(orva[name], value, name);
});

test('assigning to a constant throws and keeps the value', () => {
  for (const [name, value] of CONSTANTS) {
    assert.equal(thrown(() => { orva[name] = 12345; }), `Tried to write read-only variable: ${name}.`);
    assert.equal(orva[name], value, name);
  }
});

test('fields and constants are plain data properties to script, alike on every V8', () => {
  // Last declared first: the order in which V8 lists a template's properties.
  const rect = new orva.Rect();
  assert.deepEqual(Object.keys(rect), ['height', 'width', 'y', 'x']);
  for (const [owner, name, value] of [[rect, 'x', 0], [orva, 'kLevelInfo', 2]]) {
    const descriptor = { value, writable: true, enumerable: true, configurable: true };
    assert.deepEqual(Object.getOwnPropertyDescriptor(owner, name), descriptor, name);
    // An object that inherits the property gets its own on assignment; the native side is not written.
    const heir = Object.create(owner);
    heir[name] = 7;
    assert.deepEqual([heir[name], owner[name], Object.keys(heir)], [7, value, [name]], name);
  }
});

test('an OrvaVideoProccessor has the methods of VideoFrameProcessor through its prototype chain', () => {
  // The class object's prototype inherits the `_exports_` template's, which
  // for OrvaVideoProccessor inherits VideoFrameProcessor's.
  const baseMethods = Object.getPrototypeOf(orva.VideoFrameProcessor.prototype);
  const chain = [];
  for (let p = orva.OrvaVideoProccessor.prototype; p; p = Object.getPrototypeOf(p)) chain.push(p);
  assert.ok(chain.includes(baseMethods));
  assert.ok(!Object.getPrototypeOf(orva.VideoFrameProcessor.prototype).hasOwnProperty('AddCropTask'));
  for (const name of ['OnVideoFrame', 'AddCropTask', 'RemoveCropTask', 'ModifyCropTask', 'equals', 'getCPtr']) {
    assert.equal(typeof orva.OrvaVideoProccessor.prototype[name], 'function', name);
  }
});

test('an exports object that throws gets its own exception back, and the process goes on', () => {
  const addon = path.join(buildDir, 'orvaEngine.node');
  for (const trap of ['defineProperty', 'set', 'deleteProperty']) {
    const module = { exports: new Proxy({}, { [trap]() { throw new Error(`trap ${trap}`); } }) };
    assert.throws(() => process.dlopen(module, addon), { message: `trap ${trap}` });
  }
});

test('classes and parts first read in another context are made in the context of their owners', () => {
  // Fresh exports, so that no class has been read yet.
  const module = { exports: {} };
  process.dlopen(module, path.join(buildDir, 'orvaEngine.node'));
  const fresh = module.exports;
  const made = vm.runInNewContext(`
    const list = new orva.CameraList();
    list.Add(new orva.Camera());
    [list, list.Get(0), list.Get(0).cameraResolutions, orva.OrvaEngine.SDK().Cameras()];`, { orva: fresh });
  assert.equal(Object.getPrototypeOf(fresh.Camera), Function.prototype);
  for (const object of [new fresh.Camera(), ...made]) assert.ok(object instanceof Object, object.constructor.name);
});

test('a second copy of the addon in one process makes and uses its own objects', async () => {
  // Another copy of the file is another module: it shares the context's
  // descriptors with this one, and must still serve its own proxies.
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'orva-copy-'));
  const file = path.join(folder, 'orvaEngine.node');
  fs.copyFileSync(path.join(buildDir, 'orvaEngine.node'), file);
  const copy = require(file);
  fs.rmSync(folder, { recursive: true });
  for (let round = 0; round < 2; round += 1) {
    for (const module of [copy, orva]) {
      const list = new module.CameraList();
      const camera = new module.Camera();
      camera.name = 'kept';
      list.Add(camera);
      assert.equal(list.Get(0).name, 'kept');
      assert.equal(typeof module.OrvaEngine.SDK().Cameras().Get(0).name, 'string');
    }
    // Proxies of both copies are finalised, and their slots reused.
    await collect();
  }
  assert.equal(thrown(() => new orva.CameraList().Add(new copy.Camera())),
    "in method 'CameraList_Add', argument 2 of type 'Orva::Rtc::Camera const &'");
});
