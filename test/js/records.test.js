'use strict';
// Value records: defaults, embedded records, pointer fields and texts.
const test = require('node:test');
const assert = require('node:assert/strict');
const { orva, thrown } = require('./lib/orva');

test('records start zeroed, false, empty and null', () => {
  const rect = new orva.Rect();
  assert.deepEqual([rect.x, rect.y, rect.width, rect.height], [0, 0, 0, 0]);
  rect.x = 7;
  assert.equal(rect.x, 7);
  const camera = new orva.Camera();
  assert.deepEqual([camera.name, camera.guid, camera.index, camera.cameraResolutions.Size()], ['', '', 0, 0]);
  const frame = new orva.VideoFrame();
  assert.deepEqual([frame.type, frame.data, frame.sei, frame.share_handle], [0, null, undefined, 0]);
  assert.equal(new orva.AudioFileParam().path, undefined);
  assert.equal(new orva.RenderParams().mirror, false);
});

test('embedded records are live views that assignment copies into', () => {
  const window = new orva.Window();
  const view = window.rect;
  view.x = 11;
  assert.equal(window.rect.x, 11, 'writing through the view changes the window');
  assert.ok(window.rect.equals(view), 'two views of one field are equal');
  const rect = new orva.Rect();
  Object.assign(rect, { x: 1, y: 2, width: 3, height: 4 });
  window.rect = rect;
  rect.x = 99;
  assert.deepEqual([window.rect.x, window.rect.y, window.rect.width, window.rect.height], [1, 2, 3, 4]);
  assert.equal(thrown(() => { window.rect = new orva.Screen(); }),
    "in method 'Window_rect_set', argument 2 of type 'Orva::Rtc::Rect *'");
  assert.equal(thrown(() => { window.rect = null; }),
    "in method 'Window_rect_set', argument 2 of type 'Orva::Rtc::Rect *'");
});

test('list fields copy through the list assignment', () => {
  const camera = new orva.Camera();
  const list = new orva.CameraResolutionList();
  const resolution = new orva.CameraResolution();
  resolution.width = 640;
  list.Add(resolution);
  camera.cameraResolutions = list;
  list.Add(resolution);
  assert.equal(camera.cameraResolutions.Size(), 1);
  assert.equal(camera.cameraResolutions.Get(0).width, 640);
});

test('sequence and map fields come back as proxies of their native types', () => {
  const stats = new orva.NetworkStats();
  assert.equal(stats.remoteStatistics.constructor.name, 'SwigProxy');
  assert.equal(typeof stats.localStatistics.getCPtr(), 'number');
  assert.equal(stats.localStatistics.Size, undefined, 'a type without a class has only equals and getCPtr');
  const echo = new orva.EchoCheckResult();
  echo.info.set('k', 'v');
  assert.equal(echo.info.get('k'), 'v');
  assert.equal(echo.info.size(), 1);
});

test('pointer fields store pointers and never copy', () => {
  const frame = new orva.VideoFrame(16);
  assert.equal(frame.size, 16);
  const data = frame.data;
  assert.equal(typeof data.getCPtr(), 'number');
  const other = new orva.VideoFrame();
  other.data = data;
  other.dataY = data;
  assert.ok(other.data.equals(data));
  other.data = null;
  assert.equal(other.data, null);
  const audio = new orva.AudioFrame();
  assert.equal(thrown(() => { audio.data = data; }), "in method 'AudioFrame_data_set', argument 2 of type 'int8_t *'");
});

test('check-result texts', () => {
  const echo = new orva.EchoCheckResult();
  const names = [[0, 'Unknown'], [1, 'Good'], [2, 'Normal'], [3, 'Warning'], [4, 'Disabled'], [5, 'Unknown']];
  for (const [value, name] of names) assert.equal(echo.CheckResultToString(value), name);
  const reasons = ['Unknown', 'System not supported', 'Virtual machine', 'ARM system', 'CPU undervoltage',
    'CPU blacklist', 'Unknown', 'No hardware encoding', 'Low GPU memory', 'Low system memory', 'Unknown'];
  reasons.forEach((name, value) => assert.equal(echo.PerformanceCheckReasonToString(value), name));
  assert.equal(echo.DriverCheckReasonToString(1), 'Driver version too old');
  assert.equal(echo.DriverCheckReasonToString(0), 'Unknown');
  assert.equal(echo.DriverCheckReasonToString(2), 'Unknown');
  assert.equal(echo.toString(),
    'Network Result: Unknown\nPerformance Result: Unknown, Reason: Unknown\nDriver Result: Unknown, Reason: Unknown\nInfo:\n');
  echo.network_result = orva.GOOD;
  echo.performance_result.result = orva.WARNING;
  echo.performance_result.reason = orva.LOW_CPU;
  echo.driver_result.result = orva.DISABLED;
  echo.driver_result.reason = orva.DRIVER_VERSION_TOO_OLD;
  echo.info.set('gpu', 'none');
  echo.info.set('cpu', '2 cores');
  assert.equal(echo.toString(),
    'Network Result: Good\nPerformance Result: Warning, Reason: CPU undervoltage\n' +
    'Driver Result: Disabled, Reason: Driver version too old\nInfo:\n  cpu: 2 cores\n  gpu: none\n');

  const adapter = new orva.AdapterInfo();
  Object.assign(adapter, { description: 'Loopback GPU', vendorId: 4318, deviceId: 7, dedicatedVideoMemory: 1048575 });
  assert.equal(adapter.toString(), 'Description: Loopback GPU\nVendorId: 4318\nDeviceId: 7\nDedicated Video Memory: 0 MB\n');
  adapter.dedicatedVideoMemory = 3 * 1048576 + 5;
  assert.match(adapter.toString(), /Dedicated Video Memory: 3 MB\n$/);

  const encoder = new orva.VideoEncParam();
  Object.assign(encoder, { width: 1, height: 2, fps: 3, minBitrate: 4, input_width: 5, input_height: 6,
    canvas_width: 7, canvas_height: 8, targetBitrate: 9 });
  assert.equal(encoder.toString(), 'VideoEncParam: {width:1, height:2, fps:3, minBitrate:4, input_width:5, ' +
    'input_height:6, canvas_width:7, canvas_height:8, targetBitrate:9}');
  const resolution = new orva.CameraResolution();
  Object.assign(resolution, { width: 1280, height: 720, maxFps: 30, type: 3 });
  assert.equal(resolution.toString(), 'CameraResolution: {width:1280, height:720, maxFps:30, type:3}');
});
