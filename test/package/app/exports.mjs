// The ES module entry: the default export is the CommonJS module, and every
// export of it is there by name, with the same value; the events entry too.
import orva, { OrvaEngineWrapper, Joined } from 'orva-engine';
import * as named from 'orva-engine';
import { createRequire } from 'module';
import { attach } from 'orva-engine/events';

const cjs = createRequire(import.meta.url)('orva-engine');
const names = Object.keys(cjs);
const differing = names.filter((name) => named[name] !== cjs[name]);
const extra = Object.keys(named).filter((name) => name !== 'default' && !(name in cjs));
console.log(`default ${orva === cjs}, ${names.length} names, ${differing.length} differing, ${extra.length} extra`);
console.log(typeof OrvaEngineWrapper.createOrvaEngine, Joined === cjs.Joined, typeof attach);
