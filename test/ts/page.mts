// A page's script drawing frames with orva-engine/renderer: typed from the
// package's declarations, with no casts.
import { createRenderer, i420Layout, type I420Frame, type Renderer } from 'orva-engine/renderer';

const canvas: HTMLCanvasElement = document.createElement('canvas');
const renderer: Renderer = createRenderer(canvas, { prefer: 'webgl' });
const frame: I420Frame = { width: 641, height: 361 };
const pixels = new Uint8Array(i420Layout(frame).size);
const drawn: boolean = renderer.draw(pixels, frame);
const kind: 'webgl' | '2d' = renderer.kind;
console.log(drawn, kind, renderer.frames);
// @ts-expect-error: the renderer draws in WebGL or 2D only
createRenderer(canvas, { prefer: 'bitmap' });
