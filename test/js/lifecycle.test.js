'use strict';
// Loading and unloading: a second initialisation, other threads, clean exit.
const test = require('node:test');
const assert = require('node:assert/strict');
const path = require('path');
const { spawnSync } = require('child_process');
const { root, buildDir } = require('./lib/orva');

const addon = path.join(buildDir, 'orvaEngine.node');

function runScript(source, extraEnv = {}) {
  return spawnSync(process.execPath, ['-e', source], {
    cwd: root,
    env: { ...process.env, ...extraEnv },
    encoding: 'utf8',
    timeout: 60000,
  });
}

test('a script that used the module exits with status 0', () => {
  const result = runScript(`
    const orva = require(${JSON.stringify(root)});
    const engine = orva.OrvaEngine.SDK();
    const list = engine.Cameras();
    const camera = list.Get(0);
    new orva.StringMap().set('a', 'b');
    if (!camera) process.exit(3);
    console.log('used');
  `);
  assert.equal(result.stderr, '');
  assert.equal(result.stdout, 'used\n');
  assert.equal(result.status, 0);
});

test('a second initialisation rebuilds the classes and finds the type table attached', () => {
  const result = runScript(`
    const first = require(${JSON.stringify(root)});
    const second = { exports: {} };
    process.dlopen(second, ${JSON.stringify(addon)});
    const again = second.exports;
    if (again === first || again.Camera === first.Camera) throw new Error('no new classes');
    const camera = new again.Camera();
    camera.name = 'x';
    const old = new first.Camera();
    // Both generations convert each other's proxies: one type table.
    const list = new again.CameraList();
    list.Add(old);
    list.Add(camera);
    console.log(list.Size(), list.Get(1).name, Object.keys(again).length === Object.keys(first).length);
  `);
  assert.equal(result.stderr, '');
  assert.equal(result.stdout, '2 x true\n');
  assert.equal(result.status, 0);
});

test('a worker that loads the module first and ends leaves it usable to the main thread', () => {
  const result = runScript(`
    const { Worker } = require('worker_threads');
    const worker = new Worker(\`
      const orva = require(${JSON.stringify(root)});
      const rect = new orva.Rect();
      rect.x = 3;
      require('worker_threads').parentPort.postMessage(rect.x);
    \`, { eval: true });
    worker.on('message', (value) => console.log('worker', value));
    worker.on('exit', () => {
      const orva = require(${JSON.stringify(root)});
      const rect = new orva.Rect();
      rect.x = 4;
      console.log('main', rect.x);
    });
  `);
  assert.equal(result.stderr, '');
  assert.equal(result.stdout, 'worker 3\nmain 4\n');
  assert.equal(result.status, 0);
});

const control = path.join(buildDir, 'orva_test_control.node');

// [label, a worker's script that uses the bridge and ends]. The worker loads
// the module first; the main thread loads it once the worker is gone and
// must receive its own events.
const WORKERS_THAT_END = [
  ['a handler', `engine.setCallback(() => {});`],
  ['a frame buffer', `engine.setVideoFrameRenderBuffer({ buffer: Buffer.alloc(4), id: 1, userId: 'w', width: 2, height: 2 });`],
  ['a handler, an engine and process.exit()', `
    engine.setCallback(() => {});
    engine.initialize(settings, null);
    process.exit(0);`],
  ['a handler that ends the worker from a frame handler', `
    engine.setCallback((name) => { if (name === 'OnVideoFrame') process.exit(0); });
    engine.initialize(settings, null);
    engine.startTranscoding(new orva.LocalMediaTranscodingParams());
    engine.setVideoFrameRenderBuffer({ buffer: Buffer.alloc(4), id: 1, userId: 'w', width: 2, height: 2 });
    require(${JSON.stringify(control)}).deliverFrame({ width: 2, height: 2, data: Buffer.alloc(4) });`],
  ['a handler and engine threads raising into it when it is terminated', `
    engine.setCallback(() => { if (!told) { told = true; parentPort.postMessage('raising'); } });
    engine.initialize(settings, null);
    require(${JSON.stringify(control)}).raiseConcurrently({ threads: 2, perThread: 2 ** 31 - 1 });`],
];

