#!/usr/bin/env bash
# Runs the demo in examples/ (arguments go to it). On a fresh clone it first
# builds what the demo needs, the addon and the engine library, into
# build/Release (scripts/build-addon.js: no tests, CMake's progress shown as
# it goes); a checkout that `npm test` or `npm run build:dev` built uses build/.
source "$(dirname "$0")/lib.sh"
if [ -z "${ORVA_BUILD_DIR:-}" ] && [ ! -f build/orvaEngine.node ] && [ ! -f build/Release/orvaEngine.node ]; then
  echo "== building the addon and the engine library for the demo (a few minutes the first time)"
  node "$ROOT/scripts/build-addon.js"
fi
# Without a full build, the demo loads the one just made.
if [ -z "${ORVA_BUILD_DIR:-}" ] && [ ! -f build/orvaEngine.node ]; then export ORVA_BUILD_DIR=build/Release; fi
exec node examples/demo.js "$@"
