// A font as views ask for it: a family of the desktop's own font set, a size
// in points (one point is one pixel of a capture) and a weight.
#pragma once

#include <string>

namespace jtk::desktop {

struct Font {
    std::string family = "DejaVu Sans";
    double size = 13;
    bool bold = false;

    // The font of controls, labels and menus.
    static Font system(double size = 13) { return {"DejaVu Sans", size, false}; }
    static Font boldSystem(double size = 13) { return {"DejaVu Sans", size, true}; }
    // Box titles, informative texts, key equivalents.
    static Font small() { return {"DejaVu Sans", 11, false}; }
    static Font monospaced(double size = 12) { return {"DejaVu Sans Mono", size, false}; }

    bool operator==(const Font&) const = default;
};

}  // namespace jtk::desktop
