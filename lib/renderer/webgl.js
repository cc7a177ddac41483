// Draws I420 frames with WebGL 1: each plane is a one-channel texture as wide
// as its stride, and the fragment shader picks, for every canvas pixel, its
// luma texel and the chroma texel of its 2x2 block, then applies the colour
// matrix. Sampling is by texel index, not by interpolation, so odd sizes and
// padded strides draw exactly the pixels the 2D path computes.
import { i420Layout, frameBytes, yuvToRgbMatrix } from './colour-space.js';

const VERTEX = `
attribute vec2 corner;
void main() { gl_Position = vec4(corner, 0.0, 1.0); }
`;

const FRAGMENT = `
precision highp float;
uniform sampler2D planeY, planeU, planeV;
uniform vec2 sizeY, sizeU, sizeV; // texture sizes in texels
uniform float height;
uniform mat4 yuvToRgb;            // (Y, U, V, 1) in 0..255 to RGB in 0..255
float texel(sampler2D plane, vec2 size, vec2 at) { return texture2D(plane, (at + 0.5) / size).r * 255.0; }
void main() {
  // Canvas rows count from the bottom, frame rows from the top.
  vec2 pixel = vec2(floor(gl_FragCoord.x), height - 1.0 - floor(gl_FragCoord.y));
  vec2 block = floor(pixel / 2.0);
  vec4 yuv = vec4(texel(planeY, sizeY, pixel), texel(planeU, sizeU, block), texel(planeV, sizeV, block), 1.0);
  gl_FragColor = vec4(clamp((yuvToRgb * yuv).rgb / 255.0, 0.0, 1.0), 1.0);
}
`;

function compile(gl, type, source) {
  const shader = gl.createShader(type);
  gl.shaderSource(shader, source);
  gl.compileShader(shader);
  if (!gl.getShaderParameter(shader, gl.COMPILE_STATUS) && !gl.isContextLost()) {
    throw new Error(`the renderer's shader does not compile: ${gl.getShaderInfoLog(shader)}`);
  }
  return shader;
}

function program(gl) {
  const p = gl.createProgram();
  gl.attachShader(p, compile(gl, gl.VERTEX_SHADER, VERTEX));
  gl.attachShader(p, compile(gl, gl.FRAGMENT_SHADER, FRAGMENT));
  gl.linkProgram(p);
  if (!gl.getProgramParameter(p, gl.LINK_STATUS) && !gl.isContextLost()) {
    throw new Error(`the renderer's shaders do not link: ${gl.getProgramInfoLog(p)}`);
  }
  return p;
}

// WebGL takes matrices column by column.
function columnMajor(rows) {
  const m = new Float32Array(16);
  rows.forEach((row, r) => row.forEach((value, c) => { m[c * 4 + r] = value; }));
  m[15] = 1;
  return m;
}

/** A WebGL drawer for `canvas`, or null when the canvas offers no WebGL. */
export function createWebglDrawer(canvas, { preserveDrawingBuffer = false } = {}) {
  const gl = canvas.getContext('webgl', { alpha: false, antialias: false, depth: false, preserveDrawingBuffer });
  if (!gl) return null;
  let state = null; // the program and its textures; rebuilt after a lost context comes back
  const planes = ['planeY', 'planeU', 'planeV'];

  function setUp() {
    const p = program(gl);
    gl.useProgram(p);
    const corners = gl.createBuffer();
    gl.bindBuffer(gl.ARRAY_BUFFER, corners);
    gl.bufferData(gl.ARRAY_BUFFER, new Float32Array([-1, -1, 1, -1, -1, 1, 1, 1]), gl.STATIC_DRAW);
    const corner = gl.getAttribLocation(p, 'corner');
    gl.enableVertexAttribArray(corner);
    gl.vertexAttribPointer(corner, 2, gl.FLOAT, false, 0, 0);
    gl.uniformMatrix4fv(gl.getUniformLocation(p, 'yuvToRgb'), false, columnMajor(yuvToRgbMatrix()));
    gl.pixelStorei(gl.UNPACK_ALIGNMENT, 1);
    const textures = planes.map((name, unit) => {
      const texture = gl.createTexture();
      gl.activeTexture(gl.TEXTURE0 + unit);
      gl.bindTexture(gl.TEXTURE_2D, texture);
      for (const [key, value] of [
        [gl.TEXTURE_MIN_FILTER, gl.NEAREST],
        [gl.TEXTURE_MAG_FILTER, gl.NEAREST],
        [gl.TEXTURE_WRAP_S, gl.CLAMP_TO_EDGE],
        [gl.TEXTURE_WRAP_T, gl.CLAMP_TO_EDGE],
      ]) gl.texParameteri(gl.TEXTURE_2D, key, value);
      gl.uniform1i(gl.getUniformLocation(p, name), unit);
      return { texture, width: 0, height: 0 };
    });
    const uniform = (name) => gl.getUniformLocation(p, name);
    state = {
      textures,
      sizes: ['sizeY', 'sizeU', 'sizeV'].map(uniform),
      height: uniform('height'),
      largest: gl.getParameter(gl.MAX_TEXTURE_SIZE), // asked once: a query may wait for the GPU process
    };
  }

  canvas.addEventListener('webglcontextlost', (event) => {
    event.preventDefault(); // asks for the context back
    state = null;
  });

  function upload(unit, bytes, plane) {
    const t = state.textures[unit];
    gl.activeTexture(gl.TEXTURE0 + unit);
    const data = bytes.subarray(plane.offset, plane.offset + plane.stride * plane.rows);
    if (t.width === plane.stride && t.height === plane.rows) {
      gl.texSubImage2D(gl.TEXTURE_2D, 0, 0, 0, plane.stride, plane.rows, gl.LUMINANCE, gl.UNSIGNED_BYTE, data);
    } else {
      gl.texImage2D(gl.TEXTURE_2D, 0, gl.LUMINANCE, plane.stride, plane.rows, 0, gl.LUMINANCE, gl.UNSIGNED_BYTE, data);
      t.width = plane.stride;
      t.height = plane.rows;
      gl.uniform2f(state.sizes[unit], plane.stride, plane.rows);
    }
  }

  return {
    kind: 'webgl',
    draw(pixels, frame) {
      const layout = i420Layout(frame);
      const bytes = frameBytes(pixels, layout);
      if (gl.isContextLost()) return false;
      if (!state) setUp();
      if (Math.max(layout.y.stride, layout.height) > state.largest) {
        throw new RangeError(`a ${layout.width}x${layout.height} frame is larger than this WebGL's ${state.largest} pixels`);
      }
      if (canvas.width !== layout.width || canvas.height !== layout.height) {
        canvas.width = layout.width;
        canvas.height = layout.height;
      }
      gl.viewport(0, 0, layout.width, layout.height);
      gl.uniform1f(state.height, layout.height);
      [layout.y, layout.u, layout.v].forEach((plane, unit) => upload(unit, bytes, plane));
      gl.drawArrays(gl.TRIANGLE_STRIP, 0, 4);
      return true;
    },
    dispose() {
      if (state && !gl.isContextLost()) state.textures.forEach((t) => gl.deleteTexture(t.texture));
      state = null;
      gl.getExtension('WEBGL_lose_context')?.loseContext();
    },
  };
}
