'use strict';
// The uniform error messages: each form, thrown as a plain Error.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva, thrown } = require('./lib/orva');

const engine = () => orva.OrvaEngine.SDK();

const CASES = [
  ['argument count of a method', () => engine().ScaleMicrophone(1, 2),
    'Illegal number of arguments for _wrap_OrvaEngine_ScaleMicrophone.'],
  ['argument count of a static', () => orva.OrvaEngine.SDK(1),
    'Illegal number of arguments for _wrap_OrvaEngine_SDK.'],
  ['argument count of a constructor', () => new orva.Camera(1),
    'Illegal number of arguments for _wrap_new_Camera.'],
  ['receiver of a method', () => orva.OrvaEngine.prototype.ScaleMicrophone.call(new orva.Rect(), 1),
    "in method 'OrvaEngine_ScaleMicrophone', argument 1 of type 'Orva::Rtc::OrvaEngine *'"],
  ['receiver of a const method', () => orva.StringVector.prototype.add.call({}, 'x'),
    "in method 'StringVector_add', argument 1 of type 'Orva::Rtc::StringVector const *'"],
  ['argument type', () => engine().JoinSession(5, null),
    "in method 'OrvaEngine_JoinSession', argument 2 of type 'char const *'"],
  ['argument type of a static', () => orva.OrvaEngine.reportOrvaSentryEvent('x', 'a', 'b'),
    "in method 'OrvaEngine_reportOrvaSentryEvent', argument 1 of type 'Orva::Rtc::SentryReportType'"],
  ['argument type of a setter', () => { new orva.VideoEncParam().fps = 'x'; },
    "in method 'VideoEncParam_fps_set', argument 2 of type 'uint32_t'"],
  ['invalid null reference', () => new orva.StringMap().get(null),
    "invalid null reference in method 'StringMap_get', argument 2 of type 'std::string const &'"],
  ['invalid null reference of a list element', () => new orva.CameraList().Add(null),
    "invalid null reference in method 'CameraList_Add', argument 2 of type 'Orva::Rtc::Camera const &'"],
  ['invalid null reference of a string field', () => { new orva.VolumeInfo().userId = null; },
    "invalid null reference in method 'VolumeInfo_userId_set', argument 2 of type 'std::string const &'"],
  ['invalid null reference of a vector element', () => new orva.ScreenVector().add(null),
    "invalid null reference in method 'ScreenVector_add', argument 2 of type 'std::vector< Orva::Rtc::Screen >::value_type const &'"],
  ['constructor without new', () => orva.Camera(), 'Illegal call of constructor _wrap_new_Camera.'],
  ['not instantiable', () => new orva.OrvaEngine(), 'Class OrvaEngine can not be instantiated'],
  ['not instantiable without new', () => orva.RtcEngine(), 'Class RtcEngine can not be instantiated'],
  ['read-only constant', () => { orva.kLevelError = 1; }, 'Tried to write read-only variable: kLevelError.'],
  ['equals argument count', () => new orva.Rect().equals(), 'Illegal number of arguments for equals.'],
  ['equals receiver', () => orva.Rect.prototype.equals.call({}, null),
    "Could not get pointer from 'this' object for equals."],
  ['equals argument', () => new orva.Rect().equals(5), "in method 'equals', argument 1 of type 'void *'"],
  ['getCPtr receiver', () => orva.Rect.prototype.getCPtr.call({}), "in method 'getCPtr', argument 1 of type 'void *'"],
  ['native out-of-range text', () => new orva.WindowVector().get(0), 'vector index out of range'],
  ['native missing key', () => new orva.StringMap().del('k'), 'key not found'],
];

test('every message form, thrown as a plain Error', () => {
  for (const [label, fn, message] of CASES) assert.equal(thrown(fn), message, label);
});

test('classes that script cannot construct refuse every call form', () => {
  const names = ['AudioService', 'IBeautyEngine', 'IOrvaService', 'ILocalMediaTranscoderCallback',
    'IMediaDeviceCallback', 'IMediaService', 'OrvaEngine', 'OrvaVideoProccessor', 'LocalMediaTranscoder',
    'MediaChannel', 'MediaDevice', 'MediaLive', 'RtcEngine'];
  for (const name of names) {
    const message = `Class ${name} can not be instantiated`;
    assert.equal(thrown(() => new orva[name]()), message);
    assert.equal(thrown(() => new orva[name](1, 'x')), message);
    assert.equal(thrown(() => orva[name]()), message);
  }
});

test('a failed call changes nothing', () => {
  const list = new orva.CameraList();
  assert.equal(thrown(() => list.Add(new orva.Rect())),
    "in method 'CameraList_Add', argument 2 of type 'Orva::Rtc::Camera const &'");
  assert.equal(list.Size(), 0);
  const rect = new orva.Rect();
  rect.x = 3;
  assert.throws(() => { rect.x = '4'; });
  assert.equal(rect.x, 3);
});
