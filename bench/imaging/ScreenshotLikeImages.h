// Synthetic pictures that compress and filter like captures of a desktop
// application: flat backgrounds, bezels with gradients, antialiased text,
// transparent corners and labels, a few photo-like image views. Made from a
// fixed seed, so every run of a benchmark works on the same pixels.
#pragma once

#include <cstdint>
#include <vector>

#include "JTK/imaging/Image.h"

namespace jtk::bench {

// The views of a window, as a screenshot pass captures them (200 by default).
std::vector<imaging::Image> makeViewSet(int count = 200);

// The same views as on a screen of two pixels per point (HiDPI): each
// pixel of makeViewSet's views doubled in both directions.
std::vector<imaging::Image> makeHiDPIViewSet(int count = 200);

// One view's picture of the given kind (0 button, 1 label, 2 text field,
// 3 box, 4 list, 5 image view, 6 window content).
imaging::Image makeView(int kind, uint32_t width, uint32_t height, uint64_t seed);

// A whole screen: wallpaper, menu bar and overlapping windows.
imaging::Image makeScreen(uint32_t width, uint32_t height, uint64_t seed);

// Changes every pixel of a few rectangles whose area is `fraction` of the
// image (colour shifted, as when text or a highlight changes); answers how
// many pixels changed.
uint64_t changeRegions(imaging::Image& image, double fraction, uint64_t seed);

}  // namespace jtk::bench
