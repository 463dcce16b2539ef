// A decoded picture: RGBA with straight (not premultiplied) alpha, rows top to
// bottom. Straight alpha keeps the colour of a transparent pixel, so that a
// comparison can see it change. Image has 8 bits per channel; Image16 has 16,
// for 16-bit PNGs compared without losing their low byte (8-bit pictures
// widen into it exactly, v * 257).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace jtk::imaging {

template <class Sample>
struct BasicImage {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<Sample> pixels;  // width * height * 4 samples: r, g, b, a

    BasicImage() = default;
    BasicImage(uint32_t w, uint32_t h) : width(w), height(h), pixels(size_t{w} * h * 4, 0) {}
    Sample* pixel(uint32_t x, uint32_t y) { return pixels.data() + (size_t{y} * width + x) * 4; }
    const Sample* pixel(uint32_t x, uint32_t y) const { return pixels.data() + (size_t{y} * width + x) * 4; }
    bool operator==(const BasicImage&) const = default;
};

using Image = BasicImage<uint8_t>;
using Image16 = BasicImage<uint16_t>;

}  // namespace jtk::imaging
