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

const PRIMITIVES = [undefined, null, true, false, 0, 1, -1, 7.5, -0.5, NaN, Infinity, -Infinity, 2 ** 31, 2 ** 32 + 1,
  2 ** 53, -(2 ** 63), 1e39, '', 'text', '\u4e2d', '5', {}, [], Symbol('s'), () => 0, 10n];

function engineObjects() {
  const sdk = orva.OrvaEngine.SDK();
  const service = sdk.MediaService();
  return {
    OrvaEngine: sdk, RtcEngine: orva.RtcEngine.SDK(), IMediaService: service, MediaDevice: sdk.Device(),
    MediaChannel: sdk.RealtimeChannel(), AudioService: sdk.Audio(), LocalMediaTranscoder: sdk.MediaTranscoder(),
    IBeautyEngine: sdk.BeautyEngine(), MediaLive: service.Live(),
  };
}

// One object of every class that has one: made, or borrowed from the engine.
function instances() {
  const objects = engineObjects();
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
    assert.ok(error instanceof Error && error.constructor === Error, `${label}: not a plain Error: ${error}`);
    assert.ok(FORMS.some((form) => form.test(error.message)), `${label}: unexpected message ${JSON.stringify(error.message)}`);
  }
}

test('every method, constructor and accessor under generated arguments', () => {
  const next = random(20261122);
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
  assert.ok(calls > 20000, `only ${calls} calls`);
  console.log('calls', calls);
  // The engine that all this went through still answers.
  assert.equal(typeof orva.OrvaEngine.SDK().GetVersion(), 'string');
  orva.OrvaEngine.SDK().Terminate();
  control().clearJournal();
});