test('a worker that used the bridge and ended leaves it whole to the main thread', () => {
  for (const [label, source] of WORKERS_THAT_END) {
    const result = runScript(`
      const { Worker } = require('worker_threads');
      const worker = new Worker(\`
        const { parentPort } = require('worker_threads');
        const orva = require(${JSON.stringify(root)});
        const engine = orva.OrvaEngineWrapper.createOrvaEngine();
        const settings = new orva.Settings();
        settings.add('environment', 'prod');
        let told = false;
        ${source.replace(/`/g, '\\`').replace(/\$\{/g, '\\${')}
      \`, { eval: true });
      worker.on('message', () => worker.terminate());
      worker.on('exit', () => {
        const orva = require(${JSON.stringify(root)});
        const engine = orva.OrvaEngineWrapper.createOrvaEngine();
        engine.setCallback((name, fileId, b, c, d, e, payload) => {
          // Nothing the worker registered is written into any more.
          if (name === 'OnVideoFrame' && payload.extra === 77) console.log('main frame valid', payload.valid);
          if (name !== 'OnPlayFileStart') return;
          console.log('main event', fileId);
          engine.destroy();
        });
        const settings = new orva.Settings();
        settings.add('environment', 'prod');
        engine.initialize(settings, null);
        engine.startTranscoding(new orva.LocalMediaTranscodingParams());
        engine.stopTranscoding();
        const control = require(${JSON.stringify(control)});
        control.deliverFrame({ width: 2, height: 2, data: Buffer.alloc(4), extra: 77 });
        control.raise('AudioServiceListener', 'OnPlayFileStart', 7, 0);
      });
    `);
    assert.equal(result.signal, null, `${label}: ${result.stderr}`);
    assert.equal(result.stderr, '', label);
    assert.equal(result.stdout, 'main frame valid false\nmain event 7\n', label);
    assert.equal(result.status, 0, label);
  }
});

test('a worker gets a clear Error while the main thread holds the module, and the main thread keeps its events', () => {
  const result = runScript(`
    const { Worker } = require('worker_threads');
    const orva = require(${JSON.stringify(root)});
    const engine = orva.OrvaEngineWrapper.createOrvaEngine();
    const raise = (fileId) => require(${JSON.stringify(control)}).raise('AudioServiceListener', 'OnPlayFileStart', fileId, 0);
    engine.setCallback((name, fileId) => {
      console.log('event', fileId);
      if (fileId === 2) engine.destroy();
    });
    const settings = new orva.Settings();
    settings.add('environment', 'prod');
    engine.initialize(settings, null);
    raise(1);
    const worker = new Worker(\`
      const { parentPort } = require('worker_threads');
      try { require(${JSON.stringify(root)}); parentPort.postMessage('loaded'); }
      catch (error) { parentPort.postMessage(error.constructor.name + ': ' + error.message); }
    \`, { eval: true });
    worker.on('message', (message) => console.log(message));
    worker.on('exit', (code) => {
      const rect = new orva.Rect();
      rect.x = 5;
      console.log('worker exit', code, rect.x);
      raise(2);
    });
  `);
  assert.equal(result.stderr, '');
  assert.equal(result.stdout, 'event 1\nError: orvaEngine is already in use by another JavaScript thread of this process; ' +
    'load it from one thread at a time\nworker exit 0 5\nevent 2\n');
  assert.equal(result.status, 0);
});

test('the loader names the rebuild command when the addon is missing', () => {
  const result = runScript(`try { require(${JSON.stringify(root)}); } catch (e) { console.log(e.message); }`,
    { ORVA_BUILD_DIR: 'no-such-build' });
  assert.match(result.stdout, /the native addon is missing .*no-such-build.*; build it with `npm run build:dev`/);
});
