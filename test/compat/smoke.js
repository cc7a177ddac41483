'use strict';
// The script suites cut to what a runtime without node:test (Node.js 14 and
// 16) runs as a plain script: the exports, a session on the loopback engine
// whose events reach the handler, a frame copied into the registered buffer,
// an event raised through orva-engine/testing and taken through
// orva-engine/events, and a process that ends by itself with
// status 0. ORVA_BUILD_DIR names the build, as for the suites.
const assert = require('assert').strict;
const path = require('path');

const root = path.resolve(__dirname, '..', '..');
const buildDir = path.resolve(root, process.env.ORVA_BUILD_DIR || 'build');
const orva = require(root);
const control = require(path.join(buildDir, 'orva_test_control.node'));

// The exports: 70 classes and 239 read-only constants, nothing else; fields
// are own properties, listed as on every other version (last declared
// first), that convert both ways.
const names = Object.getOwnPropertyNames(orva);
assert.equal(names.filter((name) => typeof orva[name] === 'function').length, 70);
assert.equal(names.filter((name) => typeof orva[name] === 'number').length, 239);
assert.equal(names.length, 70 + 239);
assert.throws(() => { orva.kLevelWarning = 7; }, { message: 'Tried to write read-only variable: kLevelWarning.' });
assert.equal(orva.kLevelWarning, 1);
assert.throws(() => new orva.OrvaEngine(), { message: 'Class OrvaEngine can not be instantiated' });
const rect = new orva.Rect();
Object.assign(rect, { x: 1, y: -2, width: 3, height: 4 });
assert.deepEqual(Object.keys(rect), ['height', 'width', 'y', 'x']);
assert.deepEqual({ ...rect }, { height: 4, width: 3, y: -2, x: 1 });
const camera = new orva.Camera();
camera.name = 'caméra \ud83c\udfa5 \ud800';
assert.equal(camera.name, 'caméra \ud83c\udfa5 \ufffd');
assert.throws(() => { new orva.Window().rect = new orva.Screen(); },
  { message: "in method 'Window_rect_set', argument 2 of type 'Orva::Rtc::Rect *'" });

// A session: joined, the peer's video up, one frame into the buffer, left,
// destroyed. Each step starts from the event that ends the one before.
const engine = orva.OrvaEngineWrapper.createOrvaEngine();
const settings = new orva.Settings();
settings.add('environment', 'prod');
settings.add('loopback.join.delay.ms', '5');
settings.add('loopback.peer.delay.ms', '5');
const buffer = Buffer.alloc(12);
const pixels = Buffer.from([1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12]);
// What the handler throws reaches this listener (the bridge hands it on).
process.on('uncaughtException', (error) => {
  console.error(error);
  process.exit(1);
});
const FRAME_MARK = 4242;
const states = [];
let framed = false;
let destroyed = false;

engine.setCallback((name, int1, int2, int3, str1, str2, payload) => {
  if (name === 'OnSessionStateChanged' && str1 === 'smoke-room') states.push(int1);
  if (name === 'OnVideoSizeFirst') {
    engine.setVideoFrameRenderBuffer({ buffer, id: 9, userId: str1, width: 4, height: 2 });
    assert.equal(control.deliverFrame({ width: 4, height: 2, data: pixels, extra: FRAME_MARK }), true);
  }
  // The transcoder's own frames may come too; this one is told by its mark.
  if (name === 'OnVideoFrame' && payload.extra === FRAME_MARK && !framed) {
    framed = true;
    assert.equal(payload.valid, true);
    assert.deepEqual([payload.id, payload.width, payload.height, payload.size], [9, 4, 2, 12]);
    assert.deepEqual(buffer, pixels);
    engine.exitRoom();
  }
  // Left: the events layer takes the handler over for one last event.
  if (name === 'OnSessionStateChanged' && int1 === orva.Leaved && !destroyed) {
    require('orva-engine/events').attach(engine).once('OnPlayFileStart', (event) => {
      assert.deepEqual(event, { fileId: 7, durationMs: 70 });
      destroyed = true;
      engine.destroy();
    });
    // Raised through orva-engine/testing, whose checks run on this version too.
    const testing = require('orva-engine/testing');
    assert.throws(() => testing.raise('AudioServiceListener', 'OnPlayFileStart', '7', 70), TypeError);
    testing.raise('AudioServiceListener', 'OnPlayFileStart', 7, 70);
  }
});
assert.equal(engine.initialize(settings, null), 0);
// The handler's frame face is registered with the engine by the transcoder.
engine.startTranscoding(new orva.LocalMediaTranscodingParams());
engine.stopTranscoding();
assert.equal(engine.enterRoom('smoke-room', new orva.Settings()), 0);

// Nothing but the session holds the loop: once destroyed, the process ends.
process.on('exit', (code) => {
  const complete = framed && destroyed && states.join() === [orva.Joining, orva.Joined, orva.Leaved].join();
  if (code === 0 && !complete) {
    console.error(`smoke: the loop emptied early (states ${states.join()}, frame ${framed}, destroyed ${destroyed})`);
    process.exitCode = 1;
  } else if (code === 0) {
    console.log(`smoke: ok on Node.js ${process.versions.node}`);
  }
});
