'use strict';
// The engine's log file: named in the log directory by local time, the
// directory made when missing, and old files cleaned up when the settings
// ask for it ("Deleting: " lines on standard output).
const test = require('node:test');
const assert = require('node:assert/strict');
const fs = require('node:fs');
const os = require('node:os');
const path = require('node:path');
const { spawnSync } = require('node:child_process');
const { orva, root } = require('./lib/orva');
const { settings, journalOf } = require('./lib/facade');

const LOG_KEY = 'media.global.log.file';
const started = [];
test.after(() => {
  for (const wrapper of started) wrapper.destroy();
});

const scratch = fs.mkdtempSync(path.join(os.tmpdir(), 'orva-facade-log-'));
test.after(() => fs.rmSync(scratch, { recursive: true, force: true }));
let dirCount = 0;
/** A path for a directory of its own under the scratch folder, not made yet. */
const freshDir = (...names) => path.join(scratch, `case-${++dirCount}`, ...names);

const pad = (number, width = 2) => String(number).padStart(width, '0');
/** Local time as the log file name writes it: YYYYMMDD_HHMM. */
const stamp = (date) =>
  `${pad(date.getFullYear(), 4)}${pad(date.getMonth() + 1)}${pad(date.getDate())}_${pad(date.getHours())}${pad(date.getMinutes())}`;

/** A new wrapper with log directory `dir`, initialised with `entries`; the settings the engine got, parsed. */
function initializeWithLogDir(dir, entries) {
  const wrapper = new orva.OrvaEngineWrapper();
  started.push(wrapper);
  wrapper.setLogDirPath(dir);
  let result;
  const before = new Date();
  const lines = journalOf(() => { result = wrapper.initialize(settings(entries), null); });
  const after = new Date();
  assert.equal(result, 0);
  const [, text] = /^OrvaEngine\.initialize\((\{.*\}), 0x[0-9a-f]+\)$/.exec(lines.at(-1)) ?? [];
  assert.ok(text, lines.join('\n'));
  assert.ok(lines.includes(`OrvaEngine.updateOrvaSentry(${text})`), 'crash reports see the log file too');
  return { engineSettings: JSON.parse(text), names: [before, after].map((time) => `${dir}/orva_sdk_${stamp(time)}.log`) };
}

test('initialize names the log file in the log directory by local time, after the given settings', () => {
  const dir = freshDir();
  fs.mkdirSync(dir, { recursive: true });
  const { engineSettings, names } = initializeWithLogDir(dir, { environment: 'prod', custom: 'kept' });
  assert.deepEqual(Object.keys(engineSettings), ['environment', 'custom', LOG_KEY]);
  assert.ok(names.includes(engineSettings[LOG_KEY]), `${engineSettings[LOG_KEY]} is none of ${names}`);
});

test('a missing log directory is made with all its parents, also under a UTF-8 name', () => {
  for (const dir of [freshDir('a', 'b', 'c'), freshDir('\u65e5\u5fd7', 'caf\u00e9')]) {
    assert.equal(fs.existsSync(dir), false);
    const { engineSettings, names } = initializeWithLogDir(dir, { environment: 'prod' });
    assert.ok(fs.statSync(dir).isDirectory(), dir);
    assert.ok(names.includes(engineSettings[LOG_KEY]), `${engineSettings[LOG_KEY]} is none of ${names}`);
  }
});

test('a directory path written with a trailing separator still gets "/orva_sdk_" appended', () => {
  const dir = `${freshDir()}/`;
  const { engineSettings, names } = initializeWithLogDir(dir, { environment: 'prod' });
  assert.ok(names.includes(engineSettings[LOG_KEY]), `${engineSettings[LOG_KEY]} is none of ${names}`);
  assert.match(engineSettings[LOG_KEY], /\/\/orva_sdk_\d{8}_\d{4}\.log$/);
});

test('an empty log directory sets no log file', () => {
  const { engineSettings } = initializeWithLogDir('', { environment: 'prod', 'orva.log.clear.enable': '1' });
  assert.deepEqual(engineSettings, { environment: 'prod', 'orva.log.clear.enable': '1' });
});

// --- Scenarios in a child process, for its standard output ----------------

/**
 * Runs initialize in a new process with log directory `dir` and `entries`;
 * the process prints the settings the engine got as its last line.
 */
function runInitialize(dir, entries) {
  const source = `
    const { orva, control } = require(${JSON.stringify(path.join(root, 'test', 'js', 'lib', 'orva'))});
    const wrapper = new orva.OrvaEngineWrapper();
    wrapper.setLogDirPath(${JSON.stringify(dir)});
    const entries = new orva.Settings();
    for (const [key, value] of Object.entries(${JSON.stringify(entries)})) entries.add(key, value);
    control().clearJournal();
    const result = wrapper.initialize(entries, null);
    const line = control().journal().find((text) => text.startsWith('OrvaEngine.initialize('));
    wrapper.destroy();
    process.stdout.write('initialize ' + result + ' ' + line.replace(/, 0x[0-9a-f]+\\)$/, ')') + '\\n');
  `;
  const result = spawnSync(process.execPath, ['-e', source], { cwd: root, env: process.env, encoding: 'utf8', timeout: 60000 });
  assert.equal(result.status, 0, result.stderr);
  return result;
}

