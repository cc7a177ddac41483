#!/usr/bin/env bash
# The same suites built with AddressSanitizer and UndefinedBehaviorSanitizer.
# Node itself is not instrumented: the sanitizer runtime is preloaded into it
# and leak detection is off (Node keeps its heap until exit on purpose).
source "$(dirname "$0")/lib.sh"
npm_deps
# Light optimisation and line tables only: the sanitizer build is the slow
# half of CI, and reports still name files and lines.
configure build-asan -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g1" \
  -DORVA_SANITIZE=address,undefined
cmake --build build-asan --parallel "$JOBS"
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
# Each GoogleTest program runs whole and shuffled, as in scripts/test.sh.
ASAN_OPTIONS=detect_leaks=1 ctest --test-dir build-asan --output-on-failure --parallel "$JOBS"
LD_PRELOAD=$(gcc -print-file-name=libasan.so):$(gcc -print-file-name=libubsan.so) \
  ASAN_OPTIONS=detect_leaks=0:abort_on_error=1 \
  ORVA_BUILD_DIR=build-asan node --test --test-concurrency="$JOBS" test/js/
