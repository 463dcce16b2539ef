#!/usr/bin/env bash
# The whole test suite: a normal build, JTK as an installed and as an embedded
# package (scripts/check-consumer.sh), then the same tests under
# AddressSanitizer with UndefinedBehaviorSanitizer, and under ThreadSanitizer.
# JTK_QUICK=1 leaves out the sanitizer builds.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
run() {
  local dir=$1; shift
  echo "== $dir"
  scripts/build.sh "$dir" "$@"
  (cd "$dir" && ctest --output-on-failure -j 2 --timeout 600)
}
run build -DJTK_BENCHMARKS=ON -DJTK_LOADERS=ON
echo "== package"
scripts/check-consumer.sh
if [ "${JTK_QUICK:-0}" != 1 ]; then
  export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
  export LSAN_OPTIONS=suppressions=$PWD/tests/sanitizers/lsan.supp
  export TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:suppressions=$PWD/tests/sanitizers/tsan.supp
  run build-asan -DJTK_SANITIZE=address
  run build-tsan -DJTK_SANITIZE=thread
fi
