'use strict';
// The demo's session, shared by the terminal demo and the web demo: enter a
// room, publish audio and the composed video (a screen, the camera and an
// image over a canvas), hand every event and frame to the caller for the
// given time, then leave and destroy the engine.
const path = require('path');
const orva = require('..');
const { CANVAS, pickDevices, writeImage, transcodingParams } = require('./scene');

const ROOM = 'demo-room';

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

/**
 * Runs the session until `seconds` have passed or `stop` resolves. Hooks:
 * - onStart({ version, room, devices, imagePath }) once the engine is up;
 * - onEvent(name, int1, int2, int3, str1, str2, payload) for every event but frames;
 * - onFrame(payload, pixels): pixels is the render buffer, valid only during the call
 *   (the engine writes the next frame into it as soon as the hook returns);
 * - onTick(elapsedSeconds) about once a second, and onTick('left') at the end.
 */
async function runSession({ seconds, outputDir, stop = new Promise(() => {}), onStart, onEvent, onFrame, onTick }) {
  const engine = orva.OrvaEngineWrapper.createOrvaEngine();
  const renderBuffer = Buffer.alloc((CANVAS.width * CANVAS.height * 3) / 2); // I420
  let sessionLeft;
  const left = new Promise((resolve) => { sessionLeft = resolve; });
  let stopped = false;
  stop.then(() => { stopped = true; });

  engine.setCallback((name, int1, int2, int3, str1, str2, payload) => {
    if (name === 'OnVideoFrame') {
      onFrame(payload, renderBuffer);
      return;
    }
    onEvent(name, int1, int2, int3, str1, str2, payload);
    if (name === 'OnSessionStateChanged' && int1 === orva.Leaved) sessionLeft();
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
    onStart({ version: engine.getSDK().GetVersion(), room: ROOM, devices, imagePath });

    check(engine.enterRoom(ROOM, null), 'enterRoom');
    engine.publishAudio(orva.MicrophoneSource);
    engine.publishVideo(orva.MixerCaptureSource); // the composed picture
    engine.startTranscoding(transcodingParams(devices, imagePath));
    // id and userId come back in every frame's payload, to tell render targets apart.
    const { width, height } = CANVAS;
    engine.setVideoFrameRenderBuffer({ buffer: renderBuffer, id: 1, userId: 'local', width, height });

    for (let elapsed = 0; elapsed < seconds * 1000 && !stopped;) {
      const step = Math.min(1000, seconds * 1000 - elapsed);
      await within(stop, step);
      elapsed += step;
      if (!stopped) onTick(+(elapsed / 1000).toFixed(1));
    }

    engine.stopTranscoding();
    engine.exitRoom();
    await within(left, 2000);
    engine.setVideoFrameRenderBuffer(null);
    onTick('left');
  } finally {
    engine.destroy(); // the engine's threads stop and the event loop is free to end
  }
}

/** The duration asked for on the command line or in ORVA_DEMO_SECONDS. */
function requestedSeconds(fallback) {
  const requested = process.argv[2] ?? process.env.ORVA_DEMO_SECONDS ?? String(fallback);
  const seconds = Number(requested);
  if (!(seconds > 0 && seconds <= 3600)) throw new Error(`"${requested}" is not a duration in seconds (0 < s <= 3600)`);
  return seconds;
}

module.exports = { CANVAS, runSession, requestedSeconds };
