'use strict';
// What the facade suites share: settings from plain objects, the journal of
// one call (without the lines engine threads add while a session changes
// state), pointers as the journal writes them, and waiting for a condition.
const { orva, control } = require('./orva');

/** A `Settings` holding `entries` in their order. */
function settings(entries = {}) {
  const result = new orva.Settings();
  for (const [key, value] of Object.entries(entries)) result.add(key, value);
  return result;
}

/** Join and peer delays short enough for tests; "prod" keeps the settings file out. */
const FAST_PROD = {
  environment: 'prod',
  'loopback.join.delay.ms': '5',
  'loopback.peer.delay.ms': '5',
};

// Calls that the event handler makes on engine threads when a session state
// changes (the last error, the echo-test check, the crash report); script's
// own calls through the facade never produce them.
const BACKGROUND = [
  /^OrvaEngine\.SDK\(\)$/,
  /^OrvaEngine\.LastError\(\)$/,
  /^RtcEngine\.SDK\(\)$/,
  /^RtcEngine\.MediaService\(\)$/,
  /^IMediaService\.IsEchoStarted\(\)$/,
  /^OrvaEngine\.reportOrvaSentryEvent\(/,
];

const isBackground = (line) => BACKGROUND.some((pattern) => pattern.test(line));

/** The journal lines that `fn` produced, background lines left out. */
function callsOf(fn) {
  control().clearJournal();
  fn();
  return control().journal().filter((line) => !isBackground(line));
}

/** The whole journal that `fn` produced, nothing left out. */
function journalOf(fn) {
  control().clearJournal();
  fn();
  return control().journal();
}

/**
 * The low 32 bits, as a signed number, of a pointer the journal wrote as
 * "0x<hex>": what `getCPtr()` answers for the proxy of that pointer.
 */
function low32(pointerText) {
  if (!/^0x[0-9a-f]+$/.test(pointerText)) throw new Error(`not a journal pointer: ${pointerText}`);
  return Number(BigInt.asIntN(32, BigInt(pointerText)));
}

/**
 * Resolves once `condition()` is true. The deadline only turns a hang into a
 * failure: it is far beyond what a loaded machine under the sanitizers takes.
 */
async function waitFor(condition, what, timeoutMs = 60000) {
  const deadline = Date.now() + timeoutMs;
  while (!condition()) {
    if (Date.now() > deadline) throw new Error(`timed out waiting for ${what}`);
    await new Promise((resolve) => setTimeout(resolve, 5));
  }
}

module.exports = { settings, FAST_PROD, callsOf, journalOf, low32, waitFor };
