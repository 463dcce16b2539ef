// Where the desktop looks for interface files: the folders an application
// adds, in the order added, then the desktop's own resources. A file is
// found by name plus ".json". The format is in docs/interface-files.md.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "JTK/platform/Interface.h"

namespace jtk::desktop {

// Adds a folder to search before the desktop's resources (main thread).
void addInterfaceFolder(const std::filesystem::path& folder);

// Builds the window an interface file's text describes (main thread); the
// name only appears in messages.
platform::LoadedInterface loadInterfaceText(const std::string& text, const std::string& name,
                                            const std::shared_ptr<platform::InterfaceOwner>& owner);

}  // namespace jtk::desktop
