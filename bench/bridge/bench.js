'use strict';
// Event-bridge benchmarks: engine events and frames on their way from engine
// threads to the one script handler of orvaEngine.node, against baselines
// measured in this same process and run.
//
//   node --expose-gc bench/bridge/bench.js [build folder]
//
// The build folder defaults to $ORVA_BUILD_DIR, then build-bench.
// ORVA_BENCH_ROUNDS scales the number of measured rounds (quick looks only);
// ORVA_BENCH_only keeps the sections whose name contains its text
// (throughput, latency, frames, slow).
//
// 1. Throughput: one bench thread raises OnPlayFilePosChanged(0, seq, 0) flat
//    out on the registered audio-service face of the facade's handler; the
//    figure is events delivered to the script handler per second, from the
//    first send to the last handler entry. The baseline is Node-API's
//    thread-safe function carrying the same seven values from the same
//    producer loop into a script callback (non-blocking with an unbounded
//    queue, and blocking with a bounded one); the target is twice the better
//    of the two. The bare uv_async queue (the floor) and the loopback
//    engine's own raiser threads are shown for information, and so are two
//    producer threads. So is the events layer (orva-engine/events) with one
//    listener on the same bridge, as a ratio to the raw handler of each round.
// 2. Latency at a steady 10,000 events per second: one paced producer takes
//    turns between the bridge, the non-blocking thread-safe function and the
//    floor, a few events at a time, stamping each send (uv_hrtime) by
//    sequence number; each handler's first act stamps its entry through the
//    same native call. p50 and p99 over all samples.
// 3. Frames at 1920x1080 and 3840x2160, 60 fps, fast handler: each frame
//    goes to the registered frame processor on the engine's event thread,
//    timed there (wall and thread CPU time), next to a plain memcpy of the
//    same frame on the same thread and to a memcpy followed by a wake of the
//    idle script thread; no frame may be dropped.
// 4. Slow handler: a frame handler slower than the frame interval; frames are
//    dropped rather than queued, the age of a delivered frame stays below
//    two intervals plus the handler's time, and resident memory stays flat.
//
// How the figures stay honest on a small, shared machine: warm-up samples
// are not counted; rounds rotate the order of the implementations (or, for
// latency, interleave them) and collect garbage (untimed) before each
// sample; figures are medians over rounds and ratios medians of per-round
// ratios unless said otherwise; the load average is printed at the start
// and at the end. Exit status 0 whether or not targets are met; 1 when the
// benchmark itself fails, 2 when the build is missing.

const path = require('path');
const { median, quantile, spread } = require('../lib/stats');
const { collect, buildDir, only, fixed, pad, mark, printStart, printEnd } = require('../lib/setting');

const SCALE = Number(process.env.ORVA_BENCH_ROUNDS || 0);
const rounds = (fallback) => (SCALE > 0 ? SCALE : fallback);

const THROUGHPUT_EVENTS = 200000; // per sample: about 0.1 s at the rates seen here
const THROUGHPUT_ROUNDS = rounds(9);
const LATENCY_RATE = 10000;
// The three carry their events side by side: one producer paced at 10,000
// events per second hands runs of LATENCY_RUN consecutive events to the
// bridge, the thread-safe function and the floor in turn, so that each sees
// the same machine at the same moments and the script thread a steady rate.
const LATENCY_RUN = 10;
const LATENCY_PER_PATH = 6000; // per sample and implementation
const LATENCY_SAMPLES = rounds(5);
const FRAME_FPS = 60;
const FRAME_COUNT = 180; // per sample: three seconds
const FRAME_ROUNDS = rounds(3);
const SLOW_HANDLER_MS = 25;
const SLOW_FRAMES = 480; // eight seconds
const SLOW_RSS_EVERY = 30; // frames between RSS samples: twice a second
const TSFN_BLOCKING_QUEUE = 1024;

const TARGET_THROUGHPUT = 2.0; // x the thread-safe function
const TARGET_LATENCY = 1.0; // p99, x the thread-safe function
const TARGET_FRAME = 1.2; // x memcpy
const RSS_FLAT_KIB = 4096; // growth allowed over the second half of the slow run

