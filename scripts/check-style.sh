#!/usr/bin/env bash
# The house rules, checked: every C++ file as .clang-format lays it out, and
# the hand-written sources of the addon and the loopback engine free of
# .clang-tidy findings. Generated code is neither: it is the generator's to
# lay out. Needs a configured build folder for clang-tidy's compile commands.
#
#   scripts/check-style.sh [build folder]      (default: build)
source "$(dirname "$0")/lib.sh"
BUILD=${1:-build}

# The generator's golden files are its output, kept as text.
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h' | sort -u |
  grep -v '^test/bindgen/golden/')
misformatted=()
for file in "${sources[@]}"; do
  [ -f "$file" ] || continue  # deleted in the working tree
  clang-format --dry-run --Werror "$file" >/dev/null 2>&1 || misformatted+=("$file")
done
if [ ${#misformatted[@]} -gt 0 ]; then
  echo "style: ${#misformatted[@]} file(s) differ from .clang-format (fix with: clang-format -i <file>):" >&2
  printf '  %s\n' "${misformatted[@]}" >&2
  exit 1
fi
echo "style: ${#sources[@]} files formatted as .clang-format says"

# Translation units of the addon and the engine; headers are checked through
# them (.clang-tidy's HeaderFilterRegex).
# The Win32 backend is checked by its own cross build (check-win32.sh).
mapfile -t units < <(git ls-files --cached --others --exclude-standard 'sdk/sim/*.cpp' 'sdk/win/*.cpp' 'bridge/*.cpp' \
  'facade/*.cpp' 'diagnostics/*.cpp' 'platform/posix/*.cpp' 'sdk/sim/control_addon/*.cpp' | sort -u |
  while read -r unit; do [ -f "$unit" ] && echo "$unit"; done)
findings=$(printf '%s\n' "${units[@]}" | xargs -P "$JOBS" -n 4 clang-tidy -p "$BUILD" --quiet 2>/dev/null |
  grep -E '^[^ ].*:[0-9]+:[0-9]+: (warning|error):' | sort -u || true)
if [ -n "$findings" ]; then
  echo "style: clang-tidy findings:" >&2
  echo "$findings" >&2
  exit 1
fi
echo "style: ${#units[@]} translation units free of clang-tidy findings"
