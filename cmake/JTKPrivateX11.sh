#!/bin/sh
# Runs a command on a private X server of its own: Xvfb on a display number
# the server chooses (-displayfd, so that runs side by side never meet),
# 1280x1024 at 24 bits, DISPLAY naming it; the server ends with the command.
# jtk_add_uxtests runs the tests of a GTK program this way.
#
#   JTKPrivateX11.sh COMMAND [ARGUMENT...]    exit status: the command's
#                                             (2 when no server started)
if ! command -v Xvfb >/dev/null 2>&1; then
  echo "JTK: the tests need an X server, and Xvfb is not installed (Debian: xvfb)" >&2
  exit 2
fi
folder=$(mktemp -d) || exit 2
Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$folder/display" >/dev/null 2>&1 </dev/null &
server=$!
tries=0
while [ ! -s "$folder/display" ] && [ "$tries" -lt 200 ] && kill -0 "$server" 2>/dev/null; do
  sleep 0.05
  tries=$((tries + 1))
done
number=$(head -n 1 "$folder/display" 2>/dev/null)
rm -rf "$folder"
if [ -z "$number" ]; then
  kill "$server" 2>/dev/null
  echo "JTK: the private X server (Xvfb) did not start" >&2
  exit 2
fi
# A stop of this script stops the server too.
trap 'kill "$server" 2>/dev/null; wait "$server" 2>/dev/null' EXIT
trap 'exit 143' TERM
trap 'exit 130' INT
DISPLAY=":$number" "$@"
