// An argument value of a recorded action, as the recorder turns it into
// source text: a text, a Boolean, a point, event flags or a key code.
#pragma once

#include <cstdint>
#include <string>
#include <variant>

#include "JTK/platform/Geometry.h"

namespace jtk {

struct JTKKeyCode {
    uint16_t code = 0;
    bool operator==(const JTKKeyCode&) const = default;
};
struct JTKEventFlags {
    uint64_t flags = 0;
    bool operator==(const JTKEventFlags&) const = default;
};

using JTKStringConvertable = std::variant<std::string, bool, platform::Point, JTKEventFlags, JTKKeyCode>;

}  // namespace jtk