function load(file) {
  try {
    return require(path.join(buildDir, file));
  } catch (error) {
    console.error(`cannot load ${file} from ${buildDir} (${error.message}); build first: scripts/bench.sh`);
    process.exit(2);
  }
}
const orva = load('orvaEngine.node');
const native = load('bench_bridge_native.node');
const tsfn = load('bench_bridge_tsfn.node');
// The events layer loads the addon through the package entry: from the same
// build, so that it is the same module.
process.env.ORVA_BUILD_DIR = buildDir;
const { attach } = require('../../lib/events');

const EVENT = 'OnPlayFilePosChanged';
const engine = orva.OrvaEngineWrapper.createOrvaEngine();
const later = (ms) => new Promise((resolve) => setTimeout(resolve, ms));
const immediate = () => new Promise((resolve) => setImmediate(resolve));

// A sample that never completes (an event lost on the way) fails the run
// instead of hanging it; `what()` describes how far it got.
const SAMPLE_LIMIT_MS = 60000;
function within(promise, what) {
  let timer;
  const limit = new Promise((resolve, reject) => {
    timer = setTimeout(() => reject(new Error(`${what()}: not done after ${SAMPLE_LIMIT_MS / 1000} s`)), SAMPLE_LIMIT_MS);
    timer.unref();
  });
  return Promise.race([promise, limit]).finally(() => clearTimeout(timer));
}

// --- handlers ----------------------------------------------------------------

// Every implementation gets its own handler from distinct source, so that
// inline caches never mix their arguments. `s` is the sample's state:
// {count, total, done}.
function counter(tag) {
  return new Function(
    's',
    'name',
    `// ${tag}\n'use strict';\nreturn (n, i1, i2, i3, s1, s2, payload) => {\n` +
      `  if (n === name && ++s.count === s.total) s.done();\n};`,
  );
}

function stamper(tag) {
  return new Function(
    's',
    'name',
    'mark',
    `// ${tag}\n'use strict';\nreturn (n, i1, i2, i3, s1, s2, payload) => {\n` +
      `  if (n !== name) return;\n  mark(i2);\n  if (++s.count === s.total) s.done();\n};`,
  );
}

function listener(tag) {
  return new Function(
    's',
    `// ${tag}\n'use strict';\nreturn (event) => {\n  if (++s.count === s.total) s.done();\n};`,
  );
}

// --- the implementations -----------------------------------------------------

// Each: open(handlerFactory) once, raise(threads, perThread, rate, stamps)
// per sample, join() after the sample, close() at the end.
function bridgeImpl(name, info = false) {
  return {
    name,
    info,
    open(handler) {
      engine.setCallback(handler);
    },
    raise: (threads, perThread, rate, stamps) => {
      if (!native.raiseBridge(threads, perThread, rate, stamps)) throw new Error('no listener registered');
    },
    join: () => native.join(),
    close() {},
  };
}

// The bridge's events through the events layer, to one listener of EVENT.
function eventsImpl(name) {
  return {
    ...bridgeImpl(name, true),
    listener: true,
    open(handler) {
      attach(engine).on(EVENT, handler);
    },
    close() {
      attach(engine).removeAllListeners(EVENT);
    },
  };
}

function tsfnImpl(name, maxQueue, blocking) {
  return {
    name,
    open(handler) {
      tsfn.open(handler, maxQueue, blocking);
    },
    raise: (threads, perThread, rate, stamps) => tsfn.raise(threads, perThread, rate, stamps),
    join: () => tsfn.join(),
    close: () => tsfn.close(),
  };
}

function floorImpl() {
  return {
    name: 'floor: bare uv_async queue',
    info: true,
    open(handler) {
      native.floorOpen(handler);
    },
    raise: (threads, perThread, rate, stamps) => native.raiseFloor(threads, perThread, rate, stamps),
    join: () => native.join(),
    close: () => native.floorClose(),
  };
}

