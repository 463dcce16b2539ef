// The GTK 4 backend of JTK, over GDK's X11 display. A GTK application built
// with JTK prepares the fonts before GTK starts, installs the backend once
// GTK is initialised and starts its tests before its main loop runs:
//
//     jtk::gtk::prepareFontConfiguration();
//     gtk_init();                      // or a GtkApplication's "startup"
//     jtk::gtk::installBackend();
//     jtk::JTKTestSuite::runTests();
//     ... run the main loop (g_application_run or a GMainLoop) ...
#pragma once

namespace jtk::gtk {

// Hooks the backend into GTK: the main queue, the event observer that feeds
// the event monitors, the screens, and, when the launch asks for a test run,
// the settings that make pictures the same on every run (DejaVu Sans 10 pt,
// 96 DPI, no animations, no caret blinking). Idempotent; main thread, after
// GTK is initialised on an X11 display.
void installBackend();

// Under a test run, points FONTCONFIG_FILE at JTK's font configuration
// (DejaVu only) unless the environment gives one. Fontconfig reads it once,
// so this works only before GTK starts. Returns the file used, or empty.
const char* prepareFontConfiguration();

}  // namespace jtk::gtk