const HOUR = 3600 * 1000;
const DAY = 24 * HOUR;

/** Makes `name` in `dir` with `size` bytes, last written `age` milliseconds ago. */
function oldFile(dir, name, age, size = 16) {
  const file = path.join(dir, name);
  fs.mkdirSync(path.dirname(file), { recursive: true });
  fs.writeFileSync(file, Buffer.alloc(size, 0x61));
  const when = new Date(Date.now() - age);
  fs.utimesSync(file, when, when);
  return file;
}

const listing = (dir) => fs.readdirSync(dir).filter((name) => !name.startsWith('orva_sdk_')).sort();

test('clean-up by age deletes the regular files older than the expiry, saying so on standard output', () => {
  const dir = freshDir();
  oldFile(dir, 'expired.log', 11 * DAY);
  oldFile(dir, 'expired.txt', 30 * DAY);
  oldFile(dir, 'recent.log', 9 * DAY);
  oldFile(dir, path.join('sub', 'inside.log'), 40 * DAY);
  const when = new Date(Date.now() - 40 * DAY);
  fs.utimesSync(path.join(dir, 'sub'), when, when);

  const { stdout, stderr } = runInitialize(dir, { environment: 'prod', 'orva.log.clear.enable': '1' });
  const lines = stdout.split('\n');
  assert.equal(lines.pop(), '');
  assert.match(lines.pop(), /^initialize 0 OrvaEngine\.initialize\(\{"environment":"prod","orva\.log\.clear\.enable":"1","media\.global\.log\.file":".*"\}\)$/);
  assert.deepEqual(lines.sort(), [`Deleting: ${dir}/expired.log`, `Deleting: ${dir}/expired.txt`]);
  assert.equal(stderr, '');
  assert.deepEqual(listing(dir), ['recent.log', 'sub']);
  assert.ok(fs.existsSync(path.join(dir, 'sub', 'inside.log')), 'sub-directories are not entered');
});

test('clean-up by age follows "orva.log.expire.day"', () => {
  const dir = freshDir();
  oldFile(dir, 'three-days.log', 3 * DAY);
  oldFile(dir, 'one-day.log', 1 * DAY);
  const { stdout } = runInitialize(dir, { environment: 'prod', 'orva.log.clear.enable': '1', 'orva.log.expire.day': '2' });
  assert.deepEqual(stdout.split('\n').filter((line) => line.startsWith('Deleting: ')), [`Deleting: ${dir}/three-days.log`]);
  assert.deepEqual(listing(dir), ['one-day.log']);
});

test('clean-up by size deletes the oldest files until the rest fit under the threshold', () => {
  const dir = freshDir();
  const size = 600 * 1024;
  oldFile(dir, 'newest.log', 1 * HOUR, size);
  oldFile(dir, 'oldest.log', 3 * HOUR, size);
  oldFile(dir, 'middle.log', 2 * HOUR, size);
  const { stdout } = runInitialize(dir, { environment: 'prod', 'orva.log.clear.enable': '1', 'orva.log.size.threshold': '1' });
  assert.deepEqual(stdout.split('\n').filter((line) => line.startsWith('Deleting: ')),
    [`Deleting: ${dir}/oldest.log`, `Deleting: ${dir}/middle.log`], 'oldest first, and no more than needed');
  assert.deepEqual(listing(dir), ['newest.log']);
});

test('without clean-up enabled nothing is deleted and the log file is still named', () => {
  for (const entries of [{ environment: 'prod' }, { environment: 'prod', 'orva.log.clear.enable': '0' }]) {
    const dir = freshDir();
    oldFile(dir, 'ancient.log', 400 * DAY);
    const { stdout } = runInitialize(dir, { ...entries, 'orva.log.expire.day': '0', 'orva.log.size.threshold': '0' });
    const keys = Object.entries(entries).map(([key, value]) => `${JSON.stringify(key)}:${JSON.stringify(value)}`).join(',');
    assert.match(stdout, new RegExp(
      `^initialize 0 OrvaEngine\\.initialize\\(\\{${keys.replace(/\./g, '\\.')},"orva\\.log\\.expire\\.day":"0",` +
      `"orva\\.log\\.size\\.threshold":"0","media\\.global\\.log\\.file":"[^"]*/orva_sdk_\\d{8}_\\d{4}\\.log"\\}\\)\\n$`));
    assert.deepEqual(listing(dir), ['ancient.log']);
  }
});

test('a log directory that cannot be made is reported on standard error and sets no log file', () => {
  const blocker = path.join(freshDir(), 'a-file');
  fs.mkdirSync(path.dirname(blocker), { recursive: true });
  fs.writeFileSync(blocker, 'not a directory');
  const { stdout, stderr } = runInitialize(`${blocker}/logs`, { environment: 'prod', 'orva.log.clear.enable': '1' });
  assert.match(stderr, /^SHCreateDirectoryExW faile: -?[1-9]\d*\n$/);
  assert.equal(stdout, 'initialize 0 OrvaEngine.initialize({"environment":"prod","orva.log.clear.enable":"1"})\n');
});
