'use strict';
// Engine callbacks on engine threads reach the one script handler with their
// exact names and arguments, in order.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva } = require('./lib/orva');
const { startRecording, raise, plain } = require('./lib/events');

const recorder = startRecording();

// [face, method, arguments, the event the handler receives]
const CALLBACKS = [
  ['MediaChannelListener', 'OnAudioEvent', ['user-a', orva.FirstVoice], ['OnAudioEvent', 0, 0, 0, 'user-a', '']],
  ['MediaChannelListener', 'OnAudioFilePlayCompleted', ['a.mp3'], ['OnAudioFilePlayCompleted', 0, 0, 0, 'a.mp3', '']],
  ['MediaChannelListener', 'OnAudioFilePlayError', ['a.mp3', -3], ['OnAudioFilePlayError', -3, 0, 0, 'a.mp3', '']],
  ['MediaChannelListener', 'OnAudioLevelChanged', ['user-a', 42], ['OnAudioLevelChanged', 42, 0, 0, 'user-a', '']],
  ['MediaChannelListener', 'OnStreamAdd', ['user-a', orva.VideoStream, 2, ['s1'], null],
    ['OnStreamAdd', 1, 2, 0, 'user-a', '']],
  ['MediaChannelListener', 'OnStreamRemove', ['user-a', orva.AudioStream, 3, null], ['OnStreamRemove', 0, 3, 0, 'user-a', '']],
  ['MediaChannelListener', 'OnVideoEvent', ['user-a', orva.NoImage], ['OnVideoEvent', 1, 0, 0, 'user-a', '']],
  ['MediaChannelListener', 'OnVideoLevelChanged', ['user-a', 'high', 'detail'],
    ['OnVideoLevelChanged', 0, 0, 0, 'user-a', 'detail']],
  ['MediaChannelListener', 'OnVideoSizeChanged', ['user-a', 640, 360], ['OnVideoSizeChanged', 640, 360, 0, 'user-a', '']],
  ['MediaChannelListener', 'OnVideoSizeFirst', ['user-a', 1280, 720], ['OnVideoSizeFirst', 1280, 720, 0, 'user-a', '']],
  ['MediaChannelListener', 'OnMediaChannelTerminate', [], ['OnMediaChannelTerminate', 0, 0, 0, '', '']],
  ['MediaLiveListener', 'OnAudioEvent', [orva.DisconnectedVoice], ['OnAudioEvent', 3, 0, 0, '', '']],
  ['MediaLiveListener', 'OnVideoEvent', [orva.StoppedImage], ['OnVideoEvent', 5, 0, 0, '', '']],
  ['MediaServiceListener', 'OnGroupStateChanged', ['group-1', orva.GroupJoined, 7],
    ['OnGroupStateChanged', 2, 7, 0, 'group-1', '']],
  ['RtcEngineListener', 'OnMediaChannelStateChanged', [2, 9, { streamType: orva.VideoStream, errorMsg: 'lost' }],
    ['OnMediaChannelStateChanged', 2, 9, 1, 'lost', '']],
  ['AudioServiceListener', 'OnPlayFileStart', [4, 2000], ['OnPlayFileStart', 4, 2000, 0, '', '']],
  ['AudioServiceListener', 'OnPlayFileEnd', [4, 1], ['OnPlayFileEnd', 4, 1, 0, '', '']],
  ['AudioServiceListener', 'OnPlayFilePosChanged', [4, 500, 2000], ['OnPlayFilePosChanged', 4, 500, 2000, '', '']],
  ['AudioServiceListener', 'OnPlayFileTerminate', [], ['OnPlayFileTerminate', 0, 0, 0, '', '']],
  ['ILocalMediaTranscoderCallback', 'onTranscodingStarted', [-2, 'bad params'],
    ['OnTranscodingStarted', -2, 0, 0, 'bad params', '']],
  ['ILocalMediaTranscoderCallback', 'onTranscodingStopped', [0, 'done'], ['OnTranscodingStopped', 0, 0, 0, 'done', '']],
  ['IMediaDeviceCallback', 'onCameraSourceStarted', ['cam-1', 0, 'ok'], ['OnCameraSourceStarted', 0, 0, 0, 'cam-1', 'ok']],
  ['IMediaDeviceCallback', 'onCameraSourceStopped', ['cam-1', 'bye'], ['OnCameraSourceStopped', 0, 0, 0, 'cam-1', 'bye']],
  ['IMediaDeviceCallback', 'onScreenSourceStarted', ['scr-1', -1, 'no'], ['OnScreenSourceStarted', -1, 0, 0, 'scr-1', 'no']],
  ['IMediaDeviceCallback', 'onScreenSourcePaused', ['scr-1', 1], ['OnScreenSourcePaused', 1, 0, 0, 'scr-1', '']],
  ['IMediaDeviceCallback', 'onScreenSourceResumed', ['scr-1', 2], ['OnScreenSourceResumed', 2, 0, 0, 'scr-1', '']],
  ['IMediaDeviceCallback', 'onScreenSourceCovered', ['scr-1'], ['OnScreenSourceCovered', 0, 0, 0, 'scr-1', '']],
  ['IMediaDeviceCallback', 'onScreenSourceStopped', ['scr-1', 6], ['OnScreenSourceStopped', 6, 0, 0, 'scr-1', '']],
  ['IMediaDeviceCallback', 'onImageSourceStopped', ['logo.png'], ['OnImageSourceStopped', 0, 0, 0, 'logo.png', '']],
  ['IMediaDeviceCallback', 'onCameraDidReady', [], ['OnCameraDidReady', 0, 0, 0, '', '']],
  ['IMediaDeviceCallback', 'onMicDidReady', [], ['OnMicDidReady', 0, 0, 0, '', '']],
  ['IMediaDeviceCallback', 'onDeviceChange', ['mic-2', orva.DEVICE_MIC, orva.DeviceStateRemove],
    ['onDeviceChange', 1, 1, 0, 'mic-2', '']],
  ['IMediaDeviceCallback', 'onAudioDeviceCaptureVolumeChanged', [60, true],
    ['OnAudioDeviceCaptureVolumeChanged', 60, 1, 0, '', '']],
  ['IMediaDeviceCallback', 'onAudioDevicePlayoutVolumeChanged', [30, false],
    ['OnAudioDevicePlayoutVolumeChanged', 30, 0, 0, '', '']],
  ['IMediaDeviceCallback', 'onSourceSized', ['cam-1', orva.kLocalMediaTranscodingSourceType_MediaSourceImage, 320, 240],
    ['OnSourceSized', 320, 240, 2, 'cam-1', '']],
  ['IMediaDeviceCallback', 'onCameraSourceRecordStarted', ['cam-1'], ['OnCameraSourceRecordStarted', 0, 0, 0, 'cam-1', '']],
  ['IMediaDeviceCallback', 'onCameraSourceRecordStopped', ['cam-1'], ['OnCameraSourceRecordStopped', 0, 0, 0, 'cam-1', '']],
  ['IMediaDeviceCallback', 'onCameraSourceRecordError', ['cam-1', 0], ['OnCameraSourceRecordError', 0, 0, 0, 'cam-1', '']],
  ['IMediaDeviceCallback', 'onCameraSourceRecordStarted', [''], ['OnRecordStarted', 0, 0, 0, '', '']],
  ['IMediaDeviceCallback', 'onCameraSourceRecordStopped', [''], ['OnRecordStopped', 0, 0, 0, '', '']],
  ['IMediaDeviceCallback', 'onCameraSourceRecordError', ['', 0], ['OnRecordError', 0, 0, 0, '', '']],
  ['IMediaDeviceCallback', 'onEncoderError', [-109], ['OnEncodeError', -109, 0, 0, '', '']],
  // These also go to the crash-report service (see the reports suite).
  ['IMediaDeviceCallback', 'onCameraSourceError', ['cam-1', -5], ['OnCameraSourceError', -5, 0, 0, 'cam-1', '']],
  ['IMediaDeviceCallback', 'onMicSourceError', ['mic-1', -1003], ['onMicSourceError', -1003, 0, 0, 'mic-1', '']],
  ['IMediaDeviceCallback', 'onScreenSourceError', ['scr-1', 3], ['OnScreenSourceError', 3, 0, 0, 'scr-1', '']],
  ['IMediaDeviceCallback', 'onImageSourceStarted', ['logo.png', -4, 'unreadable'],
    ['OnImageSourceStarted', -4, 0, 0, 'logo.png', 'unreadable']],
  ['IMediaDeviceCallback', 'onBeautyError', ['cam-1', 7, 'model missing'], ['OnBeautyError', 7, 0, 0, 'cam-1', 'model missing']],
];

