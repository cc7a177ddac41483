'use strict';
// Why the addon did not load, told with the command that fixes it. Required
// only after a failure, so loading pays nothing for it.
const fs = require('fs');
const path = require('path');

const PACKAGE = 'orva-engine';

/** The engine library's file name, as the linker of each platform names it. */
function engineLibraryName() {
  if (process.platform === 'win32') return 'orva_sdk.dll';
  if (process.platform === 'darwin') return 'liborva_sdk.dylib';
  return 'liborva_sdk.so';
}

/** "Node.js 20.20.2" or "Electron 30.0.0": the runtime of this process. */
function runtimeName() {
  const electron = process.versions.electron;
  return electron ? `Electron ${electron}` : `Node.js ${process.versions.node}`;
}

/**
 * The command that builds the addon for this process's runtime: in Electron,
 * the npm_config_* settings that select its headers, in this shell's syntax.
 */
function rebuildCommand() {
  const electron = process.versions.electron;
  if (!electron) return `npm rebuild ${PACKAGE}`;
  const settings = [
    ['npm_config_runtime', 'electron'],
    ['npm_config_target', electron],
    ['npm_config_arch', process.arch],
    ['npm_config_disturl', 'https://electronjs.org/headers'],
  ];
  if (process.platform === 'win32') {
    return `${settings.map(([key, value]) => `$env:${key}="${value}"; `).join('')}npm rebuild ${PACKAGE}`;
  }
  return `${settings.map(([key, value]) => `${key}=${value} `).join('')}npm rebuild ${PACKAGE}`;
}

/** The ABIs of the prebuilds shipped for this platform and architecture. */
function prebuiltAbis(folder) {
  let files;
  try {
    files = fs.readdirSync(folder);
  } catch (error) {
    return [];
  }
  const parseTags = require('node-gyp-build').parseTags;
  return files
    .map(parseTags)
    .filter((tags) => tags && tags.abi)
    .sort((a, b) => a.abi - b.abi)
    .map((tags) => `${tags.runtime || 'node'} ABI ${tags.abi}`);
}

/**
 * The error to throw for `error`, raised while locating (`file` undefined)
 * or loading `file`. A source checkout (which has the build scripts the
 * package does not ship) is fixed by another command than an installed package.
 */
function explain(error, file, root) {
  const abi = process.versions.modules;
  const here = `${runtimeName()}, ABI ${abi}`;
  const checkout = Boolean(process.env.ORVA_BUILD_DIR) || fs.existsSync(path.join(root, 'scripts', 'build.sh'));
  const fix = checkout ? 'npm run build:dev' : rebuildCommand();
  const message = String(error && error.message);
  let text;
  if (file === undefined && /^No native build was found/.test(message)) {
    const platform = `${process.platform}-${process.arch}`;
    const folder = path.join(root, 'prebuilds', platform);
    const shipped = prebuiltAbis(folder);
    text =
      `no build of the addon for ${here} on ${platform}: ${folder} holds ` +
      `${shipped.length ? shipped.join(', ') : 'none'}; build it with \`${fix}\``;
  } else if (file === undefined) {
    text = `cannot look for the addon: ${message}`;
  } else if (error && error.code === 'MODULE_NOT_FOUND' && message.includes(file)) {
    text = `the native addon is missing (${file}); build it with \`${fix}\``;
  } else if (/NODE_MODULE_VERSION/.test(message)) {
    const built = /using\s+NODE_MODULE_VERSION (\d+)/.exec(message);
    text =
      `${file} was built for ABI ${built ? built[1] : '(unknown)'}, but this process is ${here}; ` +
      `rebuild it for this runtime with \`${fix}\``;
  } else {
    const library = path.join(path.dirname(file), engineLibraryName());
    // Anything else, such as an error the addon itself raises while loading,
    // already says what it has to say.
    if (fs.existsSync(library)) return error;
    text =
      `the engine library ${engineLibraryName()} is missing: the addon ${file} looks for it beside itself, ` +
      `as ${library}; reinstall it with \`${fix}\``;
  }
  const explained = new Error(`orvaEngine: ${text}`);
  explained.cause = error;
  return explained;
}

module.exports = { explain, engineLibraryName };
