// The difference picture: the cases that tell an exact four-channel
// comparison from one that blends by alpha first, the size rules, the halving,
// and agreement with a plain per-pixel reference on random pairs.
#include <gtest/gtest.h>

#include <random>

#include "JTK/imaging/ImageDifference.h"
#include "JTK/imaging/PNG.h"

using namespace jtk::imaging;

namespace {

using Pixel = std::array<uint8_t, 4>;

Image filled(uint32_t width, uint32_t height, Pixel pixel) {
    Image image(width, height);
    for (uint32_t y = 0; y < height; ++y) {
        for (uint32_t x = 0; x < width; ++x) std::copy(pixel.begin(), pixel.end(), image.pixel(x, y));
    }
    return image;
}

Pixel at(const Image& image, uint32_t x, uint32_t y) {
    const uint8_t* p = image.pixel(x, y);
    return {p[0], p[1], p[2], p[3]};
}

void set(Image& image, uint32_t x, uint32_t y, Pixel pixel) {
    std::copy(pixel.begin(), pixel.end(), image.pixel(x, y));
}

struct SamePlaceCase {
    const char* name;
    Pixel accepted, changed, expected;
};

class DifferenceAtOnePixel : public testing::TestWithParam<SamePlaceCase> {};

// A 3x2 image whose pixel (1, 1) changes; every other pixel stays as accepted.
TEST_P(DifferenceAtOnePixel, marksExactlyThatPixel) {
    const auto& c = GetParam();
    Image accepted = filled(3, 2, {10, 20, 30, 255}), changed = accepted;
    set(accepted, 1, 1, c.accepted);
    set(changed, 1, 1, c.changed);
    uint64_t count = 99;
    Image picture = imageDifference(accepted, changed, &count);
    EXPECT_EQ(at(picture, 1, 1), c.expected);
    EXPECT_EQ(count, c.accepted == c.changed ? 0u : 1u);
    set(picture, 1, 1, c.accepted);
    EXPECT_EQ(picture, accepted) << "the other pixels are the accepted ones";
}

INSTANTIATE_TEST_SUITE_P(Cases, DifferenceAtOnePixel, testing::Values(
    SamePlaceCase{"identical", {9, 8, 7, 6}, {9, 8, 7, 6}, {9, 8, 7, 6}},
    SamePlaceCase{"colour", {50, 100, 200, 255}, {51, 100, 200, 255}, {255, 50, 100, 255}},
    SamePlaceCase{"alphaOnly", {50, 100, 200, 255}, {50, 100, 200, 254}, {255, 50, 100, 255}},
    SamePlaceCase{"colourUnderTransparency", {0, 0, 0, 0}, {0, 9, 0, 0}, {255, 0, 0, 0}},
    SamePlaceCase{"halvingRoundsTiesUp", {0, 255, 1, 7}, {0, 0, 0, 0}, {255, 128, 1, 7}},
    SamePlaceCase{"halvingOdd", {1, 3, 201, 128}, {2, 3, 201, 128}, {255, 2, 101, 128}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(ImageDifference, outsideTheNewImageComparesWithTransparent) {
    Image accepted = filled(4, 3, {0, 0, 0, 0});
    set(accepted, 3, 0, {10, 20, 40, 255});  // outside a 3x2 new image: marked
    set(accepted, 1, 2, {0, 0, 0, 1});       // below it: marked
    Image smaller = filled(3, 2, {0, 0, 0, 0});
    uint64_t count = 0;
    Image picture = imageDifference(accepted, smaller, &count);
    ASSERT_EQ(picture.width, 4u);
    ASSERT_EQ(picture.height, 3u);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(at(picture, 3, 0), (Pixel{255, 10, 20, 255}));
    EXPECT_EQ(at(picture, 1, 2), (Pixel{255, 0, 0, 1}));
    EXPECT_EQ(at(picture, 3, 2), (Pixel{0, 0, 0, 0})) << "transparent outside matches transparent";

    Image larger = filled(6, 5, {1, 2, 3, 4});
    Image small = filled(2, 2, {1, 2, 3, 4});
    EXPECT_EQ(imageDifference(small, larger, &count), small) << "the picture has the accepted image's size";
    EXPECT_EQ(count, 0u);
}

TEST(ImageDifference, sixteenBitsSeeTheLowByteAndHalveAtTheirDepth) {
    Image16 accepted(2, 1), changed(2, 1);
    accepted.pixels = {100, 65535, 3, 65535, 7, 7, 7, 7};
    changed.pixels = {100, 65535, 3, 65534, 7, 7, 7, 7};
    uint64_t count = 0;
    Image16 picture = imageDifference(accepted, changed, &count);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(picture.pixels, (std::vector<uint16_t>{65535, 32768, 2, 65535, 7, 7, 7, 7}));
    EXPECT_EQ(countDifferingPixels(accepted, changed), 1u);
}

// Plain reference of the rule, pixel by pixel.
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

TEST(ImageDifference, agreesWithThePerPixelRuleOnRandomPairs) {
    std::mt19937 random(5);
    using Sizes = std::array<uint32_t, 4>;
    for (auto [w1, h1, w2, h2] : {Sizes{1, 1, 1, 1}, Sizes{37, 5, 37, 5}, Sizes{64, 9, 17, 12}, Sizes{3, 40, 70, 2}}) {
        Image accepted(w1, h1), changed(w2, h2);
        for (auto& v : accepted.pixels) v = uint8_t(random() % 4);  // few values: many equal pixels
        for (auto& v : changed.pixels) v = uint8_t(random() % 4);
        for (uint32_t y = 0; y < std::min(h1, h2); ++y) {  // and most of the overlap equal
            for (uint32_t x = 0; x < std::min(w1, w2); ++x) {
                if (random() % 3) set(changed, x, y, at(accepted, x, y));
            }
        }
        Image expected = referenceDifference(accepted, changed);
        uint64_t count = 0, fromPNG = 0;
        EXPECT_EQ(imageDifference(accepted, changed, &count), expected);
        EXPECT_EQ(countDifferingPixels(accepted, changed), count);
        auto decoded = decodePNG(imageDifferencePNG(accepted, changed, &fromPNG));
        ASSERT_TRUE(decoded);
        EXPECT_EQ(*decoded, expected);
        EXPECT_EQ(fromPNG, count);
    }
}

}  // namespace
