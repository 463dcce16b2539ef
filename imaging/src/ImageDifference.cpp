// The difference picture, one pixel as one machine word: a pixel differs when
// its word differs, and a marked pixel is made with masks on the word, so the
// row loops have no branches and compile to vector code.
#include "JTK/imaging/ImageDifference.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <limits>
#include <utility>

#include "PNGRowEncoder.h"

namespace jtk::imaging {

namespace {

template <typename Sample>
struct PixelWords {
    using Word = std::conditional_t<sizeof(Sample) == 1, uint32_t, uint64_t>;
    static constexpr Sample full = std::numeric_limits<Sample>::max();

    static constexpr Word word(Sample r, Sample g, Sample b, Sample a) {
        return std::bit_cast<Word>(std::array<Sample, 4>{r, g, b, a});
    }
    static constexpr Word red = word(full, 0, 0, 0);
    static constexpr Word alpha = word(0, 0, 0, full);
    // After a shift of the whole word by one bit, these keep the top bits of
    // green and blue that came from their own channel; the sample order in
    // memory does not matter, each channel is a contiguous field of the word.
    static constexpr Word halvedGreenBlue = word(0, full >> 1, full >> 1, 0);
    static constexpr Word lowGreenBlue = word(0, 1, 1, 0);

    // (max, (g + 1) >> 1, (b + 1) >> 1, a); the halves cannot carry.
    static constexpr Word marked(Word pixel) {
        return red | (((pixel >> 1) & halvedGreenBlue) + (pixel & lowGreenBlue)) | (pixel & alpha);
    }

