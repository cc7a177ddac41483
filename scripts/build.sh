#!/usr/bin/env bash
# Builds the addon, the engine library and the tests into build/, then the
# package's generated entries (lib/index.d.ts, lib/index.mjs) from it.
source "$(dirname "$0")/lib.sh"
configure build -DCMAKE_BUILD_TYPE=Release
cmake --build build --parallel "$JOBS"
node scripts/package-entries.js build
