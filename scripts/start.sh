#!/usr/bin/env bash
# Runs the demo in examples/ (arguments go to it), building the addon first
# when there is none yet, as on a fresh clone.
source "$(dirname "$0")/lib.sh"
if [ -z "${ORVA_BUILD_DIR:-}" ] && [ ! -f build/orvaEngine.node ]; then
  echo "== building the addon first (scripts/build.sh)"
  "$ROOT/scripts/build.sh"
fi
exec node examples/demo.js "$@"