function loopbackImpl() {
  return {
    name: 'bridge, loopback raisers',
    info: true,
    open(handler) {
      engine.setCallback(handler);
    },
    raise: (threads, perThread) => {
      if (!native.raiseLoopback(threads, perThread)) throw new Error('loopback raisers refused');
    },
    join: () => native.joinLoopback(),
    close() {},
  };
}

// One sample: raises `total` events and resolves with the time from just
// before the first send to the last handler entry, in nanoseconds.
async function sample(impl, state, total, threads, rate, stamps, gcFirst = true) {
  if (gcFirst) collect();
  await immediate();
  state.count = 0;
  state.total = total;
  const delivered = new Promise((resolve) => {
    state.done = () => resolve(native.now());
  });
  const start = native.now();
  impl.raise(threads, total / threads, rate, stamps);
  const end = await within(delivered, () => `${impl.name}: ${state.count} of ${total} events`);
  impl.join();
  return end - start;
}

// Runs `measure(impl, state)` for every implementation, `count` rounds, order
// rotating; each implementation's handler is open only while it is measured.
async function rotate(impls, factory, warmups, count, measure) {
  const states = impls.map(() => ({ count: 0, total: 0, done: () => {} }));
  const handlers = impls.map((impl, i) => factory(impl, states[i]));
  const results = impls.map(() => []);
  for (let round = -warmups; round < count; round++) {
    for (let k = 0; k < impls.length; k++) {
      const i = (Math.max(round, 0) + k) % impls.length;
      impls[i].open(handlers[i]);
      const value = await measure(impls[i], states[i]);
      impls[i].close();
      if (round >= 0) results[i].push(value);
    }
  }
  return results;
}

// --- 1. throughput -----------------------------------------------------------

async function throughput(threads) {
  // The blocking function stalls with two producers on this Node.js: a
  // producer that waits on its full queue is signalled once, and the other
  // waits for good. It is measured with one.
  const impls = [
    bridgeImpl('bridge'),
    tsfnImpl('tsfn, non-blocking, unbounded', 0, false),
    threads === 1 ? tsfnImpl(`tsfn, blocking, queue ${TSFN_BLOCKING_QUEUE}`, TSFN_BLOCKING_QUEUE, true) : null,
    floorImpl(),
    threads === 1 ? loopbackImpl() : null,
    threads === 1 ? eventsImpl('events layer, one listener') : null,
  ];
  const measured = impls.filter((impl) => impl !== null);
  const total = THROUGHPUT_EVENTS - (THROUGHPUT_EVENTS % threads);
  const found = await rotate(
    measured,
    (impl, state) => (impl.listener ? listener : counter)(`throughput ${threads} ${impl.name}`)(state, EVENT),
    2,
    THROUGHPUT_ROUNDS,
    async (impl, state) => total / ((await sample(impl, state, total, threads, 0, null)) / 1e9),
  );
  const results = impls.map((impl) => (impl === null ? null : found[measured.indexOf(impl)]));
  const best = results[1].map((value, round) => Math.max(value, results[2] ? results[2][round] : 0));
  const ratios = results[0].map((value, round) => value / best[round]);
  const layer = results[5] && results[5].map((value, round) => value / results[0][round]);
  return { results, ratio: median(ratios), ratioSpread: spread(ratios), total,
    layerRatio: layer && median(layer), layerSpread: layer && spread(layer) };
}

// --- 2. latency --------------------------------------------------------------

