// What a Qt benchmark program sets before its QApplication exists.
#pragma once

#include <QDir>
#include <QFile>
#include <QString>

namespace jtk::bench {

// The offscreen platform unless QT_QPA_PLATFORM names another, and a private
// runtime folder, which Qt wants and a headless machine may not have.
inline void prepareQtEnvironment() {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        QString runtime = QDir::tempPath() + QStringLiteral("/jtk-bench-runtime");
        QDir().mkpath(runtime);
        QFile::setPermissions(runtime, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", runtime.toLocal8Bit());
    }
}

}  // namespace jtk::bench
