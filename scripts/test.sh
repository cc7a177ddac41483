#!/usr/bin/env bash
# Builds everything and runs every test suite. Works on a fresh clone.
source "$(dirname "$0")/lib.sh"
npm_deps
"$ROOT/scripts/build.sh"

# Each GoogleTest program runs whole, its cases shuffled (test/native), beside
# the generator's tests.
echo "== native and generator tests"
ctest --test-dir build --output-on-failure --parallel "$JOBS"

echo "== script tests"
ORVA_BUILD_DIR=build node --test --test-concurrency="$JOBS" test/js/

echo "== TypeScript declarations"
npx --no-install tsc -p test/ts

echo "== event queue under ThreadSanitizer"
configure build-tsan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1" -DORVA_SANITIZE=thread
cmake --build build-tsan --parallel "$JOBS" --target bridge_queue_tests
TSAN_OPTIONS=halt_on_error=1 build-tsan/bridge_queue_tests --gtest_shuffle

echo "== Win32 backend with the MinGW-w64 cross compiler"
"$ROOT/scripts/check-win32.sh"

"$ROOT/scripts/test-browser.sh"

echo "== formatting and clang-tidy"
"$ROOT/scripts/check-style.sh" build
