'use strict';
// The package as an application gets it: packed, installed into a fresh
// application without the registry, loaded with require and import, run
// through a session and type-checked against its declarations; then the load
// errors an application can meet, and `npm rebuild` building from source.
// scripts/test-package.sh runs it after making the prebuild for this Node.js.
const test = require('node:test');
const assert = require('node:assert/strict');
const fs = require('fs');
const os = require('os');
const path = require('path');
const { spawnSync } = require('child_process');
const { nodeDist } = require('../../scripts/lib/node-dist');

const root = path.resolve(__dirname, '..', '..');
const work = fs.mkdtempSync(path.join(os.tmpdir(), 'orva-package-'));
const app = path.join(work, 'app');
const installed = path.join(app, 'node_modules', 'orva-engine');
const prebuilds = path.join(installed, 'prebuilds', `${process.platform}-${process.arch}`);
const npm = process.platform === 'win32' ? 'npm.cmd' : 'npm';
// The application's own environment: no build folder chosen for the checkout's tests.
const env = { ...process.env };
delete env.ORVA_BUILD_DIR;

test.after(() => fs.rmSync(work, { recursive: true, force: true }));

function run(command, args, options = {}) {
  const result = spawnSync(command, args, { cwd: app, env, encoding: 'utf8', timeout: 1800000, ...options });
  if (result.error) throw result.error;
  return result;
}

function succeed(command, args, options) {
  const result = run(command, args, options);
  assert.equal(result.status, 0, `${command} ${args.join(' ')}:\n${result.stdout}\n${result.stderr}`);
  return result;
}

/** The message of the error that `require('orva-engine')` throws in the application, run by `node`. */
function loadError(node = process.execPath) {
  const script = "try { require('orva-engine'); console.log('loaded'); } catch (e) { console.log(e.message); }";
  return succeed(node, ['-e', script]).stdout.trim();
}

function runPath(file) {
  return /\((?:RUNPATH|RPATH)\)\s+Library r(?:un)?path: \[(.*)\]/.exec(succeed('readelf', ['-d', file]).stdout)[1];
}

const shippedAddon = () =>
  path.join(prebuilds, fs.readdirSync(prebuilds).find((name) => name.startsWith(`node.abi${process.versions.modules}.`)));

test('npm pack ships the entries, the prebuild and the sources to build from, and nothing else', (t) => {
  const packed = JSON.parse(succeed(npm, ['pack', '--json', '--pack-destination', work], { cwd: root }).stdout)[0];
  const files = packed.files.map((file) => file.path);
  const tuple = `${process.platform}-${process.arch}`;
  for (const needed of ['lib/index.js', 'lib/index.mjs', 'lib/index.d.ts', 'lib/index.d.mts', 'lib/events.js',
    'lib/events.mjs', 'lib/events.d.ts', 'lib/events.d.mts', 'lib/event-fields.js', 'lib/testing.js', 'lib/testing.mjs',
    'lib/testing.d.ts', 'lib/testing.d.mts', 'lib/renderer/index.js', 'lib/renderer/index.d.ts',
    'lib/renderer/colour-space.js', 'cmake/colour-space.js', 'scripts/install.js',
    'scripts/build-addon.js', 'CMakeLists.txt', 'sdk/win/orva.api', 'tools/bindgen/__main__.py',
    'sdk/sim/control_addon/CMakeLists.txt',
    `prebuilds/${tuple}/liborva_sdk.so`]) {
    assert.ok(files.includes(needed), needed);
  }
  for (const addon of ['node', 'orva_test_control']) {
    const prefix = `prebuilds/${tuple}/${addon}.abi${process.versions.modules}.`;
    assert.ok(files.some((file) => file.startsWith(prefix)), `${prefix}* in ${files.join()}`);
  }
  const unwanted = files.filter((file) => /^(test|bench|examples|build[^/]*|node_modules)\/|(^|\/)\.|\/testing\/|^scripts\/(?!install\.js$|build-addon\.js$)/.test(file));
  assert.deepEqual(unwanted, []);
  t.diagnostic(`${packed.filename}: ${files.length} files, ${packed.size} bytes packed, ${packed.unpackedSize} unpacked`);

  fs.cpSync(path.join(__dirname, 'app'), app, { recursive: true });
  // Offline: the package from its tarball, node-gyp-build from the npm cache
  // (which npm ci filled) by its locked version's address.
  const lock = require(path.join(root, 'package-lock.json'));
  const version = lock.packages['node_modules/node-gyp-build'].version;
  const registry = succeed(npm, ['config', 'get', 'registry']).stdout.trim().replace(/\/?$/, '/');
  const dependency = `${registry}node-gyp-build/-/node-gyp-build-${version}.tgz`;
  const install = succeed(npm, ['install', '--offline', '--no-audit', '--no-fund', '--foreground-scripts', dependency,
    path.join(work, packed.filename)]);
  assert.match(install.stdout, /orva-engine: the addon loads in Node\.js .*; nothing to build/);
});

