#!/usr/bin/env bash
# Builds the Win32 side with the MinGW-w64 cross compiler: the Win32 backend
# of platform/, and the diagnostics and capture-mode pieces that run on it,
# linked into a small program. A Windows-only fault (a missing header, a wrong
# type, a missing system library) so shows up on this machine.
source "$(dirname "$0")/lib.sh"

CXX_WIN32=x86_64-w64-mingw32-g++
if ! command -v "$CXX_WIN32" >/dev/null 2>&1; then
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq g++-mingw-w64-x86-64 >/dev/null
fi

OUT=$(mktemp -d)
trap 'rm -rf "$OUT"' EXIT

FLAGS=(-std=c++20 -Wall -Wextra -Werror -I "$ROOT" -I "$ROOT/sdk/include")
compile() {
  local object="$OUT/$(echo "${1%.cpp}" | tr / _).o"
  "$CXX_WIN32" "${FLAGS[@]}" -c "$1" -o "$object" || return 1
  echo "$object"
}

objects=()
for source in platform/win32/*.cpp diagnostics/*.cpp facade/capture_modes.cpp; do
  object=$(compile "$source")
  # The engine calls need the engine library, which does not exist for
  # Windows here: they are compiled, not linked.
  [ "$source" = diagnostics/engine_calls.cpp ] || objects+=("$object")
done

# The program calls every platform function and the pieces above that use
# them, so the link fails when a function or a system library is missing.
cat >"$OUT/main.cpp" <<'CPP'
#include <iostream>

#include "diagnostics/adapter_lookup.h"
#include "diagnostics/log_setup.h"
#include "diagnostics/settings_file.h"
#include "facade/capture_modes.h"
#include "platform/platform.h"

int main() {
  using namespace orva;
  const auto modes = facade::screenCaptureModes(platform::osVersion());
  const bool shared = diagnostics::isSupportShareTexture("luid_0_0");
  diagnostics::loadSettingsFileBeside(platform::moduleFilePath(), platform::pathSeparator(),
                                      [](const std::string&, const std::string&) {});
  const diagnostics::Console console{std::cout, std::cerr};
  const auto name = diagnostics::prepareLogDirectory(
      "C:\\orva-check", [](const char*, int value) { return value; }, std::chrono::system_clock::now(), console);
  void* reserved = platform::reserveAddressSpace(1 << 20);
  const bool committed = reserved != nullptr && platform::commitMemory(reserved, 1 << 16);
  return static_cast<int>(modes.size() + shared + name.has_value() + platform::isWindow(0) + committed) & 1;
}
CPP
main_object=$(compile "$OUT/main.cpp")
"$CXX_WIN32" -static -o "$OUT/check.exe" "$main_object" "${objects[@]}" -ldxgi -lshlwapi -lshell32 -lntdll
echo "win32: ${#objects[@]} files compiled and linked into check.exe, engine calls compiled"

# The rest of the addon, which needs the Node.js headers: compiled, not linked.
"$ROOT/scripts/check-win32-syntax.sh"
