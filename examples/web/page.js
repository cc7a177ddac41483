// The demo page: draws the frames that come over the WebSocket with the
// package's renderer, and shows the statistics and the events beside them.
// `?renderer=2d` draws with the 2D-canvas fallback instead of WebGL.
import { createRenderer } from '/renderer/index.js';
import { readFrameMessage } from '/frames.mjs';

const LOG_LINES = 200;
const prefer = new URLSearchParams(location.search).get('renderer') === '2d' ? '2d' : 'webgl';
// preserveDrawingBuffer keeps the picture readable (a screenshot, a test) between frames.
const renderer = createRenderer(document.getElementById('video'), { prefer, preserveDrawingBuffer: true });

// What the page has seen, also for whoever inspects the page (tests do).
const state = { renderer: renderer.kind, frames: 0, events: 0, stats: 0, ended: false, lastFrame: null, skipped: 0 };
globalThis.orvaDemo = state;

const $ = (id) => document.getElementById(id);
let session = '';

function showStatus() {
  const end = state.ended ? ' · ended' : '';
  $('status').textContent =
    `${session} · ${state.frames} frames drawn with ${state.renderer} · ${state.skipped} skipped by the server${end}`;
}

function row(name, value) {
  const tr = document.createElement('tr');
  for (const text of [name, value]) tr.appendChild(document.createElement('td')).textContent = text;
  return tr;
}

function showStats(stats) {
  const mbits = (bps) => `${(bps / 1e6).toFixed(2)} Mbit/s`;
  const rows = [
    row('up', mbits(stats.OutBps)),
    row('down', mbits(stats.InBps)),
    row('round trip', `${stats.RealtimeRtt} ms`),
    ...(stats.remoteStatistics ?? []).map((peer) =>
      row(peer.userId, `${peer.width}x${peer.height} ${peer.frameRate} fps, ${peer.point2PointDelay} ms`)),
  ];
  $('stats').replaceChildren(...rows);
  state.stats += 1;
}

// One line an event; an event that repeats the line before only counts up
// (voice volumes come several times a second).
let lastLine = { key: '', node: null, count: 0 };
function log({ name, int1, int2, int3, str1, str2 }) {
  const args = [int1, int2, int3, str1 && JSON.stringify(str1), str2 && JSON.stringify(str2)].filter((a) => a !== undefined && a !== '');
  const key = `${name}${args.length ? ` ${args.join(' ')}` : ''}`;
  const time = new Date().toLocaleTimeString();
  state.events += 1;
  if (key === lastLine.key) {
    lastLine.count += 1;
    lastLine.node.textContent = `${time} ${key} (x${lastLine.count})\n`;
    return;
  }
  const pre = $('log');
  const node = document.createElement('span');
  node.textContent = `${time} ${key}\n`;
  pre.append(node);
  lastLine = { key, node, count: 1 };
  while (pre.childNodes.length > LOG_LINES) pre.firstChild.remove();
  pre.scrollTop = pre.scrollHeight;
}

const socket = new WebSocket(`ws://${location.host}/live`);
socket.binaryType = 'arraybuffer';
socket.onmessage = ({ data }) => {
  if (data instanceof ArrayBuffer) {
    const { frame, pixels } = readFrameMessage(data);
    renderer.draw(pixels, frame);
    state.frames = renderer.frames;
    state.lastFrame = { frame, pixels };
    return;
  }
  const message = JSON.parse(data);
  if (message.kind === 'hello') session = `room "${message.room}", ${message.canvas.width}x${message.canvas.height}`;
  else if (message.kind === 'event') {
    if (message.name === 'OnNetworkStats') showStats(message.payload);
    else log(message);
  } else if (message.kind === 'tick') state.skipped = message.skipped;
  else if (message.kind === 'end') state.ended = true;
  showStatus();
};
socket.onclose = () => {
  state.ended = true;
  showStatus();
};
