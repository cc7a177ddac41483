'use strict';
// orva-engine/testing: the loopback engine as a test double for an
// application's own tests. It raises engine events in the application's
// terms, reads back what the application asked of the engine (the journal)
// and returns the engine to a fresh process's state between tests.
//
// It drives the test-control addon that a loopback build leaves beside the
// product addon: orva_test_control.node in a build folder, or
// orva_test_control.abi<ABI>[.<libc>].testing among the prebuilds (a name
// node-gyp-build never takes for the product addon). A build against a real
// engine has none, and requiring this module then throws.
const fs = require('fs');
const path = require('path');
const orva = require('./index.js');
const { controlName } = require('./prebuild-name');

/** The file the package entry loaded the product addon from. */
function productAddonFile() {
  return Object.keys(require.cache).find((file) => file.endsWith('.node') && require.cache[file].exports === orva);
}

function loadControl() {
  const addon = productAddonFile();
  if (!addon) {
    throw new Error('orva-engine/testing could not tell which addon orva-engine loaded, ' +
      'so it cannot find the loopback engine beside it');
  }
  const folder = path.dirname(addon);
  const names = [controlName(process.versions.modules), 'orva_test_control.testing', 'orva_test_control.node'];
  const file = names.map((name) => path.join(folder, name)).find((candidate) => fs.existsSync(candidate));
  if (!file) {
    throw new Error(`orva-engine/testing runs only on the loopback engine, and ${addon} has no test-control addon ` +
      `beside it (${names.join(', ')}): this orva-engine was built against a real engine, or without ` +
      'ORVA_BUILD_TEST_CONTROL. Run application tests on a loopback build (the prebuilds, or `npm rebuild orva-engine` ' +
      'without a real engine configured).');
  }
  // The product addon is loaded, so the engine library this one needs is
  // the same one, already in the process: both see one engine.
  const loaded = { exports: {} };
  process.dlopen(loaded, file);
  return loaded.exports;
}

const control = loadControl();
const SIGNATURES = control.raiseSignatures();

// --- Argument checks ---------------------------------------------------------
// The addon converts whatever it is given (a string where a number belongs
// becomes 0), so every argument is checked here first, by the kind the addon
// reports for that parameter, and record fields by the names it reads.

const INT = 'integer';
const NUM = 'number';
const STR = 'string';
const RECORDS = {
  VolumeInfo: { userId: STR, microphone_volume: INT, speaker_volume: INT },
  MediaChannelErrInfo: { streamType: INT, errorMsg: STR },
  EchoCheckResult: { network_result: INT, performance_result: 'CheckResult', driver_result: 'CheckResult',
    info: 'Record<string,string>' },
  CheckResult: { result: INT, reason: INT },
  NetworkStats: Object.assign(
    fields(INT, 'OutBps InBps OutPps InPps Status DownStatus UpStatus LiveUpPlr LiveDownPlr LiveRtt RealtimeUpPlr ' +
      'RealtimeDownPlr RealtimeRtt LiveVideoBitrate LiveVideoEncFps LiveVideoWidth LiveVideoHeight LiveVideoSentBytes ' +
      'LiveAudioBitrate LiveAudioSentBytes LiveAudioLevel CpuOverloadTimes'),
    fields(NUM, 'LiveAudioEnergy CpuAppUsage CpuSDKUsage CpuTotalUsage GpuAppUsage MemoryUsage'),
    { localStatistics: 'LocalStatistics[]', remoteStatistics: 'RemoteStatistics[]' }),
  LocalStatistics: fields(INT, 'width height frameRate videoBitrate audioSampleRate audioBitrate streamType ' +
    'audioCaptureState'),
  RemoteStatistics: Object.assign({ userId: 'string|null' }, fields(INT, 'audioPacketLoss videoPacketLoss width ' +
    'height frameRate videoBitrate audioSampleRate audioBitrate jitterBufferDelay point2PointDelay ' +
    'audioTotalBlockTime audioBlockRate videoTotalBlockTime videoBlockRate finalLoss streamType')),
};

