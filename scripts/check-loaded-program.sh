#!/usr/bin/env bash
# Runs a program built without JTK under the loader, twice, against a
# throw-away home that holds data and settings of the user's: the data in
# the program's data folder, the settings where its toolkit keeps them. A Qt
# program (headless) keeps them in FOLDER.conf and Qt's own QtProject.conf
# in the configuration folder; a GTK program (on a private X server, with a
# private session bus so that GSettings could reach dconf) in the user's
# dconf database and GLib's key file, and GTK's settings.ini beside them,
# with GTK's list of recently used files in the data folder. FOLDER is the
# program's folder name ("Org/App"; default: the program's file name). The
# first run names the tests library on the command line, the second through
# the environment alone; either way the program sees none of it in its
# arguments. Each run must end with status 0 after at least MIN_TESTS
# tests, with the restore line last, the user's data and settings as they
# were and no run settings folder left; the first run must store
# screenshots and the second match every one. Another launch must leave the
# settings folder of a run under way alone; killed outright, that run must
# leave the user's settings as they were, and the next launch must remove
# the settings folder it left.
set -euo pipefail
loader=${1:?usage: check-loaded-program.sh LOADER PROGRAM TESTS_LIBRARY MIN_TESTS [FOLDER]}
program=${2:?} tests=${3:?} min_tests=${4:?} folder=${5:-$(basename "$2")}
toolkit=qt
case $(basename "$loader") in *gtk*) toolkit=gtk ;; esac
home=${JTK_CHECK_HOME:-$(mktemp -d)}
trap 'rm -rf "$home"' EXIT
export HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache"
export XDG_RUNTIME_DIR="$home/runtime" QT_QPA_PLATFORM=offscreen JTK_LOADED_SCREENSHOTS_DIR="$home/Screenshots"
export GDK_BACKEND=x11
mkdir -p "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
if [ "$toolkit" = gtk ] && [ -z "${JTK_CHECK_HOME:-}" ]; then
  # Again, in the same throw-away home, on an X server and a session bus of
  # its own (both end with it): the bus and the services it starts (dconf's)
  # take the home's folders from this environment.
  command -v dbus-run-session >/dev/null || { echo "FAIL: dbus-run-session is not installed (scripts/setup.sh)"; exit 1; }
  export JTK_CHECK_HOME="$home"
  exec "$(dirname "$0")/../cmake/JTKPrivateX11.sh" dbus-run-session -- "$0" "$@" 2> >(grep -v '^dbus' >&2)
fi
data="$XDG_DATA_HOME/$folder"
runs="$XDG_CACHE_HOME/jtk/run-settings"
mkdir -p "$data" "$(dirname "$XDG_CONFIG_HOME/$folder")" "$JTK_LOADED_SCREENSHOTS_DIR"
echo "the user's own file" > "$data/mine.txt"
if [ "$toolkit" = qt ]; then
  printf '[General]\nmine=the user'"'"'s own setting\n' > "$XDG_CONFIG_HOME/$folder.conf"
  printf '[FileDialog]\nlastVisited=file://%s\nviewMode=List\n' "$home" > "$XDG_CONFIG_HOME/QtProject.conf"
else
  # The user's dconf database, written by dconf's service on the session bus
  # (the programs' other modes: a test run that read them would fail).
  for setting in "org.gnome.calculator button-mode programming" "org.gnome.TextEditor show-line-numbers true"; do
    # shellcheck disable=SC2086  # schema, key and value are words on purpose
    GSETTINGS_BACKEND=dconf gsettings set $setting 2>/dev/null || true
  done
  [ -s "$XDG_CONFIG_HOME/dconf/user" ] || { echo "FAIL: no dconf database for the user could be made"; exit 1; }
  mkdir -p "$XDG_CONFIG_HOME/glib-2.0/settings" "$XDG_CONFIG_HOME/gtk-4.0"
  printf '[org/gnome/calculator]\nbutton-mode='"'"'programming'"'"'\n[org/gnome/TextEditor]\nshow-line-numbers=false\n' \
    > "$XDG_CONFIG_HOME/glib-2.0/settings/keyfile"
  printf '[Settings]\ngtk-application-prefer-dark-theme=true\n' > "$XDG_CONFIG_HOME/gtk-4.0/settings.ini"
  printf '<?xml version="1.0" encoding="UTF-8"?>\n<xbel version="1.0"></xbel>\n' > "$XDG_DATA_HOME/recently-used.xbel"
fi

fail() { echo "FAIL: $*"; exit 1; }

# Every item's kind, permissions and path, and every file's content.
snapshot() { (cd "$1" && find . -printf '%y %m %p\n' | sort && find . -type f -exec sha256sum {} + | sort); }
run_folders() { compgen -G "$runs/run-*" || true; }

