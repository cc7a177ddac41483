'use strict';
// The file name of the prebuild for a Node.js ABI on this machine, as
// node-gyp-build looks for it: node.abi<ABI>[.<libc>].node, the C library
// named on Linux only, and told as node-gyp-build tells it.
const fs = require('fs');

function prebuildName(abi) {
  const libc = process.platform !== 'linux' ? '' : fs.existsSync('/etc/alpine-release') ? '.musl' : '.glibc';
  return `node.abi${abi}${libc}.node`;
}

/**
 * The test-control addon shipped beside that prebuild, for orva-engine/testing:
 * not ending in .node, so node-gyp-build never takes it for the product addon.
 */
function controlName(abi) {
  return prebuildName(abi).replace(/^node\./, 'orva_test_control.').replace(/\.node$/, '.testing');
}

module.exports = { prebuildName, controlName };
