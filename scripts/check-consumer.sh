#!/usr/bin/env bash
# Uses JTK as a project outside its tree does. Installs JTK into a temporary
# prefix (tests, examples and benchmarks off, so neither GoogleTest nor
# benchmark may be needed), then builds examples/Consumer three ways and runs
# its UI test each time against a throw-away user data folder:
#   1. find_package(JTK) from the installed prefix,
#   2. add_subdirectory of this source tree,
#   3. g++ with `pkg-config --cflags --libs jtk` from the installed prefix.
# Every temporary folder goes when the script ends.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
consumer=$root/examples/Consumer
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
buildType=RelWithDebInfo

# Runs a command with its output in a log that is shown only when it fails.
quietly() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log"; echo "FAIL: $*"; return 1; }
}

# Runs a Consumer executable's UI test and checks its status, its lines and
# that the user's data comes back byte-identical.
checkRun() {
  local app=$1 how=$2 home
  home=$(mktemp -d -p "$work")
  export XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config"
  mkdir -p "$XDG_DATA_HOME/Consumer"
  echo "the user's own name" > "$XDG_DATA_HOME/Consumer/name.txt"
  echo "Hello, the user's own name" > "$XDG_DATA_HOME/Consumer/greetings.txt"
  local before after output status=0
  before=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
  output=$(timeout 120 "$app" uxtest 2>&1) || status=$?
  after=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
  local fail=""
  [ "$status" -eq 0 ] || fail="exit status $status"
  [ -n "$fail" ] || [ "$before" = "$after" ] || fail="the user's data changed"
  [ -n "$fail" ] || [ ! -e "$XDG_DATA_HOME/Consumer_Temp" ] || fail="Consumer_Temp left behind"
  [ -n "$fail" ] || grep -qx 'JTK: Running test testGreetsTheTestUser' <<<"$output" || fail="the test did not run"
  [ -n "$fail" ] || [ "$(tail -1 <<<"$output")" = "Restoring Application Support Data" ] || fail="no restore line last"
  if [ -n "$fail" ]; then
    echo "$output"
    echo "FAIL: Consumer through $how: $fail"
    return 1
  fi
  echo "Consumer through $how: OK"
}

echo "== JTK installed into a temporary prefix"
quietly cmake -S "$root" -B "$work/jtk" --no-warn-unused-cli -DCMAKE_BUILD_TYPE=$buildType \
  -DCMAKE_INSTALL_PREFIX="$work/prefix" -DJTK_BUILD_TESTS=OFF -DJTK_BUILD_EXAMPLES=OFF -DJTK_BENCHMARKS=OFF \
  -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON
quietly cmake --build "$work/jtk" -j2
quietly cmake --install "$work/jtk"
# Only the public headers are installed; the internals stay in the tree.
if [ -n "$(find "$work/prefix" -path '*/src/*' -o -name 'JTKLookup.h' -o -name 'JTKConsole.h')" ]; then
  echo "FAIL: internal headers installed"; exit 1
fi
rm -rf "$work/jtk"  # keep the disk use of the next build down

echo "== Consumer through find_package"
quietly cmake -S "$consumer" -B "$work/find-package" -DCMAKE_BUILD_TYPE=$buildType -DCMAKE_PREFIX_PATH="$work/prefix"
quietly cmake --build "$work/find-package" -j2
checkRun "$work/find-package/Consumer" find_package

echo "== Consumer through pkg-config"
mkdir -p "$work/pkg-config"
flags=$(PKG_CONFIG_PATH="$work/prefix/lib/pkgconfig" pkg-config --cflags --libs jtk)
# shellcheck disable=SC2086  # the flags are words on purpose
quietly g++ -std=c++20 -Wall -Wextra -DCONSUMER_SOURCE_DIR="\"$consumer\"" \
  -DCONSUMER_SCREENSHOTS_DIR="\"$work/pkg-config/Screenshots\"" \
  "$consumer/main.cpp" "$consumer/ConsumerTests.cpp" $flags -o "$work/pkg-config/Consumer"
checkRun "$work/pkg-config/Consumer" pkg-config

echo "== Consumer through add_subdirectory"
quietly cmake -S "$consumer" -B "$work/add-subdirectory" -DCMAKE_BUILD_TYPE=$buildType -DJTK_SOURCE_DIR="$root"
quietly cmake --build "$work/add-subdirectory" -j2
checkRun "$work/add-subdirectory/Consumer" add_subdirectory

echo "Consumer checks: OK"
