#!/usr/bin/env bash
# Runs a Qt program built without JTK under the loader twice, once on Qt's
# headless platform (offscreen) and once on a private X server (Xvfb, xcb),
# each against a screenshot folder of its own, and checks that both runs
# store the same pictures: the same file names, byte for byte the same
# files. So baselines made headless hold on a display and back.
# Without Xvfb there is no X server to compare with: the check is skipped
# (exit 77, which the ctest reports as skipped).
set -euo pipefail
loader=${1:?usage: check-qt-platforms-agree.sh LOADER PROGRAM TESTS_LIBRARY}
program=${2:?} tests=${3:?}
command -v Xvfb >/dev/null || { echo "SKIP: Xvfb is not installed (scripts/setup.sh installs it)"; exit 77; }

work=$(mktemp -d)
xvfb=
cleanup() {
  [ -n "$xvfb" ] && kill "$xvfb" 2>/dev/null && wait "$xvfb" 2>/dev/null
  rm -rf "$work"
}
trap cleanup EXIT
fail() { echo "FAIL: $*"; exit 1; }

# A display number of the server's own choosing, so that parallel runs never
# meet; the screen of Qt 5's headless platform, 800x600: Qt limits a window's
# first size to two thirds of the screen, so screens of other sizes may give
# windows of other sizes.
Xvfb -displayfd 3 -screen 0 800x600x24 -nolisten tcp -noreset 3>"$work/display" 2>/dev/null &
xvfb=$!
for _ in $(seq 100); do [ -s "$work/display" ] && break; sleep 0.1; done
[ -s "$work/display" ] || fail "Xvfb did not start"
display=":$(cat "$work/display")"

# One run on the platform, in a throw-away home, its pictures in $work/$1.
run() {
  local platform=$1 home="$work/home-$1" status=0 output
  mkdir -p "$home/runtime" "$work/$platform"
  chmod 700 "$home/runtime"
  output=$(env HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" \
    XDG_CACHE_HOME="$home/cache" XDG_RUNTIME_DIR="$home/runtime" JTK_LOADED_SCREENSHOTS_DIR="$work/$platform" \
    QT_QPA_PLATFORM="$platform" DISPLAY="$display" LD_PRELOAD="$loader" \
    "$program" uxtest "--jtk-tests=$tests" fileSizeThresh=1000 2>&1) || status=$?
  [ "$status" -eq 0 ] || { echo "$output"; fail "the $platform run ended with status $status"; }
  grep -q '^JTK: Screenshots: [1-9][0-9]* stored as new' <<<"$output" || { echo "$output"; fail "the $platform run stored no picture"; }
}

run offscreen
run xcb
names() { (cd "$work/$1" && find . -name '*.png' | sort); }
if ! diff <(names offscreen) <(names xcb) >"$work/names.diff"; then
  cat "$work/names.diff"
  fail "the picture names differ between offscreen (<) and xcb (>)"
fi
count=0
while read -r file; do
  cmp -s "$work/offscreen/$file" "$work/xcb/$file" || fail "the picture $file differs between offscreen and xcb"
  count=$((count + 1))
done < <(names offscreen)
echo "$(basename "$program"): offscreen and xcb store the same $count pictures, byte for byte"
