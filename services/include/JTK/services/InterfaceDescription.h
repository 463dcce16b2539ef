// Interface files read into plain data: the window and its views as an
// interface file describes them (format in docs/interface-files.md), checked
// once here so that each backend only builds its own controls from it.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "JTK/platform/Geometry.h"

namespace jtk::services {

struct ViewDescription {
    std::string kind;  // "View", "Box", "Label", "TextField", "ImageView" or "Button"
    platform::Rect frame;  // in the superview's coordinates, y up
    std::string title, text, name, outlet, action, keyEquivalent;
    std::vector<ViewDescription> subviews;
};

struct WindowDescription {
    std::string title;
    platform::Rect contentRect;  // on the screen, y up
    std::vector<ViewDescription> subviews;
};

struct ReadInterface {
    std::optional<WindowDescription> window;  // none when the file is faulty
    std::string error;                        // why, in one line naming the place of the fault
};

// Reads an interface file's text; the name only appears in messages.
ReadInterface parseInterfaceText(const std::string& text, const std::string& name);

// Finds "<name>.json" in the folders, in order, and reads it.
ReadInterface readInterfaceFile(const std::string& name, const std::vector<std::filesystem::path>& folders);

}  // namespace jtk::services
