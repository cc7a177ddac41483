'use strict';
// Statistics, volumes and echo results arrive as plain objects whose keys
// come in a fixed order.
const test = require('node:test');
const assert = require('node:assert/strict');
const path = require('path');
const { spawnSync } = require('child_process');
const { control, root, buildDir } = require('./lib/orva');
const { startRecording, raise } = require('./lib/events');

const recorder = startRecording();

const STAT_KEYS = ['OutBps', 'InBps', 'OutPps', 'InPps', 'Status', 'DownStatus', 'UpStatus', 'LiveUpPlr',
  'LiveDownPlr', 'LiveRtt', 'RealtimeUpPlr', 'RealtimeDownPlr', 'RealtimeRtt', 'LiveVideoBitrate', 'LiveVideoEncFps',
  'LiveVideoWidth', 'LiveVideoHeight', 'LiveVideoSentBytes', 'LiveAudioBitrate', 'LiveAudioSentBytes',
  'LiveAudioLevel', 'LiveAudioEnergy', 'CpuAppUsage', 'CpuTotalUsage', 'GpuAppUsage', 'MemoryUsage'];

const REMOTE_KEYS = ['userId', 'audioPacketLoss', 'width', 'height', 'frameRate', 'videoBitrate', 'audioSampleRate',
  'audioBitrate', 'jitterBufferDelay', 'point2PointDelay', 'audioTotalBlockTime', 'audioBlockRate',
  'videoTotalBlockTime', 'videoBlockRate', 'streamType'];

async function payloadOf(face, method, ...args) {
  await recorder.settle();
  raise(face, method, ...args);
  const [event] = await recorder.until(1);
  return event;
}

test('network statistics: every field in order, remote users only when there are some', async () => {
  const stats = {};
  STAT_KEYS.forEach((key, index) => { stats[key] = index + 1; });
  Object.assign(stats, { Status: 1, DownStatus: 2, UpStatus: 3, LiveAudioEnergy: 0.5, CpuAppUsage: 1.25,
    CpuSDKUsage: 99, CpuTotalUsage: 2.5, GpuAppUsage: 3.75, MemoryUsage: 4.5 });
  let event = await payloadOf('MediaServiceListener', 'OnNetworkStats', stats);
  assert.deepEqual(event.slice(0, 6), ['OnNetworkStats', 0, 0, 0, '', '']);
  assert.deepEqual(Object.keys(event[6]), STAT_KEYS, 'no remoteStatistics key without remote users');
  for (const key of STAT_KEYS) assert.equal(event[6][key], stats[key], key);

  const remote = { userId: 'peer-1', audioPacketLoss: 1, videoPacketLoss: 2, width: 3, height: 4, frameRate: 5,
    videoBitrate: 6, audioSampleRate: 7, audioBitrate: 8, jitterBufferDelay: 9, point2PointDelay: 10,
    audioTotalBlockTime: 11, audioBlockRate: 12, videoTotalBlockTime: 13, videoBlockRate: 14, finalLoss: 15,
    streamType: 16 };
  event = await payloadOf('MediaServiceListener', 'OnNetworkStats',
    { ...stats, remoteStatistics: [remote, { ...remote, userId: 'peer-2', width: 30 }] });
  assert.deepEqual(Object.keys(event[6]), [...STAT_KEYS, 'remoteStatistics']);
  const users = event[6].remoteStatistics;
  assert.ok(Array.isArray(users) && users.length === 2);
  assert.deepEqual(Object.keys(users[0]), REMOTE_KEYS);
  assert.deepEqual(users.map((user) => [user.userId, user.width]), [['peer-1', 3], ['peer-2', 30]]);
  for (const key of REMOTE_KEYS) assert.equal(users[0][key], remote[key], key);
});

test('user volumes: the list, its count and the total', async () => {
  const volumes = [{ userId: 'a', microphone_volume: 10, speaker_volume: 20 },
    { userId: 'b', microphone_volume: 30, speaker_volume: 40 }];
  let event = await payloadOf('IMediaDeviceCallback', 'onUserVoiceVolume', volumes, 2, 55);
  assert.deepEqual(event.slice(0, 6), ['OnUserVoiceVolume', 0, 0, 0, '', '']);
  assert.deepEqual(Object.keys(event[6]), ['userVolumes', 'userVolumesCount', 'totalVolume']);
  assert.deepEqual(event[6], { userVolumes: volumes, userVolumesCount: 2, totalVolume: 55 });
  assert.deepEqual(Object.keys(event[6].userVolumes[0]), ['userId', 'microphone_volume', 'speaker_volume']);
  event = await payloadOf('IMediaDeviceCallback', 'onUserVoiceVolume', [], 0, 0);
  assert.deepEqual(event[6], { userVolumes: [], userVolumesCount: 0, totalVolume: 0 });
});

