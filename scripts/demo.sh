#!/usr/bin/env bash
# The main job: builds the Sample application and runs its UI tests on the
# embedded desktop, headless. The windows are photographed into
# examples/Sample/Screenshots (or $SAMPLE_SCREENSHOTS_DIR); views whose PNG is
# at least 1000 bytes are stored, compared and reported.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh build
build/bin/Sample uxtest fileSizeThresh=1000
