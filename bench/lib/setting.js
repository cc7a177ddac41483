'use strict';
// What every benchmark script starts from and ends with: the build it
// measures, the collector it runs (untimed) before each sample, the filter
// for quick looks, the machine's load around the run, and the verdict line.

const os = require('os');
const path = require('path');

if (typeof globalThis.gc !== 'function') {
  console.error(`${path.basename(process.argv[1])} needs --expose-gc`);
  process.exit(2);
}
const collect = globalThis.gc;

const buildDir = path.resolve(process.argv[2] || process.env.ORVA_BUILD_DIR || 'build-bench');
const only = process.env.ORVA_BENCH_ONLY || '';

const fixed = (value, digits) => value.toFixed(digits);
const pad = (text, width) => String(text).padStart(width);
const mark = (ok) => (ok ? 'ok' : 'MISS');

function loadLine() {
  const [one, five] = os.loadavg();
  return `load average ${fixed(one, 2)} (1 min), ${fixed(five, 2)} (5 min) on ${os.cpus().length} cores`;
}

function printStart(title) {
  console.log(`${title}: node ${process.version}, build ${path.relative(process.cwd(), buildDir) || '.'}`);
  console.log(`start: ${loadLine()}`);
}

function printEnd(missed) {
  console.log(`end: ${loadLine()}`);
  console.log(missed === 0 ? 'all targets met' : `${missed} target(s) missed`);
}

module.exports = { collect, buildDir, only, fixed, pad, mark, printStart, printEnd };