test('the installed package loads the prebuild node-gyp-build picks, runs a session, drives it from orva-engine/testing, and names every export in its ES module entry', () => {
  const loaded = succeed(process.execPath, ['-e', `require('orva-engine');
    const loaded = Object.keys(require.cache).filter((file) => file.endsWith('.node'));
    console.log(JSON.stringify([loaded, [require('node-gyp-build').resolve(${JSON.stringify(installed)})]]));`]);
  const [file, picked] = JSON.parse(loaded.stdout);
  assert.deepEqual(file, picked);
  const session = succeed(process.execPath, ['session.js']);
  assert.equal(session.stdout, 'initialize 0\nenterRoom 0\njoined\nleft\n');
  assert.equal(session.stderr, '');
  assert.equal(succeed(process.execPath, ['testing-kit.js']).stdout, 'OrvaEngine.startPlayAudio alice\n');
  const esm = succeed(process.execPath, ['exports.mjs']);
  assert.match(esm.stdout, /^default true, (\d+) names, 0 differing, 0 extra\nfunction true function\n$/);
  assert.equal(esm.stderr, '');
});

test('an application type-checks against the shipped declarations under --strict', () => {
  succeed(path.join(root, 'node_modules', '.bin', 'tsc'), ['--strict', '-p', 'tsconfig.json']);
});

test('the shipped addon finds the engine library beside it, through $ORIGIN alone', { skip: process.platform !== 'linux' }, () => {
  assert.equal(runPath(shippedAddon()), '$ORIGIN');
});

test('load errors name both ABIs, the runtime and the command that fixes it', (t) => {
  const other = nodeDist(process.versions.node.startsWith('18.') ? 20 : 18, path.join(root, 'build-compat', 'cache'));
  const here = `Node.js ${other.version}, ABI ${other.abi}`;
  const fix = '`npm rebuild orva-engine`';
  // Only this runtime's prebuild stays (a checkout may have made them all).
  const addon = shippedAddon();
  for (const name of fs.readdirSync(prebuilds)) {
    if (name.endsWith('.node') && path.join(prebuilds, name) !== addon) fs.rmSync(path.join(prebuilds, name));
  }
  const messages = [loadError(other.node)];
  assert.equal(messages[0], `orvaEngine: no build of the addon for ${here} on ${process.platform}-${process.arch}: ` +
    `${prebuilds} holds node ABI ${process.versions.modules}; build it with ${fix}`);

  // A prebuild whose name claims the other runtime's ABI.
  const mislabelled = path.join(prebuilds, path.basename(addon).replace(`abi${process.versions.modules}`, `abi${other.abi}`));
  fs.copyFileSync(addon, mislabelled);
  messages.push(loadError(other.node));
  fs.rmSync(mislabelled);
  assert.equal(messages[1], `orvaEngine: ${mislabelled} was built for ABI ${process.versions.modules}, ` +
    `but this process is ${here}; rebuild it for this runtime with ${fix}`);

  const library = path.join(prebuilds, 'liborva_sdk.so');
  fs.renameSync(library, `${library}.away`);
  messages.push(loadError());
  fs.renameSync(`${library}.away`, library);
  assert.equal(messages[2], `orvaEngine: the engine library liborva_sdk.so is missing: the addon ${addon} looks for it ` +
    `beside itself, as ${library}; reinstall it with ${fix}`);
  for (const message of messages) t.diagnostic(message);
});

test('npm rebuild builds the addon and the test-control addon from the shipped sources, and both entries take that build', () => {
  const rebuild = succeed(npm, ['rebuild', 'orva-engine', '--foreground-scripts']);
  assert.match(rebuild.stdout, /orva-engine: building from source \(npm rebuild\)/);
  const built = path.join(installed, 'build', 'Release', 'orvaEngine.node');
  if (process.platform === 'linux') assert.equal(runPath(built), '$ORIGIN');
  fs.rmSync(path.join(installed, 'prebuilds'), { recursive: true });
  assert.equal(succeed(process.execPath, ['session.js']).stdout, 'initialize 0\nenterRoom 0\njoined\nleft\n');
  assert.equal(succeed(process.execPath, ['testing-kit.js']).stdout, 'OrvaEngine.startPlayAudio alice\n');
});
