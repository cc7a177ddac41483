'use strict';
// Writes RGB or RGBA pixels as a PNG file with nothing but Node.js itself:
// the chunk layout and its checksums are here, the compression is zlib's.
const zlib = require('zlib');

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

/**
 * A PNG file (8-bit truecolour, no interlace) of `pixels`, rows top to
 * bottom, `channels` bytes a pixel: 3 (RGB) or 4 (RGBA, whose alpha is left out).
 */
function encodePng(pixels, width, height, channels = pixels.length / (width * height)) {
  const header = Buffer.alloc(13);
  header.writeUInt32BE(width, 0);
  header.writeUInt32BE(height, 4);
  header.set([8, 2, 0, 0, 0], 8); // bit depth, colour type RGB, deflate, adaptive filters, no interlace
  // Every row starts with its filter type; 0 leaves the bytes as they are.
  const stride = width * 3;
  const rows = Buffer.alloc((stride + 1) * height);
  for (let y = 0, from = 0; y < height; y += 1) {
    for (let at = y * (stride + 1) + 1, end = at + stride; at < end; at += 3, from += channels) {
      rows[at] = pixels[from];
      rows[at + 1] = pixels[from + 1];
      rows[at + 2] = pixels[from + 2];
    }
  }
  return Buffer.concat([
    SIGNATURE,
    chunk('IHDR', header),
    chunk('IDAT', zlib.deflateSync(rows)),
    chunk('IEND', Buffer.alloc(0)),
  ]);
}

module.exports = { encodePng, crc32 };
