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
// FONTCONFIG_FILE at JTK's font configuration (DejaVu only) unless the
// environment names one. Fontconfig reads it once, so this works fully only
// before the QApplication is made; installBackend calls it too, for the case
// where fontconfig has not started yet. Returns the file used, or empty.
const char* prepareFontConfiguration();

}  // namespace jtk::qt
