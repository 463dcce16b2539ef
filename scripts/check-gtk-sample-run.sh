#!/usr/bin/env bash
# Runs the GTK sample's UI tests twice on a private X server (Xvfb, GTK's X11
# backend; $GTKSAMPLE_DISPLAY names a server to use instead), against a
# throw-away home with user data and settings of its own and a copy of the
# GTK sample's screenshot tree (GTKSAMPLE_SCREENSHOTS_DIR; the source tree is
# never written). Each run must end with status 0, run the launch test
# first, end with the restore line and leave the user's data and settings
# byte-identical with no "_Temp" folder behind, although the tests write
# notes into the data folder and load test settings. The first run must
# photograph the windows; the second, of the unchanged application, must
# match every image: no file written, no temp folder.
# Without Xvfb (and no display named) the check is skipped (exit 77).
set -euo pipefail
app=${1:?usage: check-gtk-sample-run.sh path/to/GtkSample}
threshold=${GTKSAMPLE_FILE_SIZE_THRESHOLD:-1000}
sources=$(cd "$(dirname "$0")/.." && pwd)/examples/GtkSample
display=${GTKSAMPLE_DISPLAY:-}
if [ -z "$display" ] && ! command -v Xvfb >/dev/null; then
  echo "SKIP: Xvfb is not installed (scripts/setup.sh installs it)"
  exit 77
fi

home=$(mktemp -d)
xvfb=
cleanup() {
  if [ -n "$xvfb" ]; then kill "$xvfb" 2>/dev/null && wait "$xvfb" 2>/dev/null; fi
  rm -rf "$home"
}
trap cleanup EXIT
fail() { echo "FAIL: $*"; exit 1; }

# A display number of the server's own choosing, so that parallel runs never meet.
if [ -z "$display" ]; then
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp -noreset 3>"$home/display" 2>/dev/null &
  xvfb=$!
  for _ in $(seq 100); do [ -s "$home/display" ] && break; sleep 0.1; done
  [ -s "$home/display" ] || fail "Xvfb did not start"
  display=":$(cat "$home/display")"
fi

export HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache"
export XDG_RUNTIME_DIR="$home/runtime" DISPLAY="$display" GDK_BACKEND=x11
# No OpenGL (as under the GTK loader): pictures come from a cairo renderer, and
# Mesa's software GL only costs time (and hides its threads from the race detector).
export GDK_DEBUG="${GDK_DEBUG:-gl-disable}" GSK_RENDERER="${GSK_RENDERER:-cairo}"
# No accessibility bus nor settings daemon to reach on a bare X server.
export GTK_A11Y=none NO_AT_BRIDGE=1 GSETTINGS_BACKEND=memory
export GTKSAMPLE_SCREENSHOTS_DIR="$home/Screenshots"
# The program's data folder is GLib's user data folder and its name; its
# settings are the defaults file the backend keeps under the configuration folder.
data="$XDG_DATA_HOME/GtkSample"
mkdir -p "$data/Documents" "$XDG_CONFIG_HOME/GtkSample" "$GTKSAMPLE_SCREENSHOTS_DIR" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
[ ! -d "$sources/Screenshots" ] || cp -a "$sources/Screenshots/." "$GTKSAMPLE_SCREENSHOTS_DIR/"
echo "the user's own greeting" > "$data/greeting.txt"
echo "a note of the user" > "$data/Documents/mine.txt"
cat > "$XDG_CONFIG_HOME/GtkSample/defaults.plist" <<'EOF'
<?xml version="1.0" encoding="UTF-8"?>
<plist version="1.0">
<dict>
	<key>userName</key>
	<string>the user</string>
</dict>
</plist>
EOF

tree() { (cd "$1" && find . -exec stat -c '%n %s %Y' {} + | sort && find . -type f -exec sha256sum {} + | sort); }
files() { (cd "$1" && find . -type f -exec sha256sum {} + | sort); }

# One run with every check of its console lines and of the user's data and
# settings; the lines end up in $output.
run() {
  local data_before settings_before status=0
  data_before=$(files "$XDG_DATA_HOME")
  settings_before=$(files "$XDG_CONFIG_HOME")
  output=$("$app" uxtest "fileSizeThresh=$threshold") || status=$?
  echo "$output"
  [ "$status" -eq 0 ] || fail "exit status $status"
  [ "$data_before" = "$(files "$XDG_DATA_HOME")" ] || fail "the user's data changed"
  [ "$settings_before" = "$(files "$XDG_CONFIG_HOME")" ] || fail "the user's settings changed"
  [ ! -e "$data"_Temp ] || fail "GtkSample_Temp left behind"
  [ "$(grep -c '^JTK: Running test ' <<<"$output")" -ge 8 ] || fail "too few tests ran"
  [ "$(grep '^JTK: Running test ' <<<"$output" | head -1)" = "JTK: Running test testLaunchShowsTestData" ] ||
    fail "wrong first test"
  [ "$(tail -1 <<<"$output")" = "Restoring Application Support Data" ] || fail "no restore line last"
  grep -q '^JTK: Screenshots: ' <<<"$output" || fail "no screenshot summary"
}

run
stored=$(find "$GTKSAMPLE_SCREENSHOTS_DIR" -name '*.png' -not -path '*/temp/*' | wc -l)
[ "$stored" -gt 0 ] || fail "the first run stored no screenshot"
first=$(tree "$GTKSAMPLE_SCREENSHOTS_DIR")

sleep 1  # a rewritten file would show a new modification time
run
grep -q '^JTK: Screenshots: 0 stored as new, [1-9][0-9]* matched, 0 differed, [0-9]* under the size threshold; look in ' <<<"$output" ||
  fail "the second run did not match every image"
[ -z "$(find "$GTKSAMPLE_SCREENSHOTS_DIR" -name temp)" ] || fail "the second run made a temp folder"
[ "$first" = "$(tree "$GTKSAMPLE_SCREENSHOTS_DIR")" ] || fail "the second run changed the screenshot tree"
echo "GTK sample run: OK ($stored screenshots stored, matched on the second run)"
