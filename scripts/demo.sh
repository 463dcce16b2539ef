#!/usr/bin/env bash
# The main job: builds the Sample application and runs its UI tests on the
# embedded desktop, headless.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh build
build/bin/Sample uxtest
