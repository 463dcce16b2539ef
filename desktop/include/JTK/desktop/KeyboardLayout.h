// The US ANSI keyboard layout: which characters a virtual key code types,
// with and without shift, and the codes of the keys the desktop handles itself.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "JTK/platform/Events.h"

namespace jtk::desktop::keyCodes {
inline constexpr uint16_t returnKey = 36;
inline constexpr uint16_t tab = 48;
inline constexpr uint16_t space = 49;
inline constexpr uint16_t deleteKey = 51;
inline constexpr uint16_t escape = 53;
inline constexpr uint16_t leftArrow = 123;
inline constexpr uint16_t rightArrow = 124;
}  // namespace jtk::desktop::keyCodes

namespace jtk::desktop {

// The characters the key types under the flags (shift gives the upper row);
// empty for keys that type nothing (arrows, function keys, no key).
std::string charactersForKey(uint16_t keyCode, uint64_t flags);
// The characters a key event types: its unicode text when it carries one,
// otherwise what its key types under its flags.
std::string charactersOfEvent(const platform::Event& event);
// The key that types a character without shift, if any.
std::optional<uint16_t> keyCodeForCharacter(char character);

}  // namespace jtk::desktop
