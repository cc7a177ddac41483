// The ES module entry of orva-engine/events: the CommonJS module as the
// default export, and each of its exports by name.
import events from './events.js';

export default events;
export const { attach } = events;
