#!/usr/bin/env bash
# Runs the Sample's UI tests against a throw-away user data folder and checks
# that the run ends with status 0, prints its lines in order, and leaves the
# user's data byte-identical with no "_Temp" folder behind.
set -euo pipefail
sample=${1:?usage: check-sample-run.sh path/to/Sample}
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config"
mkdir -p "$XDG_DATA_HOME/Sample/Documents"
echo "the user's own greeting" > "$XDG_DATA_HOME/Sample/greeting.txt"
echo "a note of the user" > "$XDG_DATA_HOME/Sample/Documents/mine.txt"
before=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
output=$("$sample" uxtest)
status=$?
echo "$output"
after=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
[ "$status" -eq 0 ] || { echo "FAIL: exit status $status"; exit 1; }
[ "$before" = "$after" ] || { echo "FAIL: the user's data changed"; exit 1; }
[ ! -e "$XDG_DATA_HOME/Sample_Temp" ] || { echo "FAIL: Sample_Temp left behind"; exit 1; }
grep -q '^waiting for idle$' <<<"$output" || { echo "FAIL: no idle wait"; exit 1; }
[ "$(grep -c '^JTK: Running test ' <<<"$output")" -ge 3 ] || { echo "FAIL: too few tests ran"; exit 1; }
[ "$(grep '^JTK: Running test ' <<<"$output" | head -1)" = "JTK: Running test testLaunchShowsTestData" ] ||
  { echo "FAIL: wrong first test"; exit 1; }
[ "$(tail -1 <<<"$output")" = "Restoring Application Support Data" ] || { echo "FAIL: no restore line last"; exit 1; }
echo "Sample run: OK"
