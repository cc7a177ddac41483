'use strict';
// The file name of the prebuild for a Node.js ABI on this machine, as
// node-gyp-build looks for it: node.abi<ABI>[.<libc>].node, the C library
// named on Linux only, and told as node-gyp-build tells it.
const fs = require('fs');

function prebuildName(abi) {
  const libc = process.platform !== 'linux' ? '' : fs.existsSync('/etc/alpine-release') ? '.musl' : '.glibc';
  return `node.abi${abi}${libc}.node`;
}

module.exports = { prebuildName };
