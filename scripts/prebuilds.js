#!/usr/bin/env node
'use strict';
// Builds the prebuilt binaries that the package ships: the addon for every
// supported Node.js ABI, named as node-gyp-build expects, with the engine
// library beside them (the addon finds it through its run path, $ORIGIN):
//
//   prebuilds/<platform>-<arch>/node.abi<ABI>[.<libc>].node
//   prebuilds/<platform>-<arch>/liborva_sdk.so
//   prebuilds/<platform>-<arch>/orva_test_control.abi<ABI>[.<libc>].testing
//
// The last is the loopback engine's test-control addon, for
// orva-engine/testing; a build against a real engine ships none.
//
// Then writes the package's generated entries (scripts/package-entries.js).
//
//   npm run prebuild               every supported major version
//   npm run prebuild -- 18 20      only these (other prebuilds are kept)
//
// Each version's headers and runtime come from scripts/lib/node-dist.js;
// each build has its own folder, build-pkg/node-<version>. Each prebuild is
// loaded, from where it will ship, by the runtime it was built for.
const fs = require('fs');
const path = require('path');
const { execFileSync } = require('child_process');
const { RELEASES, nodeDist } = require('./lib/node-dist');
const { buildAddon, CONTROL } = require('./build-addon');
const { writeEntries } = require('./package-entries');
const { engineLibraryName } = require('../lib/load-error');
const { prebuildName, controlName } = require('../lib/prebuild-name');

const root = path.join(__dirname, '..');
const cache = path.join(root, 'build-compat', 'cache');
const tuple = `${process.platform}-${process.arch}`;
const folder = path.join(root, 'prebuilds', tuple);

function prebuild(major) {
  const dist = nodeDist(major, cache);
  const buildDir = path.join(root, 'build-pkg', `node-${dist.version}`);
  console.log(`== Node.js ${dist.version} (ABI ${dist.abi}, V8 ${dist.v8}) in ${path.relative(root, buildDir)}`);
  const addon = buildAddon({ buildDir, include: dist.include });
  const shipped = path.join(folder, prebuildName(dist.abi));
  fs.copyFileSync(addon, shipped);
  // The engine library does not depend on the runtime: every build makes the same one.
  fs.copyFileSync(path.join(buildDir, engineLibraryName()), path.join(folder, engineLibraryName()));
  const control = path.join(folder, controlName(dist.abi));
  fs.rmSync(control, { force: true });
  if (fs.existsSync(path.join(buildDir, CONTROL))) fs.copyFileSync(path.join(buildDir, CONTROL), control);
  execFileSync(dist.node, ['-e', `require(${JSON.stringify(shipped)})`], { stdio: 'inherit' });
  console.log(`   ${path.relative(root, shipped)} loads in Node.js ${dist.version}`);
  return { dist, buildDir };
}

function main() {
  const majors = process.argv.length > 2 ? process.argv.slice(2) : Object.keys(RELEASES);
  const unknown = majors.filter((major) => !RELEASES[major]);
  if (unknown.length) throw new Error(`no Node.js ${unknown.join(', ')}: choose from ${Object.keys(RELEASES).join(', ')}`);
  // A full run replaces every prebuild of this machine; a partial one only its own.
  if (process.argv.length <= 2) fs.rmSync(folder, { recursive: true, force: true });
  fs.mkdirSync(folder, { recursive: true });

  const built = [];
  const failed = [];
  for (const major of majors) {
    try {
      built.push(prebuild(major));
    } catch (error) {
      console.error(`   Node.js ${major}: ${error.message}`);
      failed.push(major);
    }
  }
  if (built.length) {
    const { dist, buildDir } = built[built.length - 1];
    const count = writeEntries(buildDir, dist.node);
    console.log(`== the package's entries in lib/ (${count} exports) from Node.js ${dist.version}'s build`);
  }
  console.log(`prebuilt for Node.js ${built.map((entry) => entry.dist.major).join(', ') || 'none'}` +
    `${failed.length ? `; failed for ${failed.join(', ')}` : ''}`);
  if (failed.length) process.exitCode = 1;
}

main();
