#!/usr/bin/env bash
# Serves the demo session to a page on 127.0.0.1 (examples/web; the argument
# is how many seconds it runs), building the addon and the engine first on a
# fresh clone.
source "$(dirname "$0")/lib.sh"
npm_deps
use_demo_build
exec node examples/web/server.js "$@"
