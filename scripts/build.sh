#!/usr/bin/env bash
# Configures and builds into build/ (or $1 with extra CMake arguments after it):
# everything, or only the targets JTK_BUILD_TARGETS names (space-separated).
# With ccache installed (scripts/setup.sh installs it) compilations are cached:
# a second build of the same sources in the same place is quick. (No base
# folder is set: it would make __FILE__ relative, and the recorder and the
# results name test files by it.)
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${1:-build}
shift || true
launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_C_COMPILER_LAUNCHER=ccache)
fi
cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" "$@" >/dev/null
targets=()
for target in ${JTK_BUILD_TARGETS:-}; do targets+=(--target "$target"); done
cmake --build "$dir" -j "$(nproc)" "${targets[@]}"
