'use strict';
// The settings file beside the module reaches the engine's settings in the
// development environment and for the crash-report client; the crash-report
// statics reach the engine unchanged.
const test = require('node:test');
const assert = require('node:assert/strict');
const fs = require('node:fs');
const path = require('node:path');
const { orva, control, buildDir } = require('./lib/orva');
const { settings, callsOf, journalOf } = require('./lib/facade');

const Wrapper = orva.OrvaEngineWrapper;
const settingsFile = path.join(buildDir, 'orva_setting.txt');

// Keys that neither the product nor the loopback engine reads.
const FILE_TEXT = [
  'facade.test.marker:from-file\r\n',
  'facade.test.colons:a:b\n',
  'a line without a colon\n',
  ' facade.test.blank : x\n',
  'facade.test.utf8:\u4e2d\u6587\n',
  'facade.test.last:no line end',
].join('');
const FILE_ENTRIES =
  '"facade.test.marker":"from-file","facade.test.colons":"a:b"," facade.test.blank ":" x",' +
  '"facade.test.utf8":"\u4e2d\u6587","facade.test.last":"no line end"';

let previous = null;
function writeSettingsFile() {
  fs.writeFileSync(settingsFile, FILE_TEXT);
}
function removeSettingsFile() {
  fs.rmSync(settingsFile, { force: true });
}

test.before(() => {
  if (fs.existsSync(settingsFile)) previous = fs.readFileSync(settingsFile);
});
test.after(() => {
  if (previous === null) removeSettingsFile();
  else fs.writeFileSync(settingsFile, previous);
});

// A session's state changes reach the event handler on engine threads, which
// then call the engine (journal lines) after the call that caused them has
// returned. Destroying the engine leaves the session and joins those threads,
// so after each test nothing more is written into the next one's journal.
// Every wrapper stays referenced until the file ends: a collected wrapper
// lets go of the engine, which is a journal line too, whenever collection runs.
const wrappers = [];
let running = [];
function stopEngine() {
  for (const wrapper of running) wrapper.destroy();
  running = [];
}
test.afterEach(stopEngine);

/** A new wrapper initialised with `entries`; the settings text of its initialize line. */
function initialized(entries) {
  const wrapper = new Wrapper();
  wrappers.push(wrapper);
  running.push(wrapper);
  let result;
  const lines = journalOf(() => { result = wrapper.initialize(settings(entries), null); });
  assert.equal(result, 0);
  const initialize = lines.find((line) => line.startsWith('OrvaEngine.initialize('));
  const update = lines.find((line) => line.startsWith('OrvaEngine.updateOrvaSentry('));
  const [, text] = /^OrvaEngine\.initialize\((\{.*\}), 0x[0-9a-f]+\)$/.exec(initialize) ?? [];
  assert.equal(update, `OrvaEngine.updateOrvaSentry(${text})`, 'crash reports see the same settings');
  return { wrapper, text };
}

const FAST = { 'loopback.join.delay.ms': '5', 'loopback.peer.delay.ms': '5' };
const FAST_TEXT = '"loopback.join.delay.ms":"5","loopback.peer.delay.ms":"5"';

// [environment setting, settings text at the engine with the file present]
const ENVIRONMENTS = [
  ['"dev"', { environment: 'dev', ...FAST }, `{"environment":"dev",${FAST_TEXT},${FILE_ENTRIES}}`],
  ['none', FAST, `{${FAST_TEXT},${FILE_ENTRIES}}`],
  ['empty', { environment: '', ...FAST }, `{"environment":"",${FAST_TEXT},${FILE_ENTRIES}}`],
  ['"prod"', { environment: 'prod', ...FAST }, `{"environment":"prod",${FAST_TEXT}}`],
  ['"Dev"', { environment: 'Dev', ...FAST }, `{"environment":"Dev",${FAST_TEXT}}`],
  ['"dev "', { environment: 'dev ', ...FAST }, `{"environment":"dev ",${FAST_TEXT}}`],
];

