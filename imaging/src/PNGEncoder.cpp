// PNG encoding of the three pixel layouts the library takes.
#include <algorithm>
#include <cstring>
#include <memory>

#include "PNGRowEncoder.h"

namespace jtk::imaging {

std::vector<uint8_t> encodePNG(const Image& image) {
    if (!png::encodable(image.width, image.height) || image.pixels.size() != size_t{image.width} * image.height * 4) {
        return {};
    }
    return png::encodeRows(image.width, image.height, 8, [&](uint32_t y, uint8_t*, int) { return image.pixel(0, y); });
}

std::vector<uint8_t> encodePNG(const Image16& image) {
    if (!png::encodable(image.width, image.height) || image.pixels.size() != size_t{image.width} * image.height * 4) {
        return {};
    }
    size_t samples = size_t{image.width} * 4;
    return png::encodeRows(image.width, image.height, 16, [&](uint32_t y, uint8_t* buffer, int) {
        const uint16_t* row = image.pixel(0, y);
        for (size_t i = 0; i < samples; ++i) {
            buffer[i * 2] = uint8_t(row[i] >> 8);
            buffer[i * 2 + 1] = uint8_t(row[i]);
        }
        return static_cast<const uint8_t*>(buffer);
    });
}

std::vector<uint8_t> encodePNGFromPremultipliedARGB32(const uint8_t* rows, uint32_t width, uint32_t height,
                                                      size_t stride) {
    if (!rows || !png::encodable(width, height) || stride < size_t{width} * 4) return {};
    return png::encodeRows(width, height, 8, [&](uint32_t y, uint8_t* buffer, int) {
        const uint8_t* source = rows + size_t{y} * stride;
        for (uint32_t x = 0; x < width; ++x) {
            uint32_t word;
            std::memcpy(&word, source + x * 4, 4);
            uint32_t alpha = word >> 24, red = (word >> 16) & 0xff, green = (word >> 8) & 0xff, blue = word & 0xff;
            uint8_t* out = buffer + x * 4;
            if (alpha == 255) {
                out[0] = uint8_t(red), out[1] = uint8_t(green), out[2] = uint8_t(blue), out[3] = 255;
            } else if (alpha == 0) {
                std::memset(out, 0, 4);
            } else {  // a colour above its alpha is invalid premultiplied data: clamp
                out[0] = uint8_t(std::min<uint32_t>((red * 255 + alpha / 2) / alpha, 255));
                out[1] = uint8_t(std::min<uint32_t>((green * 255 + alpha / 2) / alpha, 255));
                out[2] = uint8_t(std::min<uint32_t>((blue * 255 + alpha / 2) / alpha, 255));
                out[3] = uint8_t(alpha);
            }
        }
        return static_cast<const uint8_t*>(buffer);
    });
}

}  // namespace jtk::imaging
