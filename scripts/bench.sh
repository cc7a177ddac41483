#!/usr/bin/env bash
# Builds the benchmarks and runs each, printing its figures as ratios against
# a baseline measured in the same run.
source "$(dirname "$0")/lib.sh"
npm_deps
configure build-bench -DCMAKE_BUILD_TYPE=Release -DORVA_BUILD_BENCH=ON -DORVA_BUILD_TESTS=OFF
cmake --build build-bench --parallel "$JOBS"
for runner in bench/*/run.sh; do
  [ -x "$runner" ] || continue
  echo "== ${runner%/run.sh}"
  ORVA_BUILD_DIR=build-bench "$runner" || echo "(${runner%/run.sh} did not run to its end)"
done
