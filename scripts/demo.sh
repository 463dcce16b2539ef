#!/usr/bin/env bash
# The main job: builds the Sample application and runs its UI tests on the
# embedded desktop, headless. The windows are photographed into
# examples/Sample/Screenshots (or $SAMPLE_SCREENSHOTS_DIR); views whose PNG is
# at least 1000 bytes are stored, compared and reported.
# Only what the run needs is built (the Sample, the framework and the
# embedded desktop; no tests, benchmarks or Qt), in a build folder of its own
# so that scripts/test.sh's build/ keeps its options.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
JTK_BUILD_TARGETS=Sample scripts/build.sh build-demo -DJTK_BUILD_TESTS=OFF -DJTK_QT=OFF
build-demo/bin/Sample uxtest fileSizeThresh=1000
