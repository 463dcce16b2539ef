#!/usr/bin/env bash
# Runs the backend benchmark on the embedded desktop and on Qt, one after the
# other in this one invocation, and prints each figure on Qt as a multiple of
# the desktop's. Usage: bench/compare-backends.sh [BUILD_DIR]
set -euo pipefail
build=${1:-build}
desktop=$build/bin/bench_backend_desktop
qt=$build/bin/bench_backend_qt
for program in "$desktop" "$qt"; do
  [[ -x $program ]] || { echo "compare-backends: $program is not built (cmake --build $build --target $(basename "$program"))" >&2; exit 2; }
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=$work
"$desktop" --benchmark_format=csv > "$work/desktop.csv" 2> "$work/desktop.err"
"$qt" --benchmark_format=csv > "$work/qt.csv" 2> "$work/qt.err"
# name,iterations,real_time,cpu_time,time_unit,…,counters: the real time per
# benchmark, and for the actions the ratio to their designed pauses.
awk -F, '
  FNR == 1 { for (i = 1; i <= NF; ++i) column[FILENAME, $i] = i; next }
  { name = $1; gsub(/"/, "", name); names[name] = 1
    time[FILENAME, name] = $(column[FILENAME, "real_time"])
    r = column[FILENAME, "ratio"]; if (r && $r != "") ratio[FILENAME, name] = $r }
  END {
    printf "%-34s %12s %12s %8s\n", "benchmark", "desktop ms", "qt ms", "qt/desk"
    for (name in names) {
      d = time[ARGV[1], name]; q = time[ARGV[2], name]
      printf "%-34s %12.3f %12.3f %7.2fx", name, d, q, (d > 0 ? q / d : 0)
      if ((ARGV[1], name) in ratio) printf "   (over the pauses: desktop %.3f, qt %.3f)", ratio[ARGV[1], name], ratio[ARGV[2], name]
      printf "\n"
    }
  }' "$work/desktop.csv" "$work/qt.csv" | sort
