// The desktop's fonts: a fontconfig configuration of its own (the project's
// resources/fonts/fonts.conf, nothing of the system's or the user's) behind a
// pango font map, and one pango context with fixed rendering options. Made on
// first use and kept until the process ends. Main thread only.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

typedef struct _PangoContext PangoContext;
typedef struct _PangoFontDescription PangoFontDescription;

namespace jtk::desktop {

struct Font;

// The folder of the desktop's resources: the first of the resource folders
// (JTK/services/Resources.h) that holds fonts/fonts.conf; none when none does.
std::optional<std::filesystem::path> resourcesFolder();

// The shared text context: grey antialiasing, no hinting, no subpixel order,
// 72 dots an inch so that sizes in points are sizes in pixels.
PangoContext* fontContext();

// A new description of the font (the caller frees it).
PangoFontDescription* newFontDescription(const Font& font);

}  // namespace jtk::desktop
