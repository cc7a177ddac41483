// A script written against the generated declarations: it must type-check
// under --strict. It is compiled, never run.
import orva = require('../..');
import events = require('orva-engine/events');

const engine = orva.OrvaEngineWrapper.createOrvaEngine();
if (engine === null) throw new Error('no engine');

// The event's name narrows every other argument, with no cast.
const handler: orva.OrvaEventHandler = (name, int1, int2, int3, str1, str2, payload) => {
  if (name === 'OnNetworkStats') {
    const rtt: number = payload.RealtimeRtt;
    const first: string | undefined = payload.remoteStatistics?.[0]?.userId;
    const unused: 0 = int1;
    console.log(rtt, first, unused);
  } else if (name === 'OnSessionStateChanged') {
    const state: orva.MediaSessionState = int1;
    const session: string = str1;
    console.log(state === orva.Joined, session);
  }
  console.log(name, int1 + int2 + int3, str1.length + str2.length);
};
engine.setCallback(handler);

// The events layer: each listener's value has the event's field types.
const emitter: events.OrvaEvents = events.attach(engine);
emitter.on('OnNetworkStats', (stats) => console.log(stats.RealtimeRtt.toFixed(0), stats.remoteStatistics?.[0]?.userId));
emitter.once('OnSessionStateChanged', ({ state, session }) => console.log(state === orva.Joined, session.length));
emitter.on('OnVideoFrame', (frame) => console.log(frame.valid, frame.width * frame.height));
// @ts-expect-error an event that does not exist
emitter.on('OnSessionStateChange', () => {});
// @ts-expect-error a field the event does not have
emitter.on('OnPlayFileStart', (event) => event.positionMs);
// @ts-expect-error a field of the wrong type
emitter.on('OnCameraSourceStarted', (event) => event.sourceId.toFixed());
engine.setVideoFrameRenderBuffer({ buffer: new Uint8Array(16), id: 1, userId: 'me', width: 4, height: 2 });
engine.setVideoFrameRenderBuffer(null);

const settings = new orva.Settings();
settings.add('environment', 'dev');
const count: number = settings.get('orva.log.clear.enable', 0);
const text: string = settings.get('environment', '');
engine.setLogDirPath('/tmp/orva-logs');
const status: number = engine.initialize(settings, null);
engine.enterRoom('room', settings);
engine.publishVideo(orva.CameraSource);
engine.muteLocalVideo(true, orva.VideoStreamType_VideoStreamTypeBig);
engine.sendSEIMsg('hello', 3);
engine.addImageSource('logo.png');
engine.addImageSource('logo.png', 2);

const sources: orva.ScreenCaptureSourceInfo[] = engine.getScreenCaptureSources();
for (const source of sources) engine.startScreenSource(source);
const modes: orva.ScreenCaptureModeList = orva.OrvaEngineWrapper.getScreenCaptureModeList();
console.log(modes.Size(), count, text, status);

const params = new orva.LocalMediaTranscodingParams();
const camera = new orva.LocalMediaTranscodingSource();
camera.sourceType = orva.kLocalMediaTranscodingSourceType_MediaSourceCamera;
camera.rect.width = 640;
params.inputSourceList.Add(camera);
params.videoEncoderParams.width = 1280;
engine.startTranscoding(params);

const sdk = orva.OrvaEngine.SDK();
const cameras: orva.CameraList | undefined = sdk?.Cameras();
const firstCamera: orva.Camera | null | undefined = cameras?.Get(0);
const map = new orva.StringMap();
map.set('k', 'v');
const value: string = map.get('k');
const id: number = new orva.Rect().getCPtr();
const level: 0 = orva.kLevelError;
console.log(firstCamera?.name, value, id, level, new orva.EchoCheckResult().CheckResultToString(orva.GOOD));

// @ts-expect-error constants are read-only in type too
orva.kLevelError = 1;
// @ts-expect-error engine interfaces cannot be constructed
new orva.OrvaEngine();
