// Types of the ES module entry of orva-engine/events (events.mjs): every
// declaration of the CommonJS entry by name, and the whole module as the
// default export.
import * as events from './events.js';

export * from './events.js';
export default events;
