'use strict';
// The package entry: loads the native addon built for this process.
//
// The first of these that exists is loaded:
//   1. the build folder $ORVA_BUILD_DIR names (relative to the package root),
//      which tests and benchmarks choose;
//   2. build/ of a source checkout, where `npm run build:dev` puts the addon;
//   3. what node-gyp-build picks: build/Release (an install or `npm rebuild`
//      that built from source), else the prebuild for this platform, runtime
//      and ABI in prebuilds/<platform>-<arch>/.
// Each has the engine library beside it, found through the addon's run path.
const fs = require('fs');
const path = require('path');
const { prebuildName } = require('./prebuild-name');

const root = path.join(__dirname, '..');
const ADDON = 'orvaEngine.node';

/**
 * node-gyp-build's answer, known without loading it, in the case of nearly
 * every load: a Node.js process, nothing in the environment that steers
 * node-gyp-build, no build/ folder (whose build/Release node-gyp-build would
 * take first), and the prebuild scripts/prebuilds.js names for this ABI
 * present. In a fresh process, loading node-gyp-build and its reading of
 * package.json and of four folders cost about as much again as the addon
 * itself, so it is asked only when any of that does not hold.
 */
function namedPrebuild() {
  const env = process.env;
  if (process.versions.electron || process.versions.nw || env.ELECTRON_RUN_AS_NODE || env.PREBUILDS_ONLY ||
      env.ORVA_ENGINE_PREBUILD || env.npm_config_arch || env.npm_config_platform || env.LIBC) {
    return undefined;
  }
  if (fs.existsSync(path.join(root, 'build'))) return undefined;
  const folder = path.join(root, 'prebuilds', `${process.platform}-${process.arch}`);
  const file = path.join(folder, prebuildName(process.versions.modules));
  return fs.existsSync(file) ? file : undefined;
}

function locate() {
  const chosen = process.env.ORVA_BUILD_DIR;
  if (chosen) return path.join(path.resolve(root, chosen), ADDON);
  const prebuilt = namedPrebuild();
  if (prebuilt) return prebuilt;
  const checkout = path.join(root, 'build', ADDON);
  if (fs.existsSync(checkout)) return checkout;
  return require('node-gyp-build').resolve(root);
}

function load() {
  let file;
  try {
    file = locate();
    return require(file);
  } catch (error) {
    // Only a failure pays for reading why.
    throw require('./load-error').explain(error, file, root);
  }
}

module.exports = load();
