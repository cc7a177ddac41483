#!/usr/bin/env node
'use strict';
// The package's install script: keeps the prebuild that loads in this
// Node.js, else builds the addon from source (scripts/build-addon.js).
// It always builds for `npm rebuild`, for `--build-from-source`, and for a
// runtime other than the Node.js running it (npm_config_runtime and
// npm_config_target, as when building for Electron) or another architecture.
const path = require('path');
const { spawnSync } = require('child_process');

const root = path.join(__dirname, '..');
const env = process.env;

function reasonToBuild() {
  if (env.npm_command === 'rebuild') return 'npm rebuild';
  if (env.npm_config_build_from_source === 'true') return '--build-from-source';
  if (env.npm_config_runtime && env.npm_config_runtime !== 'node') return `npm_config_runtime=${env.npm_config_runtime}`;
  const target = (env.npm_config_target || '').replace(/^v/, '');
  if (target && target !== process.versions.node) return `npm_config_target=${target}`;
  if (env.npm_config_arch && env.npm_config_arch !== process.arch) return `npm_config_arch=${env.npm_config_arch}`;
  return undefined;
}

/** Why the package's own loader cannot load a build here, or undefined when it can. */
function loadFailure() {
  // Loaded in a child: that is the process that gets the error an
  // application would get. A build folder chosen for tests must not count.
  const childEnv = Object.assign({}, env);
  delete childEnv.ORVA_BUILD_DIR;
  const child = spawnSync(process.execPath, ['-e', `require(${JSON.stringify(root)})`], {
    env: childEnv,
    encoding: 'utf8',
    windowsHide: true,
  });
  if (child.status === 0) return undefined;
  const lines = String(child.stderr || child.error).split('\n');
  return (lines.find((line) => line.startsWith('Error: ')) || lines[0]).replace(/^Error: /, '');
}

let reason = reasonToBuild();
if (!reason) {
  const failure = loadFailure();
  if (!failure) {
    console.log(`orva-engine: the addon loads in Node.js ${process.versions.node} (ABI ${process.versions.modules}); nothing to build`);
    process.exit(0);
  }
  reason = failure;
}
console.log(`orva-engine: building from source (${reason})`);
const build = spawnSync(process.execPath, [path.join(__dirname, 'build-addon.js')], { stdio: 'inherit', windowsHide: true });
process.exit(build.status === null ? 1 : build.status);
