// The Qt Widgets backend of JTK. A Qt application built with JTK calls
// installBackend once its QApplication exists, then runs its tests with
// jtk::JTKTestSuite::runTests() and its event loop with app.exec():
//
//     jtk::qt::prepareFontConfiguration();
//     QApplication app(argc, argv);
//     jtk::qt::installBackend(app);
//     jtk::JTKTestSuite::runTests();
//     return app.exec();
#pragma once

class QApplication;

namespace jtk::qt {

// Hooks the backend into the application: the event filter that keeps the
// window order and runs the event monitors, the screens, and, when the
// launch arguments contain "uxtest", the settings that make pictures the
// same on every run (Fusion style, DejaVu Sans 10 pt, no caret blinking).
// Idempotent; GUI thread.
void installBackend(QApplication& application);

// Under a test run ("uxtest" among the launch arguments), points
// FONTCONFIG_FILE at JTK's font configuration (DejaVu only) and sets
// QT_FONT_DPI to 96 (the same logical DPI on every Qt platform), each unless
// the environment gives one. Fontconfig and Qt read them once, so this works
// fully only before the QApplication is made; installBackend calls it too,
// for the case where neither has started yet. Returns the file used, or empty.
const char* prepareFontConfiguration();

// Under a test run, makes DejaVu Sans 10 pt the application's font, as
// installBackend does. A program that makes its widgets before it could
// call installBackend (one run under the loader) has it set as soon as its
// QApplication exists: a widget's font derived from the default when it is
// made (a display's "default + 8 pt") then has the same size on every Qt
// platform, whose own default fonts differ (offscreen 12 pt, X11 9 pt).
void setTestFont();

}  // namespace jtk::qt
