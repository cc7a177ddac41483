'use strict';
// Turns an I420 frame into a PNG file with nothing but Node.js itself: the
// colour conversion, the chunk layout and its checksums are here, the
// compression is zlib's.
const zlib = require('zlib');

const clamp = (value) => (value < 0 ? 0 : value > 255 ? 255 : value);

/**
 * RGB bytes (3 per pixel, rows top to bottom) of an I420 frame laid out as
 * the engine delivers it: a full-size Y plane, then the U and V planes at half
 * the width and height, each plane's rows back to back.
 */
function i420ToRgb(i420, width, height) {
  const uPlane = width * height;
  const vPlane = uPlane + (width / 2) * (height / 2);
  const rgb = Buffer.alloc(width * height * 3);
  for (let y = 0; y < height; y += 1) {
    const chromaRow = (y >> 1) * (width / 2);
    for (let x = 0; x < width; x += 1) {
      // BT.601 with studio swing (Y 16..235), the range the engine composes in.
      const c = 298 * (i420[y * width + x] - 16) + 128;
      const d = i420[uPlane + chromaRow + (x >> 1)] - 128;
      const e = i420[vPlane + chromaRow + (x >> 1)] - 128;
      const out = (y * width + x) * 3;
      rgb[out] = clamp((c + 409 * e) >> 8);
      rgb[out + 1] = clamp((c - 100 * d - 208 * e) >> 8);
      rgb[out + 2] = clamp((c + 516 * d) >> 8);
    }
  }
  return rgb;
}

// CRC-32 (the polynomial of zlib and PNG, reflected), one table lookup a byte.
const CRC_TABLE = Int32Array.from({ length: 256 }, (_, n) => {
  let c = n;
  for (let bit = 0; bit < 8; bit += 1) c = c & 1 ? 0xedb88320 ^ (c >>> 1) : c >>> 1;
  return c;
});

function crc32(bytes) {
  let crc = -1;
  for (const byte of bytes) crc = CRC_TABLE[(crc ^ byte) & 0xff] ^ (crc >>> 8);
  return (crc ^ -1) >>> 0;
}

// length, type, data, then the CRC of type and data.
function chunk(type, data) {
  const typeAndData = Buffer.concat([Buffer.from(type, 'latin1'), data]);
  const length = Buffer.alloc(4);
  length.writeUInt32BE(data.length);
  const crc = Buffer.alloc(4);
  crc.writeUInt32BE(crc32(typeAndData));
  return Buffer.concat([length, typeAndData, crc]);
}

const SIGNATURE = Buffer.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a]);

/** A PNG file (8-bit truecolour, no interlace) of `rgb` as i420ToRgb lays it out. */
function encodePng(rgb, width, height) {
  const header = Buffer.alloc(13);
  header.writeUInt32BE(width, 0);
  header.writeUInt32BE(height, 4);
  header.set([8, 2, 0, 0, 0], 8); // bit depth, colour type RGB, deflate, adaptive filters, no interlace
  // Every row starts with its filter type; 0 leaves the bytes as they are.
  const stride = width * 3;
  const rows = Buffer.alloc((stride + 1) * height);
  for (let y = 0; y < height; y += 1) rgb.copy(rows, y * (stride + 1) + 1, y * stride, (y + 1) * stride);
  return Buffer.concat([
    SIGNATURE,
    chunk('IHDR', header),
    chunk('IDAT', zlib.deflateSync(rows)),
    chunk('IEND', Buffer.alloc(0)),
  ]);
}

module.exports = { i420ToRgb, encodePng, crc32 };
