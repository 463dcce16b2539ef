#!/usr/bin/env bash
# The Sample's UI tests two ways in one invocation: one process running them
# all (the run a person starts, in CI mode), and one ctest a test under
# ctest -j2 (jtk_add_uxtests). Rounds alternate so that both see the same
# machine load; the wall times and their ratio are printed. It also reports
# the runner's overhead per process: the wall time of a run of one quick test
# less that test's own time from the JUnit file (process start to first
# test, and last test to exit).
#
# Usage: bench/uxtest-parallel.sh [BUILD_DIR] [ROUNDS]   (default build, 3)
set -euo pipefail
cd "$(dirname "$0")/.."
build=$(cd "${1:-build}" && pwd)
rounds=${2:-3}
sample=$build/bin/Sample
[ -x "$sample" ] || { echo "uxtest-parallel: build $sample first" >&2; exit 2; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export HOME=$work/home XDG_DATA_HOME=$work/data XDG_CONFIG_HOME=$work/config XDG_CACHE_HOME=$work/cache
export SAMPLE_SCREENSHOTS_DIR=$work/Screenshots
mkdir -p "$HOME" "$XDG_DATA_HOME"

now() { date +%s.%N; }
minus() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.3f", a - b }'; }
median() { sort -g | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}'; }

# A first run stores the screenshots, so that every timed run compares.
"$sample" uxtest fileSizeThresh=1000 --jtk-ci >/dev/null
single=() parallel=()
for ((round = 0; round < rounds; round++)); do
  start=$(now)
  "$sample" uxtest fileSizeThresh=1000 --jtk-ci >/dev/null
  single+=("$(minus "$(now)" "$start")")
  start=$(now)
  (cd "$build" && ctest -j2 -R '^Sample\.' --output-on-failure >/dev/null)
  parallel+=("$(minus "$(now)" "$start")")
done
one=$(printf '%s\n' "${single[@]}" | median)
many=$(printf '%s\n' "${parallel[@]}" | median)
tests=$("$sample" uxtest --jtk-list | grep -c '^test')
printf 'Sample, %d UI tests: one process %.1f s, one ctest a test under ctest -j2 %.1f s (median of %d)\n' \
  "$tests" "$one" "$many" "$rounds"
printf 'ctest -j2 wall time over one process: %.2f\n' "$(awk -v a="$many" -v b="$one" 'BEGIN { print a / b }')"

overheads=()
for ((round = 0; round < rounds; round++)); do
  start=$(now)
  "$sample" uxtest --jtk-ci --jtk-filter=testLaunchShowsTestData --jtk-junit="$work/one.xml" >/dev/null
  total=$(minus "$(now)" "$start")
  own=$(grep -o 'testcase name="testLaunchShowsTestData"[^>]*time="[0-9.]*"' "$work/one.xml" | sed 's/.*time="//;s/"//')
  overheads+=("$(minus "$total" "$own")")
done
printf 'Runner overhead per process (start to first test, last test to exit): %.2f s (median of %d)\n' \
  "$(printf '%s\n' "${overheads[@]}" | median)" "$rounds"
