#!/usr/bin/env bash
# Runs the Qt sample's UI tests twice, headless (Qt's offscreen platform),
# against a throw-away home with user data of its own and a copy of the Qt
# sample's screenshot tree (QTSAMPLE_SCREENSHOTS_DIR; the source tree is never
# written). Each run must end with status 0, run the launch test first, end
# with the restore line and leave the user's data byte-identical with no
# "_Temp" folder behind, although the tests write notes into the data folder.
# The first run must photograph the windows; the second, of the unchanged
# application, must match every image: no file written, no temp folder.
set -euo pipefail
app=${1:?usage: check-qt-sample-run.sh path/to/QtSample}
threshold=${QTSAMPLE_FILE_SIZE_THRESHOLD:-1000}
sources=$(cd "$(dirname "$0")/.." && pwd)/examples/QtSample
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache"
export XDG_RUNTIME_DIR="$home/runtime" QT_QPA_PLATFORM=offscreen
export QTSAMPLE_SCREENSHOTS_DIR="$home/Screenshots"
# Qt's data location: the organisation's folder, then the application's.
data="$XDG_DATA_HOME/JTK/QtSample"
mkdir -p "$data/Documents" "$QTSAMPLE_SCREENSHOTS_DIR" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
[ ! -d "$sources/Screenshots" ] || cp -a "$sources/Screenshots/." "$QTSAMPLE_SCREENSHOTS_DIR/"
echo "the user's own greeting" > "$data/greeting.txt"
echo "a note of the user" > "$data/Documents/mine.txt"

fail() { echo "FAIL: $*"; exit 1; }
tree() { (cd "$1" && find . -exec stat -c '%n %s %Y' {} + | sort && find . -type f -exec sha256sum {} + | sort); }

# One run with every check of its console lines and of the user's data; the
# lines end up in $output.
run() {
  local before after status=0
  before=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
  output=$("$app" uxtest "fileSizeThresh=$threshold") || status=$?
  echo "$output"
  after=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
  [ "$status" -eq 0 ] || fail "exit status $status"
  [ "$before" = "$after" ] || fail "the user's data changed"
  [ ! -e "$data"_Temp ] || fail "QtSample_Temp left behind"
  [ "$(grep -c '^JTK: Running test ' <<<"$output")" -ge 8 ] || fail "too few tests ran"
  [ "$(grep '^JTK: Running test ' <<<"$output" | head -1)" = "JTK: Running test testLaunchShowsTestData" ] ||
    fail "wrong first test"
  [ "$(tail -1 <<<"$output")" = "Restoring Application Support Data" ] || fail "no restore line last"
  grep -q '^JTK: Screenshots: ' <<<"$output" || fail "no screenshot summary"
}

run
stored=$(find "$QTSAMPLE_SCREENSHOTS_DIR" -name '*.png' -not -path '*/temp/*' | wc -l)
[ "$stored" -gt 0 ] || fail "the first run stored no screenshot"
first=$(tree "$QTSAMPLE_SCREENSHOTS_DIR")

sleep 1  # a rewritten file would show a new modification time
run
grep -q '^JTK: Screenshots: 0 stored as new, [1-9][0-9]* matched, 0 differed, [0-9]* under the size threshold; look in ' <<<"$output" ||
  fail "the second run did not match every image"
[ -z "$(find "$QTSAMPLE_SCREENSHOTS_DIR" -name temp)" ] || fail "the second run made a temp folder"
[ "$first" = "$(tree "$QTSAMPLE_SCREENSHOTS_DIR")" ] || fail "the second run changed the screenshot tree"
echo "Qt sample run: OK ($stored screenshots stored, matched on the second run)"
