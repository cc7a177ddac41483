#!/usr/bin/env bash
# Runs the event-bridge benchmarks against the addons of $ORVA_BUILD_DIR
# (default build-bench) and prints their table. Build first: scripts/bench.sh
# does both. A missed target is reported in the table, not by the exit status.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
exec node --expose-gc "$here/bench.js" "${ORVA_BUILD_DIR:-build-bench}"
