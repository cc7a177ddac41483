#!/usr/bin/env bash
# Compiles every source of the addon itself for Windows, syntax only: the
# binding runtime with the wrappers generated from orva.api, the bridge with
# its event table generated from events.desc, the facade and the
# diagnostics, with _WIN32 and the Windows side of the Node.js and libuv
# headers in force. The MinGW-w64 compiler of the posix thread
# model stands in for MSVC (std::thread and std::mutex need it); the headers
# are Node.js 20's from the npm registry, which unlike the system's carry
# uv/win.h. Linking needs MSVC and node.lib, which this machine does not have.
source "$(dirname "$0")/lib.sh"

CXX_WIN32=x86_64-w64-mingw32-g++-posix
if ! command -v "$CXX_WIN32" >/dev/null 2>&1; then
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq g++-mingw-w64-x86-64-posix >/dev/null
fi

NODE_INCLUDE=$(node -p "require('./scripts/lib/node-dist').nodeDist(20, 'build-compat/cache').include")

OUT=$(mktemp -d)
trap 'rm -rf "$OUT"' EXIT
PYTHONPATH="$ROOT/tools" python3 -m bindgen sdk/win/orva.api "$OUT/generated"
PYTHONPATH="$ROOT/tools" python3 -m bindgen.events bridge/events.desc --header "$OUT/generated/events_autogen.h"

# The include folders and definitions of the CMake targets these belong to.
sources=(sdk/win/*.cpp "$OUT"/generated/*.cpp bridge/*.cpp facade/*.cpp diagnostics/*.cpp)
printf '%s\n' "${sources[@]}" | xargs -P "$JOBS" -I{} \
  "$CXX_WIN32" -std=c++20 -fsyntax-only -Wall -Wextra -Werror \
  -I "$ROOT" -I "$ROOT/sdk/include" -I "$ROOT/sdk/win" -I "$OUT/generated" -isystem "$NODE_INCLUDE" \
  -DNODE_GYP_MODULE_NAME=orva_swig -DBUILDING_NODE_EXTENSION {}
echo "win32: ${#sources[@]} sources of the addon compile for Windows (syntax only, Node.js 20 headers)"
