'use strict';
// What script owns is freed when collected; what it borrows never is.
const test = require('node:test');
const assert = require('node:assert/strict');
const path = require('node:path');
const { spawnSync } = require('node:child_process');
const { orva, control, collect, root, buildDir } = require('./lib/orva');

const live = (name) => control().liveInstances()[name];

async function liveAfter(name, make) {
  make();
  await collect();
  return live(name);
}

test('objects made by script are freed after collection', async () => {
  const cases = [
    ['CameraList', () => new orva.CameraList()],
    ['CameraList', () => new orva.CameraList(new orva.CameraList())],
    ['VideoFrame', () => new orva.VideoFrame(64)],
    ['VideoFrame', () => new orva.VideoFrame()],
    ['Settings', () => new orva.Settings()],
    ['StringVector', () => new orva.StringVector(3)],
    ['CameraResolutionList', () => new orva.Camera()],
    ['LocalMediaTranscodingSourceList', () => new orva.LocalMediaTranscodingParams()],
  ];
  for (const [name, make] of cases) {
    await collect();
    const before = live(name);
    let kept = [];
    for (let i = 0; i < 50; i += 1) kept.push(make());
    assert.equal(live(name) - before >= 50, true, `${name} counted while alive`);
    kept = null;
    await collect();
    assert.equal(live(name), before, `${name} freed after collection`);
  }
});

test('copies returned by the engine are owned and freed', async () => {
  await collect();
  const before = live('CameraList');
  const after = await liveAfter('CameraList', () => {
    for (let i = 0; i < 20; i += 1) orva.OrvaEngine.SDK().Cameras().Get(0);
  });
  assert.equal(after, before);
});

// [counted owner class, a view whose owner script no longer reaches, read, expected]
const VIEWS = [
  ['CameraList', () => {
    const list = new orva.CameraList();
    const camera = new orva.Camera();
    camera.guid = 'g';
    list.Add(camera);
    return list.Get(0);
  }, (view) => view.guid, 'g'],
  ['CameraList', () => orva.OrvaEngine.SDK().Cameras().Get(0), (view) => typeof view.name, 'string'],
  ['CameraList', () => orva.OrvaEngine.SDK().Cameras().Get(0).cameraResolutions.Get(0), (view) => view.width > 0, true],
  ['CameraResolutionList', () => new orva.Camera().cameraResolutions, (view) => view.Size(), 0],
  // A frame's pixels go away with the frame.
  ['VideoFrame', () => new orva.VideoFrame(64).data, (view) => view.getCPtr() !== 0, true],
  ['LocalMediaTranscodingSourceList', () => {
    const params = new orva.LocalMediaTranscodingParams();
    params.inputSourceList.Add(new orva.LocalMediaTranscodingSource());
    return params.inputSourceList.Get(0).rect;
  }, (view) => view.x, 0],
];

test('a view into a list or record keeps its owner alive, and only as long as it lives', async () => {
  for (const [name, make, read, expected] of VIEWS) {
    await collect();
    const before = live(name);
    let view = make();
    await collect();
    assert.ok(live(name) > before, `${name}: the owner lives while its view does`);
    assert.equal(read(view), expected, name);
    view = null;
    await collect();
    assert.equal(live(name), before, `${name}: freed with its last view`);
  }
  // Vectors are not counted; their memory is checked by the sanitizer run.
  const screen = (() => {
    const vector = new orva.ScreenVector();
    const element = new orva.Screen();
    element.name = 'kept';
    vector.add(element);
    return vector.get(0);
  })();
  await collect();
  assert.equal(screen.name, 'kept');
});

function screens(count) {
  const vector = new orva.ScreenVector();
  for (let i = 0; i < count; i += 1) {
    const element = new orva.Screen();
    element.name = `s${i}`;
    vector.add(element);
  }
  return vector;
}

function cameras(count) {
  const list = new orva.CameraList();
  for (let i = 0; i < count; i += 1) list.Add(new orva.Camera());
  return list;
}

