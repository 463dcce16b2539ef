// The Qt sample application. Launched with an argument containing "uxtest"
// it runs its UI tests; otherwise it shows its data and, as nobody may be at
// a headless display to close it, ends after a few seconds
// (QTSAMPLE_RUN_SECONDS overrides how many; 0 keeps it running).
#include <QApplication>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

#include <JTK/JTKTestSuite.h>
#include <JTK/qt/QtBackend.h>

#include "QtSampleWindow.h"

int main(int argc, char** argv) {
    // Under a test run, the fonts are pinned before Qt starts fontconfig.
    jtk::qt::prepareFontConfiguration();
    QApplication app(argc, argv);
    // The organisation and name place the data folder and the settings.
    QApplication::setOrganizationName(QStringLiteral("JTK"));
    QApplication::setApplicationName(QStringLiteral("QtSample"));
    jtk::qt::installBackend(app);

    qtsample::QtSampleWindow window;
    window.show();

    jtk::JTKTestSuite::runTests();
    // Load once the event loop turns, after a test run has put its data in place.
    QTimer::singleShot(0, &window, [&window] { window.loadData(); });

    if (!jtk::JTKTestSuite::isTesting()) {
        double seconds = 3;
        if (const char* text = std::getenv("QTSAMPLE_RUN_SECONDS")) seconds = std::atof(text);
        QTimer::singleShot(0, &window, [&window] {
            std::printf("QtSample: %s\n", qPrintable(window.windowTitle()));
            std::fflush(stdout);
        });
        if (seconds > 0) QTimer::singleShot(static_cast<int>(seconds * 1000), &app, &QApplication::quit);
    }
    return app.exec();
}
