'use strict';
// What can be shared: screens and windows as capture sources, the capture
// modes this system offers, and starting or stopping one source by its type.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva } = require('./lib/orva');
const { settings, FAST_PROD, callsOf, journalOf } = require('./lib/facade');

const Wrapper = orva.OrvaEngineWrapper;
const engine = Wrapper.createOrvaEngine();

test.before(() => assert.equal(engine.initialize(settings(FAST_PROD), null), 0));
test.after(() => engine.destroy());

const rectOf = (rect) => ({ x: rect.x, y: rect.y, width: rect.width, height: rect.height });

// The loopback engine's screens and windows.
const SCREENS = [
  { id: 1, name: 'Loopback Screen 1', rect: { x: 0, y: 0, width: 1920, height: 1080 } },
  { id: 2, name: 'Loopback Screen 2', rect: { x: 1920, y: 0, width: 2560, height: 1440 } },
];
const WINDOWS = [
  { id: 65537, title: 'Editor', rect: { x: 100, y: 100, width: 1280, height: 800 } },
  { id: 65538, title: 'Browser', rect: { x: 200, y: 150, width: 1440, height: 900 } },
  { id: 65539, title: 'Terminal', rect: { x: 300, y: 200, width: 800, height: 600 } },
];

test('getScreenCaptureSources lists the screens, then the windows, as sources in capture mode 0', () => {
  let sources;
  assert.deepEqual(callsOf(() => { sources = engine.getScreenCaptureSources(); }),
    ['OrvaEngine.getScreenList()', 'OrvaEngine.getWindowList()']);
  assert.ok(Array.isArray(sources));
  assert.deepEqual(sources.map((source) => source.constructor.name), Array(5).fill('_exports_ScreenCaptureSourceInfo'));
  assert.deepEqual(
    sources.map(({ type, id, title, rect, mode }) => ({ type, id, title, rect: rectOf(rect), mode })),
    [
      ...SCREENS.map(({ id, name, rect }) => ({ type: 1, id: String(id), title: name, rect, mode: 0 })),
      ...WINDOWS.map(({ id, title, rect }) => ({ type: 0, id: String(id), title, rect, mode: 0 })),
    ],
  );
});

test("getScreenList and getWindowList answer copies of the engine's lists", () => {
  let screens;
  let windows;
  assert.deepEqual(callsOf(() => { screens = engine.getScreenList(); }), ['OrvaEngine.getScreenList()']);
  assert.deepEqual(callsOf(() => { windows = engine.getWindowList(); }), ['OrvaEngine.getWindowList()']);
  assert.equal(screens.constructor.name, '_exports_ScreenVector');
  assert.equal(windows.constructor.name, '_exports_WindowVector');
  const all = (vector) => Array.from({ length: vector.size() }, (_, i) => vector.get(i));
  assert.deepEqual(all(screens).map(({ id, name, rect }) => ({ id, name, rect: rectOf(rect) })), SCREENS);
  assert.deepEqual(all(windows).map(({ id, title, rect }) => ({ id, title, rect: rectOf(rect) })), WINDOWS);

  screens.get(0).name = 'renamed';
  windows.clear();
  assert.equal(engine.getScreenList().get(0).name, 'Loopback Screen 1');
  assert.equal(engine.getWindowList().size(), 3);
});

function source(type, id, title = '', mode = 0, rect = {}) {
  const info = Object.assign(new orva.ScreenCaptureSourceInfo(), { type, id, title, mode });
  Object.assign(info.rect, rect);
  return info;
}

const NO_RECT = 'rect:{x:0,y:0,width:0,height:0}';

// [case, source, the engine's journal]
const STARTS = [
  ['a screen by its id, with its mode; no name and no rectangle taken',
    source(1, '2', 'Loopback Screen 2', 3, { x: 1920, width: 2560, height: 1440 }),
    [`OrvaEngine.StartCaptureScreen({id:2,name:"",${NO_RECT}}, 3)`]],
  ['a window by its id, keeping its title', source(0, '65538', 'Browser', 2),
    [`OrvaEngine.StartCaptureWindow({id:65538,title:"Browser",${NO_RECT}}, 2)`]],
  ['leading blanks are skipped', source(1, ' \t 1', '', 1), [`OrvaEngine.StartCaptureScreen({id:1,name:"",${NO_RECT}}, 1)`]],
  ['parsing stops at the first non-digit', source(0, '65539 Terminal', 'Terminal'),
    [`OrvaEngine.StartCaptureWindow({id:65539,title:"Terminal",${NO_RECT}}, 0)`]],
  ['leading zeros are decimal', source(1, '0012'), [`OrvaEngine.StartCaptureScreen({id:12,name:"",${NO_RECT}}, 0)`]],
  ['an id that holds no number is 0', source(1, 'screen-1'), [`OrvaEngine.StartCaptureScreen({id:0,name:"",${NO_RECT}}, 0)`]],
  ['an empty id is 0', source(0, '', 'Untitled', 1), [`OrvaEngine.StartCaptureWindow({id:0,title:"Untitled",${NO_RECT}}, 1)`]],
  ['a large id keeps all its digits', source(0, '4294967296123', 'Big'),
    [`OrvaEngine.StartCaptureWindow({id:4294967296123,title:"Big",${NO_RECT}}, 0)`]],
  ['the unknown type does nothing', source(-1, '1', 'Loopback Screen 1'), []],
  ['any other type does nothing', source(2, '1', 'Loopback Screen 1'), []],
];

test('startScreenSource chooses the screen or the window capture by type, with the id parsed as a decimal number', () => {
  for (const [label, info, expected] of STARTS) assert.deepEqual(callsOf(() => engine.startScreenSource(info)), expected, label);
});

// [case, source, the engine's journal]
const STOPS = [
  ['a screen by its id text', source(1, '2'), ['OrvaEngine.StopCaptureScreen("2")']],
  ['a window by its id text', source(0, '65538', 'Browser'), ['OrvaEngine.StopCaptureWindow("65538")']],
  ['the id text is passed unparsed', source(1, ' 1x'), ['OrvaEngine.StopCaptureScreen(" 1x")']],
  ['the unknown type does nothing', source(-1, '2'), []],
  ['any other type does nothing', source(7, '2'), []],
];

test('stopScreenSource chooses the screen or the window stop by type, with the id as text', () => {
  for (const [label, info, expected] of STOPS) assert.deepEqual(callsOf(() => engine.stopScreenSource(info)), expected, label);
});

test('the capture modes of a system without a comparable version: screens Default, GDI; windows Default, DXGI', () => {
  const modes = (list) => [list.constructor.name, Array.from({ length: list.Size() }, (_, i) => list.Get(i))];
  let screen;
  let window;
  assert.deepEqual(journalOf(() => {
    screen = Wrapper.getScreenCaptureModeList();
    window = Wrapper.getWindowCaptureModeList();
  }), []);
  assert.deepEqual(modes(screen), ['_exports_ScreenCaptureModeList', [0, 3]], 'Default, GDI');
  assert.deepEqual(modes(window), ['_exports_ScreenCaptureModeList', [0, 2]], 'Default, DXGI');
});
