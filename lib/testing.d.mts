// Types of the ES module entry of orva-engine/testing (testing.mjs): every
// declaration of the CommonJS entry by name, and the whole module as the
// default export.
import * as testing from './testing.js';

export * from './testing.js';
export default testing;
