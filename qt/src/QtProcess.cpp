// The application data folder: Qt's standard location for the application's
// data, so that the framework's folder (this folder / the application's
// name) is where a Qt application keeps its own data; and the trust that
// synthesised input needs.
#include <QDir>
#include <QStandardPaths>

#include "JTK/platform/Process.h"

namespace jtk::platform {

std::optional<std::filesystem::path> applicationSupportDirectory() {
    QString location = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (location.isEmpty() || !QDir::isAbsolutePath(location)) return std::nullopt;
    return std::filesystem::path(location.toStdString()).parent_path();
}

}  // namespace jtk::platform

namespace jtk::platform {

// Input reaches the widgets inside the process, past no system gate: a Qt
// application needs no permission to be driven.
bool isProcessTrusted() { return true; }

bool isProcessTrustedWithOptions(bool) { return true; }

}  // namespace jtk::platform
