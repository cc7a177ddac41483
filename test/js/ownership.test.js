'use strict';
// What script owns is freed when collected; what it borrows never is.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva, control, collect } = require('./lib/orva');

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

test('borrowed element and field views free nothing', async () => {
  const list = new orva.CameraList();
  list.Add(new orva.Camera());
  await collect();
  const lists = live('CameraList');
  const resolutions = live('CameraResolutionList');
  for (let i = 0; i < 20; i += 1) {
    list.Get(0).cameraResolutions.Size();
    new orva.Window().rect.x = 1;
  }
  await collect();
  assert.equal(live('CameraList'), lists);
  assert.equal(live('CameraResolutionList'), resolutions);
  assert.equal(list.Get(0).cameraResolutions.Size(), 0, 'the list and its element survived their views');
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
