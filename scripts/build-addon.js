#!/usr/bin/env node
'use strict';
// Builds the addon from source with CMake: the addon and the engine library
// beside it, nothing else (no tests, no benchmarks). Installing runs it when
// no prebuild fits, and `npm rebuild` always does. In JavaScript so that it
// runs unchanged wherever npm does.
//
//   node scripts/build-addon.js [build folder]      (default: build/Release)
//
// build/Release is where node-gyp-build, and so the package's loader, looks
// for a local build. The runtime is chosen the way node-gyp chooses it, from
// npm's settings (npm_config_* variables, or flags of npm install/rebuild):
//   npm_config_runtime   node (the default) or electron
//   npm_config_target    that runtime's version (default: this Node.js)
//   npm_config_arch      the processor architecture (default: this process's)
//   npm_config_disturl   where that version's headers are published
//   npm_config_nodedir   a folder that already holds the headers (include/node)
//   npm_config_devdir    node-gyp's header cache (default: its usual one)
// Headers that are not at hand are fetched with node-gyp, which every npm
// carries, into node-gyp's cache, where later builds find them again.
const fs = require('fs');
const os = require('os');
const path = require('path');
const { spawnSync } = require('child_process');

const root = path.join(__dirname, '..');
const ELECTRON_HEADERS = 'https://electronjs.org/headers';

function fail(message) {
  const error = new Error(message);
  error.reported = true;
  throw error;
}

function run(command, args, failure) {
  const result = spawnSync(command, args, { stdio: 'inherit', windowsHide: true });
  if (result.error) fail(`${command} could not run: ${result.error.message}`);
  if (result.status !== 0) fail(failure || `${command} ${args.join(' ')} failed (exit status ${result.status})`);
}

function onPath(program) {
  const probe = spawnSync(program, ['--version'], { stdio: 'ignore', windowsHide: true });
  return !probe.error && probe.status === 0;
}

/** What to build for: { runtime, target, arch, disturl }, from npm's settings. */
function buildTarget(env) {
  const runtime = env.npm_config_runtime || 'node';
  if (runtime !== 'node' && runtime !== 'electron') fail(`npm_config_runtime=${runtime}: only node and electron are supported`);
  const target = (env.npm_config_target || (runtime === 'node' ? process.versions.node : '')).replace(/^v/, '');
  if (!target) fail('building for Electron needs its version in npm_config_target (for instance npm_config_target=30.0.0)');
  const arch = env.npm_config_arch || process.arch;
  const disturl = env.npm_config_disturl || (runtime === 'electron' ? ELECTRON_HEADERS : undefined);
  return { runtime, target, arch, disturl };
}

/** node-gyp's own header cache, as node-gyp computes it. */
function nodeGypCache(env) {
  if (env.npm_config_devdir) return env.npm_config_devdir;
  const home = os.homedir();
  if (process.platform === 'win32') return path.join(env.LOCALAPPDATA || path.join(home, 'AppData', 'Local'), 'node-gyp', 'Cache');
  if (process.platform === 'darwin') return path.join(home, 'Library', 'Caches', 'node-gyp');
  return path.join(env.XDG_CACHE_HOME || path.join(home, '.cache'), 'node-gyp');
}

/** node-gyp's command-line script: npm names it to install scripts, else the one inside npm. */
function nodeGypScript(env) {
  const prefix = path.dirname(process.execPath);
  const candidates = [
    env.npm_config_node_gyp,
    path.join(prefix, '..', 'lib', 'node_modules', 'npm', 'node_modules', 'node-gyp', 'bin', 'node-gyp.js'),
    path.join(prefix, 'node_modules', 'npm', 'node_modules', 'node-gyp', 'bin', 'node-gyp.js'),
  ];
  const found = candidates.find((file) => file && fs.existsSync(file));
  if (!found) fail('node-gyp (which npm carries) was not found: run this from an npm script, or set npm_config_node_gyp');
  return found;
}

