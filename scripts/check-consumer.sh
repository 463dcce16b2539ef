#!/usr/bin/env bash
# Uses JTK as a project outside its tree does. Installs JTK into a temporary
# prefix (tests, examples and benchmarks off, so neither GoogleTest nor
# benchmark may be needed), then builds examples/Consumer three ways and runs
# its UI test each time against a throw-away user data folder:
#   1. find_package(JTK) from the installed prefix,
#   2. add_subdirectory of this source tree,
#   3. g++ with `pkg-config --cflags --libs jtk` from the installed prefix.
# When Qt 6 Widgets is installed, JTK is installed with its Qt backend, and
# QtConsumer (the same application and test on Qt Widgets, offscreen) is built
# and run through find_package(JTK COMPONENTS Qt) and add_subdirectory; a few
# configure-only probes check the package's Qt component, also as a package
# built without it would answer. When Qt 5 Widgets and Debian's Qt 5 example
# programs are installed, JTK is installed with its loaders too, and the
# calculator example (a program built without JTK) is tested through the
# installed Qt 5 loader: with a tests library made by jtk_add_tests_library
# (find_package(JTK COMPONENTS Loader)) and one made with pkg-config. When
# GTK 4 (with x11 and xtst) and Debian's gnome-calculator are installed, the
# package has the GTK loader too, and gnome-calculator is tested the same two
# ways through it, on private X servers.
# Every temporary folder goes when the script ends.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
consumer=$root/examples/Consumer
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
buildType=RelWithDebInfo
hasQt=false
if pkg-config --exists Qt6Widgets Qt6Test 2>/dev/null; then hasQt=true; fi
calculator=/usr/lib/x86_64-linux-gnu/qt5/examples/widgets/widgets/calculator/calculator
hasLoader=false hasGtkLoader=false loaders=OFF
if $hasQt && pkg-config --exists Qt5Widgets Qt5Test 2>/dev/null && [ -x "$calculator" ]; then
  hasLoader=true loaders=ON
fi
gnomeCalculator=/usr/bin/gnome-calculator
if pkg-config --exists gtk4 x11 xtst 2>/dev/null && [ -x "$gnomeCalculator" ] && command -v Xvfb >/dev/null; then
  hasGtkLoader=true loaders=ON
fi
# Offscreen, so that the Qt runs need no display.
export QT_QPA_PLATFORM=offscreen

# Runs a command with its output in a log that is shown only when it fails.
quietly() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log"; echo "FAIL: $*"; return 1; }
}

# Runs the UI test of a Consumer executable (Consumer or QtConsumer) and checks
# its status, its lines and that the user's data comes back byte-identical.
checkRun() {
  local app=$1 how=$2 home
  home=$(mktemp -d -p "$work")
  export XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config"
  mkdir -p "$XDG_DATA_HOME/Consumer"
  echo "the user's own name" > "$XDG_DATA_HOME/Consumer/name.txt"
  echo "Hello, the user's own name" > "$XDG_DATA_HOME/Consumer/greetings.txt"
  local before after output status=0
  before=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
  output=$(timeout 120 "$app" uxtest 2>&1) || status=$?
  after=$(cd "$XDG_DATA_HOME" && find . -type f -exec sha256sum {} + | sort)
  local fail=""
  [ "$status" -eq 0 ] || fail="exit status $status"
  [ -n "$fail" ] || [ "$before" = "$after" ] || fail="the user's data changed"
  [ -n "$fail" ] || [ ! -e "$XDG_DATA_HOME/Consumer_Temp" ] || fail="Consumer_Temp left behind"
  [ -n "$fail" ] || grep -qx 'JTK: Running test testGreetsTheTestUser' <<<"$output" || fail="the test did not run"
  [ -n "$fail" ] || [ "$(tail -1 <<<"$output")" = "Restoring Application Support Data" ] || fail="no restore line last"
  if [ -n "$fail" ]; then
    echo "$output"
    echo "FAIL: ${app##*/} through $how: $fail"
    return 1
  fi
  echo "${app##*/} through $how: OK"
}

