# jtk_add_tests_library: the UI tests of a Qt or GTK program built without
# JTK, as a library that a loader brings into the program.
#
#   jtk_add_tests_library(<name> QT <5|6> <source>...)
#   jtk_add_tests_library(<name> GTK 4 <source>...)
#
# makes the shared module <name> from the sources, linked against the loader
# of that toolkit (JTK::qt5_loader, JTK::qt6_loader or JTK::gtk4_loader:
# from the installed package with find_package(JTK COMPONENTS Loader), or
# from a JTK tree added with add_subdirectory and built with JTK_LOADERS).
# The module gets the public headers and no copy of the framework: its
# JTK_TESTs register in the run the loader starts. Give it to
# jtk_add_uxtests() with PROGRAM to run every test as a ctest of its own:
#
#   find_package(JTK 0.3 REQUIRED COMPONENTS Loader)
#   jtk_add_tests_library(calculator_uxtests QT 5 CalculatorUxtests.cpp)
#   jtk_add_uxtests(calculator_uxtests PROGRAM /usr/bin/calculator ENVIRONMENT QT_QPA_PLATFORM=offscreen)
#
# A GTK program needs an X11 display: jtk_add_uxtests runs each of its tests
# on a private X server of its own (Xvfb), unless its ENVIRONMENT names one.

function(jtk_add_tests_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "QT;GTK" "")
  if(arg_QT AND arg_GTK OR NOT arg_QT AND NOT arg_GTK)
    message(FATAL_ERROR "jtk_add_tests_library(${name}): say the program's toolkit, QT 5, QT 6 or GTK 4")
  elseif(arg_QT AND NOT arg_QT MATCHES "^[56]$")
    message(FATAL_ERROR "jtk_add_tests_library(${name}): say the program's Qt version, QT 5 or QT 6")
  elseif(arg_GTK AND NOT arg_GTK STREQUAL "4")
    message(FATAL_ERROR "jtk_add_tests_library(${name}): JTK loads into GTK 4 programs only: GTK 4")
  endif()
  if(NOT arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "jtk_add_tests_library(${name}): no sources")
  endif()
  if(arg_QT)
    set(loader JTK::qt${arg_QT}_loader)
    set(toolkit "Qt ${arg_QT}")
    set(needs "Qt ${arg_QT} Widgets is found")
  else()
    set(loader JTK::gtk4_loader)
    set(toolkit "GTK 4")
    set(needs "gtk4, x11 and xtst are found by pkg-config")
  endif()
  if(NOT TARGET ${loader})
    message(FATAL_ERROR "jtk_add_tests_library(${name}): there is no loader for ${toolkit}. Ask the installed "
      "package for it with find_package(JTK COMPONENTS Loader) (the package has it when JTK was built with "
      "JTK_LOADERS=ON and ${toolkit} installed, and ${needs} here too)")
  endif()
  add_library(${name} MODULE ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE ${loader})
  # jtk_add_uxtests preloads this loader into the program, on the display it needs.
  set_target_properties(${name} PROPERTIES JTK_LOADER ${loader})
  if(arg_GTK)
    set_target_properties(${name} PROPERTIES JTK_LOADER_DISPLAY x11)
  endif()
endfunction()
