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

test('a worker thread gets a clear Error while the main thread holds the module, and neither crashes', () => {
  const result = runScript(`
    const { Worker } = require('worker_threads');
    const orva = require(${JSON.stringify(root)});
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
    });
  `);
  assert.equal(result.stderr, '');
  assert.match(result.stdout, /^Error: orvaEngine is already in use by another JavaScript thread of this process; load it from one thread at a time\nworker exit 0 5\n$/);
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

test('the loader names the rebuild command when the addon is missing', () => {
  const result = runScript(`try { require(${JSON.stringify(root)}); } catch (e) { console.log(e.message); }`,
    { ORVA_BUILD_DIR: 'no-such-build' });
  assert.match(result.stdout, /the native addon is missing .*no-such-build.*; build it with `npm run build`/);
});