async function latency() {
  const paths = ['bridge', 'tsfn', 'floor'];
  const total = paths.length * LATENCY_PER_PATH;
  const states = paths.map(() => ({ count: 0, total: 0, done: () => {} }));
  const handlers = paths.map((name, i) => stamper(`latency ${name}`)(states[i], EVENT, native.mark));
  const sent = new Float64Array(total);
  const received = new Float64Array(total);
  native.setReceiveTable(received);
  engine.setCallback(handlers[0]);
  // Non-blocking: the blocking one takes the same path while its queue has
  // room, which it always has at this rate.
  tsfn.open(handlers[1], 0, false);
  native.floorOpen(handlers[2]);
  const [send, context] = tsfn.sender();
  const pathOf = (seq) => Math.floor(seq / LATENCY_RUN) % paths.length;
  const samples = [];
  for (let round = -1; round < LATENCY_SAMPLES; round++) {
    collect();
    await immediate();
    sent.fill(0);
    received.fill(0);
    const delivered = states.map(
      (state) =>
        new Promise((resolve) => {
          state.count = 0;
          state.total = LATENCY_PER_PATH;
          state.done = resolve;
        }),
    );
    native.raiseMixed(LATENCY_RUN, LATENCY_PER_PATH, LATENCY_RATE, sent, send, context);
    await within(Promise.all(delivered), () => `latency: ${states.map((x) => x.count).join('/')} events`);
    native.join();
    if (round < 0) continue;
    const lat = paths.map(() => []);
    for (let seq = 0; seq < total; seq++) {
      if (!(sent[seq] > 0 && received[seq] > 0)) throw new Error(`latency: event ${seq} not stamped`);
      lat[pathOf(seq)].push(received[seq] - sent[seq]);
    }
    samples.push({ lat: lat.map((values) => Float64Array.from(values).sort()), rate: (total - 1) / ((sent[total - 1] - sent[0]) / 1e9) });
  }
  tsfn.close();
  native.floorClose();
  native.setReceiveTable(null);
  const summary = paths.map((name, i) => {
    const pooled = Float64Array.from(samples.flatMap((sample) => [...sample.lat[i]])).sort();
    return { p50: quantile(pooled, 0.5), p99: quantile(pooled, 0.99), max: pooled[pooled.length - 1] };
  });
  const sampleRatios = samples.map((sample) => quantile(sample.lat[0], 0.99) / quantile(sample.lat[1], 0.99));
  return { summary, ratio: summary[0].p99 / summary[1].p99, sampleRatios, rate: median(samples.map((x) => x.rate)) };
}

// --- 3 and 4. frames ---------------------------------------------------------

// The handler becomes the engine's frame processor through startTranscoding;
// the loopback engine's own frames are stopped at once, and the bench's frames
// then go to the same processor.
async function registerProcessor() {
  const params = new orva.LocalMediaTranscodingParams();
  const encoder = new orva.VideoEncParam();
  encoder.width = 160;
  encoder.height = 90;
  encoder.fps = 1;
  params.videoEncoderParams = encoder;
  engine.startTranscoding(params);
  engine.stopTranscoding();
  await later(50);
}

function frameHandler(tag, width, slowMs) {
  return new Function(
    's',
    'mark',
    'now',
    `// ${tag}\n'use strict';\nreturn (n, i1, i2, i3, s1, s2, p) => {\n` +
      `  if (n !== 'OnVideoFrame' || p.width !== ${width}) return;\n` +
      `  mark(p.extra);\n` +
      `  s.count++;\n` +
      `  if (!p.valid) s.invalid++;\n` +
      (slowMs > 0 ? `  const until = now() + ${slowMs * 1e6};\n  while (now() < until);\n` : '') +
      `};`,
  );
}

// Delivers `count` frames at 60 fps; resolves once the frame thread is done
// and the script side has had time to take the last frame.
async function frameSample(width, height, count, state, sent, received, rssEvery, targets = []) {
  sent.fill(0);
  received.fill(0);
  state.count = 0;
  state.invalid = 0;
  collect();
  await immediate();
  native.startFrames(width, height, FRAME_FPS, count, sent, rssEvery, ...targets);
  while (!native.framesDone()) await later(50);
  await later(100);
  const run = native.joinFrames();
  let delivered = 0;
  let maxAge = 0;
  for (let k = 0; k < count; k++) {
    if (received[k] > 0) {
      delivered++;
      maxAge = Math.max(maxAge, received[k] - sent[k]);
    }
  }
  return { run, delivered, maxAge, invalid: state.invalid };
}

