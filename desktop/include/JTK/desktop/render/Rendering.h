// The embedded desktop's renderer: a view with its subviews drawn into a
// bitmap of its bounds, and the whole screen (desktop, windows in stacking
// order, the menu bar with its status windows, open menus) drawn into one
// bitmap for an on-screen viewer. One pixel a point; same tree, same pixels.
// Main thread only.
#pragma once

#include <optional>

#include "JTK/desktop/render/DrawContext.h"
#include "JTK/imaging/Image.h"

namespace jtk::desktop {

class Menu;
class View;
class Window;

// Bitmaps larger than this many pixels a side are not made: a view of absurd
// size yields no bitmap rather than exhausting memory.
inline constexpr double maximumBitmapSide = 16384;

// A transparent bitmap of the view's bounds size (rounded up to whole
// pixels); none for empty, absurd or not-a-number bounds.
std::optional<imaging::Image> bitmapForView(const View& view);
// Draws the view's bounds, with its visible subviews, into the bitmap (over
// what it holds), the bounds' origin at the bitmap's bottom-left corner.
void drawViewIntoBitmap(const View& view, imaging::Image& bitmap);
// Both steps: the view's picture, or none.
std::optional<imaging::Image> renderView(const View& view);

// Draws a view and its visible subviews into the context, in the view's own
// coordinates, clipped to its bounds. Hidden views draw nothing.
void drawViewTree(DrawContext& context, const View& view);

// The window's whole frame: title bar and content (the frame view's tree).
std::optional<imaging::Image> renderWindow(const Window& window);
// An open menu as it tracks (rows, highlight, marks); none when it is closed.
std::optional<imaging::Image> renderMenu(const Menu& menu);
// The main screen as a person would see it.
imaging::Image renderScreen();

}  // namespace jtk::desktop
