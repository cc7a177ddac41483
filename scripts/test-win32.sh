#!/usr/bin/env bash
# Builds the platform and diagnostics tests for Windows with the MinGW-w64
# cross compiler and runs every test program under Wine, in a Wine prefix of
# its own inside build-win32/ that reports Windows 10. Installs what it needs
# from Debian's packages when something is missing. Prints "N passed, M
# failed" last, counting the test cases of every program, and fails when a
# case or a program does.
#
# What Wine offers a program depends on the display: under a virtual X server
# one graphics adapter and real top-level windows, without one no adapter and
# message-only windows. The display tests run both ways.
source "$(dirname "$0")/lib.sh"

BUILD=build-win32
RESULTS=$BUILD/results
# Run with a virtual display first, then again without one.
DISPLAY_TESTS=(platform_display_tests)

missing=()
for package in wine wine64 g++-mingw-w64-x86-64 googletest xvfb xauth; do
  [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "== installing ${missing[*]}"
  apt-get update -qq
  DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

echo "== building the tests for Windows into $BUILD/"
configure "$BUILD" -DCMAKE_TOOLCHAIN_FILE="$ROOT/cmake/mingw-w64.cmake" -DCMAKE_COMPILE_WARNING_AS_ERROR=ON --no-warn-unused-cli
cmake --build "$BUILD" --parallel "$JOBS"

# Wine, quiet, in a prefix of this build's own. Neither Mono nor Gecko is
# needed, and their installers would wait for an answer.
export WINEPREFIX=$ROOT/$BUILD/wine-prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY
mkdir -p "$WINEPREFIX"
rm -rf "$RESULTS"
mkdir -p "$RESULTS"
# One server for every program: each start takes seconds. A server left by an
# interrupted run of this prefix goes first.
wineserver -k >/dev/null 2>&1 || true
wineserver -w
wineserver -p
trap 'wineserver -k' EXIT

# Wine's desktop takes the display of the first program that needs one, and
# after a program without a display none is had again while the server runs:
# so the prefix is made, and the display tests run, under the virtual display
# before anything runs without it.
if ! grep -qs '"Version"="win10"' "$WINEPREFIX/user.reg"; then
  echo "== making the Wine prefix (Windows 10)"
  xvfb-run -a wine reg add 'HKCU\Software\Wine' /v Version /t REG_SZ /d win10 /f </dev/null >"$RESULTS/prefix.txt" 2>&1 ||
    { cat "$RESULTS/prefix.txt"; exit 1; }
fi

# cases <log> PASSED|FAILED|SKIPPED: how many cases the summary of a test
# program's output counts so, 0 when it names none.
cases() { sed -n "s/^\[  $2 *\] \([0-9][0-9]*\) tests\?[.,].*/\1/p" "$1" | head -n 1 | grep . || echo 0; }

passed=0 failed=0 skipped=0
# run <label> <program> [command before wine...]: runs one test program, its
# cases shuffled, and adds up its cases. Wine's programs may fail to write to a
# pipe, so the output goes to a file and is read back.
run() {
  local label=$1 program=$2
  shift 2
  local log="$RESULTS/$label.txt" status=0
  "$@" wine "$BUILD/$program.exe" --gtest_shuffle </dev/null >"$log" 2>&1 || status=$?
  # Windows ends its lines with CR LF.
  sed -i 's/\r$//' "$log"
  local p f s
  p=$(cases "$log" PASSED) f=$(cases "$log" FAILED) s=$(cases "$log" SKIPPED)
  if [ "$f" -eq 0 ] && { [ "$status" -ne 0 ] || [ $((p + s)) -eq 0 ]; }; then
    # It failed without saying which cases did, or ran none: it counts as one.
    f=1
  fi
  if [ "$f" -gt 0 ]; then
    cat "$log"
    echo "$label: exit status $status"
  fi
  echo "$label: $p passed, $f failed, $s skipped"
  grep -E '^\[  SKIPPED \] [A-Za-z0-9_]+\.[A-Za-z0-9_]+$' "$log" | sed 's/^/  /' || true
  passed=$((passed + p)) failed=$((failed + f)) skipped=$((skipped + s))
}

echo "== under Wine, with a virtual display"
for program in "${DISPLAY_TESTS[@]}"; do
  run "$program-display" "$program" xvfb-run -a
done
echo "== under Wine, without a display"
for exe in "$BUILD"/*_tests.exe; do
  program=$(basename "$exe" .exe)
  run "$program" "$program"
done

if [ "$skipped" -gt 0 ]; then
  echo "$passed passed, $failed failed, $skipped skipped"
else
  echo "$passed passed, $failed failed"
fi
[ "$failed" -eq 0 ]
