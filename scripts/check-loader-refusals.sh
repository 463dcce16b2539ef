#!/usr/bin/env bash
# The launches a loader refuses before a run starts, and the launches it
# leaves alone. Each refusal must end with status 2 and one line on standard
# error naming the cause, and leave the user's data as it was and no run
# settings folder behind; a launch without "uxtest" must run the program
# untouched, with no word from JTK, and a shell that starts a program must
# keep its arguments. A Qt loader is checked headless, with a Qt program
# that has no QApplication (CORE_PROGRAM); the GTK loader on a private X
# server, with a program that loads GTK only once it runs (CORE_PROGRAM),
# the displays it refuses (another GDK backend, a Wayland display, none,
# one that cannot be opened) and a listing that needs none.
set -euo pipefail
loader=${1:?usage: check-loader-refusals.sh LOADER PROGRAM TESTS_LIBRARY NO_TESTS_LIBRARY [CORE_PROGRAM]}
program=${2:?} tests=${3:?} no_tests=${4:?} core_program=${5:-}
toolkit=qt
case $(basename "$loader") in *gtk*) toolkit=gtk ;; esac
if [ "$toolkit" = gtk ] && [ -z "${JTK_CHECK_DISPLAY_STARTED:-}" ]; then
  export JTK_CHECK_DISPLAY_STARTED=1
  exec "$(dirname "$0")/../cmake/JTKPrivateX11.sh" "$0" "$@"
fi
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache"
export XDG_RUNTIME_DIR="$home/runtime" QT_QPA_PLATFORM=offscreen JTK_LOADED_SCREENSHOTS_DIR="$home/Screenshots"
export GDK_BACKEND=x11
unset WAYLAND_DISPLAY
data="$XDG_DATA_HOME/$(basename "$program")"
mkdir -p "$data" "$XDG_RUNTIME_DIR"
chmod 700 "$XDG_RUNTIME_DIR"
echo "the user's own file" > "$data/mine.txt"
before=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
failures=0

# expect_refusal DESCRIPTION MESSAGE COMMAND...: status 2, MESSAGE on standard
# error as its only line, no test run, the user's data untouched.
expect_refusal() {
  local description=$1 message=$2 status=0 errors
  shift 2
  env -u JTK_TESTS_LIBRARY LD_PRELOAD="$loader" "$@" >/dev/null 2>"$home/errors" || status=$?
  errors=$(grep '^JTK' "$home/errors" || true)
  if [ "$status" -ne 2 ] || [ "$(wc -l <<<"$errors")" -ne 1 ] || ! grep -qF "$message" <<<"$errors" ||
     [ "$before" != "$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)" ]; then
    echo "FAIL: $description: status $status, said: $errors"
    failures=$((failures + 1))
  else
    echo "ok: $description: $errors"
  fi
}

expect_refusal "no tests library" "no tests library named" "$program" uxtest
expect_refusal "a library that is not there" "cannot load the tests library" \
  "$program" uxtest "--jtk-tests=$home/missing.so"
expect_refusal "a library that is not a library" "cannot load the tests library" \
  "$program" uxtest "--jtk-tests=$data/mine.txt"
expect_refusal "a library without tests" "has no JTK_TEST" "$program" uxtest "--jtk-tests=$no_tests"
# CORE_PROGRAM: a Qt program without a QApplication; a program that loads GTK once it runs.
if [ -n "$core_program" ] && [ "$toolkit" = qt ]; then
  expect_refusal "a program without a QApplication" "has no QApplication" "$core_program" uxtest "--jtk-tests=$tests"
elif [ -n "$core_program" ]; then
  expect_refusal "a program that loads GTK once it runs" \
    "the launch was not prepared before the program's main (is the loader preloaded with LD_PRELOAD, and the program a GTK 4 program?)" \
    "$core_program" uxtest "--jtk-tests=$tests"
