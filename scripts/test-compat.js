#!/usr/bin/env node
'use strict';
// Builds the addon, the loopback engine and the test-control addon against
// the headers of each supported Node.js, and runs the script tests with that
// Node.js: the node:test suites from Node.js 18 on, the plain-script smoke
// test (test/compat/smoke.js) on 14 and 16, which have no node:test.
//
//   npm run test:compat            every supported version
//   npm run test:compat -- 14 26   only these majors
//
// Each version builds into build-compat/node-<major>, keeping its logs
// there; the runtimes are fetched once into build-compat/cache. One version
// at a time, built with JOBS (default 2) compilers, so that a run fits a
// small machine. Prints one line per version, then the counts; exits with
// status 1 when any version failed.
const fs = require('node:fs');
const path = require('node:path');
const { spawnSync, execFileSync } = require('node:child_process');
const { RELEASES, nodeDist } = require('./lib/node-dist');

const root = path.resolve(__dirname, '..');
const compatDir = path.join(root, 'build-compat');
const cacheDir = path.join(compatDir, 'cache');
const jobs = String(process.env.JOBS || 2);
// Only a hang ends a stage early; the tests wait for conditions themselves.
const STAGE_LIMIT_MS = 30 * 60 * 1000;
const FIRST_SUITE_MAJOR = 18;

function chosenMajors(args) {
  const known = Object.keys(RELEASES).map(Number);
  if (args.length === 0) return known;
  const unknown = args.filter((arg) => !known.includes(Number(arg)));
  if (unknown.length > 0) {
    console.error(`test:compat: no Node.js ${unknown.join(', ')}; the majors are ${known.join(', ')}`);
    process.exit(2);
  }
  return [...new Set(args.map(Number))].sort((a, b) => a - b);
}

function hasNinja() {
  try {
    execFileSync('ninja', ['--version'], { stdio: 'ignore' });
    return true;
  } catch {
    return false;
  }
}

/** Runs a command with its output appended to `log`; answers whether it succeeded. */
function run(command, args, log, options = {}) {
  fs.appendFileSync(log, `$ ${command} ${args.join(' ')}\n`);
  const output = fs.openSync(log, 'a');
  try {
    const result = spawnSync(command, args, {
      cwd: root, stdio: ['ignore', output, output], timeout: STAGE_LIMIT_MS, ...options,
    });
    if (result.error) fs.appendFileSync(log, `${result.error.message}\n`);
    if (result.signal) fs.appendFileSync(log, `ended by ${result.signal}\n`);
    return result.status === 0;
  } finally {
    fs.closeSync(output);
  }
}

const seconds = (since) => ((Date.now() - since) / 1000).toFixed(1);

/** The last lines of `log`, indented, to show why a stage failed. */
function tail(log, count = 40) {
  const lines = fs.readFileSync(log, 'utf8').trimEnd().split('\n');
  return lines.slice(-count).map((line) => `    ${line}`).join('\n');
}

// Warnings fail the build (CMake 3.24 and later): every version must build clean.
function build(dist, buildDir, log) {
  const configure = ['-S', root, '-B', buildDir, '-DCMAKE_BUILD_TYPE=Release', '-DORVA_BUILD_TESTS=OFF',
    '-DORVA_BUILD_TEST_CONTROL=ON', '-DORVA_BUILD_BENCH=OFF', '-DCMAKE_COMPILE_WARNING_AS_ERROR=ON',
    `-DORVA_NODE_INCLUDE_DIR=${dist.include}`];
  if (hasNinja()) configure.push('-G', 'Ninja');
  return run('cmake', configure, log) && run('cmake', ['--build', buildDir, '--parallel', jobs], log);
}

function test(dist, buildDir, log) {
  const env = { ...process.env, ORVA_BUILD_DIR: buildDir };
  // The runner's own options must not reach another version's node.
  delete env.NODE_OPTIONS;
  // The files are named one by one: what a folder argument means differs
  // between versions of the runner.
  const suites = fs.readdirSync(path.join(root, 'test', 'js')).filter((name) => name.endsWith('.test.js'))
    .map((name) => path.join('test', 'js', name));
  const args = dist.major >= FIRST_SUITE_MAJOR
    ? ['--test', `--test-concurrency=${jobs}`, ...suites]
    : [path.join('test', 'compat', 'smoke.js')];
  return run(dist.node, args, log, { env });
}

function checkVersion(major) {
  const buildDir = path.join(compatDir, `node-${major}`);
  fs.mkdirSync(buildDir, { recursive: true });
  const buildLog = path.join(buildDir, 'compat-build.log');
  const testLog = path.join(buildDir, 'compat-test.log');
  for (const log of [buildLog, testLog]) fs.writeFileSync(log, '');
  let dist;
  try {
    dist = nodeDist(major, cacheDir);
  } catch (error) {
    const line = `Node.js ${major}: failed, its runtime could not be fetched`;
    return { line, ok: false, detail: `    ${error.message}` };
  }
  const started = Date.now();
  const built = build(dist, buildDir, buildLog);
  const buildSeconds = seconds(started);
  const head = `Node.js ${dist.version.padEnd(8)} ABI ${String(dist.abi).padEnd(4)} V8 ${dist.v8.padEnd(22)}`;
  if (!built) {
    return { line: `${head} failed  build ${buildSeconds} s (build failed)`, ok: false, detail: tail(buildLog) };
  }
  const testStarted = Date.now();
  const passed = test(dist, buildDir, testLog);
  const suite = dist.major >= FIRST_SUITE_MAJOR ? 'suites' : 'smoke';
  const line = `${head} ${passed ? 'passed' : 'failed'}  build ${buildSeconds} s  ${suite} ${seconds(testStarted)} s`;
  return { line, ok: passed, detail: passed ? '' : `    (${path.relative(root, testLog)})\n${tail(testLog)}` };
}

function main() {
  const majors = chosenMajors(process.argv.slice(2));
  let passed = 0;
  for (const major of majors) {
    const result = checkVersion(major);
    console.log(result.line);
    if (result.ok) {
      passed += 1;
    } else {
      console.error(result.detail);
    }
  }
  const failed = majors.length - passed;
  console.log(`${passed} passed, ${failed} failed`);
  process.exitCode = failed === 0 ? 0 : 1;
}

main();
