// The ES module entry of orva-engine/testing: the CommonJS module as the
// default export, and each of its exports by name.
import testing from './testing.js';

export default testing;
export const {
  remoteUserJoins, remoteUserLeaves, remoteUserPublishes, remoteUserUnpublishes, networkStats, voiceVolumes,
  devicePlugged, deviceUnplugged, cameraFails, microphoneFails, screenFails, sessionDrops, sessionReturns, echoResult,
  reportableError, raise, signatures, journal, calls, waitForCall, clearJournal, crashReports, reset, parseRecord,
  control,
} = testing;
