// The view walk and the reading order of the application-wide searches:
// depth-first pre-order skipping hidden subtrees; rows top to bottom with a
// 20-point band, left to right within a row. All run as main-thread steps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "JTK/platform/Geometry.h"
#include "JTK/platform/View.h"

namespace jtk {

// The view, then each subview's walk in subview order. Nothing for a hidden
// view (its subtree included) or for a view without a superview.
std::vector<std::shared_ptr<platform::View>> jtkAllViews(const std::shared_ptr<platform::View>& view);

// The view's bounds on screen; the zero rectangle for a view in no window.
platform::Rect jtkScreenFrame(const std::shared_ptr<platform::View>& view);
// The same, read directly by code that already runs on the main thread.
platform::Rect jtkReadScreenFrame(const platform::View& view);

// A coordinate truncated toward zero to a 64-bit integer. Values beyond the
// range saturate; not-a-number gives nanValue.
int64_t jtkTruncatedCoordinate(double value, int64_t nanValue = 0);

// Rows from the top of the screen down (a row holds the views whose truncated
// top edge lies less than 20 points below that of its first view), each row
// left to right. Both sorts are stable, so ties keep the input order. Each
// frame is read once: within one main-thread step a view cannot move, so
// this is the order that reading the frames in every comparison would give.
std::vector<std::shared_ptr<platform::View>> jtkSortedInReadingOrder(std::vector<std::shared_ptr<platform::View>> views);

// The same order for rectangles on screen: the indices of frames, in
// reading order.
std::vector<size_t> jtkReadingOrder(const std::vector<platform::Rect>& frames);

}  // namespace jtk
