// Readable input arguments: the modifier flags by name, and the options of a
// click as named fields, so that a call says what it does:
//
//   element("Select").click({.modifierFlags = jtk::shift});
//   element("Volume").click({.offset = {-99, 0}, .mouseUp = false}).drag({100, 0});
#pragma once

#include <cstdint>

#include "JTK/platform/Events.h"
#include "JTK/platform/Geometry.h"

namespace jtk {

// Modifier flags of posted events; combine them with |.
inline constexpr uint64_t shift = platform::eventFlags::shift;
inline constexpr uint64_t control = platform::eventFlags::control;
inline constexpr uint64_t alternate = platform::eventFlags::alternate;
inline constexpr uint64_t command = platform::eventFlags::command;

struct JTKClickOptions {
    // From the centre of the element, in points (x to the right, y up).
    platform::Point offset{0, 0};
    uint64_t modifierFlags = 0;
    bool doubleClick = false;
    // False leaves the button down, for a drag that follows.
    bool mouseUp = true;
};

}  // namespace jtk
