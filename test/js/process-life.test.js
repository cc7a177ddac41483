'use strict';
// The event bridge over a process's life: before the handler exists, after
// destroy, when the process ends from inside a handler, a getter or an 'exit'
// listener, and while engine threads still raise events. Every case runs in a
// child process of its own, which must end by itself with status 0.
const test = require('node:test');
const assert = require('node:assert/strict');
const path = require('path');
const { spawnSync } = require('child_process');
const { root, buildDir } = require('./lib/orva');

const prelude = `
  const orva = require(${JSON.stringify(root)});
  const control = require(${JSON.stringify(path.join(buildDir, 'orva_test_control.node'))});
  const engine = orva.OrvaEngineWrapper.createOrvaEngine();
  const settings = new orva.Settings();
  settings.add('environment', 'prod');
  settings.add('loopback.join.delay.ms', '5');
  settings.add('loopback.peer.delay.ms', '5');
  // Frames reach the handler once the transcoder has registered it.
  function frames(buffer = Buffer.alloc(4)) {
    engine.startTranscoding(new orva.LocalMediaTranscodingParams());
    engine.stopTranscoding();
    engine.setVideoFrameRenderBuffer({ buffer, id: 1, userId: 'me', width: 2, height: 2 });
  }
  const frame = () => control.deliverFrame({ width: 2, height: 2, data: Buffer.alloc(4, 1) });
`;

// The timeout only keeps a hanging child from hanging the suite.
function run(source, env = process.env) {
  return spawnSync(process.execPath, ['-e', prelude + source], { cwd: root, env, encoding: 'utf8', timeout: 60000 });
}

function assertClean(result, label, stdout) {
  assert.equal(result.signal, null, `${label}: ended by ${result.signal}\n${result.stderr}`);
  assert.equal(result.stderr, '', label);
  assert.equal(result.status, 0, label);
  if (stdout !== undefined) assert.equal(result.stdout, stdout, label);
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
  assertClean(result, 'before the handler', 'OnPlayFileStart:0 OnPlayFileStart:1 OnPlayFileStart:2\n');
});

test('a session holds the event loop open; after destroy the script exits by itself', () => {
  // Nothing but the session is left once the script's body has run: the
  // statistics that keep arriving prove that it holds the loop.
  const result = run(`
    settings.add('loopback.stats.interval.ms', '10');
    process.on('beforeExit', () => console.log('loop empty'));
    let stats = 0;
    engine.setCallback((name) => {
      if (name !== 'OnNetworkStats' || ++stats !== 3) return;
      console.log('three statistics');
      engine.exitRoom();
      engine.destroy();
    });
    engine.initialize(settings, null);
    engine.enterRoom('room', new orva.Settings());
  `);
  assertClean(result, 'session', 'three statistics\nloop empty\n');
});

test('an engine that refuses to start does not hold the event loop', () => {
  const result = run(`
    settings.add('loopback.initialize.result', '-1');
    engine.setCallback(() => {});
    const answer = engine.initialize(settings, null);
    console.log('initialize', answer);
    if (answer === 0) engine.destroy();
  `);
  assertClean(result, 'refused', 'initialize -1\n');
});

// [label, script]: each ends the process while the bridge holds its frame
// lock or is in the middle of a registration.
const ENDINGS_MID_CALL = [
  ['process.exit() in a frame handler', `
    engine.setCallback((name) => { if (name === 'OnVideoFrame') process.exit(0); });
    engine.initialize(settings, null);
    frames();
    frame();
  `],
  ['process.exit() in a getter of the registration', `
    engine.initialize(settings, null);
    engine.setVideoFrameRenderBuffer({ buffer: Buffer.alloc(4), id: 1, get userId() { process.exit(0); }, width: 2, height: 2 });
  `],
  ['process.exit() in a getter of a registration made by a frame handler', `
    engine.setCallback((name) => {
      if (name === 'OnVideoFrame') engine.setVideoFrameRenderBuffer({ buffer: Buffer.alloc(4), get id() { process.exit(0); } });
    });
    engine.initialize(settings, null);
    frames();
    frame();
  `],
  ['process.exit() in an uncaughtException listener for a frame handler', `
    process.on('uncaughtException', () => process.exit(0));
    engine.setCallback((name) => { if (name === 'OnVideoFrame') throw new Error('frame handler failure'); });
    engine.initialize(settings, null);
    frames();
    frame();
  `],
];

test('ending the process in the middle of a frame or a registration ends it cleanly', () => {
  for (const [label, source] of ENDINGS_MID_CALL) assertClean(run(source), label, '');
});