async function frames(width, height) {
  const size = (width * height * 3) / 2;
  const buffer = Buffer.alloc(size);
  // The destinations of the plain memcpy and of the memcpy + wake: script
  // memory allocated like the registered buffer, each written once a frame.
  const targets = [Buffer.alloc(size), Buffer.alloc(size)];
  const state = { count: 0, invalid: 0 };
  const sent = new Float64Array(FRAME_COUNT);
  const received = new Float64Array(FRAME_COUNT);
  engine.setCallback(frameHandler(`frames ${width}x${height}`, width, 0)(state, native.mark, native.now));
  engine.setVideoFrameRenderBuffer({ buffer, id: 1, userId: 'bench', width, height });
  native.setReceiveTable(received);
  const rows = [];
  for (let round = -1; round < FRAME_ROUNDS; round++) {
    const result = await frameSample(width, height, FRAME_COUNT, state, sent, received, 0, targets);
    if (round >= 0) rows.push(result);
  }
  native.setReceiveTable(null);
  engine.setVideoFrameRenderBuffer(null);
  const offer = rows.map((r) => median(r.run.offerNs));
  const copy = rows.map((r) => median(r.run.copyNs));
  const wake = rows.map((r) => median(r.run.wakeNs));
  const offerCpu = rows.map((r) => median(r.run.offerCpuNs));
  const copyCpu = rows.map((r) => median(r.run.copyCpuNs));
  const offerP99 = rows.map((r) => quantile([...r.run.offerNs].sort((a, b) => a - b), 0.99));
  const ratios = rows.map((r, i) => offer[i] / copy[i]);
  return {
    width,
    height,
    offer: median(offer),
    copy: median(copy),
    wake: median(wake),
    wakeRatio: median(rows.map((r, i) => wake[i] / copy[i])),
    offerCpu: median(offerCpu),
    copyCpu: median(copyCpu),
    cpuRatio: median(rows.map((r, i) => offerCpu[i] / copyCpu[i])),
    offerP99: median(offerP99),
    ratio: median(ratios),
    ratioSpread: spread(ratios),
    sent: rows.length * FRAME_COUNT,
    dropped: rows.reduce((sum, r) => sum + (FRAME_COUNT - r.delivered), 0),
    invalid: rows.reduce((sum, r) => sum + r.invalid, 0),
    missed: rows.reduce((sum, r) => sum + r.run.missed, 0),
    maxAge: Math.max(...rows.map((r) => r.maxAge)),
  };
}

async function slowHandler(width, height) {
  const size = (width * height * 3) / 2;
  const buffer = Buffer.alloc(size);
  const state = { count: 0, invalid: 0 };
  const sent = new Float64Array(SLOW_FRAMES);
  const received = new Float64Array(SLOW_FRAMES);
  engine.setCallback(frameHandler(`slow ${width}x${height}`, width, SLOW_HANDLER_MS)(state, native.mark, native.now));
  engine.setVideoFrameRenderBuffer({ buffer, id: 1, userId: 'bench', width, height });
  native.setReceiveTable(received);
  const result = await frameSample(width, height, SLOW_FRAMES, state, sent, received, SLOW_RSS_EVERY);
  native.setReceiveTable(null);
  engine.setVideoFrameRenderBuffer(null);
  const rss = [...result.run.rssKiB];
  const at = [...result.run.rssAtMs];
  const half = rss.slice(rss.length >> 1);
  return {
    width,
    height,
    sent: SLOW_FRAMES,
    delivered: result.delivered,
    dropped: SLOW_FRAMES - result.delivered,
    offer: median(result.run.offerNs),
    maxAge: result.maxAge,
    rss,
    at,
    growth: Math.max(...half) - half[0],
  };
}

// --- report ------------------------------------------------------------------

const mega = (perSecond) => `${fixed(perSecond / 1e6, 2)} M/s`;
const micros = (ns) => `${fixed(ns / 1e3, 1)} us`;


const rows = [];
let missed = 0;
function row(figure, value, baseline, ratio, target, ok) {
  rows.push({ figure, value, baseline, ratio, target, mark: ok === null ? 'info' : mark(ok) });
  if (ok === false) missed++;
}