test('echo results: the five results, then the details in key order', async () => {
  const result = { network_result: 1, performance_result: { result: 3, reason: 4 }, driver_result: { result: 2, reason: 1 },
    info: { zeta: 'last', alpha: 'first', driverResult: 'overridden' } };
  const event = await payloadOf('MediaServiceListener', 'onEchoResult', result);
  assert.deepEqual(event.slice(0, 6), ['OnEchoResult', 0, 0, 0, '', '']);
  assert.deepEqual(Object.keys(event[6]),
    ['networkResult', 'performanceResult', 'performanceReason', 'driverResult', 'driverReason', 'alpha', 'zeta']);
  assert.deepEqual(event[6], { networkResult: 1, performanceResult: 3, performanceReason: 4,
    driverResult: 'overridden', driverReason: 1, alpha: 'first', zeta: 'last' });
});

// The crash-report service hears about some errors, with fixed texts.
const REPORTS = [
  ['IMediaDeviceCallback', 'onScreenSourceError', ['scr-1', 3], { type: 2, tag: 'orva', message: '录屏视频采集异常::3:' }],
  ['IMediaDeviceCallback', 'onScreenSourceError', ['scr-1', 1], null],
  ['IMediaDeviceCallback', 'onCameraSourceError', ['cam-1', -5], { type: 2, tag: 'orva', message: '摄像头异常::-5:' }],
  ['IMediaDeviceCallback', 'onCameraSourceError', ['cam-1', -4], null],
  ['IMediaDeviceCallback', 'onMicSourceError', ['mic-1', -1000], null],
  ['IMediaDeviceCallback', 'onImageSourceStarted', ['logo.png', -4, 'unreadable'], null],
  ['MediaServiceListener', 'OnSessionStateChanged', ['room', 4, 4], { type: 5, tag: 'orva', message: '加入频道失败::0:' }],
  ['MediaServiceListener', 'OnSessionStateChanged', ['room', 3, 5], { type: 4, tag: 'orva', message: 'onConnectionLost::0:' }],
  ['MediaServiceListener', 'OnSessionStateChanged', ['room', 2, 0], null],
  ['MediaServiceListener', 'OnSessionStateChanged', ['room', 0, 6], { type: 1, tag: 'orva', message: '视频编码器错误::0:' }],
  ['MediaServiceListener', 'OnSessionStateChanged', ['room', 0, 7], { type: 1, tag: 'orva', message: '其他错误::0:' }],
];

test('engine errors reach the crash-report service with their texts', async () => {
  for (const [face, method, args, report] of REPORTS) {
    control().clearCrashReports();
    await payloadOf(face, method, ...args);
    assert.deepEqual(control().crashReports(), report ? [report] : [], `${method}(${args.join(', ')})`);
  }
});

test('a beauty error is reported once until beauty is enabled again', async () => {
  control().clearCrashReports();
  await payloadOf('IMediaDeviceCallback', 'onBeautyError', 'cam-1', 7, 'model missing');
  await payloadOf('IMediaDeviceCallback', 'onBeautyError', 'cam-1', 8, 'again');
  assert.deepEqual(control().crashReports(), [{ type: 2, tag: 'orva', message: '美颜错误::7:model missing' }]);
  recorder.engine.enableBeauty('cam-1');
  const event = await payloadOf('IMediaDeviceCallback', 'onBeautyError', 'cam-1', 9, 'third');
  assert.deepEqual(event.slice(0, 6), ['OnBeautyError', 9, 0, 0, 'cam-1', 'third'], 'the event always arrives');
  assert.deepEqual(control().crashReports().map((report) => report.message),
    ['美颜错误::7:model missing', '美颜错误::9:third']);
});

test('session states during an echo test are not reported', async () => {
  control().clearCrashReports();
  recorder.engine.startEchoTest(1);
  await payloadOf('MediaServiceListener', 'OnSessionStateChanged', 'room', 4, 4);
  assert.deepEqual(control().crashReports(), []);
  recorder.engine.stopEchoTest(1);
  await payloadOf('MediaServiceListener', 'OnSessionStateChanged', 'room', 4, 4);
  assert.equal(control().crashReports().length, 1);
});

