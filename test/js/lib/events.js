'use strict';
// Drives the event bridge from tests: the process-wide wrapper bound to one
// recording handler and initialised on the loopback engine.
const { after } = require('node:test');
const { orva, control } = require('./orva');

/**
 * Binds a recording handler to the process-wide wrapper and starts the
 * engine. `received` holds [name, int1, int2, int3, str1, str2, payload]
 * lists in arrival order; `onEvent` (optional) sees each as it arrives.
 */
function startRecording(onEvent) {
  const engine = orva.OrvaEngineWrapper.createOrvaEngine();
  const recorder = {
    engine,
    received: [],
    onEvent,
    waiters: [],
    /** Resolves once `count` events in all have arrived. */
    until(count, timeoutMs = 5000) {
      if (this.received.length >= count) return Promise.resolve(this.received);
      return new Promise((resolve, reject) => {
        const timer = setTimeout(
          () => reject(new Error(`waited for ${count} events, got ${this.received.length}`)),
          timeoutMs,
        );
        this.waiters.push({ count, resolve: () => { clearTimeout(timer); resolve(this.received); } });
      });
    },
    clear() {
      this.received.length = 0;
    },
    /** Waits until everything raised so far has arrived, then forgets it. */
    async settle() {
      const seen = this.received.length;
      raise('MediaChannelListener', 'OnMediaChannelTerminate');
      const arrived = () => this.received.slice(seen).some((event) => event[0] === 'OnMediaChannelTerminate');
      while (!arrived()) await this.until(this.received.length + 1);
      this.clear();
    },
  };
  bind(recorder);
  const settings = new orva.Settings();
  settings.add('environment', 'prod');
  engine.initialize(settings, null);
  // An initialised engine keeps the process alive; the suite lets it go.
  after(() => engine.destroy());
  return recorder;
}

// Makes the recorder the handler of the process-wide wrapper.
function bind(recorder) {
  recorder.engine.setCallback((...args) => {
    recorder.received.push(args);
    if (recorder.onEvent) recorder.onEvent(args, recorder);
    recorder.waiters = recorder.waiters.filter((waiter) => {
      if (recorder.received.length < waiter.count) return true;
      waiter.resolve();
      return false;
    });
  });
  return recorder;
}
startRecording.rebind = bind;

/** Raises a listener callback on an engine thread; fails when no listener took it. */
function raise(face, method, ...args) {
  if (!control().raise(face, method, ...args)) throw new Error(`no listener for ${face}.${method}`);
}

/** The name and the six plain arguments of a received event. */
const plain = (event) => event.slice(0, 6);

module.exports = { startRecording, raise, plain };
