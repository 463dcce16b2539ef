#!/usr/bin/env bash
# Times jtk-diff against two peer tools, odiff and pixelmatch, on the same
# files in one run: the difference picture of two 3840x2160 screens that
# differ in 1 % of their pixels (decode both, compare, encode), two 4K files
# with the same pixels in other bytes (decode both, compare; a picture path is
# given but nothing is to be drawn), and two byte-identical 4K files. Rounds alternate between the tools so that all see
# the same machine load; medians and ratios are printed.
#
# The peers come from npm into a folder outside the repository
# ($JTK_BENCH_PEERS, by default ~/.cache/jtk-bench-peers); they are for this
# comparison only. odiff is run as its native binary, without the node
# wrapper; pixelmatch runs in node with pngjs, so its time includes node's
# start-up (reported apart).
#
# Usage: bench/compare-peers.sh [BUILD_DIR] [ROUNDS]   (default build, 7)
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
rounds=${2:-7}
bin=$build/bin
peers=${JTK_BENCH_PEERS:-$HOME/.cache/jtk-bench-peers}
for program in jtk-diff makeBenchImages; do
  [ -x "$bin/$program" ] || { echo "compare-peers: build $bin/$program first (cmake --build $build --target $program)" >&2; exit 2; }
done

mkdir -p "$peers"
if [ ! -d "$peers/node_modules/pixelmatch" ] || [ ! -d "$peers/node_modules/odiff-bin" ]; then
  echo "installing odiff-bin, pixelmatch and pngjs into $peers"
  [ -f "$peers/package.json" ] || echo '{"private": true}' > "$peers/package.json"
  (cd "$peers" && npm install --no-audit --no-fund --silent odiff-bin pixelmatch pngjs) ||
    echo "compare-peers: npm could not install the peers; timing jtk-diff alone" >&2
fi
odiff=$(ls "$peers"/node_modules/@odiff/*/odiff 2>/dev/null | head -1 || true)
[ -n "$odiff" ] && ! "$odiff" --version >/dev/null 2>&1 && odiff=""
pixelmatch=""
if [ -d "$peers/node_modules/pixelmatch" ] && command -v node >/dev/null; then
  pixelmatch=$peers/pixelmatch-diff.mjs
  cat > "$pixelmatch" <<'JS'
import fs from 'node:fs';
import { PNG } from 'pngjs';
import pixelmatch from 'pixelmatch';
const [acceptedPath, newPath, outPath] = process.argv.slice(2);
const accepted = PNG.sync.read(fs.readFileSync(acceptedPath));
const changed = PNG.sync.read(fs.readFileSync(newPath));
const { width, height } = accepted;
const picture = new PNG({ width, height });
const differing = pixelmatch(accepted.data, changed.data, picture.data, width, height, { threshold: 0 });
if (outPath) fs.writeFileSync(outPath, PNG.sync.write(picture));
console.log(differing);
JS
fi

load=$(cut -d' ' -f1-3 /proc/loadavg)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
"$bin/makeBenchImages" "$work" >/dev/null
a=$work/accepted.png n=$work/new.png c=$work/copy.png r=$work/reencoded.png

# Runs one command (output discarded, any exit status accepted) and records
# under its name the wall time and the processor time (user + system, all
# threads) in milliseconds. On a machine shared with other work the
# processor time is the steadier figure; the wall time is what a person waits.
declare -A times
measure() {
  local name=$1; shift
  local TIMEFORMAT='%3U %3S' start end
  start=$EPOCHREALTIME
  { time "$@" >/dev/null 2>&1; } 2>"$work/cpu" || true
  end=$EPOCHREALTIME
  times[$name]="${times[$name]:-} $(( ${end/./} - ${start/./} ))"
  times[$name.cpu]="${times[$name.cpu]:-} $(awk '{ printf "%d", ($1 + $2) * 1000000 }' "$work/cpu")"
}
median() { tr ' ' '\n' | grep -v '^$' | sort -g | awk '{ v[NR] = $1 } END { printf "%.2f", v[int((NR + 1) / 2)] / 1000 }'; }

for ((round = 0; round < rounds; round++)); do
  measure jtk "$bin/jtk-diff" "$a" "$n" "$work/jtk.png"
  [ -n "$odiff" ] && measure odiff "$odiff" "$a" "$n" "$work/odiff.png" --threshold 0
  [ -n "$pixelmatch" ] && measure pixelmatch node "$pixelmatch" "$a" "$n" "$work/pixelmatch.png"
  [ -n "$pixelmatch" ] && measure node node -e 0
  measure jtkPixels "$bin/jtk-diff" "$a" "$r" "$work/jtk-pixels.png"
  [ -n "$odiff" ] && measure odiffPixels "$odiff" "$a" "$r" "$work/odiff-pixels.png" --threshold 0
  measure jtkSame "$bin/jtk-diff" "$a" "$c"
  [ -n "$odiff" ] && measure odiffSame "$odiff" "$a" "$c" --threshold 0
  measure true /bin/true
done

m() { echo "${times[$1]:-}" | median; }
ratio() { awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0) printf "%.1fx", a / b; else print "-" }'; }
share() { awk -v a="$1" -v b="$2" 'BEGIN { if (b > 0) printf "%.2f", a / b; else print "-" }'; }
echo "load average before: $load; $(nproc) processors"
echo "3840x2160, 1 % of pixels differ, difference picture written (median of $rounds, ms):"
echo "                   wall       cpu"
printf "  jtk-diff     %8s  %8s\n" "$(m jtk)" "$(m jtk.cpu)"
if [ -n "$odiff" ]; then
  printf "  odiff        %8s  %8s   jtk-diff takes %s of odiff's wall time (goal: at most 0.5), %s of its cpu\n" \
    "$(m odiff)" "$(m odiff.cpu)" "$(share "$(m jtk)" "$(m odiff)")" "$(share "$(m jtk.cpu)" "$(m odiff.cpu)")"
else
  echo "  odiff        not available (npm package or its binary missing)"
fi
if [ -n "$pixelmatch" ]; then
  printf "  pixelmatch   %8s  %8s   (node start-up alone %s); jtk-diff %s faster\n" "$(m pixelmatch)" \
    "$(m pixelmatch.cpu)" "$(m node)" "$(ratio "$(m pixelmatch)" "$(m jtk)")"
fi
echo "the same pixels in other bytes, a picture path given (ms):"
printf "  jtk-diff     %8s  %8s\n" "$(m jtkPixels)" "$(m jtkPixels.cpu)"
[ -n "$odiff" ] && printf "  odiff        %8s  %8s   jtk-diff takes %s of odiff's wall time, %s of its cpu\n" \
  "$(m odiffPixels)" "$(m odiffPixels.cpu)" "$(share "$(m jtkPixels)" "$(m odiffPixels)")" \
  "$(share "$(m jtkPixels.cpu)" "$(m odiffPixels.cpu)")"
[ -e "$work/jtk-pixels.png" ] && echo "compare-peers: jtk-diff wrote a picture of equal pixels" >&2 && exit 1
echo "byte-identical 4K files (ms; goal: at most 3):"
printf "  jtk-diff     %8s  %8s   (starting /bin/true alone: %s wall)\n" "$(m jtkSame)" "$(m jtkSame.cpu)" "$(m true)"
[ -n "$odiff" ] && printf "  odiff        %8s  %8s\n" "$(m odiffSame)" "$(m odiffSame.cpu)"
"$bin/jtk-diff" "$a" "$n" >/dev/null && echo "compare-peers: jtk-diff found no difference" >&2 && exit 1
exit 0