# Runs the Consumer build's ctests (one per UI test, made by jtk_add_uxtests)
# and checks that each UI test ran and passed as a ctest of its own.
checkCtest() {
  local build=$1 how=$2 expected=$3 output status=0
  output=$(cd "$build" && ctest --output-on-failure -j2 2>&1) || status=$?
  echo "$output" >"$work/ctest-output"
  local fail=""
  [ "$status" -eq 0 ] || fail="ctest exit status $status"
  [ -n "$fail" ] || grep -q "tests passed, 0 tests failed out of $expected\$" <<<"$output" ||
    fail="not $expected passing ctests"
  [ -n "$fail" ] || grep -q 'Consumer.testGreetsTheTestUser .* Passed' <<<"$output" || fail="no per-test ctest"
  if [ -n "$fail" ]; then
    echo "$output"
    echo "FAIL: ctest through $how: $fail"
    return 1
  fi
  echo "ctest through $how: OK ($expected UI tests)"
}

# Configures a probe project that only finds the package from a prefix, with
# the find_package arguments in $arguments, and says whether JTK::JTKQt came
# with it; checks that it succeeds (expect "ok", and the Qt targets when "qt")
# or fails with a message containing $expect.
probe() {
  local prefix=$1 arguments=$2 expect=$3 name=$4 output status=0
  output=$(cmake -S "$work/probe" -B "$work/probe-build-$name" -DCMAKE_PREFIX_PATH="$prefix" \
    -DPROBE_ARGUMENTS="$arguments" "${@:5}" 2>&1) || status=$?
  rm -rf "$work/probe-build-$name"
  local fail=""
  case $expect in
    ok|qt|loader|gtk-loader)
      [ "$status" -eq 0 ] || fail="find_package failed"
      local want="probe: no JTK::JTKQt"
      [ "$expect" = qt ] && want="probe: JTK::JTKQt"
      [ "$expect" = loader ] && want="probe: JTK::qt5_loader"
      [ "$expect" = gtk-loader ] && want="probe: JTK::gtk4_loader"
      [ -n "$fail" ] || grep -q "^-- $want\$" <<<"$output" || fail="not '$want'" ;;
    *)
      [ "$status" -ne 0 ] || fail="find_package succeeded"
      # CMake wraps the message's lines: compare it as one line.
      [ -n "$fail" ] || tr -s ' \n' '  ' <<<"$output" | grep -qF "$expect" || fail="no message '$expect'" ;;
  esac
  if [ -n "$fail" ]; then
    echo "$output"
    echo "FAIL: package probe $name: $fail"
    return 1
  fi
  echo "Package probe $name: OK"
}

echo "== JTK installed into a temporary prefix (Qt backend: $hasQt, Qt loaders: $hasLoader, GTK loader: $hasGtkLoader)"
quietly cmake -S "$root" -B "$work/jtk" --no-warn-unused-cli -DCMAKE_BUILD_TYPE=$buildType -DJTK_LOADERS=$loaders \
  -DCMAKE_INSTALL_PREFIX="$work/prefix" -DJTK_BUILD_TESTS=OFF -DJTK_BUILD_EXAMPLES=OFF \
  -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON
quietly cmake --build "$work/jtk" -j2
quietly cmake --install "$work/jtk"
# Only the public headers are installed; the internals stay in the tree.
if [ -n "$(find "$work/prefix" -path '*/src/*' -o -name 'JTKLookup.h' -o -name 'JTKConsole.h' \
    -o \( -name 'Qt*.h' ! -name QtBackend.h \))" ]; then
  echo "FAIL: internal headers installed"; exit 1
