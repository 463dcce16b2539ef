// Per-test options: skipScreenshots (a Boolean value) and order (an integer).
#pragma once

#include <cstdint>
#include <optional>

namespace jtk {

enum class JTKTestOption : int64_t { skipScreenshots = 0, order = 1 };

// The option with this raw value; none for any other value.
inline std::optional<JTKTestOption> makeTestOption(int64_t rawValue) {
    if (rawValue == 0) return JTKTestOption::skipScreenshots;
    if (rawValue == 1) return JTKTestOption::order;
    return std::nullopt;
}

}  // namespace jtk