function fields(kind, names) {
  return Object.fromEntries(names.split(' ').map((name) => [name, kind]));
}

const describe = (value) => (value === null ? 'null' : Array.isArray(value) ? 'an array' : typeof value === 'string'
  ? JSON.stringify(value) : typeof value === 'object' ? 'an object' : `${typeof value} ${String(value)}`);
const isPlain = (value) => value !== null && typeof value === 'object' && !Array.isArray(value);

/** Throws a TypeError naming `where` unless `value` is of `kind`. */
function check(kind, value, where) {
  const fail = (wanted) => {
    throw new TypeError(`${where}: expected ${wanted}, got ${describe(value)}`);
  };
  if (kind.endsWith('[]')) {
    if (!Array.isArray(value)) fail(`an array (${kind})`);
    value.forEach((item, i) => check(kind.slice(0, -2), item, `${where}[${i}]`));
  } else if (kind === INT) {
    if (!Number.isInteger(value) || value < -2147483648 || value > 2147483647) fail('a 32-bit integer');
  } else if (kind === NUM) {
    if (typeof value !== 'number') fail('a number');
  } else if (kind === 'boolean' || kind === STR) {
    if (typeof value !== kind) fail(`a ${kind}`);
  } else if (kind === 'string|null') {
    if (value !== null && typeof value !== 'string') fail('a string or null');
  } else if (kind === 'channel') {
    if (value !== null && value !== true) fail("true (the engine's channel) or null");
  } else if (kind === 'Record<string,string>') {
    if (!isPlain(value)) fail('an object of strings');
    for (const [key, item] of Object.entries(value)) check(STR, item, `${where}.${key}`);
  } else if (RECORDS[kind]) {
    if (!isPlain(value)) fail(`a ${kind} object`);
    for (const [key, item] of Object.entries(value)) {
      const wanted = RECORDS[kind][key];
      if (!wanted) throw new TypeError(`${where}: ${kind} has no field ${key} (it has ${Object.keys(RECORDS[kind]).join(', ')})`);
      check(wanted, item, `${where}.${key}`);
    }
  } else {
    throw new TypeError(`${where}: no check for parameters of kind ${kind}`);
  }
}

// --- Raising -----------------------------------------------------------------

/**
 * Makes the listener call `face.method(...args)` on an engine thread, as the
 * engine would; answers whether a listener was registered for that face.
 */
function raise(face, method, ...args) {
  if (typeof face !== 'string' || typeof method !== 'string') {
    throw new TypeError(`raise(face, method, ...args): face and method are strings, got ${describe(face)} and ${describe(method)}`);
  }
  const name = `${face}.${method}`;
  const kinds = SIGNATURES[name];
  if (!kinds) {
    const faces = [...new Set(Object.keys(SIGNATURES).map((key) => key.split('.')[0]))];
    const members = Object.keys(SIGNATURES).filter((key) => key.startsWith(`${face}.`)).map((key) => key.split('.')[1]);
    throw new TypeError(`raise: no listener method ${name}; ` + (members.length
      ? `${face} has ${members.join(', ')}` : `the faces are ${faces.join(', ')}`));
  }
  if (args.length !== kinds.length) {
    throw new TypeError(`raise ${name}(${kinds.join(', ')}): expected ${kinds.length} arguments, got ${args.length}`);
  }
  kinds.forEach((kind, i) => check(kind, args[i], `raise ${name} argument ${i + 1}`));
  if (!control.engineRunning()) {
    throw new Error(`raise ${name}: the engine is not running; the application must call initialize() on its engine ` +
      'before events can be raised (and after reset() it must initialize again)');
  }
  return control.raise(face, method, ...args);
}

