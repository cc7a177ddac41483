// Draws I420 frames into a 2D canvas, converting on the CPU with the same
// matrix as the WebGL path: for pages, or machines, without WebGL.
import { i420Layout, i420ToRgba, frameBytes, yuvToRgbMatrix } from './colour-space.js';

export function create2dDrawer(canvas) {
  const context = canvas.getContext('2d', { alpha: false });
  if (!context) return null;
  const matrix = yuvToRgbMatrix();
  let image = null; // reused while frames keep their size

  return {
    kind: '2d',
    draw(pixels, frame) {
      const layout = i420Layout(frame);
      const bytes = frameBytes(pixels, layout); // a frame that cannot be drawn leaves the canvas as it was
      const { width, height } = layout;
      if (canvas.width !== width || canvas.height !== height) {
        canvas.width = width;
        canvas.height = height;
      }
      if (!image || image.width !== width || image.height !== height) image = context.createImageData(width, height);
      i420ToRgba(bytes, frame, image.data, matrix);
      context.putImageData(image, 0, 0);
      return true;
    },
    dispose() {
      image = null;
    },
  };
}