/**
 * Fails unless the headers in `include`, which the user named, are the
 * target's: a build against another runtime's headers would succeed and
 * then fail to load, or worse. Electron's headers say so in config.gypi.
 */
function checkNamedHeaders(include, target, named) {
  const version = headersVersion(include);
  if (target.runtime === 'electron') {
    const config = fs.readFileSync(path.join(include, 'config.gypi'), 'utf8');
    if (!/built_with_electron['"]?\s*:\s*1/.test(config)) {
      fail(`${named} holds the headers of Node.js ${version}, not of Electron ${target.target}: ` +
        "name Electron's headers there, or leave it unset to have them fetched");
    }
  } else if (version.split('.')[0] !== target.target.split('.')[0]) {
    fail(`${named} holds the headers of Node.js ${version}, not of Node.js ${target.target}`);
  }
}

/** The include/node folder of the headers to build against, fetched when needed. */
function nodeHeaders(target, env) {
  if (env.npm_config_nodedir) {
    const named = `npm_config_nodedir=${env.npm_config_nodedir}`;
    const given = path.join(path.resolve(env.npm_config_nodedir), 'include', 'node');
    if (!fs.existsSync(path.join(given, 'node.h'))) fail(`${named} holds no include/node/node.h`);
    checkNamedHeaders(given, target, named);
    return given;
  }
  if (target.runtime === 'node' && target.target === process.versions.node) {
    const own = path.resolve(process.execPath, '..', '..', 'include', 'node');
    if (fs.existsSync(path.join(own, 'node.h'))) return own;
  }
  const devdir = nodeGypCache(env);
  const args = [nodeGypScript(env), 'install', `--target=${target.target}`, `--arch=${target.arch}`, `--devdir=${devdir}`, '--ensure'];
  if (target.disturl) args.push(`--dist-url=${target.disturl}`);
  const what = `the headers of ${target.runtime} ${target.target}${target.disturl ? ` from ${target.disturl}` : ''}`;
  console.log(`orva-engine: fetching ${what} with node-gyp`);
  run(process.execPath, args, `fetching ${what} failed (node-gyp says why above); to build without fetching, set npm_config_nodedir to a folder holding them (its include/node)`);
  const fetched = path.join(devdir, target.target, 'include', 'node');
  if (!fs.existsSync(path.join(fetched, 'node.h'))) fail(`node-gyp left no headers in ${fetched}`);
  return fetched;
}

/** The Node.js version of the headers in `include`, as node_version.h states it. */
function headersVersion(include) {
  const text = fs.readFileSync(path.join(include, 'node_version.h'), 'utf8');
  const part = (name) => (new RegExp(`#define NODE_${name}_VERSION (\\d+)`).exec(text) || [])[1];
  return [part('MAJOR'), part('MINOR'), part('PATCH')].join('.');
}

/** CMake settings that select the architecture, where it differs from this machine's. */
function archSettings(arch, generator) {
  if (process.platform === 'win32' && !generator) {
    const platforms = { x64: 'x64', ia32: 'Win32', arm64: 'ARM64' };
    if (!platforms[arch]) fail(`npm_config_arch=${arch} is not a Windows architecture`);
    return ['-A', platforms[arch]];
  }
  if (arch === process.arch) return [];
  if (process.platform === 'darwin') {
    const names = { x64: 'x86_64', arm64: 'arm64' };
    if (!names[arch]) fail(`npm_config_arch=${arch} is not a macOS architecture`);
    return [`-DCMAKE_OSX_ARCHITECTURES=${names[arch]}`];
  }
  if (!process.env.CMAKE_TOOLCHAIN_FILE) {
    fail(`building for ${arch} on ${process.arch} needs a cross compiler: name its CMake toolchain file in CMAKE_TOOLCHAIN_FILE`);
  }
  return [`-DCMAKE_TOOLCHAIN_FILE=${process.env.CMAKE_TOOLCHAIN_FILE}`];
}

// The loopback engine's test-control addon, as a build from source leaves it
// for orva-engine/testing: not ending in .node, so that node-gyp-build, which
// takes the first *.node of build/Release, never loads it as the product.
const CONTROL = 'orva_test_control.testing';

/** Whether the build in `release` is configured against a real engine rather than the loopback one. */
function realEngine(release) {
  const cache = fs.readFileSync(path.join(release, 'CMakeCache.txt'), 'utf8');
  const value = (name) => (new RegExp(`^${name}:\\w+=(.*)$`, 'm').exec(cache) || [])[1];
  return Boolean(value('ORVA_SDK_INCLUDE_DIR') && value('ORVA_SDK_LIBRARY'));
}

/**
 * Configures `buildDir` against the headers in `include` and builds the
 * addon; the addon and the engine library land side by side in `buildDir`.
 * On the loopback engine the test-control addon lands there too, as
 * orva_test_control.testing; against a real engine there is none.
 */
function buildAddon({ buildDir, include, arch = process.arch, jobs }) {
  const generator = onPath('ninja') ? 'Ninja' : undefined;
  const release = path.resolve(buildDir);
  // The test-control addon's sources come with a checkout and the package;
  // a copy cut down to the product has none.
  const withControl = fs.existsSync(path.join(root, 'sdk', 'sim', 'control_addon', 'CMakeLists.txt'));
  const configure = ['-S', root, '-B', release, '-DCMAKE_BUILD_TYPE=Release', '-DORVA_BUILD_TESTS=OFF',
    '-DORVA_BUILD_BENCH=OFF', `-DORVA_BUILD_TEST_CONTROL=${withControl ? 'ON' : 'OFF'}`,
    `-DORVA_NODE_INCLUDE_DIR=${include}`,
    // The run path is $ORIGIN alone: by default CMake adds the build folder,
    // which would follow the addon wherever it ships.
    '-DCMAKE_BUILD_WITH_INSTALL_RPATH=ON',
    // Multi-configuration generators (Visual Studio) would put the products
    // in a Release/ subfolder; these keep them in the build folder itself.
    `-DCMAKE_LIBRARY_OUTPUT_DIRECTORY_RELEASE=${release}`, `-DCMAKE_RUNTIME_OUTPUT_DIRECTORY_RELEASE=${release}`];
  if (generator) configure.push('-G', generator);
  run('cmake', configure.concat(archSettings(arch, generator)));
  const parallel = String(jobs || process.env.JOBS || process.env.npm_config_jobs || os.cpus().length);
  const loopback = withControl && !realEngine(release);
  const targets = loopback ? ['orvaEngine', 'orva_test_control'] : ['orvaEngine'];
  run('cmake', ['--build', release, '--config', 'Release', '--target', ...targets, '--parallel', parallel]);
  fs.rmSync(path.join(release, CONTROL), { force: true });
  if (loopback) fs.renameSync(path.join(release, 'orva_test_control.node'), path.join(release, CONTROL));
  return path.join(release, 'orvaEngine.node');
}

function main() {
  const env = process.env;
  if (!onPath('cmake')) fail('building orva-engine from source needs CMake 3.20 or newer on PATH (and a C++20 compiler and Python 3)');
  const target = buildTarget(env);
  const buildDir = path.resolve(process.argv[2] || path.join(root, 'build', 'Release'));
  console.log(`orva-engine: building the addon for ${target.runtime} ${target.target} (${target.arch}) in ${buildDir}`);
  const include = nodeHeaders(target, env);
  console.log(`orva-engine: against the headers in ${include} (Node.js ${headersVersion(include)})`);
  const addon = buildAddon({ buildDir, include, arch: target.arch });
  console.log(`orva-engine: built ${addon}`);
}

if (require.main === module) {
  try {
    main();
  } catch (error) {
    console.error(`orva-engine: ${error.reported ? error.message : error.stack}`);
    process.exit(1);
  }
}

module.exports = { buildAddon, CONTROL };
