#!/usr/bin/env bash
# Runs a Qt program built without JTK under the loader, twice, headless, with
# a tests library named on its command line, against a throw-away home whose
# data folder for the program holds a file of the user's. Each run must end
# with status 0 after at least MIN_TESTS tests, with the restore line last
# and the user's data as it was; the first run must store screenshots and
# the second, of the same program, match every one.
set -euo pipefail
loader=${1:?usage: check-loaded-program.sh LOADER PROGRAM TESTS_LIBRARY MIN_TESTS}
program=${2:?} tests=${3:?} min_tests=${4:?}
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache"
export XDG_RUNTIME_DIR="$home/runtime" QT_QPA_PLATFORM=offscreen JTK_LOADED_SCREENSHOTS_DIR="$home/Screenshots"
# Qt's data location of a program without an organisation name.
data="$XDG_DATA_HOME/$(basename "$program")"
mkdir -p "$data" "$JTK_LOADED_SCREENSHOTS_DIR" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
echo "the user's own file" > "$data/mine.txt"

fail() { echo "FAIL: $*"; exit 1; }

run() {
  local before after status=0
  before=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
  output=$(LD_PRELOAD="$loader" "$program" uxtest "--jtk-tests=$tests" fileSizeThresh=1000 2>&1) || status=$?
  echo "$output"
  after=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
  [ "$status" -eq 0 ] || fail "exit status $status"
  [ "$before" = "$after" ] || fail "the user's data changed"
  [ ! -e "$data"_Temp ] || fail "the data folder's _Temp copy was left behind"
  [ "$(grep -c '^JTK: Running test ' <<<"$output")" -ge "$min_tests" ] || fail "fewer than $min_tests tests ran"
  [ "$(tail -1 <<<"$output")" = "Restoring Application Support Data" ] || fail "no restore line last"
}

run
stored=$(find "$JTK_LOADED_SCREENSHOTS_DIR" -name '*.png' -not -path '*/temp/*' | wc -l)
[ "$stored" -gt 0 ] || fail "the first run stored no screenshot"
run
grep -q '^JTK: Screenshots: 0 stored as new, [1-9][0-9]* matched, 0 differed, [0-9]* under the size threshold; look in ' <<<"$output" ||
  fail "the second run did not match every image"

# The runner's options reach a loaded program too, here through the
# environment, so that nothing but "uxtest" is added to its arguments.
listed=$(LD_PRELOAD="$loader" JTK_TESTS_LIBRARY="$tests" JTK_OPTIONS=--jtk-list "$program" uxtest 2>&1)
count=$(grep -c '^test' <<<"$listed" || true)
[ "$count" -ge "$min_tests" ] || fail "--jtk-list listed $count tests: $listed"
status=0
LD_PRELOAD="$loader" JTK_TESTS_LIBRARY="$tests" \
  JTK_OPTIONS="--jtk-ci --jtk-shard-index=0 --jtk-shard-count=2 --jtk-junit=$home/results.xml" \
  "$program" uxtest fileSizeThresh=1000 >/dev/null 2>&1 || status=$?
[ "$status" -eq 0 ] || fail "a CI run of the first of two shards ended with status $status"
grep -q "tests=\"$(( (count + 1) / 2 ))\" failures=\"0\" errors=\"0\" skipped=\"0\"" "$home/results.xml" ||
  fail "the JUnit file does not hold the first shard's tests, passed: $(cat "$home/results.xml")"
echo "$(basename "$program") under the loader: OK ($stored screenshots stored, matched on the second run;" \
  "$count tests listed, the first of two shards passed in CI mode)"
