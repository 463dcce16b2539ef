// PNG decoding of every colour type and bit depth (files written by libpng
// here), and encoding: lossless, readable by libpng, the same bytes on every
// run whatever was encoded before on the thread, and cairo's
// un-premultiplication for premultiplied bitmaps.
#include <gtest/gtest.h>
#include <png.h>

#include <cstring>
#include <random>
#include <thread>

#include "JTK/imaging/PNG.h"

using namespace jtk::imaging;

namespace {

struct Format {
    const char* name;
    int colourType, depth;
    bool transparency = false, interlaced = false;
    int filter = PNG_ALL_FILTERS;  // or one filter for every row
};

constexpr uint32_t width = 13, height = 7;

// The raw sample of channel c at (x, y), in the file's own depth.
uint32_t sampleAt(const Format& f, uint32_t x, uint32_t y, int c) {
    return (x * 7919u + y * 104729u + c * 65537u + x * y * 31u) % (1u << f.depth);
}

uint16_t widen(uint32_t sample, int depth) { return uint16_t(sample * 65535u / ((1u << depth) - 1)); }

std::array<uint16_t, 4> paletteEntry(uint32_t index, bool transparency) {
    return {uint16_t((index * 37 % 256) * 257), uint16_t((index * 91 % 256) * 257), uint16_t((255 - index) * 257),
            uint16_t(transparency ? (index * 53 % 256) * 257 : 65535)};
}

// What a decoder must give at 16 bits per channel.
std::array<uint16_t, 4> expectedAt(const Format& f, uint32_t x, uint32_t y) {
    auto s = [&](int c) { return sampleAt(f, x, y, c); };
    auto key = [&](int c) { return sampleAt(f, 0, 0, c); };  // the transparent colour of tRNS
    uint16_t opaque = 65535;
    switch (f.colourType) {
        case PNG_COLOR_TYPE_GRAY: {
            uint16_t g = widen(s(0), f.depth);
            return {g, g, g, uint16_t(f.transparency && s(0) == key(0) ? 0 : opaque)};
        }
        case PNG_COLOR_TYPE_GRAY_ALPHA: {
            uint16_t g = widen(s(0), f.depth);
            return {g, g, g, widen(s(1), f.depth)};
        }
        case PNG_COLOR_TYPE_RGB: {
            bool keyed = f.transparency && s(0) == key(0) && s(1) == key(1) && s(2) == key(2);
            return {widen(s(0), f.depth), widen(s(1), f.depth), widen(s(2), f.depth), uint16_t(keyed ? 0 : opaque)};
        }
        case PNG_COLOR_TYPE_RGBA:
            return {widen(s(0), f.depth), widen(s(1), f.depth), widen(s(2), f.depth), widen(s(3), f.depth)};
        default: return paletteEntry(s(0), f.transparency);
    }
}

void appendBytes(png_structp png, png_bytep data, png_size_t length) {
    auto* out = static_cast<std::vector<uint8_t>*>(png_get_io_ptr(png));
    out->insert(out->end(), data, data + length);
}

// The test picture in the format, written by libpng.
std::vector<uint8_t> writeWithLibpng(const Format& f) {
    std::vector<uint8_t> out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return {};
    }
    png_set_write_fn(png, &out, appendBytes, nullptr);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, f.filter);
    png_set_IHDR(png, info, width, height, f.depth, f.colourType,
                 f.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    std::vector<png_color> palette;
    std::vector<png_byte> alphas;
    if (f.colourType == PNG_COLOR_TYPE_PALETTE) {
        for (uint32_t i = 0; i < (1u << f.depth); ++i) {
            auto entry = paletteEntry(i, f.transparency);
            palette.push_back({png_byte(entry[0] >> 8), png_byte(entry[1] >> 8), png_byte(entry[2] >> 8)});
            alphas.push_back(png_byte(entry[3] >> 8));
        }
        png_set_PLTE(png, info, palette.data(), int(palette.size()));
        if (f.transparency) png_set_tRNS(png, info, alphas.data(), int(alphas.size()), nullptr);
    } else if (f.transparency) {
        auto sample = [&](int c) { return png_uint_16(sampleAt(f, 0, 0, c)); };
        png_color_16 key{0, sample(0), sample(1), sample(2), sample(0)};  // index, red, green, blue, grey
        png_set_tRNS(png, info, nullptr, 0, &key);
    }
    int channels = png_get_channels(png, info);
    size_t rowBytes = (size_t(width) * channels * f.depth + 7) / 8;
    std::vector<std::vector<png_byte>> rows(height, std::vector<png_byte>(rowBytes, 0));
    std::vector<png_bytep> rowPointers;
    for (uint32_t y = 0; y < height; ++y) {
        size_t bit = 0;
        for (uint32_t x = 0; x < width; ++x) {
            for (int c = 0; c < channels; ++c, bit += f.depth) {
                uint32_t v = sampleAt(f, x, y, c);
                if (f.depth == 16) {
                    rows[y][bit / 8] = png_byte(v >> 8), rows[y][bit / 8 + 1] = png_byte(v);
                } else {
                    rows[y][bit / 8] |= png_byte(v << (8 - f.depth - bit % 8));
                }
            }
        }
        rowPointers.push_back(rows[y].data());
    }
    png_set_rows(png, info, rowPointers.data());
    png_write_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    png_destroy_write_struct(&png, &info);
    return out;
}

