#include "render/Surface.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "JTK/desktop/render/Rendering.h"

namespace jtk::desktop {

std::optional<std::pair<uint32_t, uint32_t>> bitmapSize(platform::Size size) {
    // Written so that not-a-number fails every test.
    if (!(size.width > 0 && size.height > 0)) return std::nullopt;
    if (!(size.width <= maximumBitmapSide && size.height <= maximumBitmapSide)) return std::nullopt;
    return std::pair{static_cast<uint32_t>(std::ceil(size.width)), static_cast<uint32_t>(std::ceil(size.height))};
}

Surface::Surface(const imaging::Image& bitmap) {
    if (bitmap.width == 0 || bitmap.height == 0 || bitmap.pixels.size() != size_t{bitmap.width} * bitmap.height * 4)
        return;
    surface_ = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(bitmap.width),
                                          static_cast<int>(bitmap.height));
    if (cairo_surface_status(surface_) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface_);
        surface_ = nullptr;
        return;
    }
    cairo_surface_flush(surface_);
    unsigned char* data = cairo_image_surface_get_data(surface_);
    int stride = cairo_image_surface_get_stride(surface_);
    for (uint32_t y = 0; y < bitmap.height; ++y) {
        auto* row = reinterpret_cast<uint32_t*>(data + static_cast<size_t>(stride) * y);
        for (uint32_t x = 0; x < bitmap.width; ++x) {
            const uint8_t* p = bitmap.pixel(x, y);
            uint32_t a = p[3];
            auto premultiply = [a](uint32_t c) { return (c * a + 127) / 255; };
            row[x] = (a << 24) | (premultiply(p[0]) << 16) | (premultiply(p[1]) << 8) | premultiply(p[2]);
        }
    }
    cairo_surface_mark_dirty(surface_);
    cairo_ = cairo_create(surface_);
}

Surface::~Surface() {
    if (cairo_) cairo_destroy(cairo_);
    if (surface_) cairo_surface_destroy(surface_);
}

void Surface::copyInto(imaging::Image& bitmap) {
    if (!surface_) return;
    cairo_surface_flush(surface_);
    const unsigned char* data = cairo_image_surface_get_data(surface_);
    int stride = cairo_image_surface_get_stride(surface_);
    for (uint32_t y = 0; y < bitmap.height; ++y) {
        const auto* row = reinterpret_cast<const uint32_t*>(data + static_cast<size_t>(stride) * y);
        for (uint32_t x = 0; x < bitmap.width; ++x) {
            uint32_t argb = row[x];
            uint32_t a = argb >> 24;
            uint8_t* p = bitmap.pixel(x, y);
            if (a == 0) {
                std::memset(p, 0, 4);
                continue;
            }
            auto unpremultiply = [a](uint32_t c) { return static_cast<uint8_t>(std::min(255u, (c * 255 + a / 2) / a)); };
            p[0] = unpremultiply((argb >> 16) & 0xff);
            p[1] = unpremultiply((argb >> 8) & 0xff);
            p[2] = unpremultiply(argb & 0xff);
            p[3] = static_cast<uint8_t>(a);
        }
    }
}

}  // namespace jtk::desktop
