// Pictures of views: a bitmap suited to caching a view's display, and the
// view's bounds drawn into it (with its subviews). Bitmaps are 8-bit straight
// RGBA, rows top to bottom, one pixel a point. Main thread only.
#pragma once

#include <optional>

#include "JTK/imaging/Image.h"
#include "JTK/platform/View.h"

namespace jtk::platform {

// A transparent bitmap the size of the view's bounds; none when the platform
// cannot draw the view or the bounds are empty or too large.
std::optional<imaging::Image> bitmapForCachingDisplay(const View& view);
// Draws the view's bounds into the bitmap made for it; false when it cannot.
bool cacheDisplayInBitmap(const View& view, imaging::Image& bitmap);

}  // namespace jtk::platform
