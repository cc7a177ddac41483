// How a frame travels over the demo's WebSocket, for the server and the page
// alike: a header of six little-endian 32-bit numbers (width, height,
// strideY, strideU, strideV, the engine's frame number), then the frame's
// I420 bytes.
const FIELDS = ['width', 'height', 'strideY', 'strideU', 'strideV', 'extra'];
export const FRAME_HEADER_BYTES = FIELDS.length * 4;

/** The message for an "OnVideoFrame" payload and the buffer its pixels are in (copied). */
export function frameMessage(payload, pixels) {
  const message = new Uint8Array(FRAME_HEADER_BYTES + payload.size);
  const header = new DataView(message.buffer);
  FIELDS.forEach((field, i) => header.setUint32(i * 4, payload[field], true));
  message.set(pixels.subarray(0, payload.size), FRAME_HEADER_BYTES);
  return message;
}

/** { frame, pixels } of an ArrayBuffer made by frameMessage. */
export function readFrameMessage(buffer) {
  const header = new DataView(buffer, 0, FRAME_HEADER_BYTES);
  const frame = Object.fromEntries(FIELDS.map((field, i) => [field, header.getUint32(i * 4, true)]));
  return { frame, pixels: new Uint8Array(buffer, FRAME_HEADER_BYTES) };
}
