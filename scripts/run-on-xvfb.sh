#!/usr/bin/env bash
# Runs a command on a private X server: starts Xvfb on a display number of
# its own choosing (so that parallel runs never meet), runs the command with
# DISPLAY pointing there and GTK on X11, and stops the server when the
# command ends, with the command's status. GTK 4 has no headless display of
# its own that takes input, so GTK programs and tests run this way; ctest
# runs the GTK tests through it (also to list them).
#   scripts/run-on-xvfb.sh PROGRAM [ARGUMENTS...]
# JTK_XVFB_SCREEN sets the screen (default 1280x1024x24).
set -uo pipefail
[ $# -gt 0 ] || { echo "usage: run-on-xvfb.sh PROGRAM [ARGUMENTS...]" >&2; exit 2; }
if ! command -v Xvfb >/dev/null; then
  # Listing a test program's tests needs no display: a build without Xvfb
  # (where ctest lists the tests after linking) still builds.
  for argument in "$@"; do [ "$argument" = --gtest_list_tests ] && exec "$@"; done
  echo "run-on-xvfb.sh: Xvfb is not installed (scripts/setup.sh installs it)" >&2
  exit 2
fi

work=$(mktemp -d)
xvfb=
cleanup() {
  if [ -n "$xvfb" ]; then kill "$xvfb" 2>/dev/null; wait "$xvfb" 2>/dev/null; fi
  rm -rf "$work"
}
trap cleanup EXIT
trap 'exit 143' TERM INT

# The server never holds the caller's output (ctest waits for every holder
# of its pipe to close).
Xvfb -displayfd 3 -screen 0 "${JTK_XVFB_SCREEN:-1280x1024x24}" -nolisten tcp -nolisten unix-abstract -noreset \
  3>"$work/display" >/dev/null 2>"$work/xvfb.log" </dev/null &
xvfb=$!
for _ in $(seq 200); do [ -s "$work/display" ] && break; kill -0 "$xvfb" 2>/dev/null || break; sleep 0.05; done
if [ ! -s "$work/display" ]; then
  echo "run-on-xvfb.sh: Xvfb did not start:" >&2
  cat "$work/xvfb.log" >&2
  exit 2
fi

mkdir -m 700 "$work/runtime"
# No accessibility bus and no settings daemon to reach: a private runtime
# folder, GTK's accessibility off, GSettings in memory. No OpenGL either (as
# under the GTK loader): Mesa's software GL costs every process time at the
# display's opening, and pictures come from a cairo renderer anyway.
DISPLAY=":$(cat "$work/display")" GDK_BACKEND=x11 XDG_RUNTIME_DIR="$work/runtime" GTK_A11Y=none \
  NO_AT_BRIDGE=1 GSETTINGS_BACKEND=memory GDK_DEBUG="${GDK_DEBUG:-gl-disable}" GSK_RENDERER="${GSK_RENDERER:-cairo}" "$@"
