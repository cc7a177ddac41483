#!/usr/bin/env bash
# Builds the addon, the engine library and the tests into build/, then the
# package's generated entries (lib/index.d.ts, lib/index.mjs,
# lib/event-fields.js) from it. A warning fails the build.
source "$(dirname "$0")/lib.sh"
configure build -DCMAKE_BUILD_TYPE=Release -DCMAKE_COMPILE_WARNING_AS_ERROR=ON
cmake --build build --parallel "$JOBS"
node scripts/package-entries.js build
