// The Qt Widgets backend of JTK. A Qt application built with JTK calls
// installBackend once its QApplication exists, then runs its tests with
// jtk::JTKTestSuite::runTests() and its event loop with app.exec():
//
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

}  // namespace jtk::qt
