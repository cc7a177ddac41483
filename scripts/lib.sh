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
