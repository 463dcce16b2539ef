# Install rules and package files. A consumer finds the installed package with
#   find_package(JTK 0.3 REQUIRED)   →  JTK::JTK, JTK::jtk, JTK::desktop, JTK::platform
# or with pkg-config (jtk.pc), which links the same static libraries. When the
# Qt backend is built, a Qt application asks for it as a component:
#   find_package(JTK 0.3 REQUIRED COMPONENTS Qt)   →  also JTK::JTKQt, JTK::qt
# Its targets are an export of their own (JTKQtTargets.cmake), read only when
# the component is asked for, so that a consumer without Qt never needs Qt.
# When the loaders are built (JTK_LOADERS), they are installed too, each an
# export of its own, for the UI tests of Qt programs built without JTK:
#   find_package(JTK 0.3 REQUIRED COMPONENTS Loader)  →  JTK::qt5_loader, JTK::qt6_loader
# with jtk_add_tests_library() to make a tests library against one.
include(CMakePackageConfigHelpers)

set(JTK_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/JTK" CACHE STRING
    "Where the installed package config files go, relative to the install prefix")
set(JTK_INSTALL_PKGCONFIGDIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig" CACHE STRING
    "Where the installed pkg-config file goes, relative to the install prefix")
mark_as_advanced(JTK_INSTALL_CMAKEDIR JTK_INSTALL_PKGCONFIGDIR)

install(TARGETS jtk_imaging jtk_platform jtk_services jtk_desktop jtk jtk_all
  EXPORT JTKTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# The three public header trees share one root: <JTK/JTK.h>, <JTK/platform/...>,
# <JTK/desktop/...>. The internals under JTK/src never leave the tree.
install(DIRECTORY
    ${PROJECT_SOURCE_DIR}/JTK/include/
    ${PROJECT_SOURCE_DIR}/imaging/include/
    ${PROJECT_SOURCE_DIR}/platform/include/
    ${PROJECT_SOURCE_DIR}/services/include/
    ${PROJECT_SOURCE_DIR}/desktop/include/
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")

# The Qt backend: its one public header joins the same root (<JTK/qt/...>);
# qt/src stays in the tree. The resources it reads at run time (the font
# configuration, the interface files) are installed with the desktop's, where
# JTK_RESOURCES_INSTALL_DIR points.
set(JTK_PACKAGE_HAS_QT OFF)
if(TARGET jtk_qt)
  set(JTK_PACKAGE_HAS_QT ON)
  install(TARGETS jtk_qt jtk_qt_all
    EXPORT JTKQtTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/qt/include/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
  install(EXPORT JTKQtTargets
    NAMESPACE JTK::
    FILE JTKQtTargets.cmake
    DESTINATION ${JTK_INSTALL_CMAKEDIR})
endif()

# The GTK 4 backend, the same way: <JTK/gtk/GtkBackend.h>, an export of its
# own (JTKGtkTargets.cmake) read only for the component Gtk:
#   find_package(JTK 0.3 REQUIRED COMPONENTS Gtk)  →  also JTK::JTKGtk, JTK::gtk
set(JTK_PACKAGE_HAS_GTK OFF)
if(TARGET jtk_gtk)
  set(JTK_PACKAGE_HAS_GTK ON)
  install(TARGETS jtk_gtk jtk_gtk_all
    EXPORT JTKGtkTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/gtk/include/
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
  install(EXPORT JTKGtkTargets
    NAMESPACE JTK::
    FILE JTKGtkTargets.cmake
    DESTINATION ${JTK_INSTALL_CMAKEDIR})
endif()

# The loaders (their pkg-config files are below).
set(JTK_PACKAGE_LOADERS "")
foreach(qtMajor 5 6)
  if(TARGET jtk_qt${qtMajor}_loader)
    list(APPEND JTK_PACKAGE_LOADERS ${qtMajor})
    install(TARGETS jtk_qt${qtMajor}_loader
      EXPORT JTKQt${qtMajor}LoaderTargets
      LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
    install(EXPORT JTKQt${qtMajor}LoaderTargets
      NAMESPACE JTK::
      FILE JTKQt${qtMajor}LoaderTargets.cmake
      DESTINATION ${JTK_INSTALL_CMAKEDIR})
  endif()
endforeach()

install(EXPORT JTKTargets
  NAMESPACE JTK::
  FILE JTKTargets.cmake
  DESTINATION ${JTK_INSTALL_CMAKEDIR})

configure_package_config_file(
  ${CMAKE_CURRENT_LIST_DIR}/JTKConfig.cmake.in
  ${PROJECT_BINARY_DIR}/JTKConfig.cmake
  INSTALL_DESTINATION ${JTK_INSTALL_CMAKEDIR})

# Before 1.0 a minor version may break the interface, so 0.3 accepts 0.3.x only.
write_basic_package_version_file(
  ${PROJECT_BINARY_DIR}/JTKConfigVersion.cmake
  VERSION ${PROJECT_VERSION}
  COMPATIBILITY SameMinorVersion)

install(FILES
    ${PROJECT_BINARY_DIR}/JTKConfig.cmake
    ${PROJECT_BINARY_DIR}/JTKConfigVersion.cmake
    ${CMAKE_CURRENT_LIST_DIR}/JTKUxTests.cmake
    ${CMAKE_CURRENT_LIST_DIR}/JTKUxTestDiscovery.cmake
    ${CMAKE_CURRENT_LIST_DIR}/JTKUxTestRun.cmake
    ${CMAKE_CURRENT_LIST_DIR}/JTKTestsLibrary.cmake
  DESTINATION ${JTK_INSTALL_CMAKEDIR})

# The pkg-config file finds its prefix from where it lies, so an install moved
# elsewhere (cmake --install --prefix, a staging DESTDIR) still points at itself.
if(IS_ABSOLUTE "${JTK_INSTALL_PKGCONFIGDIR}")
  set(JTK_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH jtk_pc_up "/root/${JTK_INSTALL_PKGCONFIGDIR}" "/root")
  string(REGEX REPLACE "/$" "" jtk_pc_up "${jtk_pc_up}")
  set(JTK_PC_PREFIX "\${pcfiledir}/${jtk_pc_up}")
endif()
foreach(kind LIBDIR INCLUDEDIR)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_${kind}}")
    set(JTK_PC_${kind} "${CMAKE_INSTALL_${kind}}")
  else()
    set(JTK_PC_${kind} "\${prefix}/${CMAKE_INSTALL_${kind}}")
  endif()
endforeach()
configure_file(${CMAKE_CURRENT_LIST_DIR}/jtk.pc.in ${PROJECT_BINARY_DIR}/jtk.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/jtk.pc DESTINATION ${JTK_INSTALL_PKGCONFIGDIR})
# A tests library built without CMake: pkg-config --cflags --libs jtk-qt5-loader.
foreach(JTK_PC_QT_MAJOR IN LISTS JTK_PACKAGE_LOADERS)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/jtk-loader.pc.in ${PROJECT_BINARY_DIR}/jtk-qt${JTK_PC_QT_MAJOR}-loader.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/jtk-qt${JTK_PC_QT_MAJOR}-loader.pc DESTINATION ${JTK_INSTALL_PKGCONFIGDIR})
endforeach()
