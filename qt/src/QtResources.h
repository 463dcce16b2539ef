// Where the Qt backend finds JTK's resources (the font configuration, the
// interface files): JTK_RESOURCES_DIR when set, the source tree's resources
// (a build tree), then the installed copy; the first that holds the file wins.
#pragma once

#include <filesystem>
#include <vector>

namespace jtk::qt {

std::vector<std::filesystem::path> resourceFolders();

}  // namespace jtk::qt