// Callbacks the handler takes and deliberately turns into nothing.
const SILENT = [
  ['RtcEngineListener', 'OnEngineEvent', ['event', 1, { k: 'v' }]],
  ['RtcEngineListener', 'OnEngineLog', [1, 'tag', 'text']],
  ['RtcEngineListener', 'OnExtHeatBeatEvent', []],
  ['MediaServiceListener', 'OnAlternateServerAvailable', [['a', 'b']]],
  ['MediaServiceListener', 'OnPerformanceAlarms', [0]],
  ['MediaServiceListener', 'OnUserVoiceVolume', [[{ userId: 'u', microphone_volume: 1, speaker_volume: 2 }], 1, 5]],
  ['MediaServiceListener', 'OnTerminate', []],
  ['IMediaDeviceCallback', 'onTestMicVolume', [10]],
  ['IMediaDeviceCallback', 'onTestSpeakerVolume', [10]],
];

test('every callback becomes its named event with its arguments in place', async () => {
  await recorder.settle();
  for (const [face, method, args] of CALLBACKS) raise(face, method, ...args);
  const received = await recorder.until(CALLBACKS.length);
  assert.deepEqual(received.map(plain), CALLBACKS.map(([, , , expected]) => expected));
  for (const event of received) {
    assert.equal(event.length, 7);
    assert.deepEqual(Object.keys(event[6]), [], `${event[0]} has an empty payload`);
  }
});

