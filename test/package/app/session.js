'use strict';
// An application's first session through the installed package: enter a
// room, hear from the engine that it joined, leave, destroy. The process must
// then end by itself.
const path = require('path');
const orva = require('orva-engine');

const engine = orva.OrvaEngineWrapper.createOrvaEngine();
const settings = new orva.Settings();
settings.add('environment', 'prod');
settings.add('loopback.join.delay.ms', '5');
engine.setCallback((name, state) => {
  if (name !== 'OnSessionStateChanged') return;
  if (state === orva.Joined) {
    console.log('joined');
    engine.exitRoom();
  } else if (state === orva.Leaved) {
    console.log('left');
    engine.destroy();
  }
});
engine.setLogDirPath(path.join(__dirname, 'logs'));
console.log('initialize', engine.initialize(settings, null));
console.log('enterRoom', engine.enterRoom('package-room', null));
