#include "JTK/services/Resources.h"

#include <cstdlib>

#include "JTK/platform/Process.h"

namespace jtk::services {

namespace fs = std::filesystem;

namespace {

const char* overridingFolder() {
    const char* folder = std::getenv("JTK_RESOURCES_DIR");
    return folder && *folder ? folder : nullptr;
}

}  // namespace

std::vector<fs::path> resourceFolders() {
    std::vector<fs::path> folders;
    if (const char* folder = overridingFolder()) folders.emplace_back(folder);
    folders.emplace_back(JTK_RESOURCES_SOURCE_DIR);
    folders.emplace_back(JTK_RESOURCES_INSTALL_DIR);
    return folders;
}

std::optional<fs::path> resourceFolderHolding(const fs::path& relativeFile) {
    for (const auto& folder : resourceFolders()) {
        std::error_code error;
        if (fs::is_regular_file(folder / relativeFile, error)) return folder;
        if (const char* override = overridingFolder(); override && folder == override)
            platform::systemLog("JTK: JTK_RESOURCES_DIR=" + folder.string() + " holds no " + relativeFile.string() +
                                "; looking elsewhere");
    }
    return std::nullopt;
}

}  // namespace jtk::services
