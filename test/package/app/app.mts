// An ES module application written against the shipped declarations.
import orva, { OrvaEngineWrapper, Settings, Joined, type OrvaEventHandler } from 'orva-engine';
import { attach } from 'orva-engine/events';

const engine = OrvaEngineWrapper.createOrvaEngine();
// The name narrows the arguments after it; a rest parameter takes the rest.
const handler: OrvaEventHandler = (name, state, ..._rest) => {
  if (name === 'OnSessionStateChanged' && state === Joined) engine?.exitRoom();
};
engine?.setCallback(handler);
if (engine) attach(engine).on('OnSessionStateChanged', ({ state }) => state === Joined && engine.exitRoom());
const status: number = engine?.initialize(new Settings(), null) ?? -1;
console.log(status, orva.Leaved);
// @ts-expect-error a room is named by a string
engine?.enterRoom(42, null);
