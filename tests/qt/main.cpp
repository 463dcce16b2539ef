// One QApplication for every test, on the offscreen platform unless the
// environment names another.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#include "JTK/qt/QtBackend.h"
#include "JTK/services/ProcessInfo.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    // Qt wants a private runtime folder; a headless run may have none.
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        QString runtime = QDir::tempPath() + QStringLiteral("/jtk-qt-tests-runtime");
        QDir().mkpath(runtime);
        QFile::setPermissions(runtime, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", runtime.toLocal8Bit());
    }
    // Settings and data of the tests stay in a folder of their own.
    QStandardPaths::setTestModeEnabled(true);
    QApplication app(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("JTK"));
    QCoreApplication::setApplicationName(QStringLiteral("QtBackendTests"));
    jtk::services::setProcessArguments(argc, argv);
    jtk::qt::installBackend(app);
    return RUN_ALL_TESTS();
}