fi
rm -rf "$work/jtk"  # keep the disk use of the next build down
if $hasQt; then
  # The backend, its header and its export; the resources it reads at run
  # time, where the path compiled into the backend points.
  for file in lib/libjtk-qt.a include/JTK/qt/QtBackend.h lib/cmake/JTK/JTKQtTargets.cmake \
      share/JTK/resources/fonts/fonts.conf share/JTK/resources/JTKComparisonWindow.json; do
    [ -f "$work/prefix/$file" ] || { echo "FAIL: $file not installed"; exit 1; }
  done
  # Every backend finds its resources through the shared services.
  grep -aq "$work/prefix/share/JTK/resources" "$work/prefix/lib/libjtk-services.a" ||
    { echo "FAIL: the installed services do not look for the installed resources"; exit 1; }
fi

if $hasLoader; then
  for file in lib/libjtk-qt5-loader.so lib/libjtk-qt6-loader.so lib/cmake/JTK/JTKQt5LoaderTargets.cmake \
      lib/cmake/JTK/JTKTestsLibrary.cmake lib/pkgconfig/jtk-qt5-loader.pc; do
    [ -f "$work/prefix/$file" ] || { echo "FAIL: $file not installed"; exit 1; }
  done
fi
if $hasGtkLoader; then
  for file in lib/libjtk-gtk4-loader.so lib/cmake/JTK/JTKGtk4LoaderTargets.cmake lib/pkgconfig/jtk-gtk4-loader.pc; do
    [ -f "$work/prefix/$file" ] || { echo "FAIL: $file not installed"; exit 1; }
  done
  [ -x "$work/prefix/lib/cmake/JTK/JTKPrivateX11.sh" ] || { echo "FAIL: JTKPrivateX11.sh not installed as a program"; exit 1; }
fi

echo "== Package probes"
mkdir -p "$work/probe"
cat >"$work/probe/CMakeLists.txt" <<'PROBE'
cmake_minimum_required(VERSION 3.25)
project(Probe LANGUAGES CXX)
find_package(JTK 0.3 ${PROBE_ARGUMENTS})
if(NOT JTK_FOUND)
  message(FATAL_ERROR "probe: JTK not found: ${JTK_NOT_FOUND_MESSAGE}")
elseif(TARGET JTK::JTKQt)
  message(STATUS "probe: JTK::JTKQt")
else()
  message(STATUS "probe: no JTK::JTKQt")
endif()
if(TARGET JTK::qt5_loader)
  message(STATUS "probe: JTK::qt5_loader")
endif()
if(TARGET JTK::gtk4_loader)
  message(STATUS "probe: JTK::gtk4_loader")
endif()
PROBE
noQtPrefix=$work/prefix
if $hasQt; then
  # The same package as one built without Qt would have it: links to the
  # installed files, with a config that knows no Qt backend and no Qt export.
  noQtPrefix=$work/prefix-no-qt
  cp -rs "$work/prefix" "$noQtPrefix"
  rm -f "$noQtPrefix"/lib/cmake/JTK/JTKQt*Targets*.cmake "$noQtPrefix/lib/cmake/JTK/JTKConfig.cmake"
  sed -e 's/^set(JTK_PACKAGE_HAS_QT ON)$/set(JTK_PACKAGE_HAS_QT OFF)/' -e 's/^set(JTK_PACKAGE_LOADERS ".*")$/set(JTK_PACKAGE_LOADERS "")/' \
    "$work/prefix/lib/cmake/JTK/JTKConfig.cmake" >"$noQtPrefix/lib/cmake/JTK/JTKConfig.cmake"
  grep -qx 'set(JTK_PACKAGE_HAS_QT OFF)' "$noQtPrefix/lib/cmake/JTK/JTKConfig.cmake" ||
    { echo "FAIL: the package config does not say whether it has Qt"; exit 1; }
  probe "$work/prefix" "REQUIRED" ok without-components
  probe "$work/prefix" "REQUIRED;COMPONENTS;Qt" qt qt
  # Not REQUIRED, so that Qt 6 is looked for, not demanded, and can be missing.
  probe "$work/prefix" "COMPONENTS;Qt" "because dependency Qt6 could not be found" qt-without-qt6 \
    -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON
  probe "$work/prefix" "REQUIRED;OPTIONAL_COMPONENTS;Qt" ok optional-qt-without-qt6 -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON
fi
probe "$noQtPrefix" "REQUIRED" ok no-qt-package
probe "$noQtPrefix" "REQUIRED;OPTIONAL_COMPONENTS;Qt" ok no-qt-package-optional-qt
probe "$noQtPrefix" "REQUIRED;COMPONENTS;Qt" "built without its Qt backend" no-qt-package-qt
probe "$noQtPrefix" "REQUIRED;COMPONENTS;Loader" "built without its loaders" no-loader-package
if $hasLoader; then
  probe "$work/prefix" "REQUIRED;COMPONENTS;Loader" loader loader
fi
if $hasGtkLoader; then
  probe "$work/prefix" "REQUIRED;COMPONENTS;Loader" gtk-loader gtk-loader
  # Without Qt found, the GTK loader alone makes the component.
  probe "$work/prefix" "REQUIRED;COMPONENTS;Loader" gtk-loader gtk-loader-without-qt \
    -DCMAKE_DISABLE_FIND_PACKAGE_Qt5=ON -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON
fi
probe "$work/prefix" "REQUIRED;COMPONENTS;Tk" "has no component Tk" unknown-component

echo "== Consumer through find_package"
quietly cmake -S "$consumer" -B "$work/find-package" -DCMAKE_BUILD_TYPE=$buildType -DCMAKE_PREFIX_PATH="$work/prefix"
quietly cmake --build "$work/find-package" -j2
checkRun "$work/find-package/Consumer" find_package
expected=1 how=find_package
if $hasQt; then
  [ -x "$work/find-package/QtConsumer" ] || { echo "FAIL: QtConsumer not built through find_package"; exit 1; }
  checkRun "$work/find-package/QtConsumer" "find_package, Qt component"
  expected=2
fi
# The calculators' two tests each through the installed loaders, when they are there.
if $hasLoader; then
  [ -f "$work/find-package/libCalculatorUxtests.so" ] || { echo "FAIL: no tests library through find_package"; exit 1; }
  expected=$((expected + 2)) how="find_package, Loader component"
fi
if $hasGtkLoader; then
  [ -f "$work/find-package/libGnomeCalculatorUxtests.so" ] || { echo "FAIL: no GTK tests library through find_package"; exit 1; }
  expected=$((expected + 2)) how="find_package, Loader component"
fi
checkCtest "$work/find-package" "$how" $expected
if $hasGtkLoader; then
  for test in testMultipliesBeforeItAdds testSubtracts; do
    grep -q "GnomeCalculatorUxtests.$test .* Passed" "$work/ctest-output" ||
      { cat "$work/ctest-output"; echo "FAIL: gnome-calculator's $test did not pass as a ctest"; exit 1; }
  done
  echo "gnome-calculator through find_package and the installed GTK loader: OK"
fi

echo "== Consumer through pkg-config"
mkdir -p "$work/pkg-config"
flags=$(PKG_CONFIG_PATH="$work/prefix/lib/pkgconfig" pkg-config --cflags --libs jtk)
# shellcheck disable=SC2086  # the flags are words on purpose
quietly g++ -std=c++20 -Wall -Wextra -DCONSUMER_SOURCE_DIR="\"$consumer\"" \
  -DCONSUMER_SCREENSHOTS_DIR="\"$work/pkg-config/Screenshots\"" \
  "$consumer/main.cpp" "$consumer/ConsumerTests.cpp" $flags -o "$work/pkg-config/Consumer"
checkRun "$work/pkg-config/Consumer" pkg-config