// [label, prototype, key, how, the event's name, its raising, the path to an
// own property of the payload, what it holds]. Script can put setters that
// throw, or read-only values, on the prototypes of the payload's objects and
// arrays; the payload still gets its own properties, and nothing aborts.
const VOLUMES = `control.raise('IMediaDeviceCallback', 'onUserVoiceVolume', [{ userId: 'u', microphone_volume: 3, speaker_volume: 4 }], 1, 9)`;
const STATS = `control.raise('MediaServiceListener', 'OnNetworkStats', { OutBps: 5, remoteStatistics: [{ userId: 'peer' }] })`;
const PROTOTYPE_TRAPS = [
  ['a throwing setter for a statistic', 'Object.prototype', 'OutBps', 'setter', 'OnNetworkStats', STATS, ['OutBps'], 5],
  ['a read-only statistic', 'Object.prototype', 'OutBps', 'readOnly', 'OnNetworkStats', STATS, ['OutBps'], 5],
  ['a throwing setter for index 0 of the remote users', 'Array.prototype', 0, 'setter', 'OnNetworkStats', STATS,
    ['remoteStatistics', 0, 'userId'], 'peer'],
  ['a throwing setter for the volume list', 'Object.prototype', 'userVolumes', 'setter', 'OnUserVoiceVolume', VOLUMES,
    ['userVolumes', 0, 'speaker_volume'], 4],
  ['a throwing setter for a volume', 'Object.prototype', 'microphone_volume', 'setter', 'OnUserVoiceVolume', VOLUMES,
    ['userVolumes', 0, 'microphone_volume'], 3],
  ['a throwing setter for index 0 of the volumes', 'Array.prototype', 0, 'setter', 'OnUserVoiceVolume', VOLUMES,
    ['userVolumes', 0, 'userId'], 'u'],
  ['a throwing setter for an echo detail', 'Object.prototype', 'alpha', 'setter', 'OnEchoResult',
    `control.raise('MediaServiceListener', 'onEchoResult', { network_result: 1, info: { alpha: 'first' } })`, ['alpha'], 'first'],
  ['a throwing setter for a frame field', 'Object.prototype', 'type', 'setter', 'OnVideoFrame',
    `control.deliverFrame({ width: 2, height: 2, data: pixels, extra: 77 })`, ['width'], 2],
];

test('payloads are built from own properties whatever script put on the prototypes', () => {
  for (const [label, prototype, key, how, name, raising, pathToValue, expected] of PROTOTYPE_TRAPS) {
    const result = spawnSync(process.execPath, ['-e', `
      const orva = require(${JSON.stringify(root)});
      const control = require(${JSON.stringify(path.join(buildDir, 'orva_test_control.node'))});
      const engine = orva.OrvaEngineWrapper.createOrvaEngine();
      const settings = new orva.Settings();
      settings.add('environment', 'prod');
      const pixels = Buffer.alloc(4);
      const trap = ${how === 'setter'} ? { set() { throw new Error('trap'); }, configurable: true }
        : { value: 'inherited', writable: false, configurable: true };
      // Node.js itself trips over such traps: one handler installs it, the next,
      // in the same turn of the drain, takes it away again first thing. (The
      // loopback's transcoder may slip in frames of its own: ours has extra 77.)
      engine.setCallback((name, a, b, c, d, e, payload) => {
        if (name === 'OnMediaChannelTerminate') {
          Object.defineProperty(${prototype}, ${JSON.stringify(key)}, trap);
          ${raising};
        } else if (name === ${JSON.stringify(name)} && (name !== 'OnVideoFrame' || payload.extra === 77)) {
          delete ${prototype}[${JSON.stringify(key)}];
          let value = payload;
          for (const step of ${JSON.stringify(pathToValue)}) {
            const own = Object.getOwnPropertyDescriptor(value, step);
            value = own && 'value' in own ? own.value : 'no own ' + step;
          }
          console.log(JSON.stringify(value));
          engine.destroy();
        }
      });
      engine.initialize(settings, null);
      engine.startTranscoding(new orva.LocalMediaTranscodingParams());
      engine.stopTranscoding();
      engine.setVideoFrameRenderBuffer({ buffer: Buffer.alloc(4), id: 1, userId: 'me', width: 2, height: 2 });
      control.raise('MediaChannelListener', 'OnMediaChannelTerminate');
    `], { cwd: root, encoding: 'utf8', timeout: 60000 });
    assert.equal(result.signal, null, `${label}: ${result.stderr}`);
    assert.equal(result.stderr, '', label);
    assert.equal(result.stdout, `${JSON.stringify(expected)}\n`, label);
    assert.equal(result.status, 0, label);
  }
});
