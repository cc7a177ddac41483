'use strict';
// One sample of the module-load figure: prints how long `require(<file>)`
// takes in this fresh process, in nanoseconds. A script file rather than
// `node -e`, whose first require pays for setting up the loader and would
// hide the addon's own cost.
const file = process.argv[2];
const start = process.hrtime.bigint();
require(file);
const elapsed = process.hrtime.bigint() - start;
// Only now: the first use of process.stdout builds the stream (milliseconds).
process.stdout.write(String(elapsed));
