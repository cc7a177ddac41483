// Types of the ES module entry (index.mjs): every declaration of the
// CommonJS entry by name, and the whole module as the default export.
import * as orva from './index.js';

export * from './index.js';
export default orva;
