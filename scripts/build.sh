#!/usr/bin/env bash
# Builds the addon, the engine library and the tests into build/.
source "$(dirname "$0")/lib.sh"
configure build -DCMAKE_BUILD_TYPE=Release
cmake --build build --parallel "$JOBS"
