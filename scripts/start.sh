#!/usr/bin/env bash
# Runs the demo in examples/ (arguments go to it), building the addon and the
# engine first on a fresh clone.
source "$(dirname "$0")/lib.sh"
use_demo_build
exec node examples/demo.js "$@"
