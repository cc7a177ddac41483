// A CommonJS application written against the shipped declarations.
import orva = require('orva-engine');
import events = require('orva-engine/events');

const settings = new orva.Settings();
settings.add('environment', 'prod');
const engine = orva.OrvaEngineWrapper.createOrvaEngine();
const joined: 2 = orva.Joined;
console.log(engine?.enterRoom('room', settings), joined);
if (engine) events.attach(engine).on('OnPlayFileEnd', ({ fileId, reason }) => console.log(fileId + reason));
// @ts-expect-error constants are read-only
orva.Joined = 3;