test('the session state carries a value the engine reports at the time', async () => {
  await recorder.settle();
  raise('MediaServiceListener', 'OnSessionStateChanged', 'room-1', orva.Joined, 0);
  raise('MediaServiceListener', 'OnSessionStateChanged', null, orva.Leaved, 0);
  const received = await recorder.until(2);
  const lastError = orva.OrvaEngine.SDK().LastError();
  assert.deepEqual(received.map(plain), [
    ['OnSessionStateChanged', 2, 0, lastError, 'room-1', ''],
    ['OnSessionStateChanged', 5, 0, lastError, '', ''],
  ]);
});

test('callbacks the handler ignores queue nothing', async () => {
  await recorder.settle();
  for (const [face, method, args] of SILENT) raise(face, method, ...args);
  // Everything raised before the marker arrives before it.
  raise('MediaChannelListener', 'OnMediaChannelTerminate');
  const received = await recorder.until(1);
  assert.deepEqual(received.map((event) => event[0]), ['OnMediaChannelTerminate']);
});

// The channel is published while both kinds of local stream are up.
const STREAM_CASES = [
  ['audio up while video is down', [['OnAudioEvent', 4]], ['OnAudioEvent:4']],
  ['audio up while video is up', [['OnVideoEvent', 4], ['OnAudioEvent', 4]],
    ['OnVideoEvent:4', 'OnMediaChannelStateChanged:0,1,-1', 'OnAudioEvent:4']],
  ['audio down while both are up', [['OnVideoEvent', 4], ['OnAudioEvent', 4], ['OnAudioEvent', 5]],
    ['OnVideoEvent:4', 'OnMediaChannelStateChanged:0,1,-1', 'OnAudioEvent:4', 'OnMediaChannelStateChanged:1,3,-1',
      'OnAudioEvent:5']],
  ['audio down while video is down', [['OnAudioEvent', 4], ['OnAudioEvent', 5]], ['OnAudioEvent:4', 'OnAudioEvent:5']],
  ['audio disconnected', [['OnAudioEvent', 3]], ['OnAudioEvent:3']],
  ['video up while audio is up', [['OnAudioEvent', 4], ['OnVideoEvent', 4]],
    ['OnAudioEvent:4', 'OnMediaChannelStateChanged:0,1,-1', 'OnVideoEvent:4']],
  ['video down while both are up', [['OnAudioEvent', 4], ['OnVideoEvent', 4], ['OnVideoEvent', 5]],
    ['OnAudioEvent:4', 'OnMediaChannelStateChanged:0,1,-1', 'OnVideoEvent:4', 'OnMediaChannelStateChanged:1,3,-1',
      'OnVideoEvent:5']],
  ['video disconnected', [['OnVideoEvent', 3]], ['OnVideoEvent:3']],
];

test('local stream events bring the channel state before them', async () => {
  for (const [label, calls, expected] of STREAM_CASES) {
    // Both streams down first, without queuing anything of interest.
    raise('MediaChannelListener', 'OnAudioEvent', 'me', 5);
    raise('MediaChannelListener', 'OnVideoEvent', 'me', 5);
    await recorder.settle();
    for (const [method, code] of calls) raise('MediaChannelListener', method, 'me', code);
    // Everything raised before the marker arrives before it.
    raise('MediaChannelListener', 'OnMediaChannelTerminate');
    const received = (await recorder.until(expected.length + 1)).slice(0, -1);
    const summary = received.map(([name, a, b, c]) => (name === 'OnMediaChannelStateChanged' ? `${name}:${a},${b},${c}` : `${name}:${a}`));
    assert.deepEqual(summary, expected, label);
  }
});
