'use strict';
// Overloaded constructors and functions: when no form accepts the
// arguments, the member's one generic message; a null given for a reference
// ends the choice at once with its own message, whatever the forms' order.
const test = require('node:test');
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { orva, thrown, root } = require('./lib/orva');

const construction = (name) => `Illegal arguments for construction of _exports_${name}`;
const generic = (name) => `Illegal arguments for function ${name}.`;
const nullRef = (method, position, type) =>
  `invalid null reference in method '${method}', argument ${position} of type '${type}'`;

const LISTS = ['SpeakerList', 'MicrophoneList', 'CameraResolutionList', 'CameraList', 'WindowList', 'ScreenList',
  'LocalMediaTranscodingSourceList', 'ScreenCaptureModeList'];

// [class, argument lists, expected message]
const CONSTRUCTORS = [
  ['StringMap', [[5], ['a'], [new orva.Rect()], [1, 2]], construction('StringMap')],
  ['StringMap', [[null]], nullRef('new_StringMap', 1, 'std::map< std::string,std::string > const &')],
  ...['Screen', 'Window'].flatMap((element) => [
    [`${element}Vector`, [['x'], [-1], [2 ** 31], [true], ['x', 1]], construction(`${element}Vector`)],
    [`${element}Vector`, [[null]], nullRef(`new_${element}Vector`, 1, `std::vector< Orva::Rtc::${element} > const &`)],
  ]),
  ['StringVector', [['4'], [null], [1, 2]], construction('StringVector')],
  ...LISTS.flatMap((list) => [
    [list, [[5], ['x'], [new orva.Rect()], [1, 2]], construction(list)],
    [list, [[null]], nullRef(`new_${list}`, 1, `Orva::Rtc::${list} const &`)],
  ]),
  // Chosen by argument count: the form's own message.
  ['VideoFrame', [['x'], [null]], "in method 'new_VideoFrame', argument 1 of type 'int'"],
  ['VideoFrame', [[1, 2]], construction('VideoFrame')],
];

const sdk = () => orva.OrvaEngine.SDK();
const receivers = {
  Settings: () => new orva.Settings(),
  CameraList: () => new orva.CameraList(),
  MediaDevice: () => sdk().Device(),
  MediaChannel: () => sdk().RealtimeChannel(),
  IMediaService: () => sdk().MediaService(),
  OrvaEngineListener: () => new orva.OrvaEngineListener(),
  OrvaEngine: sdk,
  OrvaEngineWrapper: () => new orva.OrvaEngineWrapper(),
};
const S = Symbol('no form takes this');