if $hasLoader; then
  echo "== A tests library through pkg-config, run by the installed loader"
  flags=$(PKG_CONFIG_PATH="$work/prefix/lib/pkgconfig" pkg-config --cflags --libs jtk-qt5-loader)
  # shellcheck disable=SC2086  # the flags are words on purpose
  quietly g++ -std=c++20 -Wall -Wextra -fPIC -shared -DCALCULATOR_TEST_DATA_DIR="\"$consumer/TestData\"" -DCALCULATOR_SCREENSHOTS_DIR="\"$work/pkg-config/CalculatorScreenshots\"" \
    "$consumer/CalculatorUxtests.cpp" $flags -o "$work/pkg-config/libcalculator_uxtests.so"
  home=$(mktemp -d -p "$work")
  status=0
  output=$(HOME="$home" XDG_DATA_HOME="$home/data" XDG_CONFIG_HOME="$home/config" XDG_RUNTIME_DIR="$home" \
    LD_PRELOAD="$work/prefix/lib/libjtk-qt5-loader.so" JTK_TESTS_LIBRARY="$work/pkg-config/libcalculator_uxtests.so" \
    timeout 120 "$calculator" uxtest 2>&1) || status=$?
  if [ "$status" -ne 0 ] || ! grep -q '^JTK: 2 passed, 0 failed' <<<"$output"; then
    echo "$output"; echo "FAIL: the calculator's tests library through pkg-config (status $status)"; exit 1
  fi
  echo "calculator through pkg-config and the installed loader: OK"
fi

if $hasGtkLoader; then
  echo "== A GTK tests library through pkg-config, run by the installed GTK loader"
  flags=$(PKG_CONFIG_PATH="$work/prefix/lib/pkgconfig" pkg-config --cflags --libs jtk-gtk4-loader)
  # shellcheck disable=SC2086  # the flags are words on purpose
  quietly g++ -std=c++20 -Wall -Wextra -fPIC -shared -DCALCULATOR_TEST_DATA_DIR="\"$consumer/TestData\"" \
    -DCALCULATOR_SCREENSHOTS_DIR="\"$work/pkg-config/GnomeCalculatorScreenshots\"" \
    "$consumer/GnomeCalculatorUxtests.cpp" $flags -o "$work/pkg-config/libgnome_calculator_uxtests.so"
  home=$(mktemp -d -p "$work")
  status=0
  # The X server first, the loader preloaded into the program alone.
  output=$(timeout 120 "$work/prefix/lib/cmake/JTK/JTKPrivateX11.sh" env HOME="$home" XDG_DATA_HOME="$home/data" \
    XDG_CONFIG_HOME="$home/config" XDG_CACHE_HOME="$home/cache" XDG_RUNTIME_DIR="$home" \
    LD_PRELOAD="$work/prefix/lib/libjtk-gtk4-loader.so" JTK_TESTS_LIBRARY="$work/pkg-config/libgnome_calculator_uxtests.so" \
    "$gnomeCalculator" uxtest 2>&1) || status=$?
  if [ "$status" -ne 0 ] || ! grep -q '^JTK: 2 passed, 0 failed' <<<"$output"; then
    echo "$output"; echo "FAIL: gnome-calculator's tests library through pkg-config (status $status)"; exit 1
  fi
  echo "gnome-calculator through pkg-config and the installed GTK loader: OK"
fi

echo "== Consumer through add_subdirectory"
quietly cmake -S "$consumer" -B "$work/add-subdirectory" -DCMAKE_BUILD_TYPE=$buildType -DJTK_SOURCE_DIR="$root"
# The applications only, not JTK's tools and loader.
targets=(Consumer)
if $hasQt; then targets+=(QtConsumer); fi
quietly cmake --build "$work/add-subdirectory" -j2 --target "${targets[@]}"
checkRun "$work/add-subdirectory/Consumer" add_subdirectory
if $hasQt; then
  checkRun "$work/add-subdirectory/QtConsumer" "add_subdirectory, Qt"
  checkCtest "$work/add-subdirectory" add_subdirectory 2
else
  checkCtest "$work/add-subdirectory" add_subdirectory 1
fi

echo "Consumer checks: OK"