// [label, what script does before it sets its handler]: to the `process`
// object the bridge reads when script first reaches it, or to the stack it
// is reached with.
const HOSTILE_SETUPS = [
  ['first reached at the end of the stack', `
    const deeper = () => {
      try { deeper(); } catch {}
      try {
        engine.setVideoFrameRenderBuffer({ buffer: Buffer.alloc(4), id: 1, userId: 'me', width: 2, height: 2 });
        engine.setCallback(() => {});
      } catch {}
    };
    deeper();`],
  ['process.on throws', `process.on = () => { throw new Error('no on'); };`],
  ['reading process throws', `Object.defineProperty(globalThis, 'process', { get() { throw new Error('no process'); } });`],
  ['process.on calls back into the bridge', `
    const on = process.on;
    process.on = function (...args) { engine.setCallback(() => {}); return on.apply(this, args); };`],
];

test('a script that tampered with process or its stack still gets its events and exits cleanly', () => {
  for (const [label, tampering] of HOSTILE_SETUPS) {
    const result = run(`
      ${tampering}
      engine.setCallback((name, fileId) => { console.log('event', fileId); engine.destroy(); });
      engine.initialize(settings, null);
      control.raise('AudioServiceListener', 'OnPlayFileStart', 5, 0);
    `);
    assertClean(result, label, 'event 5\n');
  }
});

// [label, exit listener]: what an application's own 'exit' listener, which
// runs after the bridge's, may still do.
const EXIT_LISTENERS = [
  ['sets a handler', `engine.setCallback(() => console.log('late event'));`],
  ['sets a handler and raises an event', `
    engine.setCallback(() => console.log('late event'));
    control.raise('AudioServiceListener', 'OnPlayFileStart', 1, 0);`],
  ['registers a buffer and delivers a frame', `
    engine.setVideoFrameRenderBuffer({ buffer: Buffer.alloc(4), id: 1, userId: 'me', width: 2, height: 2 });
    frame();`],
];

test('an exit listener after the bridge\'s may use it without bringing it back', () => {
  for (const [label, listener] of EXIT_LISTENERS) {
    for (const ending of ['engine.destroy()', 'process.exit(0)']) {
      const result = run(`
        engine.setCallback(() => {});
        engine.initialize(settings, null);
        frames();
        process.on('exit', () => { ${listener} console.log('listener done'); });
        ${ending};
      `);
      assertClean(result, `${label}, after ${ending}`, 'listener done\n');
    }
  }
});

// Two engine threads raise 2^31-1 events each. After the first 200, the
// handler raises a marker; the queue keeps order, so a raiser's event that
// arrives after the marker was raised after it: the process ends right then,
// with events provably still in flight.
test('the process ends cleanly while engine threads are still raising events', () => {
  for (const ending of ['process.exit(0)', 'engine.destroy()']) {
    const result = run(`
      let raised = 0;
      let phase = 'counting';
      engine.setCallback((name) => {
        if (phase === 'counting' && name === 'OnPlayFilePosChanged' && ++raised === 200) {
          phase = 'marked';
          control.raise('AudioServiceListener', 'OnPlayFileStart', 777, 0);
        } else if (phase === 'marked' && name === 'OnPlayFileStart') {
          phase = 'after the marker';
        } else if (phase === 'after the marker' && name === 'OnPlayFilePosChanged') {
          phase = 'ended';
          console.log('raisers still raising');
          ${ending};
        }
      });
      engine.initialize(settings, null);
      control.raiseConcurrently({ threads: 2, perThread: 2 ** 31 - 1 });
    `);
    assertClean(result, ending, 'raisers still raising\n');
  }
});

test('a wrapper made with new keeps none of the events it can never deliver', () => {
  // Its events never reach script; a million of them kept would take over
  // 100 MB.
  const result = run(`
    const own = new orva.OrvaEngineWrapper();
    own.initialize(settings, null);
    const before = process.memoryUsage().rss;
    control.raiseConcurrently({ threads: 4, perThread: 250000 });
    control.joinRaisers();
    const grown = (process.memoryUsage().rss - before) / 2 ** 20;
    console.log(grown < 40 ? 'not kept' : 'kept ' + Math.round(grown) + ' MB');
    own.destroy();
  `, {
    ...process.env,
    // Under the address sanitizer freed memory waits in a quarantine, which
    // the resident size would count.
    ASAN_OPTIONS: [process.env.ASAN_OPTIONS, 'quarantine_size_mb=0'].filter(Boolean).join(':'),
  });
  assertClean(result, 'own wrapper', 'not kept\n');
});
