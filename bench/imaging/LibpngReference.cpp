#include "LibpngReference.h"

#include <png.h>

namespace jtk::bench {

namespace {

void appendBytes(png_structp png, png_bytep data, png_size_t length) {
    auto* out = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}

void flushNothing(png_structp) {}

// level < 0: libpng's defaults; else that zlib level and the sub filter.
std::vector<uint8_t> encode(const imaging::Image& image, int level) {
    std::vector<uint8_t> out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        return out;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return {};
    }
    png_set_write_fn(png, &out, appendBytes, flushNothing);
    if (level >= 0) {
        png_set_compression_level(png, level);
        png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_SUB);
    }
    png_set_IHDR(png, info, image.width, image.height, 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (uint32_t y = 0; y < image.height; ++y) png_write_row(png, const_cast<png_bytep>(image.pixel(0, y)));
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return out;
}

}  // namespace

std::vector<uint8_t> encodeWithLibpng(const imaging::Image& image) { return encode(image, -1); }

std::vector<uint8_t> encodeWithLibpngFast(const imaging::Image& image) { return encode(image, 1); }

}  // namespace jtk::bench
