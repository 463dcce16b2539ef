#!/usr/bin/env bash
# Runs the replay (the Sample built with its recorded test file) as a UI test
# run against a throw-away data folder and screenshot folder, and compares
# the state it prints at its end with the state the recording left.
set -euo pipefail
replay=${1:?usage: check-round-trip.sh path/to/SampleReplay recorded-state.txt}
expected=${2:?usage: check-round-trip.sh path/to/SampleReplay recorded-state.txt}
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache"
export SAMPLE_SCREENSHOTS_DIR="$home/Screenshots"
mkdir -p "$XDG_DATA_HOME" "$SAMPLE_SCREENSHOTS_DIR"
output=$("$replay" uxtest) || { echo "$output"; echo "FAIL: the replay ended with status $?"; exit 1; }
grep -q '^JTK: Running test testRecording$' <<<"$output" || { echo "$output"; echo "FAIL: the recorded test did not run"; exit 1; }
if ! diff <(cat "$expected") <(grep '^State: ' <<<"$output"); then
  echo "FAIL: the replay ended in another state than the recorded session (< recorded, > replayed)"
  exit 1
fi
echo "Round trip: OK ($(wc -l <"$expected") state lines equal)"
