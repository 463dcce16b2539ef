// Where every backend finds JTK's run-time resources (the font
// configuration, interface files): $JTK_RESOURCES_DIR when set, then the
// source tree's resources/ (a build tree), then the installed copy.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

namespace jtk::services {

// The folders in the order they are searched.
std::vector<std::filesystem::path> resourceFolders();
// The first folder that holds the file (a path relative to the folder). A
// $JTK_RESOURCES_DIR without it is passed over with a message.
std::optional<std::filesystem::path> resourceFolderHolding(const std::filesystem::path& relativeFile);

}  // namespace jtk::services