function printTable() {
  const widths = { figure: 46, value: 14, baseline: 14, ratio: 16, target: 10 };
  const head = [
    'figure'.padEnd(widths.figure),
    pad('value', widths.value),
    pad('baseline', widths.baseline),
    pad('ratio', widths.ratio),
    pad('target', widths.target),
    '',
  ].join(' ');
  console.log(head);
  console.log('-'.repeat(head.length + 4));
  for (const r of rows) {
    console.log(
      [
        r.figure.padEnd(widths.figure),
        pad(r.value, widths.value),
        pad(r.baseline, widths.baseline),
        pad(r.ratio, widths.ratio),
        pad(r.target, widths.target),
        r.mark,
      ].join(' '),
    );
  }
}

const wanted = (section) => section.includes(only);

async function main() {
  printStart('event-bridge benchmarks');
  const settings = new orva.Settings();
  if (engine.initialize(settings, null) !== 0) throw new Error('initialize failed');
  const notes = [];

  if (wanted('throughput')) {
    for (const threads of [1, 2]) {
      const t = await throughput(threads);
      const [bridge, nonBlocking, blocking, floor, loopback, layer] =
        t.results.map((r) => (r === null ? undefined : median(r)));
      const best = Math.max(nonBlocking, blocking ?? 0);
      const s = threads === 1 ? '' : 's';
      // The target is set on one producer thread; two share the machine's two
      // cores with the script thread and are shown for information.
      row(`events/s, ${threads} thread${s}: bridge`, mega(bridge), mega(best), `${fixed(t.ratio, 2)} x tsfn`,
          threads === 1 ? `>= ${TARGET_THROUGHPUT}` : '', threads === 1 ? t.ratio >= TARGET_THROUGHPUT : null);
      row(`  tsfn, non-blocking, unbounded queue`, mega(nonBlocking), '', '', '', null);
      if (blocking !== undefined) row(`  tsfn, blocking, queue ${TSFN_BLOCKING_QUEUE}`, mega(blocking), '', '', '', null);
      row(`  floor: bare uv_async queue (vector swap)`, mega(floor), mega(bridge), `${fixed(floor / bridge, 2)} x bridge`,
          '', null);
      if (loopback !== undefined) row(`  bridge via the loopback engine's raisers`, mega(loopback), '', '', '', null);
      // The raw handler is the bridge row; the layer's ratio is the median of its per-round ratios.
      if (layer !== undefined) {
        row(`  events layer, one listener`, mega(layer), mega(bridge), `${fixed(t.layerRatio, 2)} x bridge`, '', null);
      }
      notes.push(
        `throughput, ${threads} thread${s}: ${t.total} events per sample, ${THROUGHPUT_ROUNDS} rounds after 2 warm-up ` +
          `rounds; baseline = the better tsfn of each round; ratio spread ${fixed(t.ratioSpread * 100, 0)}% (IQR/median)` +
          (threads === 1
            ? `; events layer: ${fixed(1e9 / layer - 1e9 / bridge, 0)} ns more per event than the bridge (medians), ` +
              `ratio spread ${fixed(t.layerSpread * 100, 0)}%`
            : '; the blocking tsfn is left out: with two producers it stalls on this Node.js'),
      );
    }
  }

  if (wanted('latency')) {
    const l = await latency();
    const [bridge, tsfnFigures, floor] = l.summary;
    row(`latency p99 at 10k/s: bridge`, micros(bridge.p99), micros(tsfnFigures.p99), `${fixed(l.ratio, 2)} x tsfn`,
        `<= ${TARGET_LATENCY}`, l.ratio <= TARGET_LATENCY);
    row(`latency p50 at 10k/s: bridge`, micros(bridge.p50), micros(tsfnFigures.p50),
        `${fixed(bridge.p50 / tsfnFigures.p50, 2)} x tsfn`, '', null);
    row(`  floor: p50 / p99`, micros(floor.p50), micros(floor.p99), '', '', null);
    notes.push(
      `latency: one producer at ${LATENCY_RATE}/s (achieved ${fixed(l.rate, 0)}/s) taking turns, ${LATENCY_RUN} events ` +
        `at a time, between bridge, non-blocking tsfn and floor; ${LATENCY_SAMPLES} samples of ${LATENCY_PER_PATH} ` +
        `events each after a warm-up sample, percentiles pooled; p99 ratio per sample ` +
        `[${l.sampleRatios.map((r) => fixed(r, 2)).join(', ')}]; max ${fixed(bridge.max / 1e3, 0)} us bridge, ` +
        `${fixed(tsfnFigures.max / 1e3, 0)} us tsfn, ${fixed(floor.max / 1e3, 0)} us floor`,
    );
  }

  if (wanted('frames')) {
    await registerProcessor();
    for (const [width, height] of [[1920, 1080], [3840, 2160]]) {
      const f = await frames(width, height);
      const label = `${width}x${height}`;
      // The engine thread's cost is the CPU time it spends in the call. Its wall
      // time also holds the moments the woken script thread takes its CPU,
      // which on two cores is the scheduler's choice, not work of the call:
      // the plain wake row shows that share on its own.
      row(`frame ${label}: engine-thread CPU per frame`, micros(f.offerCpu), micros(f.copyCpu),
          `${fixed(f.cpuRatio, 3)} x memcpy`, `<= ${TARGET_FRAME}`, f.cpuRatio <= TARGET_FRAME);
      row(`  wall time per frame`, micros(f.offer), micros(f.copy), `${fixed(f.ratio, 3)} x memcpy`, '', null);
      row(`  memcpy + wake of an idle script thread`, micros(f.wake), micros(f.copy), `${fixed(f.wakeRatio, 3)} x memcpy`,
          '', null);
      row(`frame ${label}: dropped with a fast handler`, `${f.dropped} of ${f.sent}`, '', '', '0',
          f.dropped === 0 && f.missed === 0 && f.invalid === 0);
      notes.push(
        `frames ${label}: ${FRAME_ROUNDS} rounds of ${FRAME_COUNT} at ${FRAME_FPS} fps after 1 warm-up round; ` +
          `OnVideoFrame p99 ${micros(f.offerP99)}; engine-thread CPU time (median): OnVideoFrame ` +
          `${micros(f.offerCpu)}, memcpy ${micros(f.copyCpu)}; ratio spread ${fixed(f.ratioSpread * 100, 1)}%; oldest frame at ` +
          `handler entry ${micros(f.maxAge)}; invalid ${f.invalid}, ticks without a processor ${f.missed}`,
      );
    }
  }

  if (wanted('slow')) {
    await registerProcessor();
    for (const [width, height] of [[1920, 1080], [3840, 2160]]) {
      const s = await slowHandler(width, height);
      const label = `${width}x${height}`;
      const interval = 1e9 / FRAME_FPS;
      const ageLimit = 2 * interval + SLOW_HANDLER_MS * 1e6;
      row(`slow ${SLOW_HANDLER_MS} ms handler ${label}: delivered`, `${s.delivered} of ${s.sent}`, '', '', '', null);
      row(`  dropped rather than queued`, `${s.dropped} dropped`, '', `age ${fixed(s.maxAge / 1e6, 1)} ms`,
          `< ${fixed(ageLimit / 1e6, 1)} ms`, s.dropped > 0 && s.delivered > 0 && s.maxAge < ageLimit);
      row(`  RSS growth, second half`, `${fixed(s.growth / 1024, 1)} MiB`, '', '', `< ${RSS_FLAT_KIB / 1024} MiB`,
          s.growth < RSS_FLAT_KIB);
      notes.push(
        `slow ${label}: RSS MiB every 0.5 s [${s.rss.map((v) => fixed(v / 1024, 0)).join(' ')}]; ` +
          `OnVideoFrame median ${micros(s.offer)}`,
      );
    }
  }

  engine.setCallback(undefined);
  engine.destroy();

  console.log('');
  printTable();
  console.log('');
  for (const note of notes) console.log(note);
  console.log('');
  printEnd(missed);
}

main().catch((error) => {
  console.error(error);
  process.exit(1);
});
