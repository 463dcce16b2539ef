// The screens, main screen first; readable from any thread.
#pragma once

#include <vector>

#include "JTK/platform/Geometry.h"

namespace jtk::platform {

struct Screen {
    Rect frame;
};

std::vector<Screen> screens();

}  // namespace jtk::platform
