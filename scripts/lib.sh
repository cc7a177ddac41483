# Shared by the build and test scripts: where things are and how to configure.
set -euo pipefail
ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$ROOT"
JOBS=${JOBS:-$(nproc)}

generator_args() {
  if command -v ninja >/dev/null 2>&1; then echo "-G Ninja"; fi
}

# configure <build dir> [cmake args...]
configure() {
  local dir=$1; shift
  # shellcheck disable=SC2046
  cmake -S "$ROOT" -B "$dir" $(generator_args) "$@" >/dev/null
}

# Installs the npm development dependencies when they are missing or stale.
# Without the package's own install script: each script here builds what it
# needs, in its own folder.
npm_deps() {
  if [ ! -f node_modules/.package-lock.json ] || [ package-lock.json -nt node_modules/.package-lock.json ]; then
    npm ci --ignore-scripts --no-audit --no-fund --loglevel=error
  fi
}

# Points ORVA_BUILD_DIR at a build of the addon and the engine for the demos:
# build/ when `npm test` or `npm run build:dev` made one, otherwise
# build/Release, built on first use (scripts/build-addon.js: no tests,
# CMake's progress shown as it goes).
use_demo_build() {
  [ -n "${ORVA_BUILD_DIR:-}" ] && return
  if [ -f build/orvaEngine.node ]; then return; fi
  if [ ! -f build/Release/orvaEngine.node ]; then
    echo "== building the addon and the engine library for the demo (a few minutes the first time)"
    node "$ROOT/scripts/build-addon.js"
  fi
  export ORVA_BUILD_DIR=build/Release
}

# Installs Debian's Chromium for the browser tests when it is missing.
ensure_chromium() {
  command -v chromium >/dev/null 2>&1 && return
  echo "== installing Debian's chromium for the browser tests"
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq chromium >/dev/null
}