    static Word load(const Sample* samples, size_t index) {
        Word value;
        std::memcpy(&value, samples + index * 4, sizeof value);
        return value;
    }
    static void store(Sample* samples, size_t index, Word value) {
        std::memcpy(samples + index * 4, &value, sizeof value);
    }
};

static_assert(PixelWords<uint8_t>::marked(PixelWords<uint8_t>::word(7, 255, 1, 9)) ==
              PixelWords<uint8_t>::word(255, 128, 1, 9));
static_assert(PixelWords<uint16_t>::marked(PixelWords<uint16_t>::word(7, 65535, 3, 9)) ==
              PixelWords<uint16_t>::word(65535, 32768, 2, 9));

// Marks `count` pixels of `accepted` that differ from `other` (or from a
// transparent pixel when other is null) into `out`; answers how many.
template <typename Sample>
uint64_t markRow(const Sample* accepted, const Sample* other, Sample* out, size_t count) {
    using Words = PixelWords<Sample>;
    uint64_t differing = 0;
    if (other) {
        for (size_t i = 0; i < count; ++i) {
            auto pixel = Words::load(accepted, i);
            bool differs = pixel != Words::load(other, i);
            Words::store(out, i, differs ? Words::marked(pixel) : pixel);
            differing += differs;
        }
    } else {
        for (size_t i = 0; i < count; ++i) {
            auto pixel = Words::load(accepted, i);
            bool differs = pixel != 0;
            Words::store(out, i, differs ? Words::marked(pixel) : pixel);
            differing += differs;
        }
    }
    return differing;
}

template <typename Sample>
uint64_t countRow(const Sample* accepted, const Sample* other, size_t count) {
    using Words = PixelWords<Sample>;
    uint64_t differing = 0;
    if (other) {
        for (size_t i = 0; i < count; ++i) differing += Words::load(accepted, i) != Words::load(other, i);
    } else {
        for (size_t i = 0; i < count; ++i) differing += Words::load(accepted, i) != 0;
    }
    return differing;
}

template <typename AnImage>
using SampleOf = std::remove_cvref_t<decltype(std::declval<AnImage>().pixels[0])>;

// Row y of the accepted image against the new one: the overlapping part
// against the new pixels, the rest against transparent pixels. Marks into
// `out` when given, else only counts.
template <typename AnImage>
uint64_t compareRow(const AnImage& accepted, const AnImage& newImage, uint32_t y, SampleOf<AnImage>* out) {
    const SampleOf<AnImage>* transparent = nullptr;
    uint32_t shared = y < newImage.height ? std::min(accepted.width, newImage.width) : 0;
    uint32_t rest = accepted.width - shared;
    if (!out) {
        return (shared ? countRow(accepted.pixel(0, y), newImage.pixel(0, y), shared) : 0) +
               (rest ? countRow(accepted.pixel(shared, y), transparent, rest) : 0);
    }
    return (shared ? markRow(accepted.pixel(0, y), newImage.pixel(0, y), out, shared) : 0) +
           (rest ? markRow(accepted.pixel(shared, y), transparent, out + size_t{shared} * 4, rest) : 0);
}

template <typename AnImage>
bool wellFormed(const AnImage& image) {
    return image.pixels.size() == size_t{image.width} * image.height * 4;
}

// A malformed image (pixel count not matching its size) gives an empty picture.
template <typename AnImage>
AnImage differenceOf(const AnImage& accepted, const AnImage& newImage, uint64_t* differingPixels) {
    if (differingPixels) *differingPixels = 0;
    if (!wellFormed(accepted) || !wellFormed(newImage)) return {};
    AnImage picture(accepted.width, accepted.height);
    uint64_t differing = 0;
    for (uint32_t y = 0; y < accepted.height; ++y) differing += compareRow(accepted, newImage, y, picture.pixel(0, y));
    if (differingPixels) *differingPixels = differing;
    return picture;
}

template <typename AnImage>
uint64_t countOf(const AnImage& accepted, const AnImage& newImage) {
    if (!wellFormed(accepted) || !wellFormed(newImage)) return 0;
    uint64_t differing = 0;
    for (uint32_t y = 0; y < accepted.height; ++y) differing += compareRow(accepted, newImage, y, nullptr);
    return differing;
}

// Marks each row straight into the encoder's row buffer.
template <typename AnImage>
std::vector<uint8_t> differencePNGOf(const AnImage& accepted, const AnImage& newImage, uint64_t* differingPixels) {
    using Sample = SampleOf<AnImage>;
    if (differingPixels) *differingPixels = 0;
    if (!wellFormed(accepted) || !wellFormed(newImage) || !png::encodable(accepted.width, accepted.height)) return {};
    // Per part of the encoder: counts and a 16-bit row of their own (part 2
    // repeats a row of part 0, so its count is left out).
    uint64_t differing[3] = {0, 0, 0};
    std::vector<Sample> wideRows[3];
    auto bytes = png::encodeRows(accepted.width, accepted.height, sizeof(Sample) * 8,
                                 [&](uint32_t y, uint8_t* buffer, int part) -> const uint8_t* {
        if constexpr (sizeof(Sample) == 1) {
            differing[part] += compareRow(accepted, newImage, y, buffer);
        } else {
            auto& wideRow = wideRows[part];
            wideRow.resize(size_t{accepted.width} * 4);
            differing[part] += compareRow(accepted, newImage, y, wideRow.data());
            for (size_t i = 0; i < wideRow.size(); ++i) {
                buffer[i * 2] = uint8_t(wideRow[i] >> 8);
                buffer[i * 2 + 1] = uint8_t(wideRow[i]);
            }
        }
        return buffer;
    });
    if (differingPixels) *differingPixels = differing[0] + differing[1];
    return bytes;
}

}  // namespace

Image imageDifference(const Image& accepted, const Image& newImage, uint64_t* differingPixels) {
    return differenceOf(accepted, newImage, differingPixels);
}

Image16 imageDifference(const Image16& accepted, const Image16& newImage, uint64_t* differingPixels) {
    return differenceOf(accepted, newImage, differingPixels);
}

uint64_t countDifferingPixels(const Image& accepted, const Image& newImage) { return countOf(accepted, newImage); }

uint64_t countDifferingPixels(const Image16& accepted, const Image16& newImage) {
    return countOf(accepted, newImage);
}

std::vector<uint8_t> imageDifferencePNG(const Image& accepted, const Image& newImage, uint64_t* differingPixels) {
    return differencePNGOf(accepted, newImage, differingPixels);
}

std::vector<uint8_t> imageDifferencePNG(const Image16& accepted, const Image16& newImage, uint64_t* differingPixels) {
    return differencePNGOf(accepted, newImage, differingPixels);
}

}  // namespace jtk::imaging
