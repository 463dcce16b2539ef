// A cairo image surface and its context over the size of a bitmap, with the
// conversions between cairo's premultiplied native-endian pixels and the
// bitmap's straight RGBA bytes. Main thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>

#include "JTK/imaging/Image.h"
#include "JTK/platform/Geometry.h"

typedef struct _cairo cairo_t;
typedef struct _cairo_surface cairo_surface_t;

namespace jtk::desktop {

// Whole pixels for a size in points (rounded up); none for empty, absurd
// (beyond maximumBitmapSide) or not-a-number sizes.
std::optional<std::pair<uint32_t, uint32_t>> bitmapSize(platform::Size size);

class Surface {
public:
    // A surface holding the bitmap's pixels.
    explicit Surface(const imaging::Image& bitmap);
    ~Surface();
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    bool isValid() const { return cairo_ != nullptr; }
    cairo_t* cairo() const { return cairo_; }
    cairo_surface_t* surface() const { return surface_; }
    // Writes the drawn pixels back as straight RGBA.
    void copyInto(imaging::Image& bitmap);

private:
    cairo_surface_t* surface_ = nullptr;
    cairo_t* cairo_ = nullptr;
};

}  // namespace jtk::desktop
