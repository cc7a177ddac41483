'use strict';
// Binding benchmarks: the generated orvaEngine.node against a hand-written
// raw-V8 floor (bench_floor.node) and a node-addon-api addon
// (bench_napi.node), all measured in this one run, plus the module load of
// the package (its loader picking the prebuild) against an empty addon in
// fresh processes.
//
//   node --expose-gc bench/binding/bench.js [build folder]
//
// The build folder defaults to $ORVA_BUILD_DIR, then build-bench.
// ORVA_BENCH_ROUNDS and ORVA_BENCH_LOADS change the number of measured rounds
// and of fresh processes per addon (0 skips the module-load figure);
// ORVA_BENCH_only keeps the operations whose name contains its text. They
// are for quick looks: the defaults are what the figures are quoted with.
//
// How the figures stay honest on a small, shared machine:
//   - each implementation gets its own copy of every loop (distinct source),
//     so inline caches never see another addon's objects;
//   - warm-up rounds run until the loops are optimised, and none is timed;
//   - rounds interleave the three implementations in rotating order and
//     collect garbage (untimed) before each sample, so a burst of load or a
//     pending collection hits all three alike;
//   - the reported ns/op is the median over rounds, and each ratio is the
//     median of per-round ratios;
//   - every loop folds its results into a value that is returned and checked
//     to be the same for the three implementations.

const fs = require('fs');
const os = require('os');
const path = require('path');
const { spawnSync } = require('child_process');
const { median, spread } = require('../lib/stats');
const { engineLibraryName } = require('../../lib/load-error');
const { prebuildName } = require('../../lib/prebuild-name');
const { collect, buildDir, only, fixed, pad, mark, printStart, printEnd } = require('../lib/setting');

const ROUNDS = Number(process.env.ORVA_BENCH_ROUNDS || 21);
const WARMUP_ROUNDS = 4;
const LOADS = Number(process.env.ORVA_BENCH_LOADS ?? 41);
// One sample of a call loop lasts about 40 ms: long enough that the
// collections a loop causes average out within each sample.
const SAMPLE_NS = 40e6;
const CREATE_COUNT = 100000; // proxies per sample of the creation figure

const TARGET_FLOOR = 1.3;
const TARGET_NAPI = 1.0;
const TARGET_LOAD = 3.0;

const IMPLS = [
  { name: 'generated', file: 'orvaEngine.node' },
  { name: 'floor', file: 'bench_floor.node' },
  { name: 'node-addon-api', file: 'bench_napi.node' },
];
for (const impl of IMPLS) {
  const file = path.join(buildDir, impl.file);
  try {
    impl.module = require(file);
  } catch (error) {
    console.error(`cannot load ${file} (${error.message}); build the benchmarks first: scripts/bench.sh`);
    process.exit(2);
  }
}

const now = () => process.hrtime.bigint();
const immediate = () => new Promise((resolve) => setImmediate(resolve));
let sink; // keeps results reachable so that no loop is dead code

// A loop of its own for one implementation: `tag` makes the source unique,
// so that V8 gives it its own feedback and optimised code.
function loop(tag, body, after = '') {
  return new Function(
    'o',
    'n',
    's',
    `// ${tag}\n'use strict';\nlet sum = 0;\nfor (let i = 0; i < n; i++) {\n${body}\n}\n${after}\nreturn sum;`,
  );
}

// --- call operations ---------------------------------------------------------

function cameraList(m) {
  const list = new m.CameraList();
  for (let k = 0; k < 3; k++) {
    const camera = new m.Camera();
    camera.guid = `camera-${k}`;
    list.Add(camera);
  }
  return list;
}

const CALLS = [
  {
    name: 'ScreenCaptureModeList.Get(i)',
    setup(m) {
      const list = new m.ScreenCaptureModeList();
      for (const mode of [1, 2, 4, 8]) list.Add(mode);
      return list;
    },
    body: 'sum = (sum + o.Get(i & 3)) | 0;',
  },
  {
    name: 'Rect.x (get)',
    setup(m) {
      const rect = new m.Rect();
      rect.x = 7;
      return rect;
    },
    body: 'sum = (sum + o.x) | 0;',
  },
  {
    name: 'Rect.x = n',
    setup: (m) => new m.Rect(),
    body: 'o.x = i;',
    after: 'sum = o.x;',
  },
  {
    name: "VolumeInfo.userId = 'user-42'",
    setup: (m) => new m.VolumeInfo(),
    body: 'o.userId = s;',
    after: 'sum = o.userId === s ? 1 : 0;',
  },
  {
    name: 'CameraList.Get(0)',
    setup: cameraList,
    body: 'const camera = o.Get(0);\nif (camera !== null) sum++;\ns = camera;',
    after: 'sum += s === null ? 0 : 1;',
  },
  {
    // For information: the floor without tracking its proxy (no record, no
    // weak handle, no external-memory charge), which the binding must do.
    name: 'CameraList.Get(0), untracked floor',
    info: true,
    setup: cameraList,
    body: 'const camera = (o.GetUntracked ?? o.Get).call(o, 0);\nif (camera !== null) sum++;\ns = camera;',
    after: 'sum += s === null ? 0 : 1;',
  },
];

