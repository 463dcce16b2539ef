// The application data folder: Qt's standard location for the application's
// data, so that the framework's folder (this folder / the application's
// name) is where a Qt application keeps its own data.
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