/** Raises each [face, method, ...args] in order; throws when no listener heard one. */
function raiseAll(calls) {
  for (const [face, method, ...args] of calls) {
    if (!raise(face, method, ...args)) {
      throw new Error(`raise ${face}.${method}: no ${face} is registered; initialize the application's engine with its ` +
        'event handler first');
    }
  }
}

// --- Scenario verbs ----------------------------------------------------------
// Each raises what the loopback engine itself raises for that happening, in
// the same order; docs/testing.md lists the events the application receives.

const { AudioStream, VideoStream } = orva;
const DEVICE_TYPES = { speaker: orva.DEVICE_SPEAKER, microphone: orva.DEVICE_MIC, camera: orva.DEVICE_CAMERA };

function text(value, what) {
  check(STR, value, what);
  return value;
}

function deviceType(kind) {
  if (!Object.prototype.hasOwnProperty.call(DEVICE_TYPES, kind)) {
    throw new TypeError(`device kind: expected one of ${Object.keys(DEVICE_TYPES).join(', ')}, got ${describe(kind)}`);
  }
  return DEVICE_TYPES[kind];
}

function mediaKind(kind) {
  if (kind !== 'audio' && kind !== 'video') throw new TypeError(`media kind: expected 'audio' or 'video', got ${describe(kind)}`);
  return kind;
}

const CHANNEL = 'MediaChannelListener';
const DEVICES = 'IMediaDeviceCallback';
const SERVICE = 'MediaServiceListener';

function publishCalls(userId, kind, size = {}) {
  if (kind === 'audio') {
    return [[CHANNEL, 'OnStreamAdd', userId, AudioStream, 0, ['audio'], true], [CHANNEL, 'OnAudioEvent', userId, orva.FirstVoice]];
  }
  const { width = 1280, height = 720 } = size;
  return [[CHANNEL, 'OnStreamAdd', userId, VideoStream, 0, ['video'], true],
    [CHANNEL, 'OnVideoEvent', userId, orva.FirstImage], [CHANNEL, 'OnVideoSizeFirst', userId, width, height]];
}

