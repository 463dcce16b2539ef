// The difference picture against a plain per-pixel statement of the rule, on
// pairs that hold the cases telling an exact four-channel comparison from one
// that blends by alpha first (alpha-only changes, colour changed under full
// transparency), the halving's ties, and accepted images larger and smaller
// than the new one; and the same at 16 bits.
#include <gtest/gtest.h>

#include <random>

#include "JTK/imaging/ImageDifference.h"
#include "JTK/imaging/PNG.h"

using namespace jtk::imaging;

namespace {

using Pixel = std::array<uint8_t, 4>;

Pixel at(const Image& image, uint32_t x, uint32_t y) {
    const uint8_t* p = image.pixel(x, y);
    return {p[0], p[1], p[2], p[3]};
}

void set(Image& image, uint32_t x, uint32_t y, Pixel pixel) {
    std::copy(pixel.begin(), pixel.end(), image.pixel(x, y));
}

// The rule, pixel by pixel: outside the new image the accepted pixel meets a
// transparent one; a differing pixel becomes (255, g/2, b/2, a), rounding up.
Image referenceDifference(const Image& accepted, const Image& changed) {
    Image picture = accepted;
    for (uint32_t y = 0; y < accepted.height; ++y) {
        for (uint32_t x = 0; x < accepted.width; ++x) {
            Pixel other{0, 0, 0, 0};
            if (x < changed.width && y < changed.height) other = at(changed, x, y);
            Pixel mine = at(accepted, x, y);
            if (mine == other) continue;
            set(picture, x, y, {255, uint8_t((mine[1] + 1) / 2), uint8_t((mine[2] + 1) / 2), mine[3]});
        }
    }
    return picture;
}

// (accepted, new) pixels placed at the start of every pair's overlap.
const std::vector<std::pair<Pixel, Pixel>> namedCases = {
    {{50, 100, 200, 255}, {50, 100, 200, 254}},  // alpha only
    {{0, 0, 0, 0}, {0, 9, 0, 0}},                // colour under full transparency
    {{0, 255, 1, 7}, {0, 0, 0, 0}},              // halving: 255 to 128, 1 stays 1
    {{1, 3, 201, 128}, {2, 3, 201, 128}},        // odd values round up
    {{9, 8, 7, 6}, {9, 8, 7, 6}},                // equal
};

TEST(ImageDifference, agreesWithThePerPixelRule) {
    std::mt19937 random(5);
    const uint8_t values[] = {0, 0, 0, 1, 2, 3, 128, 254, 255};  // few values: many equal and transparent pixels
    auto value = [&] { return values[random() % std::size(values)]; };
    using Sizes = std::array<uint32_t, 4>;  // the last one large enough to be encoded in two parts
    for (auto [w1, h1, w2, h2] : {Sizes{1, 1, 1, 1}, Sizes{37, 5, 37, 5}, Sizes{64, 9, 17, 12}, Sizes{3, 40, 70, 2},
                                  Sizes{1030, 1020, 1000, 1030}}) {
        Image accepted(w1, h1), changed(w2, h2);
        for (auto& v : accepted.pixels) v = value();
        for (auto& v : changed.pixels) v = value();
        for (uint32_t y = 0; y < std::min(h1, h2); ++y) {  // and most of the overlap equal
            for (uint32_t x = 0; x < std::min(w1, w2); ++x) {
                if (random() % 3) set(changed, x, y, at(accepted, x, y));
            }
        }
        for (uint32_t i = 0; i < namedCases.size() && i < std::min(w1, w2); ++i) {
            set(accepted, i, 0, namedCases[i].first);
            set(changed, i, 0, namedCases[i].second);
        }
        Image expected = referenceDifference(accepted, changed);
        uint64_t count = 0, fromPNG = 0;
        EXPECT_EQ(imageDifference(accepted, changed, &count), expected) << w1 << "x" << h1;
        EXPECT_EQ(countDifferingPixels(accepted, changed), count);
        auto decoded = decodePNG(imageDifferencePNG(accepted, changed, &fromPNG));
        ASSERT_TRUE(decoded);
        EXPECT_EQ(*decoded, expected);
        EXPECT_EQ(fromPNG, count);
        EXPECT_GT(count, 0u);
    }
}

TEST(ImageDifference, sixteenBitsSeeTheLowByteAndHalveAtTheirDepth) {
    Image16 accepted(2, 1), changed(2, 1);
    accepted.pixels = {100, 65535, 3, 65535, 7, 7, 7, 7};
    changed.pixels = {100, 65535, 3, 65534, 7, 7, 7, 7};
    uint64_t count = 0, fromPNG = 0;
    Image16 picture = imageDifference(accepted, changed, &count);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(picture.pixels, (std::vector<uint16_t>{65535, 32768, 2, 65535, 7, 7, 7, 7}));
    EXPECT_EQ(countDifferingPixels(accepted, changed), 1u);
    EXPECT_EQ(decodePNG16(imageDifferencePNG(accepted, changed, &fromPNG)), picture);
    EXPECT_EQ(fromPNG, 1u);
}

}  // namespace
