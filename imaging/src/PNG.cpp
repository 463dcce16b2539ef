// PNG through libpng: straight RGBA rows in, rows out; no time or text chunks.
#include "JTK/imaging/PNG.h"

#include <png.h>

#include <cstring>

namespace jtk::imaging {

namespace {

void appendBytes(png_structp png, png_bytep data, png_size_t length) {
    auto* out = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}

void flushNothing(png_structp) {}

}  // namespace

std::vector<uint8_t> encodePNG(const Image& image) {
    std::vector<uint8_t> out;
    if (image.width == 0 || image.height == 0 || image.pixels.size() != size_t{image.width} * image.height * 4) {
        return out;
    }
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
    png_set_IHDR(png, info, image.width, image.height, 8, PNG_COLOR_TYPE_RGBA, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    for (uint32_t y = 0; y < image.height; ++y) {
        png_write_row(png, const_cast<png_bytep>(image.pixel(0, y)));
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return out;
}

std::optional<Image> decodePNG(const std::vector<uint8_t>& bytes, std::string* error) {
    png_image decoded;
    std::memset(&decoded, 0, sizeof decoded);
    decoded.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&decoded, bytes.data(), bytes.size())) {
        if (error) *error = decoded.message;
        return std::nullopt;
    }
    decoded.format = PNG_FORMAT_RGBA;
    Image image(decoded.width, decoded.height);
    if (!png_image_finish_read(&decoded, nullptr, image.pixels.data(), 0, nullptr)) {
        if (error) *error = decoded.message;
        png_image_free(&decoded);
        return std::nullopt;
    }
    return image;
}

}  // namespace jtk::imaging
