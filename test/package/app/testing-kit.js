'use strict';
// The testing entry from the installed package, as an application's test
// uses it: a remote user joins, the application plays the user's audio, and
// the journal shows the call.
const orva = require('orva-engine');
const testing = require('orva-engine/testing');

const engine = orva.OrvaEngineWrapper.createOrvaEngine();
engine.setCallback((name, int1, int2, int3, str1) => {
  if (name === 'OnStreamAdd' && int1 === orva.AudioStream) engine.startPlayAudio(str1);
});
const settings = new orva.Settings();
settings.add('environment', 'prod');
engine.initialize(settings, null);
testing.remoteUserJoins('alice');
testing.waitForCall('OrvaEngine.startPlayAudio').then((call) => {
  console.log(`${call.operation} ${call.args.join(',')}`);
  engine.destroy();
  testing.reset();
});
