'use strict';
// The event bridge over a process's life: before the handler exists, after
// destroy, at exit while engine threads still raise events, beside workers.
const test = require('node:test');
const assert = require('node:assert/strict');
const path = require('path');
const { spawnSync, spawn } = require('child_process');
const { root, buildDir } = require('./lib/orva');

const prelude = `
  const orva = require(${JSON.stringify(root)});
  const control = require(${JSON.stringify(path.join(buildDir, 'orva_test_control.node'))});
  const engine = orva.OrvaEngineWrapper.createOrvaEngine();
  const settings = new orva.Settings();
  settings.add('environment', 'prod');
  settings.add('loopback.join.delay.ms', '5');
  settings.add('loopback.peer.delay.ms', '5');
`;

function run(source, timeout = 30000) {
  return spawnSync(process.execPath, ['-e', prelude + source], { cwd: root, encoding: 'utf8', timeout });
}

test('events raised before the handler is set are delivered once it is', () => {
  const result = run(`
    engine.initialize(settings, null);
    for (let i = 0; i < 3; i += 1) control.raise('AudioServiceListener', 'OnPlayFileStart', i, 0);
    const seen = [];
    engine.setCallback((name, fileId) => {
      seen.push(name + ':' + fileId);
      if (seen.length === 3) { console.log(seen.join(' ')); engine.destroy(); }
    });
  `);
  assert.equal(result.stderr, '');
  assert.equal(result.stdout, 'OnPlayFileStart:0 OnPlayFileStart:1 OnPlayFileStart:2\n');
  assert.equal(result.status, 0);
});

test('a script in a session stays alive; after destroy it exits by itself', () => {
  const result = run(`
    engine.setCallback(() => {});
    engine.initialize(settings, null);
    engine.enterRoom('room', new orva.Settings());
    setTimeout(() => {
      engine.exitRoom();
      engine.destroy();
      console.log('destroyed');
    }, 300);
  `);
  assert.equal(result.stdout, 'destroyed\n');
  assert.equal(result.status, 0);

  // Without destroy the session holds the process open.
  const child = spawn(process.execPath, ['-e', `${prelude}
    engine.setCallback(() => {});
    engine.initialize(settings, null);
    engine.enterRoom('room', new orva.Settings());
    setTimeout(() => console.log('still running'), 1000).unref();
  `], { cwd: root });
  let stdout = '';
  child.stdout.on('data', (chunk) => { stdout += chunk; });
  return new Promise((resolve) => {
    setTimeout(() => child.kill('SIGTERM'), 2500);
    child.on('exit', (code, signal) => {
      assert.equal(stdout, 'still running\n');
      assert.equal(signal, 'SIGTERM');
      resolve();
    });
  });
});

test('the process ends cleanly while engine threads are still raising events', () => {
  for (const ending of ['process.exit(0)', 'engine.destroy()']) {
    const result = run(`
      let count = 0;
      engine.setCallback(() => { count += 1; });
      engine.initialize(settings, null);
      control.raiseConcurrently({ threads: 4, perThread: 2000000 });
      setTimeout(() => { ${ending}; }, 100);
    `);
    assert.equal(result.signal, null, `${ending}: ended by ${result.signal}\n${result.stderr}`);
    assert.equal(result.status, 0, `${ending}\n${result.stderr}`);
    assert.equal(result.stderr, '', ending);
  }
});

test('a worker that tries the addon and ends leaves the main thread its events', () => {
  const result = run(`
    const { Worker } = require('worker_threads');
    let before = 0;
    let after = 0;
    let workerDone = false;
    engine.setCallback(() => { if (workerDone) after += 1; else before += 1; });
    engine.initialize(settings, null);
    control.raise('AudioServiceListener', 'OnPlayFileStart', 1, 0);
    const worker = new Worker(\`
      try { require(${JSON.stringify(root)}); } catch (error) { require('worker_threads').parentPort.postMessage(error.message); }
    \`, { eval: true });
    worker.on('message', (message) => console.log('worker:', message.split(';')[0]));
    worker.on('exit', () => {
      workerDone = true;
      control.raise('AudioServiceListener', 'OnPlayFileStart', 2, 0);
      setTimeout(() => { console.log('events', before, after); engine.destroy(); }, 100);
    });
  `);
  assert.equal(result.stderr, '');
  assert.equal(result.stdout, 'worker: orvaEngine is already in use by another JavaScript thread of this process\nevents 1 1\n');
  assert.equal(result.status, 0);
});
