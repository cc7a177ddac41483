'use strict';
// Engine events the Node.js way: one EventEmitter that emits each event under
// its name, with its arguments as one object of named fields (or its payload).
//
//   const { attach } = require('orva-engine/events');
//   const events = attach(orva.OrvaEngineWrapper.createOrvaEngine());
//   events.on('OnSessionStateChanged', ({ state, session }) => { ... });
//
// It sits on the raw handler: attach() makes a dispatcher of this module the
// engine's one handler (setCallback), and the dispatcher emits each event. The
// main entry never loads this file, so an application that does not ask for
// it pays nothing.
const EventEmitter = require('events');
const path = require('path');
const orva = require('./index.js');

/**
 * Where the table of named arguments is: generated from the event description
 * beside the addon, copied into lib/ for the package. A build folder chosen
 * with ORVA_BUILD_DIR (whose addon the loader takes) brings its own.
 */
function fieldsFile() {
  const chosen = process.env.ORVA_BUILD_DIR;
  return chosen ? path.join(path.resolve(__dirname, '..', chosen), 'event-fields.js') : './event-fields.js';
}

/** For each event name: (int1, int2, int3, str1, str2) => named fields, or null for the payload itself. */
const FIELDS = require(fieldsFile());

// The engine has one handler, so there is one emitter; `bound` is the wrapper
// attach() last bound it to, until detach().
let bound = null;

class OrvaEvents extends EventEmitter {
  /**
   * Clears the engine's handler, whichever function it is by then; listeners
   * stay, and attach() binds this emitter again.
   */
  detach() {
    if (bound === null) return;
    bound.setCallback(undefined);
    bound = null;
  }
}

const emitter = new OrvaEvents();

// The handler the engine calls. An event nobody listens to costs this one
// check; a listener's exception goes up through it to the bridge, which
// reports it as it reports the raw handler's and delivers the next event.
function dispatch(name, int1, int2, int3, str1, str2, payload) {
  if (emitter.listenerCount(name) === 0) return;
  const fields = FIELDS[name];
  emitter.emit(name, fields ? fields(int1, int2, int3, str1, str2) : payload);
}

/**
 * Makes the emitter the handler of `engine`, the process-wide wrapper, and
 * answers it. Every call answers the same emitter and binds it again, also
 * after a setCallback of script's own replaced it.
 */
function attach(engine) {
  // A wrapper the engine returned is no `instanceof OrvaEngineWrapper` (its
  // proxy has a prototype of its own), so it is known by its members.
  if (engine === null || typeof engine !== 'object' || typeof engine.setCallback !== 'function' ||
      typeof engine.equals !== 'function') {
    throw new TypeError('attach(engine): engine must be an OrvaEngineWrapper');
  }
  // setCallback binds the process-wide wrapper's handler whichever wrapper it
  // is called on, and a wrapper made with `new` drops its events: attaching
  // to one would hear another engine, or nothing.
  if (!engine.equals(orva.OrvaEngineWrapper.createOrvaEngine())) {
    throw new TypeError('attach(engine): only the process-wide wrapper (OrvaEngineWrapper.createOrvaEngine()) ' +
      'delivers events; a wrapper made with new drops its own');
  }
  engine.setCallback(dispatch);
  bound = engine;
  return emitter;
}

module.exports = { attach };
