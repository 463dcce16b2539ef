# jtk_add_uxtests: one ctest per UI test of a JTK application.
#
#   jtk_add_uxtests(<target>
#     [TEST_PREFIX <prefix>]          ctest names are <prefix><test>; default "<target>."
#     [TIME_LIMIT <seconds>]          each test's time limit (--jtk-timeout); default 120
#     [ARGS <argument>...]            more launch arguments, e.g. fileSizeThresh=1000
#     [ENVIRONMENT <NAME=value>...]   more environment, e.g. QT_QPA_PLATFORM=offscreen
#     [LABELS <label>...]             ctest labels of every test
#     [DISCOVERY_TIMEOUT <seconds>]   how long listing the tests may take; default 60
#     [PROGRAM <path>]                for a tests library: the program it tests
#     [PRIVATE_X11])                  each test on a private X server (Xvfb) of its own
#
# <target> is an application built with JTK or, with PROGRAM, a tests
# library made by jtk_add_tests_library(): the program (built without JTK)
# then runs with the library's loader preloaded and the library named in
# JTK_TESTS_LIBRARY, and everything below applies to it alike.
#
# With PRIVATE_X11, and for the tests library of a GTK program unless its
# ENVIRONMENT names a DISPLAY, each test runs on an X server of its own
# (JTKPrivateX11.sh: Xvfb on a display number it chooses), so that tests
# side by side never share a screen and none needs the person's display.
#
# After every build of the target its tests are listed (<target> uxtest
# --jtk-list) and one ctest is made for each, so `ctest -R` picks tests by
# name and `ctest -j` runs them side by side. Each ctest runs the application
# as a build server should:
#
#   <target> uxtest --jtk-ci --jtk-filter=<test> --jtk-timeout=<seconds>
#            --jtk-junit=<results>/<test>.xml --jtk-results=<results> <ARGS>
#
# with its own throw-away home, data, configuration, cache and runtime
# folders (HOME and XDG_*), so that tests running at once never share the
# user's data or settings, and nothing of the person's at the machine is
# touched. The results (JUnit files, failure pictures) go to
# <build folder>/jtk-results/<target>; a test's throw-away folders stay in
# <build folder>/jtk-uxtests/<target>/<test> when it fails, for a look.

function(jtk_add_uxtests target)
  # The scripts beside this file, wherever the function is called from (a
  # project that adds JTK as a subdirectory calls it from its own folder).
  set(_JTK_UXTESTS_DIR "${CMAKE_CURRENT_FUNCTION_LIST_DIR}")
  cmake_parse_arguments(PARSE_ARGV 1 arg "PRIVATE_X11" "TEST_PREFIX;TIME_LIMIT;DISCOVERY_TIMEOUT;PROGRAM" "ARGS;ENVIRONMENT;LABELS")
  if(NOT TARGET ${target})
    message(FATAL_ERROR "jtk_add_uxtests: ${target} is not a target")
  endif()
  if(arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "jtk_add_uxtests: unknown arguments ${arg_UNPARSED_ARGUMENTS}")
  endif()
  if(NOT DEFINED arg_TEST_PREFIX)
    set(arg_TEST_PREFIX "${target}.")
  endif()
  if(NOT arg_TIME_LIMIT)
    set(arg_TIME_LIMIT 120)
  endif()
  if(NOT arg_DISCOVERY_TIMEOUT)
    set(arg_DISCOVERY_TIMEOUT 60)
  endif()

  set(program "$<TARGET_FILE:${target}>")
  set(loader_environment "")
  if(arg_PROGRAM)
    get_target_property(loader ${target} JTK_LOADER)
    if(NOT loader)
      message(FATAL_ERROR "jtk_add_uxtests: ${target} is not a tests library made by jtk_add_tests_library(), "
        "so it cannot test the program ${arg_PROGRAM}")
    endif()
    set(program "${arg_PROGRAM}")
    set(loader_environment "LD_PRELOAD=$<TARGET_FILE:${loader}>;JTK_TESTS_LIBRARY=$<TARGET_FILE:${target}>")
    get_target_property(display ${target} JTK_LOADER_DISPLAY)
    if(display STREQUAL "x11" AND NOT arg_ENVIRONMENT MATCHES "(^|;)DISPLAY=")
      set(arg_PRIVATE_X11 ON)
    endif()
  endif()
  set(launcher "")
  if(arg_PRIVATE_X11)
    set(launcher "${_JTK_UXTESTS_DIR}/JTKPrivateX11.sh")
  endif()

  set(base "${CMAKE_CURRENT_BINARY_DIR}/jtk-uxtests/${target}")
  set(config "${base}/config.cmake")
  set(tests_file "${base}/tests.cmake")
  set(include_file "${base}/include.cmake")
  # What the discovery and every test run read; lists are kept as lists.
  file(GENERATE OUTPUT "${config}" CONTENT
"set(JTK_PROGRAM [==[${program}]==])
set(JTK_TARGET [==[${target}]==])
set(JTK_TEST_PREFIX [==[${arg_TEST_PREFIX}]==])
set(JTK_TIME_LIMIT [==[${arg_TIME_LIMIT}]==])
set(JTK_ARGS [==[${arg_ARGS}]==])
set(JTK_ENVIRONMENT [==[${loader_environment};${arg_ENVIRONMENT}]==])
set(JTK_LAUNCHER [==[${launcher}]==])
set(JTK_LABELS [==[${arg_LABELS}]==])
set(JTK_DISCOVERY_TIMEOUT [==[${arg_DISCOVERY_TIMEOUT}]==])
set(JTK_WORK_DIR [==[${base}]==])
set(JTK_RESULTS_DIR [==[${CMAKE_BINARY_DIR}/jtk-results/${target}]==])
set(JTK_TESTS_FILE [==[${tests_file}]==])
set(JTK_RUN_SCRIPT [==[${_JTK_UXTESTS_DIR}/JTKUxTestRun.cmake]==])
set(JTK_CONFIG_FILE [==[${config}]==])
")
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND "${CMAKE_COMMAND}" -D "JTK_CONFIG_FILE=${config}" -P "${_JTK_UXTESTS_DIR}/JTKUxTestDiscovery.cmake"
    BYPRODUCTS "${tests_file}"
    COMMENT "Listing the UI tests of ${target}"
    VERBATIM)
  file(WRITE "${include_file}"
"if(EXISTS [==[${tests_file}]==])
  include([==[${tests_file}]==])
else()
  add_test([==[${target}_UXTESTS_NOT_BUILT]==] [==[${target}_UXTESTS_NOT_BUILT]==])
endif()
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${include_file}")
endfunction()
