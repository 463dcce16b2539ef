#!/usr/bin/env bash
# Configures and builds into build/ (or $1 with extra CMake arguments after it).
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${1:-build}
shift || true
cmake -S . -B "$dir" -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
cmake --build "$dir" -j "$(nproc)"
