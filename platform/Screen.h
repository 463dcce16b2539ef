// The screens, main screen first; readable from any thread.
#pragma once

#include <vector>

#include "Geometry.h"

namespace platform {

struct Screen {
    Rect frame;
};

std::vector<Screen> screens();

}  // namespace platform