test('initialize adds the settings file beside the module for "dev" or no environment, not otherwise', () => {
  writeSettingsFile();
  for (const [environment, entries, expected] of ENVIRONMENTS) {
    assert.equal(initialized(entries).text, expected, `environment ${environment}`);
  }
});

test('without a settings file, initialize in "dev" passes the settings as given', () => {
  removeSettingsFile();
  assert.equal(initialized({ environment: 'dev', ...FAST }).text, `{"environment":"dev",${FAST_TEXT}}`);
});

test('enterRoom adds the settings file after an initialize in "dev", not after one in "prod"', () => {
  writeSettingsFile();
  const dev = initialized({ environment: 'dev', ...FAST }).wrapper;
  let result;
  assert.deepEqual(callsOf(() => { result = dev.enterRoom('room-dev', settings({ role: 'host' })); }),
    [`OrvaEngine.enterRoom("room-dev", {"role":"host",${FILE_ENTRIES}})`]);
  assert.equal(result, 0);
  stopEngine();

  const prod = initialized({ environment: 'prod', ...FAST }).wrapper;
  assert.deepEqual(callsOf(() => { result = prod.enterRoom('room-prod', settings({ role: 'host' })); }),
    ['OrvaEngine.enterRoom("room-prod", {"role":"host"})']);
  assert.equal(result, 0);
});

test("createOrvaSentry adds the settings file before the engine's call, whatever the environment", () => {
  writeSettingsFile();
  assert.deepEqual(journalOf(() => Wrapper.createOrvaSentry(settings({ environment: 'prod', dsn: 'x' }))),
    [`OrvaEngine.createOrvaSentry({"environment":"prod","dsn":"x",${FILE_ENTRIES}})`]);
  removeSettingsFile();
  assert.deepEqual(journalOf(() => Wrapper.createOrvaSentry(settings({ dsn: 'x' }))), ['OrvaEngine.createOrvaSentry({"dsn":"x"})']);
});

test('the other crash-report statics reach the engine unchanged, without the settings file', () => {
  writeSettingsFile();
  const CALLS = [
    [() => Wrapper.updateOrvaSentry(settings({ dsn: 'y' })), ['OrvaEngine.updateOrvaSentry({"dsn":"y"})']],
    [() => Wrapper.updateOrvaSentry(null), ['OrvaEngine.updateOrvaSentry(null)']],
    [() => Wrapper.enableOrvaSentry(true), ['OrvaEngine.enableOrvaSentry(true)']],
    [() => Wrapper.enableOrvaSentry(false), ['OrvaEngine.enableOrvaSentry(false)']],
    [() => Wrapper.destroyOrvaSentry(true), ['OrvaEngine.destroyOrvaSentry(true)']],
    [() => Wrapper.destroyOrvaSentry(false), ['OrvaEngine.destroyOrvaSentry(false)']],
  ];
  for (const [call, expected] of CALLS) assert.deepEqual(journalOf(call), expected, call.toString());
  removeSettingsFile();
});

// [type, tag, text]
const REPORTS = [
  [orva.ERROR_TYPE_CRITICAL, 'orva', '\u6444\u50cf\u5934\u5f02\u5e38::3:m'],
  [orva.ERROR_TYPE_INFO, 'script-tag', 'text with "quotes", a \\ and a line\nend'],
  [orva.ERROR_TYPE_UNKOWN, '', ''],
  [7, 'any type', 'passes unchanged'],
];

test('reportOrvaSentryEvent reaches the crash-report service unchanged', () => {
  control().clearCrashReports();
  for (const [type, tag, text] of REPORTS) {
    assert.deepEqual(journalOf(() => Wrapper.reportOrvaSentryEvent(type, tag, text)),
      [`OrvaEngine.reportOrvaSentryEvent(${type}, ${JSON.stringify(tag)}, ${JSON.stringify(text)})`]);
  }
  assert.deepEqual(control().crashReports(), REPORTS.map(([type, tag, message]) => ({ type, tag, message })));
});
