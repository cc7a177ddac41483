'use strict';
// What the demo composes: a shared screen, the camera over its lower right
// corner and an image beside them, on a canvas of one colour. Rectangles are
// in canvas pixels; a source with a higher zOrder is drawn over the lower ones.
const fs = require('fs');
const orva = require('..');
const { encodePng } = require('./png');

const CANVAS = { width: 1280, height: 720, fps: 30, color: 0x1e2a38 };

const LAYOUT = {
  screen: { rect: { x: 40, y: 40, width: 880, height: 495 }, zOrder: 1 },
  camera: { rect: { x: 720, y: 380, width: 480, height: 270 }, zOrder: 2 },
  image: { rect: { x: 960, y: 40, width: 280, height: 120 }, zOrder: 3 },
};

/** The first camera and the first whole screen the engine offers. */
function pickDevices(engine) {
  const cameras = engine.getCameraDevicesList();
  const screen = engine.getScreenCaptureSources().find((s) => s.type === orva.ScreenCaptureSourceTypeScreen);
  if (cameras.Size() === 0 || !screen) throw new Error('the engine offers no camera or no screen to compose');
  const camera = cameras.Get(0);
  return { camera: { id: camera.guid, name: camera.name }, screen: { id: screen.id, name: screen.title } };
}

/** Writes the picture the image source shows: a horizontal gradient of the image's size. */
function writeImage(file) {
  const { width, height } = LAYOUT.image.rect;
  const rgb = Buffer.alloc(width * height * 3);
  for (let i = 0; i < width * height; i += 1) {
    const t = (i % width) / (width - 1);
    rgb.set([Math.round(240 * t), Math.round(160 + 40 * t), Math.round(200 - 160 * t)], i * 3);
  }
  fs.writeFileSync(file, encodePng(rgb, width, height));
}

function source(sourceType, ids, { rect, zOrder }) {
  const s = new orva.LocalMediaTranscodingSource();
  s.sourceType = sourceType;
  Object.assign(s, ids);
  Object.assign(s.rect, rect); // the record owns its rectangle: fill it in place
  s.zOrder = zOrder;
  return s;
}

/** The transcoding parameters for `devices` (from pickDevices) and the image at `imagePath`. */
function transcodingParams(devices, imagePath) {
  const params = new orva.LocalMediaTranscodingParams();
  Object.assign(params.videoEncoderParams, { width: CANVAS.width, height: CANVAS.height, fps: CANVAS.fps });
  params.canvasColor = CANVAS.color;
  const list = params.inputSourceList;
  list.Add(source(orva.kLocalMediaTranscodingSourceType_MediaSourceScreen, { screenSourceId: devices.screen.id },
    LAYOUT.screen));
  list.Add(source(orva.kLocalMediaTranscodingSourceType_MediaSourceCamera, { cameraDeviceId: devices.camera.id },
    LAYOUT.camera));
  list.Add(source(orva.kLocalMediaTranscodingSourceType_MediaSourceImage, { imagePath }, LAYOUT.image));
  return params;
}

module.exports = { CANVAS, LAYOUT, pickDevices, writeImage, transcodingParams };
