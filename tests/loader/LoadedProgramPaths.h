// Where the tests of programs built without JTK keep their test data and
// test settings (in the source tree) and their screenshots: JTK_LOADED_SCREENSHOTS_DIR when set,
// else a folder of the build tree, as these programs' pictures depend on the
// Qt version installed and are not kept with the sources.
#pragma once

#include <cstdlib>
#include <string>

namespace loaded {

inline std::string testDataFolder(const std::string& program) {
    return std::string(JTK_LOADED_TESTS_SOURCE_DIR) + "/data/" + program;
}

// Laid out like the configuration folder ($XDG_CONFIG_HOME): Org/App.conf.
inline std::string testSettingsFolder(const std::string& program) {
    return std::string(JTK_LOADED_TESTS_SOURCE_DIR) + "/settings/" + program;
}

inline std::string screenshotsFolder(const std::string& program) {
    if (const char* folder = std::getenv("JTK_LOADED_SCREENSHOTS_DIR"); folder && *folder) return folder;
    return std::string(JTK_LOADED_TESTS_BINARY_DIR) + "/Screenshots/" + program;
}

}  // namespace loaded
