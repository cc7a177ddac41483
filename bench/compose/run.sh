#!/usr/bin/env bash
# Local transcoding at 3840x2160, 60 fps: frames delivered per second by the
# loopback engine, and one thread's flat-out composition rate, each against
# the 60 asked for.
set -euo pipefail
cd "$(dirname "$0")/../.."
exec "${ORVA_BUILD_DIR:-build-bench}/compose_bench"
