# The libraries JTK is built on. The installed package config finds the same
# ones (JTKConfig.cmake.in), so keep the two lists in step; nlohmann_json is
# header-only and private to the build, so the package config leaves it out.
find_package(Threads REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc i18n)
find_package(nlohmann_json 3 REQUIRED)
find_package(PkgConfig REQUIRED)
pkg_check_modules(PLIST REQUIRED IMPORTED_TARGET GLOBAL libplist-2.0)
pkg_check_modules(SPNG REQUIRED IMPORTED_TARGET GLOBAL spng)
pkg_check_modules(DEFLATE REQUIRED IMPORTED_TARGET GLOBAL libdeflate)
# Drawing on the embedded desktop: cairo for shapes, pango for text, through
# the desktop's own fontconfig set-up.
pkg_check_modules(CAIRO REQUIRED IMPORTED_TARGET GLOBAL cairo)
pkg_check_modules(PANGOCAIRO REQUIRED IMPORTED_TARGET GLOBAL pangocairo pangoft2)
pkg_check_modules(FONTCONFIG REQUIRED IMPORTED_TARGET GLOBAL fontconfig)
# The on-screen viewer of the embedded desktop: a window on the person's display.
pkg_check_modules(SDL2 REQUIRED IMPORTED_TARGET GLOBAL sdl2)
# The Qt Widgets backend: Qt 6 for applications built with JTK, Qt 5.15 for
# loading JTK into programs built against it. Either may be absent; the
# backend is then not built.
find_package(Qt6 COMPONENTS Widgets Test QUIET)
find_package(Qt5 5.15 COMPONENTS Widgets Test QUIET)
# The GTK 4 backend: GTK 4 on GDK's X11 display, Xlib for window placement
# and XTest for input. Absent pieces leave the backend out.
pkg_check_modules(GTK4 IMPORTED_TARGET GLOBAL gtk4 x11 xtst)
