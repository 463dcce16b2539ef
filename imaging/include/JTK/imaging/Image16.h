// A decoded picture with 16 bits per channel: RGBA, straight alpha, rows top
// to bottom. Used where a 16-bit PNG must be compared without losing its low
// byte; 8-bit pictures widen into it exactly (v * 257).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace jtk::imaging {

struct Image16 {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint16_t> pixels;  // width * height * 4 samples: r, g, b, a

    Image16() = default;
    Image16(uint32_t w, uint32_t h) : width(w), height(h), pixels(size_t{w} * h * 4, 0) {}
    uint16_t* pixel(uint32_t x, uint32_t y) { return pixels.data() + (size_t{y} * width + x) * 4; }
    const uint16_t* pixel(uint32_t x, uint32_t y) const { return pixels.data() + (size_t{y} * width + x) * 4; }
    bool operator==(const Image16&) const = default;
};

}  // namespace jtk::imaging