function timeCall(run, n) {
  collect();
  const start = now();
  const result = run.fn(run.object, n, 'user-42');
  const elapsed = Number(now() - start);
  sink = result;
  return { ns: elapsed / n, result };
}

function measureCall(op) {
  const runs = IMPLS.map((impl) => ({
    impl,
    object: op.setup(impl.module),
    fn: loop(`${impl.name}: ${op.name}`, op.body, op.after),
  }));
  // Grow the sample until the generated loop takes about SAMPLE_NS.
  let n = 1024;
  while (n < 1 << 26 && timeCall(runs[0], n).ns * n < SAMPLE_NS) n *= 2;
  for (let round = 0; round < WARMUP_ROUNDS; round++) for (const run of runs) timeCall(run, n);
  return measureRounds(op.name, runs, n, (run) => timeCall(run, n));
}

// --- proxy creation and collection ------------------------------------------

// `new Rect()` n times, then a forced collection; the time covers both, and
// the finalisers that a collection schedules (node-addon-api runs its own
// from the event loop, hence the turn of the loop inside the timed part).
async function timeCreate(run, n) {
  collect();
  await immediate();
  collect();
  await immediate();
  const start = now();
  const last = run.fn(run.object, n, null);
  collect();
  await immediate();
  const elapsed = Number(now() - start);
  sink = last;
  return { ns: elapsed / n, result: last instanceof run.object ? 1 : 0 };
}

const CREATE_NAME = 'new Rect() + collection';

async function measureCreate() {
  const name = CREATE_NAME;
  const runs = IMPLS.map((impl) => ({
    impl,
    object: impl.module.Rect,
    fn: new Function(
      'C',
      'n',
      `// ${impl.name}: ${name}\n'use strict';\nlet last;\nfor (let i = 0; i < n; i++) last = new C();\nreturn last;`,
    ),
  }));
  for (let round = 0; round < WARMUP_ROUNDS; round++) for (const run of runs) await timeCreate(run, CREATE_COUNT);
  return measureRoundsAsync(name, runs, CREATE_COUNT, (run) => timeCreate(run, CREATE_COUNT));
}

// --- rounds ------------------------------------------------------------------

// The implementation measured at `position` of `round`: the order rotates.
const slot = (round, position) => (round + position) % IMPLS.length;

function summarize(name, runs, n, samples) {
  const reference = [...samples[0].results].join();
  for (let i = 1; i < runs.length; i++) {
    const got = [...samples[i].results].join();
    if (got !== reference) throw new Error(`${name}: ${runs[i].impl.name} computed ${got}, generated ${reference}`);
  }
  const ns = samples.map((s) => s.ns);
  const perRound = (other) => median(ns[0].map((value, round) => value / ns[other][round]));
  return {
    name,
    n,
    ns: ns.map(median),
    spread: Math.max(...ns.map(spread)),
    floorRatio: perRound(1),
    napiRatio: perRound(2),
  };
}

const emptySamples = (runs) => runs.map(() => ({ ns: [], results: new Set() }));

function record(samples, index, { ns, result }) {
  samples[index].ns.push(ns);
  samples[index].results.add(result);
}

// Synchronous on purpose: no event-loop turn between warm loops.
function measureRounds(name, runs, n, sample) {
  const samples = emptySamples(runs);
  for (let round = 0; round < ROUNDS; round++) {
    for (let k = 0; k < runs.length; k++) record(samples, slot(round, k), sample(runs[slot(round, k)]));
  }
  return summarize(name, runs, n, samples);
}

async function measureRoundsAsync(name, runs, n, sample) {
  const samples = emptySamples(runs);
  for (let round = 0; round < ROUNDS; round++) {
    for (let k = 0; k < runs.length; k++) record(samples, slot(round, k), await sample(runs[slot(round, k)]));
  }
  return summarize(name, runs, n, samples);
}

// --- module load -----------------------------------------------------------

// Time of `require(file)` inside a fresh node process, in nanoseconds.
function loadOnce(file) {
  const child = spawnSync(process.execPath, [path.join(__dirname, 'load.js'), file], {
    encoding: 'utf8',
    timeout: 60000,
  });
  if (child.status !== 0) throw new Error(`loading ${file} failed: ${child.stderr || child.error}`);
  return Number(child.stdout);
}

/**
 * The package as an application installs it, in a temporary folder: the
 * loader (lib/) and package.json, with this build's addon as the prebuild for
 * this ABI and the engine library beside it. Answers the entry to require.
 */
