// A decoded picture: 8-bit RGBA with straight (not premultiplied) alpha, rows
// top to bottom. Straight alpha keeps the colour of a transparent pixel, so
// that a comparison can see it change.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace jtk::imaging {

struct Image {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint8_t> pixels;  // width * height * 4 bytes: r, g, b, a

    Image() = default;
    Image(uint32_t w, uint32_t h) : width(w), height(h), pixels(size_t{w} * h * 4, 0) {}
    uint8_t* pixel(uint32_t x, uint32_t y) { return pixels.data() + (size_t{y} * width + x) * 4; }
    const uint8_t* pixel(uint32_t x, uint32_t y) const { return pixels.data() + (size_t{y} * width + x) * 4; }
    bool operator==(const Image&) const = default;
};

}  // namespace jtk::imaging
