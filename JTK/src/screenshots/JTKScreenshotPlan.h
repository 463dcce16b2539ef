// One capture's reading of the settings made through JTKScreenshots: the
// views left out and the views masked, found once at the start of the
// capture, and the masks painted into a view's picture. Main thread only.
#pragma once

#include <memory>
#include <vector>

#include "JTK/imaging/Image.h"
#include "JTK/platform/View.h"

namespace jtk {

// The flat colour of a masked area: opaque mid grey, plainly not the
// application's own drawing when a person looks at the picture.
inline constexpr uint8_t jtkMaskGrey = 0x80;

class JTKScreenshotPlan {
public:
    // The settings' lookups resolved now, against the live windows.
    static JTKScreenshotPlan current();
    // Left out and masked as given (for code that found the views itself).
    JTKScreenshotPlan(std::vector<std::shared_ptr<platform::View>> leftOut,
                      std::vector<std::shared_ptr<platform::View>> masked);
    JTKScreenshotPlan() = default;

    // False for a view that is left out, lies inside one that is, or lies
    // inside a masked view (the mask hides it whole).
    bool photographs(const platform::View& view) const;
    bool isMasked(const platform::View& view) const;
    // Paints the visible area of every masked view that is this view or lies
    // inside it, in the view's picture (its bounds, rows top to bottom).
    void paintMasks(const platform::View& view, imaging::Image& picture) const;

private:
    std::vector<std::shared_ptr<platform::View>> leftOut_, masked_;
};

}  // namespace jtk