const verbs = {
  /** A remote user enters the room with audio and video, as the loopback peer does. */
  remoteUserJoins(userId, { width = 1280, height = 720 } = {}) {
    text(userId, 'remoteUserJoins(userId)');
    raiseAll([[CHANNEL, 'OnStreamAdd', userId, AudioStream, 0, ['audio'], true],
      [CHANNEL, 'OnStreamAdd', userId, VideoStream, 0, ['video'], true],
      [CHANNEL, 'OnAudioEvent', userId, orva.FirstVoice], [CHANNEL, 'OnVideoEvent', userId, orva.FirstImage],
      [CHANNEL, 'OnVideoSizeFirst', userId, width, height]]);
  },
  /** A remote user leaves: their audio and video streams go away. */
  remoteUserLeaves(userId) {
    text(userId, 'remoteUserLeaves(userId)');
    raiseAll([[CHANNEL, 'OnStreamRemove', userId, AudioStream, 0, true], [CHANNEL, 'OnStreamRemove', userId, VideoStream, 0, true]]);
  },
  /** A remote user starts sending 'audio' or 'video'. */
  remoteUserPublishes(userId, kind, size) {
    text(userId, 'remoteUserPublishes(userId)');
    raiseAll(publishCalls(userId, mediaKind(kind), size));
  },
  /** A remote user stops sending 'audio' or 'video'. */
  remoteUserUnpublishes(userId, kind) {
    text(userId, 'remoteUserUnpublishes(userId)');
    raiseAll([[CHANNEL, 'OnStreamRemove', userId, mediaKind(kind) === 'audio' ? AudioStream : VideoStream, 0, true]]);
  },
  /** Network statistics with the given figures (NetworkStats fields; the rest 0). */
  networkStats(figures) {
    raiseAll([[SERVICE, 'OnNetworkStats', figures]]);
  },
  /** Users' voice volumes, [{ userId, microphone_volume, speaker_volume }], on both faces that carry them. */
  voiceVolumes(volumes, totalVolume = 0) {
    check('VolumeInfo[]', volumes, 'voiceVolumes(volumes)');
    raiseAll([[DEVICES, 'onUserVoiceVolume', volumes, volumes.length, totalVolume],
      [SERVICE, 'OnUserVoiceVolume', volumes, volumes.length, totalVolume]]);
  },
  /** A 'speaker', 'microphone' or 'camera' is plugged in. */
  devicePlugged(kind, deviceId) {
    raiseAll([[DEVICES, 'onDeviceChange', text(deviceId, 'devicePlugged(kind, deviceId)'), deviceType(kind), orva.DeviceStateAdd]]);
  },
  /** A 'speaker', 'microphone' or 'camera' is unplugged. */
  deviceUnplugged(kind, deviceId) {
    raiseAll([[DEVICES, 'onDeviceChange', text(deviceId, 'deviceUnplugged(kind, deviceId)'), deviceType(kind),
      orva.DeviceStateRemove]]);
  },
  /** A camera source fails; codes other than routine ones are crash-reported. */
  cameraFails(cameraId, code = orva.DEVICE_LOST) {
    raiseAll([[DEVICES, 'onCameraSourceError', text(cameraId, 'cameraFails(cameraId)'), code]]);
  },
  /** A microphone source fails (never crash-reported). */
  microphoneFails(micId, code = orva.Lost) {
    raiseAll([[DEVICES, 'onMicSourceError', text(micId, 'microphoneFails(micId)'), code]]);
  },
  /** A screen or window source fails; codes other than routine ones are crash-reported. */
  screenFails(sourceId, code = orva.SCREEN_CAPTURE_MONITOR_LOST) {
    raiseAll([[DEVICES, 'onScreenSourceError', text(sourceId, 'screenFails(sourceId)'), code]]);
  },
  /** The session's connection drops: it is retrying. */
  sessionDrops(room) {
    raiseAll([[SERVICE, 'OnSessionStateChanged', text(room, 'sessionDrops(room)'), orva.Retrying, orva.Init]]);
  },
  /** The session is back after a drop. */
  sessionReturns(room) {
    raiseAll([[SERVICE, 'OnSessionStateChanged', text(room, 'sessionReturns(room)'), orva.Joined, orva.Init]]);
  },
  /** An echo test's result; `result` holds EchoCheckResult fields (the rest 0). */
  echoResult(result = {}) {
    raiseAll([[SERVICE, 'onEchoResult', result]]);
  },
  /** A camera fault worth a crash report (an unclassified device error). */
  reportableError(cameraId = 'cam-0') {
    verbs.cameraFails(cameraId, orva.DEVICE_OTHER_ERROR);
  },
};

// --- What the application did ------------------------------------------------

/**
 * Reads one argument list as the journal writes it: JSON strings, numbers,
 * true/false/null, pointers (0x..., kept as text), records ({field:value}),
 * maps ({"key":"value"}) and lists ([...]).
 */
