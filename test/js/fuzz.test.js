'use strict';
// The whole surface under generated argument lists: the process never
// crashes, and every throw is a plain Error with one of the binding's forms.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva, control } = require('./lib/orva');

const FORMS = [
  /^Illegal number of arguments for _wrap_\w+\.$/,
  /^in method '\w+', argument \d+ of type '[^']+'$/,
  /^invalid null reference in method '\w+', argument \d+ of type '[^']+'$/,
  /^Illegal arguments for function \w+\.$/,
  /^Illegal arguments for construction of _exports_\w+$/,
  /^Illegal call of constructor _wrap_new_\w+\.$/,
  /^Class \w+ can not be instantiated$/,
  /^Tried to write read-only variable(: \w+)?\.$/,
  /^Illegal number of arguments for equals\.$/,
  /^Could not get pointer from 'this' object for equals\.$/,
  /^vector index out of range$/,
  /^key not found$/,
];

// A small deterministic generator, so that a failure can be replayed.
function random(seed) {
  let state = seed >>> 0;
  return () => {
    state = (state * 1664525 + 1013904223) >>> 0;
    return state / 2 ** 32;
  };
}

// With a hook installed, Node.js keeps a JavaScript object in an internal
// field of every promise: an object of another kind with an internal field.
require('node:async_hooks').createHook({ init() {} }).enable();

const detached = new ArrayBuffer(8);
structuredClone(detached, { transfer: [detached] });
// What hostile values throw. Members that read script objects (a render
// buffer's options, say) must let it through unchanged.
const OWN_ERROR = new Error('thrown by a hostile value');
const raise = () => { throw OWN_ERROR; };
const hostile = new Proxy({}, { get: raise, getPrototypeOf: raise, has: raise, ownKeys: raise });

const PRIMITIVES = [undefined, null, true, false, 0, 1, -1, 7.5, -0.5, NaN, Infinity, -Infinity, 2 ** 31, 2 ** 32 + 1,
  2 ** 53, -(2 ** 63), 1e39, '', 'text', '\u4e2d', '5', {}, [], Symbol('s'), () => 0, 10n,
  Promise.resolve(1), hostile, { get x() { return raise(); } }, Object.create(orva.Camera.prototype),
  new Uint8Array(new ArrayBuffer(8, { maxByteLength: 16 })), detached, Buffer.alloc(4), new Float64Array(2)];

// Setters that throw on the prototypes every script object and array starts
// from: the binding builds its arrays and objects from own properties only.
function withHostilePrototypes(fn) {
  const keys = ['0', '1', '2', 'length', 'type', 'id', 'name', 'x'];
  const throwing = { set() { throw new Error('prototype setter'); }, configurable: true };
  for (const key of keys) {
    Object.defineProperty(Array.prototype, key === 'length' ? 'lengthish' : key, throwing);
    Object.defineProperty(Object.prototype, `${key}_`, throwing);
  }
  try {
    return fn();
  } finally {
    for (const key of keys) {
      delete Array.prototype[key === 'length' ? 'lengthish' : key];
      delete Object.prototype[`${key}_`];
    }
  }
}

function engineObjects() {
  const sdk = orva.OrvaEngine.SDK();
  const service = sdk.MediaService();
  return {
    OrvaEngine: sdk, RtcEngine: orva.RtcEngine.SDK(), IMediaService: service, MediaDevice: sdk.Device(),
    MediaChannel: sdk.RealtimeChannel(), AudioService: sdk.Audio(), LocalMediaTranscoder: sdk.MediaTranscoder(),
    IBeautyEngine: sdk.BeautyEngine(), MediaLive: service.Live(),
  };
}

// One object of every class that has one: made, or borrowed from the engine
// or from a container that may move it.
function instances() {
  const objects = engineObjects();
  const screens = new orva.ScreenVector(2);
  objects.Screen = screens.get(1);
  objects.Rect = objects.Screen.rect;
  objects.ScreenVector = screens;
  for (const name of Object.keys(orva)) {
    if (typeof orva[name] !== 'function' || objects[name]) continue;
    try {
      objects[name] = new orva[name]();
    } catch {
      // not constructible and not reachable from the engine
    }
  }
  return objects;
}

