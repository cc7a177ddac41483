// Shows the engine's I420 frames in a canvas: the pixels of the buffer
// registered with setVideoFrameRenderBuffer and the payload of the
// "OnVideoFrame" that announced them.
//
//   import { createRenderer } from 'orva-engine/renderer';
//   const renderer = createRenderer(document.querySelector('canvas'));
//   renderer.draw(pixels, payload); // payload: width, height and the strides
//
// WebGL converts on the GPU; where a canvas has no WebGL (or `prefer: '2d'`
// asks for it), a 2D canvas converts on the CPU to the same picture. The
// canvas takes each frame's size; scale it on the page with CSS.
import { createWebglDrawer } from './webgl.js';
import { create2dDrawer } from './canvas2d.js';

export { colourSpace, yuvToRgbMatrix, i420Layout, i420ToRgba } from './colour-space.js';

export function createRenderer(canvas, options) {
  const { prefer = 'webgl', preserveDrawingBuffer = false } = options ?? {};
  if (!canvas || typeof canvas.getContext !== 'function') {
    throw new TypeError('createRenderer needs a canvas element or an OffscreenCanvas');
  }
  if (prefer !== 'webgl' && prefer !== '2d') throw new TypeError(`prefer is "webgl" or "2d", not "${prefer}"`);
  const drawer =
    (prefer === 'webgl' && createWebglDrawer(canvas, { preserveDrawingBuffer })) || create2dDrawer(canvas);
  if (!drawer) throw new Error('the canvas offers neither WebGL nor a 2D context (it has another context already)');
  let frames = 0;
  return {
    /** "webgl" or "2d": how this renderer draws. */
    get kind() {
      return drawer.kind;
    },
    /** Frames drawn so far. */
    get frames() {
      return frames;
    },
    /**
     * Draws one frame: `pixels` holds it as I420 (Y, U, V planes one after
     * the other), `frame` gives width, height and, when rows are padded, the
     * strides. Answers false when the WebGL context is lost for the moment.
     */
    draw(pixels, frame) {
      const drawn = drawer.draw(pixels, frame);
      if (drawn) frames += 1;
      return drawn;
    },
    dispose() {
      drawer.dispose();
    },
  };
}