function parseArgs(source) {
  let at = 0;
  const fail = () => {
    throw new SyntaxError(`unreadable journal arguments at ${at}: ${source}`);
  };
  const space = () => {
    while (source[at] === ' ') at += 1;
  };
  const string = () => {
    const start = at;
    for (at += 1; source[at] !== '"'; at += 1) {
      if (at >= source.length) fail();
      if (source[at] === '\\') at += 1;
    }
    at += 1;
    return JSON.parse(source.slice(start, at));
  };
  const list = (close, item) => {
    const items = [];
    at += 1;
    space();
    if (source[at] === close) {
      at += 1;
      return items;
    }
    for (;;) {
      items.push(item());
      space();
      if (source[at] === close) break;
      if (source[at] !== ',') fail();
      at += 1;
      space();
    }
    at += 1;
    return items;
  };
  const value = () => {
    space();
    const c = source[at];
    if (c === '"') return string();
    if (c === '[') return list(']', value);
    if (c === '{') {
      return Object.fromEntries(list('}', () => {
        let key;
        if (source[at] === '"') {
          key = string();
        } else {
          key = (/^[A-Za-z_$][\w$]*/.exec(source.slice(at)) || fail())[0];
          at += key.length;
        }
        if (source[at] !== ':') fail();
        at += 1;
        return [key, value()];
      }));
    }
    const word = (/^[^,\]})\s]+/.exec(source.slice(at)) || fail())[0];
    at += word.length;
    if (word === 'true' || word === 'false') return word === 'true';
    if (word === 'null') return null;
    if (/^-?(\d|inf|nan)/i.test(word) && !/^0x/.test(word)) return Number(word.replace(/^(-?)inf$/i, '$1Infinity'));
    return word;
  };
  const args = list(')', value);
  if (at !== source.length) fail();
  return args;
}

/** One journal line as { operation, interface, member, args, line }. */
function parseRecord(line) {
  const open = line.indexOf('(');
  const operation = open < 0 ? line : line.slice(0, open);
  const dot = operation.lastIndexOf('.');
  let args;
  try {
    args = open < 0 ? [] : parseArgs(line.slice(open));
  } catch (error) {
    args = undefined;  // kept readable as `line`
  }
  return { operation, interface: operation.slice(0, dot), member: operation.slice(dot + 1), args, line };
}

/** Every call the engine received since the last reset or clearJournal(), oldest first. */
function journal() {
  return control.journal().map(parseRecord);
}

/** 'Interface.member' matches that operation; a bare 'member' matches it on any interface. */
function matcher(operation) {
  if (typeof operation === 'function') return operation;
  check(STR, operation, 'operation');
  return operation.includes('.') ? (record) => record.operation === operation : (record) => record.member === operation;
}

/** The journal's records of `operation` (a name, or a predicate on records). */
function calls(operation) {
  return journal().filter(matcher(operation));
}

/**
 * Resolves with the first record of `operation` in the journal (optionally
 * one whose args satisfy `where`) once it appears; rejects after `timeoutMs`.
 */
function waitForCall(operation, { where = () => true, timeoutMs = 2000 } = {}) {
  const matches = matcher(operation);
  const wanted = (record) => matches(record) && where(record.args, record);
  const deadline = Date.now() + timeoutMs;
  return new Promise((resolve, reject) => {
    const poll = () => {
      const records = journal();
      const found = records.find(wanted);
      if (found) return resolve(found);
      if (Date.now() >= deadline) {
        const last = records.slice(-5).map((record) => `  ${record.line}`).join('\n');
        return reject(new Error(`waited ${timeoutMs} ms for ${typeof operation === 'function' ? 'a matching call' : operation} ` +
          `in the engine's journal; it holds ${records.length} calls${records.length ? `, the last:\n${last}` : ''}`));
      }
      return setTimeout(poll, 5);
    };
    poll();
  });
}

/** Forgets the journal so far (waitForCall then sees only later calls). */
function clearJournal() {
  control.clearJournal();
}

/** The crash reports made so far, { type, tag, message }, oldest first. */
function crashReports() {
  return control.crashReports();
}

/**
 * Returns the engine to what a fresh process finds: stopped (an open session
 * reports Leaved first), devices, levels, sessions, media and settings as new,
 * journals and crash reports empty. The application initializes again after it.
 */
function reset() {
  control.reset();
}

module.exports = {
  ...verbs,
  raise,
  signatures: () => JSON.parse(JSON.stringify(SIGNATURES)),
  journal,
  calls,
  waitForCall,
  clearJournal,
  crashReports,
  reset,
  parseRecord,
  /** The test-control addon itself, for what the verbs do not cover (frames, log lines, live counts). */
  control,
};