// [what moves the element, the view, what moves it, whether the view survives]
const MOVES = [
  ['vector storage grows', () => screens(1), (v) => v.get(0), (v) => v.reserve(1000), false],
  ['vector is cleared', () => screens(2), (v) => v.get(1), (v) => v.clear(), false],
  ['vector shrinks below the element', () => screens(3), (v) => v.get(2), (v) => { v.clear(); v.add(new orva.Screen()); }, false],
  ['vector grows in place', () => { const v = screens(1); v.reserve(8); return v; }, (v) => v.get(0),
    (v) => v.add(new orva.Screen()), true],
  ['a part of a moved element', () => screens(1), (v) => v.get(0).rect, (v) => v.reserve(1000), false],
  ['list grows', () => cameras(1), (l) => l.Get(0), (l) => { for (let i = 0; i < 64; i += 1) l.Add(new orva.Camera()); }, false],
  ['list of a moved element', () => cameras(1), (l) => l.Get(0).cameraResolutions,
    (l) => { for (let i = 0; i < 64; i += 1) l.Add(new orva.Camera()); }, false],
  ['embedded list replaced', () => { const c = new orva.Camera(); c.cameraResolutions.Add(new orva.CameraResolution()); return c; },
    (c) => c.cameraResolutions.Get(0), (c) => { c.cameraResolutions = new orva.CameraResolutionList(); }, false],
];

test('a view turns null once its owner no longer holds what it points at', () => {
  for (const [label, make, view, move, survives] of MOVES) {
    const owner = make();
    const kept = view(owner);
    assert.notEqual(kept.getCPtr(), 0, label);
    move(owner);
    assert.equal(kept.getCPtr() !== 0, survives, label);
    if (!survives) {
      // A null view reads nothing and writes nowhere, like any proxy without an object.
      assert.equal(kept.x ?? kept.name ?? kept.guid, undefined, label);
      assert.ok(kept.equals(null), label);
    }
  }
});

test('the engine and its sub-objects survive the collection of their proxies', async () => {
  for (let i = 0; i < 10; i += 1) orva.OrvaEngine.SDK().Device().GetMicrophoneVolume();
  await collect();
  assert.equal(orva.OrvaEngine.SDK().Device().SetMicrophoneVolume(30), 0);
});

test('a listener handed to the engine stays alive after its proxy is collected', async () => {
  const settings = new orva.Settings();
  orva.OrvaEngine.SDK().Audio().Initialize(settings, new orva.AudioServiceListener());
  await collect();
  // The engine calls the listener it holds; it must still be there.
  assert.equal(control().raise('AudioServiceListener', 'OnPlayFileStart', 1, 2), true);
});

test('proxies of one native object are equal; getCPtr identifies it', () => {
  const camera = new orva.Camera();
  assert.equal(typeof camera.getCPtr(), 'number');
  assert.ok(Number.isInteger(camera.getCPtr()));
  assert.ok(camera.equals(camera));
  assert.ok(!camera.equals(new orva.Camera()));
  assert.ok(!camera.equals(null));
  const list = new orva.CameraList();
  list.Add(camera);
  assert.ok(list.Get(0).equals(list.Get(0)));
  assert.equal(list.Get(0).getCPtr(), list.Get(0).getCPtr());
});

test('what a worker owned is freed when the worker ends', () => {
  // A child process: the binding serves one JavaScript thread at a time, and
  // this one already holds it.
  const result = spawnSync(process.execPath, ['-e', `
    const { Worker } = require('worker_threads');
    const control = require(${JSON.stringify(path.join(buildDir, 'orva_test_control.node'))});
    const counts = () => ['CameraList', 'Settings', 'VideoFrame'].map((name) => control.liveInstances()[name]);
    const before = counts();
    const worker = new Worker(\`
      const orva = require(${JSON.stringify(root)});
      globalThis.kept = [];
      for (let i = 0; i < 1000; i += 1) {
        kept.push(new orva.CameraList(), new orva.Settings(), new orva.VideoFrame(64), orva.OrvaEngine.SDK().Cameras().Get(0));
      }
      const { parentPort } = require('worker_threads');
      parentPort.once('message', () => parentPort.close());
      parentPort.postMessage('made');
    \`, { eval: true });
    worker.on('message', () => {
      console.log(counts().map((count, i) => count - before[i]).join(' '));
      worker.postMessage('end');
    });
    worker.on('exit', () => {
      console.log(counts().map((count, i) => count - before[i]).join(' '));
      const orva = require(${JSON.stringify(root)});
      console.log(new orva.CameraList().Size());
    });
  `], { cwd: root, encoding: 'utf8', timeout: 60000 });
  assert.equal(result.stderr, '');
  assert.equal(result.stdout, '2000 1000 1000\n0 0 0\n0\n');
  assert.equal(result.status, 0);
});
