#!/usr/bin/env bash
# The renderer and the web demo in headless Chromium (test/browser), against
# the build in build/ (made when missing).
source "$(dirname "$0")/lib.sh"
npm_deps
ensure_chromium
[ -f build/orvaEngine.node ] || "$ROOT/scripts/build.sh"
echo "== renderer and web demo in headless Chromium"
ORVA_BUILD_DIR=build node --test test/browser/
