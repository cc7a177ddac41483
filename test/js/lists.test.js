'use strict';
// The engine's list classes, Settings and StringVector.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva, thrown } = require('./lib/orva');

const LISTS = [
  ['SpeakerList', 'Speaker', 'name'],
  ['MicrophoneList', 'Microphone', 'name'],
  ['CameraResolutionList', 'CameraResolution', 'width'],
  ['CameraList', 'Camera', 'guid'],
  ['WindowList', 'Window', 'title'],
  ['ScreenList', 'Screen', 'name'],
  ['LocalMediaTranscodingSourceList', 'LocalMediaTranscodingSource', 'imagePath'],
];

function element(type, key, value) {
  const object = new orva[type]();
  object[key] = value;
  return object;
}

test('lists add copies, hand out live elements, and copy deeply', () => {
  for (const [listType, elementType, key] of LISTS) {
    const value = typeof new orva[elementType]()[key] === 'number' ? 42 : 'first';
    const changed = typeof value === 'number' ? 43 : 'changed';
    const list = new orva[listType]();
    const original = element(elementType, key, value);
    list.Add(original);
    original[key] = changed;
    assert.equal(list.Size(), 1, listType);
    assert.equal(list.Get(0)[key], value, `${listType} stores a copy`);
    list.Get(0)[key] = changed;
    assert.equal(list.Get(0)[key], changed, `${listType} element proxies write through`);
    assert.equal(list.Get(5), null, `${listType} out of range is null`);
    assert.equal(list.Get(-1), null);
    const copy = new orva[listType](list);
    copy.Add(element(elementType, key, value));
    assert.equal(list.Size(), 1, `${listType} copy is independent`);
    assert.equal(copy.Size(), 2);
    assert.equal(thrown(() => list.Add(null)),
      `invalid null reference in method '${listType}_Add', argument 2 of type 'Orva::Rtc::${elementType} const &'`);
  }
});

test('lookups by id', () => {
  const cameras = new orva.CameraList();
  cameras.Add(element('Camera', 'guid', 'cam-a'));
  cameras.Add(element('Camera', 'guid', 'cam-b'));
  assert.equal(cameras.Get('cam-b').guid, 'cam-b');
  assert.equal(cameras.Get(1).guid, 'cam-b');
  assert.equal(cameras.Get('nope'), null);
  assert.equal(thrown(() => cameras.Get(true)), 'Illegal arguments for function Get.');
  const windows = new orva.WindowList();
  const window = new orva.Window();
  window.id = 77;
  windows.Add(window);
  assert.equal(windows.GetById(77).id, 77);
  assert.equal(windows.GetById(78), null);
  assert.equal(thrown(() => windows.GetById('77')), "in method 'WindowList_GetById', argument 2 of type 'int'");
});

test('capture-mode lists hold numbers', () => {
  const modes = new orva.ScreenCaptureModeList();
  modes.Add(orva.ScreenCaptureModeDXGI);
  const copy = new orva.ScreenCaptureModeList(modes);
  copy.Add(1);
  assert.deepEqual([modes.Size(), modes.Get(0), copy.Size()], [1, 2, 2]);
});

test('StringVector adds through its const member', () => {
  const vector = new orva.StringVector(4);
  vector.add('a');
  vector.add('\u00e9');
  assert.deepEqual([vector.size(), vector.get(0), vector.get(1)], [2, 'a', '\u00e9']);
  assert.equal(thrown(() => vector.add(null)),
    "invalid null reference in method 'StringVector_add', argument 2 of type 'std::string const &'");
});

test('Settings picks its overload by the argument type', () => {
  const settings = new orva.Settings();
  settings.add('count', '12');
  settings.add('name', 'orva');
  assert.equal(settings.get('count', 5), 12);
  assert.equal(settings.get('name', 'x'), 'orva');
  assert.equal(settings.get('missing', 5), 5);
  assert.equal(settings.get('missing', 'x'), 'x');
  assert.equal(typeof settings.get('name', 5), 'number');
  settings.add('handle', new orva.Rect());
  settings.add('nothing', null);
  assert.equal(settings.get('handle', 'fallback'), 'fallback', 'a pointer value is not a string');
  assert.equal(thrown(() => settings.add('k', 5)), 'Illegal arguments for function add.');
  assert.equal(thrown(() => settings.get('k', true)), 'Illegal arguments for function get.');
});
