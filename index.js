'use strict';
// Loads the native addon. `ORVA_BUILD_DIR` names another build folder (the
// sanitizer build, for instance); the default is build/ beside this file.
const path = require('path');

const buildDir = path.resolve(__dirname, process.env.ORVA_BUILD_DIR || 'build');
const addonPath = path.join(buildDir, 'orvaEngine.node');
const rebuild = 'npm run build';

function load() {
  try {
    return require(addonPath);
  } catch (error) {
    if (error && error.code === 'MODULE_NOT_FOUND' && String(error.message).includes(addonPath)) {
      throw new Error(`orvaEngine: the native addon is missing (${addonPath}); build it with \`${rebuild}\``);
    }
    if (error && /NODE_MODULE_VERSION|different Node\.js version/.test(String(error.message))) {
      throw new Error(
        `orvaEngine: the native addon at ${addonPath} was built for another Node.js ABI ` +
          `(this is Node.js ${process.version}, ABI ${process.versions.modules}); rebuild it with \`${rebuild}\``,
      );
    }
    throw error;
  }
}

module.exports = load();
