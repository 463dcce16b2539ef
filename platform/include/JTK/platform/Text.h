// Text objects (a window's field editor) and their notifications. The
// notifications name the edited control as their object and carry the text
// object in their user info under textObjectKey.
#pragma once

#include <optional>
#include <string>

#include "JTK/platform/Object.h"

namespace jtk::platform {

inline constexpr const char* textDidChangeNotification = "TextDidChangeNotification";
inline constexpr const char* textDidEndEditingNotification = "TextDidEndEditingNotification";
inline constexpr const char* textObjectKey = "FieldEditor";

// The whole text of a text object; none for any other object.
std::optional<std::string> textObjectString(const Object& object);

}  // namespace jtk::platform