class DecodeFormat : public testing::TestWithParam<Format> {};

TEST_P(DecodeFormat, givesTheFilesValuesAsRGBA) {
    const Format& f = GetParam();
    auto file = writeWithLibpng(f);
    ASSERT_FALSE(file.empty());
    std::string error;
    auto wide = decodePNG16(file, &error);
    auto narrow = decodePNG(file, &error);
    ASSERT_TRUE(wide && narrow) << error;
    ASSERT_EQ(wide->width, width);
    ASSERT_EQ(narrow->height, height);
    for (uint32_t y = 0; y < height; ++y) {
        for (uint32_t x = 0; x < width; ++x) {
            auto expected = expectedAt(f, x, y);
            for (int c = 0; c < 4; ++c) {
                ASSERT_EQ(wide->pixel(x, y)[c], expected[c]) << "16-bit at " << x << "," << y << " channel " << c;
                ASSERT_EQ(narrow->pixel(x, y)[c], expected[c] >> 8) << "8-bit at " << x << "," << y << " channel " << c;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(AllTypesAndDepths, DecodeFormat, testing::Values(
    Format{"grey1", PNG_COLOR_TYPE_GRAY, 1}, Format{"grey2", PNG_COLOR_TYPE_GRAY, 2},
    Format{"grey4", PNG_COLOR_TYPE_GRAY, 4}, Format{"grey8", PNG_COLOR_TYPE_GRAY, 8},
    Format{"grey16", PNG_COLOR_TYPE_GRAY, 16}, Format{"grey8Key", PNG_COLOR_TYPE_GRAY, 8, true},
    Format{"grey16Key", PNG_COLOR_TYPE_GRAY, 16, true}, Format{"greyAlpha8", PNG_COLOR_TYPE_GRAY_ALPHA, 8},
    Format{"greyAlpha16", PNG_COLOR_TYPE_GRAY_ALPHA, 16}, Format{"rgb8", PNG_COLOR_TYPE_RGB, 8},
    Format{"rgb16", PNG_COLOR_TYPE_RGB, 16}, Format{"rgb8Key", PNG_COLOR_TYPE_RGB, 8, true},
    Format{"rgb16Key", PNG_COLOR_TYPE_RGB, 16, true}, Format{"rgba8", PNG_COLOR_TYPE_RGBA, 8},
    Format{"rgba16", PNG_COLOR_TYPE_RGBA, 16}, Format{"palette1", PNG_COLOR_TYPE_PALETTE, 1},
    Format{"palette2", PNG_COLOR_TYPE_PALETTE, 2}, Format{"palette4", PNG_COLOR_TYPE_PALETTE, 4, true},
    Format{"palette8Alpha", PNG_COLOR_TYPE_PALETTE, 8, true},
    Format{"rgba8Interlaced", PNG_COLOR_TYPE_RGBA, 8, false, true},
    Format{"grey16Interlaced", PNG_COLOR_TYPE_GRAY, 16, false, true},
    // Every row with one filter: Paeth rows are unfiltered four, two and one at a time.
    Format{"rgba8Paeth", PNG_COLOR_TYPE_RGBA, 8, false, false, PNG_FILTER_PAETH},
    Format{"rgba8Average", PNG_COLOR_TYPE_RGBA, 8, false, false, PNG_FILTER_AVG},
    Format{"rgb8Paeth", PNG_COLOR_TYPE_RGB, 8, false, false, PNG_FILTER_PAETH}),
    [](const auto& info) { return std::string(info.param.name); });

// Pictures that take every path of the encoder: tiny, random, flat with
// repeats over more than the compressor's window, noise, and one large
// enough to be compressed in two parts.
std::vector<Image> encoderInputs() {
    std::mt19937 random(11);
    Image tiny(1, 1), small(13, 7), screen(700, 300), noise(97, 61), large(1024, 1025);
    tiny.pixels = {1, 2, 3, 4};
    for (auto& v : small.pixels) v = uint8_t(random());
    for (uint32_t y = 0; y < screen.height; ++y) {
        for (uint32_t x = 0; x < screen.width; ++x) {
            uint8_t* p = screen.pixel(x, y);
            bool glyph = (x / 9 + y / 13) % 5 == 0 && (x * 3 + y) % 7 < 3;
            p[0] = glyph ? 20 : uint8_t(230 - y / 10), p[1] = glyph ? 20 : 232, p[2] = uint8_t(x / 100 * 30);
            p[3] = x < 4 ? 0 : 255;
        }
    }
    for (auto& v : noise.pixels) v = uint8_t(random());
    for (uint32_t y = 0; y < large.height; ++y) {
        std::copy_n(screen.pixel(0, y % screen.height), screen.width * 4, large.pixel(y % 300, y));
    }
    return {tiny, small, screen, noise, large};
}

Image decodeWithLibpng(const std::vector<uint8_t>& bytes) {
    png_image decoded;
    std::memset(&decoded, 0, sizeof decoded);
    decoded.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&decoded, bytes.data(), bytes.size())) return {};
    decoded.format = PNG_FORMAT_RGBA;
    Image image(decoded.width, decoded.height);
    if (!png_image_finish_read(&decoded, nullptr, image.pixels.data(), 0, nullptr)) return {};
    return image;
}

TEST(PNGEncode, losslessReadableByLibpngAndTheSameOnEveryRun) {
    for (const Image& image : encoderInputs()) {
        auto bytes = encodePNG(image);
        ASSERT_FALSE(bytes.empty());
        EXPECT_EQ(decodePNG(bytes), image) << image.width << "x" << image.height;
        EXPECT_EQ(decodeWithLibpng(bytes), image) << image.width << "x" << image.height;
        EXPECT_EQ(encodePNG(image), bytes) << "deterministic";
        std::vector<uint8_t> fresh;  // a thread's first encode, with nothing left from the ones before
        std::thread([&] { fresh = encodePNG(image); }).join();
        EXPECT_EQ(fresh, bytes) << "the same after other images";
    }
    EXPECT_TRUE(encodePNG(Image()).empty());
}

TEST(PNGEncode, premultipliedRowsAreUnpremultipliedAsCairoDoes) {
    // Two pixels a row, rows 12 bytes apart; words are 0xAARRGGBB in native order.
    const uint32_t words[2][3] = {{0xff102030, 0x80400000, 0xdeadbeef}, {0x00000000, 0x01010101, 0xdeadbeef}};
    std::vector<uint8_t> rows(sizeof words);
    std::memcpy(rows.data(), words, sizeof words);
    auto image = decodePNG(encodePNGFromPremultipliedARGB32(rows.data(), 2, 2, 12));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->pixels, (std::vector<uint8_t>{0x10, 0x20, 0x30, 0xff, 128, 0, 0, 0x80,  //
                                                   0, 0, 0, 0, 255, 255, 255, 1}));
}

}  // namespace
