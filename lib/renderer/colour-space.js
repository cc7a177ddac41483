// The colour space of every frame the engine composes, in one place: the
// loopback engine's RGB-to-YUV conversion is generated from these figures at
// build time (cmake/colour-space.js), and the renderer converts back with the
// matrix derived from them, so the two cannot drift apart.
//
// BT.601 luma weights, limited ("studio") range: Y from 16 (black) to 235
// (white), U and V from 16 to 240 around 128.
export const colourSpace = Object.freeze({
  name: 'BT.601, limited range',
  kr: 0.299,
  kb: 0.114,
  luma: Object.freeze({ black: 16, white: 235 }),
  chroma: Object.freeze({ zero: 128, min: 16, max: 240 }),
});

/**
 * The 3x4 matrix, rows R, G and B, that takes (Y, U, V, 1) in 0..255 to
 * R, G and B in 0..255 (before clamping).
 */
export function yuvToRgbMatrix({ kr, kb, luma, chroma } = colourSpace) {
  const kg = 1 - kr - kb;
  const y = 255 / (luma.white - luma.black);
  const c = 255 / ((chroma.max - chroma.min) / 2); // a chroma step as a colour-difference step
  const rv = c * (1 - kr);
  const bu = c * (1 - kb);
  const gu = (-bu * kb) / kg;
  const gv = (-rv * kr) / kg;
  const row = (u, v) => [y, u, v, -y * luma.black - (u + v) * chroma.zero];
  return [row(0, rv), row(gu, gv), row(bu, 0)];
}

/**
 * Where the three planes of an I420 frame lie in its bytes: Y, then U, then V,
 * each `stride` bytes a row. Without strides, rows are packed: the chroma
 * planes are half the size, rounded up, so odd widths and heights keep their
 * last column and row.
 */
export function i420Layout({ width, height, strideY, strideU, strideV }) {
  if (!(Number.isInteger(width) && width > 0 && Number.isInteger(height) && height > 0)) {
    throw new RangeError(`a frame of ${width}x${height} pixels cannot be drawn`);
  }
  const chromaWidth = Math.ceil(width / 2);
  const chromaHeight = Math.ceil(height / 2);
  const plane = (stride, fallback, minimum, rows, offset) => {
    const s = stride || fallback;
    if (!Number.isInteger(s) || s < minimum) throw new RangeError(`a stride of ${stride} is less than a row of ${minimum}`);
    return { offset, stride: s, rows };
  };
  const y = plane(strideY, width, width, height, 0);
  const u = plane(strideU, chromaWidth, chromaWidth, chromaHeight, y.stride * height);
  const v = plane(strideV, chromaWidth, chromaWidth, chromaHeight, u.offset + u.stride * chromaHeight);
  return { width, height, chromaWidth, chromaHeight, y, u, v, size: v.offset + v.stride * chromaHeight };
}

/** The frame's bytes as a Uint8Array, checked to hold the whole layout. */
export function frameBytes(pixels, layout) {
  const bytes = ArrayBuffer.isView(pixels)
    ? new Uint8Array(pixels.buffer, pixels.byteOffset, pixels.byteLength)
    : pixels instanceof ArrayBuffer
      ? new Uint8Array(pixels)
      : null;
  if (!bytes) throw new TypeError('the frame must be a Uint8Array, another typed array or an ArrayBuffer');
  if (bytes.length < layout.size) {
    throw new RangeError(`a ${layout.width}x${layout.height} frame needs ${layout.size} bytes; this one holds ${bytes.length}`);
  }
  return bytes;
}

/**
 * The RGBA pixels (rows top to bottom, alpha 255) of an I420 frame, into
 * `out` when given (width * height * 4 bytes). The 2D-canvas renderer draws
 * these; anyone who needs a frame's colours outside a page can use it too.
 */
export function i420ToRgba(pixels, frame, out, matrix = yuvToRgbMatrix()) {
  const layout = i420Layout(frame);
  const bytes = frameBytes(pixels, layout);
  const { width, height, y: Y, u: U, v: V } = layout;
  const rgba = out ?? new Uint8ClampedArray(width * height * 4);
  const [[ry, , rv, r0], [gy, gu, gv, g0], [by, bu, , b0]] = matrix;
  const clamp = (value) => (value < 0 ? 0 : value > 255 ? 255 : Math.round(value));
  let at = 0;
  for (let row = 0; row < height; row += 1) {
    const lumaRow = Y.offset + row * Y.stride;
    const uRow = U.offset + (row >> 1) * U.stride;
    const vRow = V.offset + (row >> 1) * V.stride;
    for (let column = 0; column < width; column += 1) {
      const l = bytes[lumaRow + column];
      const u = bytes[uRow + (column >> 1)];
      const v = bytes[vRow + (column >> 1)];
      rgba[at] = clamp(ry * l + rv * v + r0);
      rgba[at + 1] = clamp(gy * l + gu * u + gv * v + g0);
      rgba[at + 2] = clamp(by * l + bu * u + b0);
      rgba[at + 3] = 255;
      at += 4;
    }
  }
  return rgba;
}
