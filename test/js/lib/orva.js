'use strict';
// What every script-side test needs: the product addon (through the package
// entry, as users load it), the loopback engine's test-control addon, and a
// way to force collection.
const path = require('path');
const v8 = require('v8');
const vm = require('vm');

const root = path.resolve(__dirname, '..', '..', '..');
const buildDir = path.resolve(root, process.env.ORVA_BUILD_DIR || 'build');

v8.setFlagsFromString('--expose-gc');
const gc = vm.runInNewContext('gc');

const orva = require(root);
let controlAddon;

/** The loopback engine's test-control addon (journal, live counts, raising). */
function control() {
  controlAddon ??= require(path.join(buildDir, 'orva_test_control.node'));
  return controlAddon;
}

/** Collects until weak callbacks of unreachable proxies have run. */
async function collect() {
  for (let round = 0; round < 4; round += 1) {
    gc();
    await new Promise((resolve) => setImmediate(resolve));
  }
}

/** The message of what `fn` throws; fails when it throws nothing or a non-Error. */
function thrown(fn) {
  try {
    fn();
  } catch (error) {
    if (!(error instanceof Error) || error.constructor !== Error) {
      throw new Error(`expected a plain Error, got ${error && error.constructor && error.constructor.name}`);
    }
    return error.message;
  }
  throw new Error('expected a throw');
}

module.exports = { orva, control, collect, gc, thrown, root, buildDir };
