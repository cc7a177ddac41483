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
const { Meter } = require('./meter');
const { encodePng } = require('./png');
const { CANVAS, runSession, requestedSeconds } = require('./session');

async function main() {
  const seconds = requestedSeconds(5);
  const outputDir = path.resolve(process.env.ORVA_DEMO_OUTPUT_DIR || path.join(__dirname, 'output'));
  fs.mkdirSync(outputDir, { recursive: true });
  // The renderer's conversion, the one a page uses: the PNG shows what a page would.
  const { i420ToRgba } = await import('../lib/renderer/colour-space.js');

  const meter = new Meter();
  const lastFrame = { pixels: Buffer.alloc((CANVAS.width * CANVAS.height * 3) / 2), number: -1 };
  await runSession({
    seconds,
    outputDir,
    onStart({ version, room, devices, imagePath }) {
      console.log(`orvaEngine ${version}: room "${room}" for ${seconds} s, composing ` +
        `screen "${devices.screen.name}", camera "${devices.camera.name}" and ${path.basename(imagePath)} ` +
        `at ${CANVAS.width}x${CANVAS.height}, ${CANVAS.fps} fps`);
      console.log(' time | frames since the last line | latest network statistics | events since the last line');
      console.log('        (dropped: frames the engine made while script held the buffer; the copy never waits)');
    },
    onEvent: (name, int1, int2, int3, str1, str2, payload) => meter.event(name, payload),
    onFrame(payload, pixels) {
      meter.frame(payload);
      // A frame to keep is copied now: the engine writes the next one into
      // the same buffer as soon as this returns.
      if (payload.valid) {
        pixels.copy(lastFrame.pixels);
        lastFrame.number = payload.extra;
      }
    },
    onTick: (elapsed) => console.log(meter.line(typeof elapsed === 'number' ? `${elapsed}s` : elapsed)),
  });

  if (lastFrame.number < 0) throw new Error('no frame was delivered');
  const file = path.join(outputDir, 'last-frame.png');
  const rgba = i420ToRgba(lastFrame.pixels, CANVAS);
  fs.writeFileSync(file, encodePng(rgba, CANVAS.width, CANVAS.height));
  console.log(`last frame (#${lastFrame.number}, ${CANVAS.width}x${CANVAS.height}): ${path.relative(process.cwd(), file)}`);
}

main().catch((error) => {
  console.error(`demo: ${error.message}`);
  process.exitCode = 1;
});
