# jtk_add_tests_library: the UI tests of a Qt program built without JTK, as a
# library that a loader brings into the program.
#
#   jtk_add_tests_library(<name> QT <5|6> <source>...)
#
# makes the shared module <name> from the sources, linked against the loader
# of that Qt version (JTK::qt5_loader or JTK::qt6_loader: from the installed
# package with find_package(JTK COMPONENTS Loader), or from a JTK tree added
# with add_subdirectory and built with JTK_LOADERS). The module gets the
# public headers and no copy of the framework: its JTK_TESTs register in the
# run the loader starts. Give it to jtk_add_uxtests() with PROGRAM to run
# every test as a ctest of its own:
#
#   find_package(JTK 0.3 REQUIRED COMPONENTS Loader)
#   jtk_add_tests_library(calculator_uxtests QT 5 CalculatorUxtests.cpp)
#   jtk_add_uxtests(calculator_uxtests PROGRAM /usr/bin/calculator ENVIRONMENT QT_QPA_PLATFORM=offscreen)

function(jtk_add_tests_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "QT" "")
  if(NOT arg_QT MATCHES "^[56]$")
    message(FATAL_ERROR "jtk_add_tests_library(${name}): say the program's Qt version, QT 5 or QT 6")
  endif()
  if(NOT arg_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "jtk_add_tests_library(${name}): no sources")
  endif()
  set(loader JTK::qt${arg_QT}_loader)
  if(NOT TARGET ${loader})
    message(FATAL_ERROR "jtk_add_tests_library(${name}): there is no loader for Qt ${arg_QT}. Ask the installed "
      "package for it with find_package(JTK COMPONENTS Loader) (the package has it when JTK was built with "
      "JTK_LOADERS=ON and Qt ${arg_QT} installed, and Qt ${arg_QT} Widgets is found here too)")
  endif()
  add_library(${name} MODULE ${arg_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE ${loader})
  # jtk_add_uxtests preloads this loader into the program.
  set_target_properties(${name} PROPERTIES JTK_LOADER ${loader})
endfunction()
