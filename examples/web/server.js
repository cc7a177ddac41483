'use strict';
// The demo session shown on a page: an HTTP server on 127.0.0.1 serves the
// page and the renderer, and a WebSocket carries the composed frames, the
// events and the network statistics to every open page. Ends by itself after
// the given seconds (or at Ctrl-C), closing the pages' sockets first.
//
//   node examples/web/server.js [seconds]     (or ORVA_DEMO_SECONDS; default 60)
//   ORVA_DEMO_PORT=<port>                     (default: any free port)
const fs = require('fs');
const http = require('http');
const os = require('os');
const path = require('path');
const { WebSocketServer } = require('ws');
const { CANVAS, runSession, requestedSeconds } = require('../session');

const ROOT = path.resolve(__dirname, '..', '..');
const FILES = {
  '/': path.join(__dirname, 'index.html'),
  '/page.js': path.join(__dirname, 'page.js'),
  '/frames.mjs': path.join(__dirname, 'frames.mjs'),
};
const RENDERER = path.join(ROOT, 'lib', 'renderer');
const SCRIPT = 'text/javascript; charset=utf-8';
const TYPES = { '.html': 'text/html; charset=utf-8', '.js': SCRIPT, '.mjs': SCRIPT };
// A page that falls four frames behind misses frames rather than queueing them.
const MAX_QUEUED_BYTES = 4 * ((CANVAS.width * CANVAS.height * 3) / 2);
const RECENT_EVENTS = 100;

/** The file a request names: a page file, or a module of the renderer. */
function fileFor(url) {
  // Taken as it comes: a URL parser would throw on some (such as "//").
  const pathname = url.split('?')[0];
  if (FILES[pathname]) return FILES[pathname];
  const match = /^\/renderer\/([a-z0-9-]+\.js)$/.exec(pathname);
  return match ? path.join(RENDERER, match[1]) : null;
}

function serve(request, response) {
  const file = fileFor(request.url);
  fs.readFile(file ?? '', (error, body) => {
    if (request.method !== 'GET' || error) {
      response.writeHead(request.method !== 'GET' ? 405 : 404, { 'content-type': 'text/plain' });
      response.end(request.method !== 'GET' ? 'only GET\n' : 'not found\n');
      return;
    }
    response.writeHead(200, { 'content-type': TYPES[path.extname(file)], 'cache-control': 'no-store' });
    response.end(body);
  });
}

// Statistics payloads hold 64-bit counters as BigInt.
const json = (value) => JSON.stringify(value, (key, v) => (typeof v === 'bigint' ? Number(v) : v));

async function main() {
  const seconds = requestedSeconds(60);
  const { frameMessage } = await import('./frames.mjs');
  const outputDir = fs.mkdtempSync(path.join(os.tmpdir(), 'orva-demo-web-'));
  const server = http.createServer(serve);
  // Pages only listen: anything larger than a close frame from them is refused.
  const sockets = new WebSocketServer({ server, path: '/live', maxPayload: 1024 });
  const port = Number(process.env.ORVA_DEMO_PORT ?? 0);
  await new Promise((resolve, reject) => server.once('error', reject).listen(port, '127.0.0.1', resolve));

  let interrupted;
  const stop = new Promise((resolve) => { interrupted = resolve; });
  process.once('SIGINT', interrupted);
  process.once('SIGTERM', interrupted);

  const skipped = new Map(); // per page: frames it was too slow for
  const broadcast = (message, { frame = false } = {}) => {
    for (const socket of sockets.clients) {
      if (socket.readyState !== socket.OPEN) continue;
      if (frame && socket.bufferedAmount > MAX_QUEUED_BYTES) {
        skipped.set(socket, (skipped.get(socket) ?? 0) + 1);
        continue;
      }
      socket.send(message, { binary: frame });
    }
  };
  // A page that opens late still sees how the session began: it gets the
  // session, the latest statistics and the recent events on connecting.
  let hello = null;
  let latestStats = null;
  const recent = [];
  sockets.on('connection', (socket) => {
    // A page that breaks the protocol loses its socket (ws closes it); without
    // a listener the error would end the server.
    socket.on('error', () => {});
    for (const message of [hello, latestStats, ...recent]) if (message) socket.send(message);
  });

  try {
    await runSession({
      seconds,
      outputDir,
      stop,
      onStart({ version, room, devices }) {
        hello = json({ kind: 'hello', version, room, devices, canvas: CANVAS, seconds });
        broadcast(hello);
        console.log(`demo:web: open http://127.0.0.1:${server.address().port}/ ` +
          `(orvaEngine ${version}, room "${room}"; stops after ${seconds} s)`);
      },
      onEvent(name, int1, int2, int3, str1, str2, payload) {
        const message = json({ kind: 'event', name, int1, int2, int3, str1, str2, payload });
        if (name === 'OnNetworkStats') latestStats = message;
        else if (recent.push(message) > RECENT_EVENTS) recent.shift();
        broadcast(message);
      },
      onFrame(payload, pixels) {
        // The message is a copy: the engine reuses the buffer once this returns.
        if (payload.valid && sockets.clients.size > 0) broadcast(frameMessage(payload, pixels), { frame: true });
      },
      onTick(elapsed) {
        broadcast(json({ kind: 'tick', elapsed, skipped: [...skipped.values()].reduce((a, b) => a + b, 0) }));
      },
    });
  } finally {
    broadcast(json({ kind: 'end' }));
    for (const socket of sockets.clients) socket.close(1001, 'the demo has ended');
    sockets.close();
    server.closeAllConnections?.();
    await new Promise((resolve) => server.close(resolve));
    fs.rmSync(outputDir, { recursive: true, force: true });
  }
  console.log('demo:web: ended');
}

main().catch((error) => {
  console.error(`demo:web: ${error.message}`);
  process.exitCode = 1;
});
