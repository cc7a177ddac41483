'use strict';
// A first run of orvaEngine: enter a room, publish audio and the composed
// video (a screen, the camera and an image over a canvas), watch the events,
// frames and network statistics for a few seconds, keep the last frame as a
// PNG, then leave and let the process end by itself.
//
//   node examples/demo.js [seconds]      (or ORVA_DEMO_SECONDS; default 5)
//   ORVA_DEMO_OUTPUT_DIR=<dir>           (default examples/output)
const fs = require('fs');
const path = require('path');
const orva = require('..');
const { Meter } = require('./meter');
const { i420ToRgb, encodePng } = require('./png');
const { CANVAS, pickDevices, writeImage, transcodingParams } = require('./scene');

const ROOM = 'demo-room';
const sleep = (ms) => new Promise((resolve) => setTimeout(resolve, ms));

/** Waits for `promise`, but no longer than `ms`; the timer goes when it is done. */
async function within(promise, ms) {
  let timer;
  await Promise.race([promise, new Promise((resolve) => { timer = setTimeout(resolve, ms); })]);
  clearTimeout(timer);
}

function settings(entries) {
  const result = new orva.Settings();
  for (const [key, value] of Object.entries(entries)) result.add(key, value);
  return result;
}

function check(status, call) {
  if (status !== 0) throw new Error(`${call} answered ${status}`);
}

async function run(seconds, outputDir) {
  const engine = orva.OrvaEngineWrapper.createOrvaEngine();
  const meter = new Meter();
  const renderBuffer = Buffer.alloc((CANVAS.width * CANVAS.height * 3) / 2); // I420
  const lastFrame = { pixels: Buffer.alloc(renderBuffer.length), number: -1 };
  let sessionLeft;
  const left = new Promise((resolve) => { sessionLeft = resolve; });

  engine.setCallback((name, int1, int2, int3, str1, str2, payload) => {
    if (name !== 'OnVideoFrame') {
      meter.event(name, payload);
      if (name === 'OnSessionStateChanged' && int1 === orva.Leaved) sessionLeft();
      return;
    }
    meter.frame(payload);
    // The engine writes the next frame into the render buffer from its own
    // thread as soon as this handler returns: a frame to keep is copied now.
    if (payload.valid) {
      renderBuffer.copy(lastFrame.pixels);
      lastFrame.number = payload.extra;
    }
  });
  engine.setLogDirPath(path.join(outputDir, 'logs'));
  try {
    // The loopback engine reports statistics every 2 s unless told otherwise;
    // once a second, every live line has a report no older than the line before.
    const options = settings({ environment: 'prod', 'loopback.stats.interval.ms': '1000' });
    check(engine.initialize(options, null), 'initialize');
    const devices = pickDevices(engine);
    const imagePath = path.join(outputDir, 'badge.png');
    writeImage(imagePath);
    console.log(`orvaEngine ${engine.getSDK().GetVersion()}: room "${ROOM}" for ${seconds} s, composing ` +
      `screen "${devices.screen.name}", camera "${devices.camera.name}" and ${path.basename(imagePath)} ` +
      `at ${CANVAS.width}x${CANVAS.height}, ${CANVAS.fps} fps`);
    console.log(' time | frames since the last line | latest network statistics | events since the last line');
    console.log('        (dropped: frames the engine made while script held the buffer; the copy never waits)');

    check(engine.enterRoom(ROOM, null), 'enterRoom');
    engine.publishAudio(orva.MicrophoneSource);
    engine.publishVideo(orva.MixerCaptureSource); // the composed picture
    engine.startTranscoding(transcodingParams(devices, imagePath));
    // id and userId come back in every frame's payload, to tell render targets apart.
    const { width, height } = CANVAS;
    engine.setVideoFrameRenderBuffer({ buffer: renderBuffer, id: 1, userId: 'local', width, height });

    for (let elapsed = 0; elapsed < seconds * 1000;) {
      const step = Math.min(1000, seconds * 1000 - elapsed);
      await sleep(step);
      elapsed += step;
      console.log(meter.line(`${+(elapsed / 1000).toFixed(1)}s`));
    }

    engine.stopTranscoding();
    engine.exitRoom();
    await within(left, 2000);
    engine.setVideoFrameRenderBuffer(null);
    console.log(meter.line('left'));
  } finally {
    engine.destroy(); // the engine's threads stop and the event loop is free to end
  }
  return lastFrame;
}

async function main() {
  const requested = process.argv[2] ?? process.env.ORVA_DEMO_SECONDS ?? '5';
  const seconds = Number(requested);
  if (!(seconds > 0 && seconds <= 3600)) throw new Error(`"${requested}" is not a duration in seconds (0 < s <= 3600)`);
  const outputDir = path.resolve(process.env.ORVA_DEMO_OUTPUT_DIR || path.join(__dirname, 'output'));
  fs.mkdirSync(outputDir, { recursive: true });

  const lastFrame = await run(seconds, outputDir);
  if (lastFrame.number < 0) throw new Error('no frame was delivered');
  const file = path.join(outputDir, 'last-frame.png');
  const rgb = i420ToRgb(lastFrame.pixels, CANVAS.width, CANVAS.height);
  fs.writeFileSync(file, encodePng(rgb, CANVAS.width, CANVAS.height));
  console.log(`last frame (#${lastFrame.number}, ${CANVAS.width}x${CANVAS.height}): ${path.relative(process.cwd(), file)}`);
}

main().catch((error) => {
  console.error(`demo: ${error.message}`);
  process.exitCode = 1;
});
