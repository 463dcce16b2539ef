#!/usr/bin/env bash
# Runs the Sample's UI tests twice against a throw-away user data folder and a
# copy of the Sample's screenshot tree (SAMPLE_SCREENSHOTS_DIR; the source tree
# is never written). Each run must end with status 0, print its lines in order
# and leave the user's data byte-identical with no "_Temp" folder behind. The
# first run must photograph the windows; the second, of the unchanged Sample,
# must match every image: no file written, no temp folder.
set -euo pipefail
sample=${1:?usage: check-sample-run.sh path/to/Sample}
threshold=${SAMPLE_FILE_SIZE_THRESHOLD:-1000}
sources=$(cd "$(dirname "$0")/.." && pwd)/examples/Sample
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache"
export SAMPLE_SCREENSHOTS_DIR="$home/Screenshots"
mkdir -p "$XDG_DATA_HOME/Sample/Documents" "$SAMPLE_SCREENSHOTS_DIR"
[ ! -d "$sources/Screenshots" ] || cp -a "$sources/Screenshots/." "$SAMPLE_SCREENSHOTS_DIR/"
echo "the user's own greeting" > "$XDG_DATA_HOME/Sample/greeting.txt"
echo "a note of the user" > "$XDG_DATA_HOME/Sample/Documents/mine.txt"

fail() { echo "FAIL: $*"; exit 1; }
tree() { (cd "$1" && find . -exec stat -c '%n %s %Y' {} + | sort && find . -type f -exec sha256sum {} + | sort); }

# One run with every check of its console lines and of the user's data; the
# lines end up in $output.
run() {
  local before after status=0
  before=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
  output=$("$sample" uxtest "fileSizeThresh=$threshold") || status=$?
  echo "$output"
  after=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
  [ "$status" -eq 0 ] || fail "exit status $status"
  [ "$before" = "$after" ] || fail "the user's data changed"
  [ ! -e "$XDG_DATA_HOME/Sample_Temp" ] || fail "Sample_Temp left behind"
  grep -q '^waiting for idle$' <<<"$output" || fail "no idle wait"
  [ "$(grep -c '^JTK: Running test ' <<<"$output")" -ge 3 ] || fail "too few tests ran"
  [ "$(grep '^JTK: Running test ' <<<"$output" | head -1)" = "JTK: Running test testLaunchShowsTestData" ] ||
    fail "wrong first test"
  [ "$(tail -1 <<<"$output")" = "Restoring Application Support Data" ] || fail "no restore line last"
  grep -q '^JTK: Screenshots: ' <<<"$output" || fail "no screenshot summary"
}

run
stored=$(find "$SAMPLE_SCREENSHOTS_DIR" -name '*.png' -not -path '*/temp/*' | wc -l)
[ "$stored" -gt 0 ] || fail "the first run stored no screenshot"
first=$(tree "$SAMPLE_SCREENSHOTS_DIR")

sleep 1  # a rewritten file would show a new modification time
run
grep -q '^JTK: Screenshots: 0 stored as new, [1-9][0-9]* matched, 0 differed, [0-9]* under the size threshold; look in ' <<<"$output" ||
  fail "the second run did not match every image"
[ -z "$(find "$SAMPLE_SCREENSHOTS_DIR" -name temp)" ] || fail "the second run made a temp folder"
[ "$first" = "$(tree "$SAMPLE_SCREENSHOTS_DIR")" ] || fail "the second run changed the screenshot tree"
echo "Sample run: OK ($stored screenshots stored, matched on the second run)"