run() {
  local how=$1 data_before settings_before status=0
  data_before=$(snapshot "$XDG_DATA_HOME")
  settings_before=$(snapshot "$XDG_CONFIG_HOME")
  if [ "$how" = arguments ]; then
    output=$(LD_PRELOAD="$loader" "$program" uxtest "--jtk-tests=$tests" fileSizeThresh=1000 2>&1) || status=$?
  else
    output=$(LD_PRELOAD="$loader" JTK_UXTEST=1 JTK_TESTS_LIBRARY="$tests" JTK_FILE_SIZE_THRESHOLD=1000 \
      "$program" 2>&1) || status=$?
  fi
  echo "$output"
  [ "$status" -eq 0 ] || fail "launched by $how: exit status $status"
  [ "$data_before" = "$(snapshot "$XDG_DATA_HOME")" ] ||
    fail "launched by $how: the user's data changed: $(diff <(echo "$data_before") <(snapshot "$XDG_DATA_HOME"))"
  [ "$settings_before" = "$(snapshot "$XDG_CONFIG_HOME")" ] ||
    fail "launched by $how: the user's settings changed: $(diff <(echo "$settings_before") <(snapshot "$XDG_CONFIG_HOME"))"
  [ -z "$(run_folders)" ] || fail "launched by $how: the run's settings folder was left: $(run_folders)"
  [ ! -e "$data"_Temp ] || fail "launched by $how: the data folder's _Temp copy was left behind"
  [ "$(grep -c '^JTK: Running test ' <<<"$output")" -ge "$min_tests" ] || fail "launched by $how: fewer than $min_tests tests ran"
  [ "$(tail -1 <<<"$output")" = "Restoring Application Support Data" ] || fail "launched by $how: no restore line last"
}

run arguments
stored=$(find "$JTK_LOADED_SCREENSHOTS_DIR" -name '*.png' -not -path '*/temp/*' | wc -l)
[ "$stored" -gt 0 ] || fail "the first run stored no screenshot"
run environment
grep -q '^JTK: Screenshots: 0 stored as new, [1-9][0-9]* matched, 0 differed, [0-9]* under the size threshold; look in ' <<<"$output" ||
  fail "the second run did not match every image"

# A run under way keeps its settings folder while another launch starts;
# killed outright, it leaves the folder, which the next launch removes.
settings_before=$(snapshot "$XDG_CONFIG_HOME")
LD_PRELOAD="$loader" JTK_UXTEST=1 JTK_TESTS_LIBRARY="$tests" "$program" >/dev/null 2>&1 &
killed=$!
for _ in $(seq 200); do [ -n "$(run_folders)" ] && break; sleep 0.05; done
under_way=$(run_folders)
[ -n "$under_way" ] || fail "a run under way has no settings folder"
# The runner's options reach a loaded program too, here through the
# environment; "uxtest" on its command line is taken out before it sees it.
listed=$(LD_PRELOAD="$loader" JTK_TESTS_LIBRARY="$tests" JTK_OPTIONS=--jtk-list "$program" uxtest 2>&1)
count=$(grep -c '^test' <<<"$listed" || true)
[ "$count" -ge "$min_tests" ] || fail "--jtk-list listed $count tests: $listed"
[ -d "$under_way" ] || fail "another launch removed the settings folder of a run under way"
kill -KILL "$killed"
wait "$killed" || true
[ -d "$under_way" ] || fail "a killed run left no settings folder behind"
[ "$settings_before" = "$(snapshot "$XDG_CONFIG_HOME")" ] || fail "a killed run changed the user's settings"
status=0
LD_PRELOAD="$loader" JTK_TESTS_LIBRARY="$tests" \
  JTK_OPTIONS="--jtk-ci --jtk-shard-index=0 --jtk-shard-count=2 --jtk-junit=$home/results.xml" \
  "$program" uxtest fileSizeThresh=1000 >/dev/null 2>&1 || status=$?
[ "$status" -eq 0 ] || fail "a CI run of the first of two shards ended with status $status"
grep -q "tests=\"$(( (count + 1) / 2 ))\" failures=\"0\" errors=\"0\" skipped=\"0\"" "$home/results.xml" ||
  fail "the JUnit file does not hold the first shard's tests, passed: $(cat "$home/results.xml")"
[ -z "$(run_folders)" ] || fail "the next launch did not remove the killed run's settings folder"
[ "$settings_before" = "$(snapshot "$XDG_CONFIG_HOME")" ] || fail "the user's settings changed"
echo "$(basename "$program") under the loader: OK ($stored screenshots stored by a launch with arguments," \
  "matched by one through the environment; the user's data and settings untouched, also by a killed run;" \
  "$count tests listed, the first of two shards passed in CI mode)"
