// Types of orva-engine/renderer, a browser module that draws the engine's
// I420 frames into a canvas.

/** Where a frame's planes lie: its size and, when rows are padded, the strides (an "OnVideoFrame" payload fits). */
export interface I420Frame {
  width: number;
  height: number;
  strideY?: number;
  strideU?: number;
  strideV?: number;
}

/** The pixels of a frame: Y, then U, then V, as the registered render buffer holds them. */
export type I420Pixels = ArrayBufferView | ArrayBuffer;

export interface RendererOptions {
  /** "webgl" (the default) converts on the GPU; "2d" converts on the CPU. WebGL falls back to 2D when the canvas has none. */
  prefer?: 'webgl' | '2d';
  /** Keeps the WebGL picture readable between frames (screenshots, drawImage), at some cost. */
  preserveDrawingBuffer?: boolean;
}

export interface Renderer {
  /** How this renderer draws. */
  readonly kind: 'webgl' | '2d';
  /** Frames drawn so far. */
  readonly frames: number;
  /**
   * Draws one frame; the canvas takes its size. Throws a RangeError (and draws
   * nothing) when the size, a stride or the pixels' length does not add up,
   * a TypeError when `pixels` holds no bytes. False while a lost WebGL context is away.
   */
  draw(pixels: I420Pixels, frame: I420Frame): boolean;
  dispose(): void;
}

export function createRenderer(canvas: HTMLCanvasElement | OffscreenCanvas, options?: RendererOptions): Renderer;

/** The colour space the engine composes in and the renderer converts from. */
export const colourSpace: {
  readonly name: string;
  readonly kr: number;
  readonly kb: number;
  readonly luma: { readonly black: number; readonly white: number };
  readonly chroma: { readonly zero: number; readonly min: number; readonly max: number };
};

/** Rows R, G and B of the matrix taking (Y, U, V, 1) to RGB, all in 0..255. */
export function yuvToRgbMatrix(space?: typeof colourSpace): number[][];

export interface I420Plane {
  offset: number;
  stride: number;
  rows: number;
}

export function i420Layout(frame: I420Frame): {
  width: number;
  height: number;
  chromaWidth: number;
  chromaHeight: number;
  y: I420Plane;
  u: I420Plane;
  v: I420Plane;
  size: number;
};

/** RGBA pixels (alpha 255) of a frame, into `out` when given. */
export function i420ToRgba(
  pixels: I420Pixels,
  frame: I420Frame,
  out?: Uint8ClampedArray | Uint8Array,
  matrix?: number[][],
): Uint8ClampedArray;
