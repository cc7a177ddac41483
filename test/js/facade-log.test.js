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

// [case, the log directory (made by the case or not), settings]
const DIRECTORIES = [
  ['an existing directory', () => {
    const dir = freshDir();
    fs.mkdirSync(dir, { recursive: true });
    return dir;
  }, { environment: 'prod', custom: 'kept' }],
  ['a missing one, with all its parents', () => freshDir('a', 'b', 'c'), { environment: 'prod' }],
  ['a missing one under a UTF-8 name', () => freshDir('\u65e5\u5fd7', 'caf\u00e9'), { environment: 'prod' }],
  // "/orva_sdk_" is appended all the same: the name holds "//".
  ['one written with a trailing separator', () => `${freshDir()}/`, { environment: 'prod' }],
];

test('initialize names the log file in the log directory by local time, after the given settings', () => {
  for (const [label, makeDir, entries] of DIRECTORIES) {
    const dir = makeDir();
    const { engineSettings, names } = initializeWithLogDir(dir, entries);
    assert.deepEqual(Object.keys(engineSettings), [...Object.keys(entries), LOG_KEY], label);
    assert.ok(names.includes(engineSettings[LOG_KEY]), `${label}: ${engineSettings[LOG_KEY]} is none of ${names}`);
    assert.ok(fs.statSync(dir).isDirectory(), label);
  }
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

/** Makes `name` in `dir` with `size` bytes, it and its folder last written `age` milliseconds ago. */
function oldFile(dir, name, age, size = 16) {
  const file = path.join(dir, name);
  fs.mkdirSync(path.dirname(file), { recursive: true });
  fs.writeFileSync(file, Buffer.alloc(size, 0x61));
  const when = new Date(Date.now() - age);
  fs.utimesSync(file, when, when);
  if (path.dirname(file) !== dir) fs.utimesSync(path.dirname(file), when, when);
}

const escape = (text) => text.replace(/[.*+?^${}()|[\]\\]/g, '\\$&');
const CLEAR = { 'orva.log.clear.enable': '1' };
const NEVER_KEEP = { 'orva.log.expire.day': '0', 'orva.log.size.threshold': '0' };
const BIG = 600 * 1024; // three of them exceed 1 MiB

// [case, settings, files as [name, age, size], what is deleted (in order unless `anyOrder`), anyOrder]
const CLEANUPS = [
  ['by age: regular files older than 10 days, sub-directories not entered', CLEAR,
    [['expired.log', 11 * DAY], ['expired.txt', 30 * DAY], ['recent.log', 9 * DAY], ['sub/inside.log', 40 * DAY]],
    ['expired.log', 'expired.txt'], true],
  ['by age, following "orva.log.expire.day"', { ...CLEAR, 'orva.log.expire.day': '2' },
    [['three-days.log', 3 * DAY], ['one-day.log', 1 * DAY]], ['three-days.log'], true],
  ['by size: the oldest first, and no more than needed', { ...CLEAR, 'orva.log.size.threshold': '1' },
    [['newest.log', 1 * HOUR, BIG], ['oldest.log', 3 * HOUR, BIG], ['middle.log', 2 * HOUR, BIG]],
    ['oldest.log', 'middle.log'], false],
  ['not enabled: nothing deleted', NEVER_KEEP, [['ancient.log', 400 * DAY]], [], false],
  ['enabled "0": nothing deleted', { 'orva.log.clear.enable': '0', ...NEVER_KEEP }, [['ancient.log', 400 * DAY]], [], false],
];

test('clean-up deletes what the settings ask for, saying so on standard output, and the log file is still named', () => {
  for (const [label, entries, files, deleted, anyOrder] of CLEANUPS) {
    const dir = freshDir();
    for (const [name, age, size] of files) oldFile(dir, name, age, size);
    const { stdout, stderr } = runInitialize(dir, { environment: 'prod', ...entries });
    const lines = stdout.split('\n');
    assert.equal(lines.pop(), '', label);
    const text = escape(JSON.stringify({ environment: 'prod', ...entries }).slice(0, -1));
    assert.match(lines.pop(), new RegExp(`^initialize 0 OrvaEngine\\.initialize\\(${text},` +
      `"media\\.global\\.log\\.file":"${escape(dir)}/orva_sdk_\\d{8}_\\d{4}\\.log"\\}\\)$`), label);
    // Directory order is the system's where age decides.
    assert.deepEqual(anyOrder ? lines.sort() : lines, deleted.map((name) => `Deleting: ${dir}/${name}`), label);
    assert.equal(stderr, '', label);
    for (const [name] of files) assert.equal(fs.existsSync(path.join(dir, name)), !deleted.includes(name), `${label}: ${name}`);
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