// [class, method, argument lists, expected message or null for the generic one]
const FUNCTIONS = [
  ['Settings', 'add', [[1, 'x'], ['k', 5], ['k']], null],
  ['Settings', 'get', [[1, 5], ['k', true]], null],
  ['CameraList', 'Get', [[true], [S]], null],
  ['OrvaEngineListener', 'Initialize', [[], [null, null]], null],
  ['OrvaEngineListener', 'OnAudioEvent', [['x', 'y'], ['x']], null],
  ['OrvaEngineListener', 'OnVideoEvent', [['x', 'y'], [S]], null],
  ['IMediaService', 'Initialize', [[1, null], [null, null, S, null]], null],
  ['OrvaEngine', 'Initialize', [[1], [new orva.Rect()], [null, 1]], null],
  ...['MediaDevice', 'OrvaEngine'].flatMap((cls) => [
    [cls, 'SetMicrophone', [[true], [S]], null],
    [cls, 'SetMicrophone', [[null]], nullRef(`${cls}_SetMicrophone`, 2, 'std::string const &')],
    [cls, 'SetSpeaker', [[true]], null],
    [cls, 'SetSpeaker', [[null]], nullRef(`${cls}_SetSpeaker`, 2, 'std::string const &')],
    [cls, 'StartSpeakerTest', [[1], ['x', 1]], null],
    [cls, 'OpenCamera', [[true]], null],
    [cls, 'CloseCamera', [[1]], null],
    [cls, 'StartPreview', [[1], [null, 1]], null],
    [cls, 'StopPreview', [[1]], null],
    [cls, 'SetCameraVideoProcessor', [[1], [new orva.Rect(), 'x']], null],
    [cls, 'StartCaptureScreen', [[1], [new orva.Window(), 1]], null],
    [cls, 'StartCaptureScreen', [[null, 1]], nullRef(`${cls}_StartCaptureScreen`, 2, 'Orva::Rtc::Screen')],
    [cls, 'GetCurrentAudioLevel', [[1]], null],
  ]),
  ...['MediaChannel', 'OrvaEngine'].flatMap((cls) => [
    [cls, 'PublishVideo', [['x'], [0, 1]], null],
    [cls, 'PublishVideo', [[0, null]], nullRef(`${cls}_PublishVideo`, 3, 'std::string const &')],
    [cls, 'ChangeVideoSource', [['x']], null],
    [cls, 'ChangeVideoSource', [[0, null]], nullRef(`${cls}_ChangeVideoSource`, 3, 'std::string const &')],
    [cls, 'SetVideoPauseImage', [[1, 1], [null, 'x']], null],
    [cls, 'DeliverVideoFrame', [[1], [null, 1, 1, 1, 'x']], null],
  ]),
  ['MediaChannel', 'DeliverAudioFrame', [[1], [null, 1, 1, 1, -1]], null],
  ['OrvaEngine', 'EnableAudioAGC', [[1], [true, 'x']], null],
  ['OrvaEngine', 'EnableAudioANS', [[1]], null],
  ['OrvaEngine', 'StartRender', [[1], ['x', null, 'y']], null],
  ['OrvaEngine', 'StopRender', [[1]], null],
  ['OrvaEngineWrapper', 'setVideoMuteImage', [[1], ['x', 'y']], null],
  ['OrvaEngineWrapper', 'setVideoMuteImage', [[null], [null, 1]],
    nullRef('OrvaEngineWrapper_setVideoMuteImage', 2, 'std::string const &')],
  ['OrvaEngineWrapper', 'addImageSource', [[1]], null],
  ['OrvaEngineWrapper', 'addImageSource', [[null, 0]], nullRef('OrvaEngineWrapper_addImageSource', 2, 'std::string const &')],
  ['OrvaEngineWrapper', 'enableAudioAGC', [[1], [true, true]], null],
  ['OrvaEngineWrapper', 'enableAudioANS', [['x']], null],
  ['OrvaEngineWrapper', 'createTraceWindow', [[0, 0, 'x', 1], [0, 0, 'x', true, 'y']], null],
  ['OrvaEngineWrapper', 'createTraceWindow', [[0, 0, null, true]],
    nullRef('OrvaEngineWrapper_createTraceWindow', 4, 'std::string const &')],
];

test('every overloaded constructor answers its generic or null-reference message', () => {
  for (const [name, argumentLists, message] of CONSTRUCTORS) {
    for (const args of argumentLists) assert.equal(thrown(() => new orva[name](...args)), message, `new ${name}(${args.length})`);
  }
});

test('every overloaded function answers its generic or null-reference message', () => {
  for (const [cls, method, argumentLists, message] of FUNCTIONS) {
    const receiver = receivers[cls]();
    for (const args of argumentLists) {
      assert.equal(thrown(() => receiver[method](...args)), message ?? generic(method), `${cls}.${method}(${args.length})`);
    }
  }
});

// Every member the interface description declares more than once (or with
// defaults) is in the tables above.
test('the tables cover every overloaded member of the interface description', () => {
  const text = fs.readFileSync(path.join(root, 'sdk', 'win', 'orva.api'), 'utf8');
  const overloaded = new Set();
  let cls = null;
  let previous = null;
  for (const line of text.split('\n')) {
    const header = /^class (\w+)/.exec(line);
    if (header) [cls, previous] = [header[1], null];
    const member = /^ {4}(?:static )?(?:new|[^(]*?\b(\w+))\((.*)\)/.exec(line);
    if (!cls || !member) continue;
    const name = member[1] ?? 'new';
    if (name === previous || member[2].includes('=') || /^ {4}dispatcher /.test(line)) overloaded.add(`${cls}.${name}`);
    previous = name;
  }
  for (const line of text.split('\n')) {
    const dispatcher = /^ {4}dispatcher (\w+)/.exec(line);
    if (dispatcher) overloaded.add(`OrvaEngineListener.${dispatcher[1]}`);
  }
  const covered = new Set([
    ...CONSTRUCTORS.map(([name]) => `${name}.new`),
    ...FUNCTIONS.map(([cls, method]) => `${cls}.${method}`),
  ]);
  assert.deepEqual([...overloaded].filter((name) => !covered.has(name)), []);
});