fi
if [ "$toolkit" = gtk ]; then
  for backend in wayland broadway; do
    expect_refusal "GDK_BACKEND=$backend" "GDK_BACKEND=$backend gives the program a display other than X11" \
      GDK_BACKEND=$backend "$program" uxtest "--jtk-tests=$tests"
  done
  expect_refusal "a Wayland display only" "the program would open the Wayland display wayland-7" \
    DISPLAY= WAYLAND_DISPLAY=wayland-7 "$program" uxtest "--jtk-tests=$tests"
  expect_refusal "no display" "no display: DISPLAY is not set" DISPLAY= "$program" uxtest "--jtk-tests=$tests"
  expect_refusal "an X display that cannot be opened" "cannot open the X display :97" \
    DISPLAY=:97 "$program" uxtest "--jtk-tests=$tests"
  # Listing the tests needs no display: the loader answers before the program starts.
  status=0
  said=$(env -u DISPLAY LD_PRELOAD="$loader" "$program" uxtest "--jtk-tests=$tests" --jtk-list 2>&1) || status=$?
  if [ "$status" -ne 0 ] || ! grep -q '^test' <<<"$said" || grep -v '^test' <<<"$said" | grep -q .; then
    echo "FAIL: a listing without a display: status $status, said: $said"
    failures=$((failures + 1))
  else
    echo "ok: a listing without a display lists $(grep -c '^test' <<<"$said") tests"
  fi
fi
expect_refusal "a launch from the environment without a tests library" "no tests library named" \
  JTK_UXTEST=1 "$program"
expect_refusal "JTK_UXTEST neither 1 nor 0" "JTK_UXTEST=yes is neither 1 (start a test run) nor 0" \
  JTK_UXTEST=yes "$program"
# The run's settings folder goes in the cache folder: here a file stands in its way.
expect_refusal "no place for the run's settings" "cannot make the run's settings folder in $data/mine.txt/jtk" \
  XDG_CACHE_HOME="$data/mine.txt" "$program" uxtest "--jtk-tests=$tests"
if compgen -G "$XDG_CACHE_HOME/jtk/run-settings/run-*" >/dev/null; then
  echo "FAIL: a refused launch left its settings folder: $(compgen -G "$XDG_CACHE_HOME/jtk/run-settings/run-*")"
  failures=$((failures + 1))
fi

# A recording session whose tests name no file to record into is refused by
# the run (its refusals go to standard output), before anything is touched.
status=0
said=$(env -u JTK_TESTS_LIBRARY LD_PRELOAD="$loader" "$program" uxtest "--jtk-tests=$tests" --jtk-record 2>&1) || status=$?
if [ "$status" -ne 2 ] || ! grep -qF "JTK: --jtk-record needs the tests' jtkThisFilePath provider" <<<"$said" ||
   grep -q '^JTK: Running test' <<<"$said" ||
   [ "$before" != "$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)" ]; then
  echo "FAIL: a recording session with nowhere to record: status $status, said: $said"
  failures=$((failures + 1))
else
  echo "ok: a recording session with nowhere to record: $(grep '^JTK' <<<"$said" | head -1)"
fi

# Without "uxtest" the program is left alone: it keeps running until stopped.
status=0
said=$(JTK_TESTS_LIBRARY="$tests" LD_PRELOAD="$loader" timeout 2 "$program" 2>&1) || status=$?
if [ "$status" -ne 124 ] || grep -q '^JTK' <<<"$said"; then
  echo "FAIL: a launch without uxtest: status $status, said: $said"
  failures=$((failures + 1))
else
  echo "ok: a launch without uxtest runs the program untouched"
fi
# The loader acts only in a Qt program: a shell's arguments are the program's.
said=$(LD_PRELOAD="$loader" JTK_UXTEST=1 sh -c 'echo "$0 $1"' uxtest "--jtk-tests=$tests" 2>&1) || true
if [ "$said" != "uxtest --jtk-tests=$tests" ]; then
  echo "FAIL: a shell under the loader: said: $said"
  failures=$((failures + 1))
else
  echo "ok: a shell under the loader keeps its arguments"
fi
exit $((failures > 0))