function installedPackage() {
  const root = path.join(__dirname, '..', '..');
  const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'orva-bench-package-'));
  process.on('exit', () => fs.rmSync(folder, { recursive: true, force: true }));
  fs.cpSync(path.join(root, 'lib'), path.join(folder, 'lib'), { recursive: true });
  fs.copyFileSync(path.join(root, 'package.json'), path.join(folder, 'package.json'));
  const prebuilds = path.join(folder, 'prebuilds', `${process.platform}-${process.arch}`);
  fs.mkdirSync(prebuilds, { recursive: true });
  fs.copyFileSync(path.join(buildDir, 'orvaEngine.node'), path.join(prebuilds, prebuildName(process.versions.modules)));
  const library = engineLibraryName();
  fs.copyFileSync(path.join(buildDir, library), path.join(prebuilds, library));
  return path.join(folder, 'lib', 'index.js');
}

function measureLoad() {
  const files = {
    package: installedPackage(),
    generated: path.join(buildDir, 'orvaEngine.node'),
    empty: path.join(buildDir, 'bench_empty.node'),
    // Links the same engine library: tells the engine's share from the binding's.
    floor: path.join(buildDir, 'bench_floor.node'),
  };
  const names = Object.keys(files);
  for (let i = 0; i < 3; i++) for (const name of names) loadOnce(files[name]);
  const times = Object.fromEntries(names.map((name) => [name, []]));
  const ratios = [];
  for (let i = 0; i < LOADS; i++) {
    // Rotate which goes first, so that none always follows another.
    const sample = {};
    for (let k = 0; k < names.length; k++) {
      const name = names[(i + k) % names.length];
      sample[name] = loadOnce(files[name]);
      times[name].push(sample[name]);
    }
    ratios.push(sample.package / sample.empty);
  }
  return {
    ...Object.fromEntries(names.map((name) => [name, median(times[name])])),
    ratio: median(ratios),
    spread: spread(ratios),
  };
}

// --- report ------------------------------------------------------------------



async function main() {
  printStart('binding benchmarks');
  console.log(`${ROUNDS} rounds after ${WARMUP_ROUNDS} warm-up rounds; ns/op are medians, ratios medians of per-round ratios`);
  console.log('');

  const rows = [];
  for (const op of CALLS.filter((call) => call.name.includes(only))) rows.push({ ...measureCall(op), info: op.info });
  if (CREATE_NAME.includes(only)) rows.push(await measureCreate());

  const head = [
    'operation'.padEnd(32),
    pad('n/sample', 9),
    pad('generated', 10),
    pad('floor', 8),
    pad('n-a-api', 8),
    pad(`gen/floor(<=${TARGET_FLOOR})`, 21),
    pad('gen/n-a-api(<1)', 19),
    pad('spread', 7),
  ].join(' ');
  console.log(head);
  console.log('-'.repeat(head.length));
  let missed = 0;
  for (const row of rows) {
    const floorOk = row.floorRatio <= TARGET_FLOOR;
    const napiOk = row.napiRatio < TARGET_NAPI;
    if (!row.info) missed += !floorOk + !napiOk;
    console.log(
      [
        row.name.padEnd(32),
        pad(row.n, 9),
        pad(fixed(row.ns[0], 1), 10),
        pad(fixed(row.ns[1], 1), 8),
        pad(fixed(row.ns[2], 1), 8),
        pad(`${fixed(row.floorRatio, 2)} ${row.info ? 'info' : mark(floorOk)}`, 21),
        pad(`${fixed(row.napiRatio, 2)} ${mark(napiOk)}`, 19),
        pad(`${fixed(row.spread * 100, 0)}%`, 7),
      ].join(' '),
    );
  }
  console.log('(ns/op; spread: the widest interquartile range of the three, relative to its median)');
  console.log('');

  if (LOADS > 0) {
    const load = measureLoad();
    const loadOk = load.ratio <= TARGET_LOAD;
    missed += !loadOk;
    const us = (ns) => `${fixed(ns / 1e3, 0)} us`;
    console.log(
      `module load (require in a fresh process, median of ${LOADS}): the package ${us(load.package)}, ` +
        `empty addon ${us(load.empty)}, ratio ${fixed(load.ratio, 2)} (target <= ${TARGET_LOAD}) ` +
        `${mark(loadOk)}, spread ${fixed(load.spread * 100, 0)}%`,
    );
    console.log(
      `  (orvaEngine.node required directly: ${us(load.generated)}, ${fixed(load.generated / load.empty, 2)} x; ` +
        `the floor addon, which links the same engine library and defines 5 classes: ${us(load.floor)}, ` +
        `${fixed(load.floor / load.empty, 2)} x)`,
    );
    console.log('');
  }
  printEnd(missed);
  sink = undefined;
}

main().catch((error) => {
  console.error(error);
  process.exit(1);
});