// The members to call: whatever the prototype chain of each class offers.
function methodsOf(object) {
  const names = new Set();
  for (let p = Object.getPrototypeOf(object); p && p !== Object.prototype; p = Object.getPrototypeOf(p)) {
    for (const name of Object.getOwnPropertyNames(p)) if (name !== 'constructor') names.add(name);
  }
  return [...names];
}

// Members that would stop what other tests in this file rely on, or that
// hand the engine a frame to read: they are called with receivers and
// counts only, never with generated pointers.
const QUIET = new Set(['DeliverVideoFrame', 'DeliverAudioFrame', 'SetVideoPauseImage', 'DeliverTextureVideoFrame']);

function check(fn, label) {
  try {
    fn();
  } catch (error) {
    if (error === OWN_ERROR) return;
    assert.ok(error instanceof Error && error.constructor === Error, `${label}: not a plain Error: ${error}`);
    assert.ok(FORMS.some((form) => form.test(error.message)), `${label}: unexpected message ${JSON.stringify(error.message)}`);
  }
}

test('every method, constructor and accessor under generated arguments', () => {
  const calls = withHostilePrototypes(callEverything);
  assert.ok(calls > 20000, `only ${calls} calls`);
  // The engine that all this went through still answers.
  assert.equal(typeof orva.OrvaEngine.SDK().GetVersion(), 'string');
  orva.OrvaEngine.SDK().Terminate();
  control().clearJournal();
});

function callEverything() {
  // ORVA_FUZZ_SEED replays another sequence.
  const next = random(Number(process.env.ORVA_FUZZ_SEED ?? 20261122));
  const objects = instances();
  const pool = () => {
    const values = [...PRIMITIVES, ...Object.values(objects)];
    return values[Math.floor(next() * values.length)];
  };
  let calls = 0;
  for (const [className, object] of Object.entries(objects)) {
    const foreign = Object.values(objects)[Math.floor(next() * Object.keys(objects).length)];
    for (const method of methodsOf(object)) {
      const fn = object[method];
      if (typeof fn !== 'function') continue;
      for (const receiver of [object, foreign, {}, undefined]) {
        for (let count = 0; count <= 6; count += 1) {
          for (let round = 0; round < 4; round += 1) {
            const args = Array.from({ length: count }, pool);
            if (QUIET.has(method) && receiver === object && args.some((a) => a && typeof a === 'object')) continue;
            check(() => fn.apply(receiver, args), `${className}.${method}(${count})`);
            calls += 1;
          }
        }
      }
    }
    for (const field of Object.keys(object)) {
      for (let round = 0; round < 8; round += 1) {
        const value = pool();
        check(() => { object[field] = value; }, `${className}.${field} =`);
        check(() => object[field], `${className}.${field}`);
        calls += 2;
      }
    }
  }
  for (const name of Object.keys(orva)) {
    const constructor = orva[name];
    if (typeof constructor !== 'function') {
      check(() => { orva[name] = pool(); }, `${name} =`);
      continue;
    }
    for (let count = 0; count <= 3; count += 1) {
      for (let round = 0; round < 6; round += 1) {
        const args = Array.from({ length: count }, pool);
        check(() => new constructor(...args), `new ${name}(${count})`);
        check(() => constructor(...args), `${name}(${count})`);
        calls += 2;
      }
    }
    for (const staticName of Object.getOwnPropertyNames(constructor)) {
      if (typeof constructor[staticName] !== 'function') continue;
      for (let count = 0; count <= 3; count += 1) {
        const args = Array.from({ length: count }, pool);
        check(() => constructor[staticName](...args), `${name}.${staticName}(${count})`);
        calls += 1;
      }
    }
  }
  return calls;
}

test('arrays of proxies are built from own properties only', () => {
  const wrapper = new orva.OrvaEngineWrapper();
  const settings = new orva.Settings();
  settings.add('environment', 'prod');
  assert.equal(wrapper.initialize(settings, null), 0);
  const sources = withHostilePrototypes(() => wrapper.getScreenCaptureSources());
  assert.ok(sources.length > 0);
  assert.ok(sources.every((source) => Object.getPrototypeOf(source) === Object.getPrototypeOf(sources[0])));
  assert.equal(typeof sources[0].title, 'string');
  wrapper.destroy();
});
