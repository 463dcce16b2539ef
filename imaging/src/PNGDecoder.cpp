// PNG decoding. The common case of screenshots, 8-bit RGBA or RGB without
// interlacing, is inflated in one piece with libdeflate and unfiltered here,
// which is several times faster than a streaming decoder; every other format
// goes through libspng, which converts all colour types and depths to RGBA.
#include <libdeflate.h>
#include <spng.h>
#include <sys/mman.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "PNGFormat.h"
#include "PNGRowFilters.h"

namespace jtk::imaging {

namespace {

using png::ChunkLayout;

struct DecompressorDeleter {
    void operator()(libdeflate_decompressor* decompressor) const { libdeflate_free_decompressor(decompressor); }
};

// One decompressor per thread, kept: making one costs more than a small image.
libdeflate_decompressor* threadDecompressor() {
    thread_local std::unique_ptr<libdeflate_decompressor, DecompressorDeleter> decompressor{
        libdeflate_alloc_decompressor()};
    return decompressor.get();
}

// A screen-sized image is tens of megabytes; on Linux, asking for huge pages
// before the first touch turns thousands of page faults into a few dozen.
void reserveLargeBuffer(std::vector<uint8_t>& buffer, size_t size) {
    buffer.reserve(size);
#if defined(MADV_HUGEPAGE)
    constexpr uintptr_t hugePage = uintptr_t{2} << 20;
    auto start = (reinterpret_cast<uintptr_t>(buffer.data()) + hugePage - 1) & ~(hugePage - 1);
    auto end = (reinterpret_cast<uintptr_t>(buffer.data()) + size) & ~(hugePage - 1);
    if (end > start) ::madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
#endif
}

bool takesFastPath(const ChunkLayout& layout) {
    const auto& header = layout.header;
    bool rgba = header.colourType == 6;
    bool rgb = header.colourType == 2 && !layout.hasTransparency;
    return header.bitDepth == 8 && !header.interlaced && (rgba || rgb);
}

// Inflates the image data and unfilters it into RGBA; none when the data is
// not exactly what the header promises (libspng then gives the verdict).
std::optional<Image> decodeFast(const ChunkLayout& layout) {
    const auto& header = layout.header;
    int channels = png::channelsOf(header.colourType);
    size_t rowBytes = size_t{header.width} * channels;
    size_t filteredSize = (rowBytes + 1) * header.height;

    std::vector<uint8_t> joined;
    std::span<const uint8_t> stream = layout.imageData.front();
    if (layout.imageData.size() > 1) {
        for (auto part : layout.imageData) joined.insert(joined.end(), part.begin(), part.end());
        stream = joined;
    }
    // Inflated into the image's own buffer, then unfiltered in place: an
    // output row starts y + 1 bytes before its filtered row, so every write
    // lands on bytes already read. RGB rows are widened through a row buffer.
    Image image;
    image.width = header.width;
    image.height = header.height;
    std::vector<uint8_t> filteredRGB;
    uint8_t* filtered = nullptr;
    if (channels == 4) {
        reserveLargeBuffer(image.pixels, filteredSize);
        image.pixels.resize(filteredSize);
        filtered = image.pixels.data();
    } else {
        filteredRGB.resize(filteredSize);
        image.pixels.resize(size_t{header.width} * header.height * 4);
        filtered = filteredRGB.data();
    }
    size_t produced = 0;
    auto result = libdeflate_zlib_decompress(threadDecompressor(), stream.data(), stream.size(), filtered,
                                             filteredSize, &produced);
    if (result != LIBDEFLATE_SUCCESS || produced != filteredSize) return std::nullopt;

    std::vector<uint8_t> zeroRow(rowBytes, 0), rgbRows[2], laterRows(channels == 4 ? rowBytes * 3 : 0);
    if (channels == 3) rgbRows[0].resize(rowBytes), rgbRows[1].resize(rowBytes);
    const uint8_t* previous = zeroRow.data();
    constexpr uint8_t paethType = 4;
    for (uint32_t y = 0; y < header.height; ++y) {
        const uint8_t* row = filtered + y * (rowBytes + 1);
        // Runs of Paeth rows go four or two together. All but the first are
        // made aside and copied to their places after, since in place they
        // would overwrite the end of the row above's input before it is read.
        int paethRun = 0;
        while (channels == 4 && paethRun < 4 && y + paethRun < header.height &&
               row[paethRun * (rowBytes + 1)] == paethType) {
            ++paethRun;
        }
        int group = paethRun == 4 ? 4 : paethRun >= 2 ? 2 : 0;
        uint8_t* groupOut = image.pixels.data() + y * rowBytes;
        if (group && png::unfilterPaethRows(row + 1, rowBytes + 1, group, previous, groupOut, laterRows.data(),
                                            rowBytes, channels)) {
            std::memcpy(groupOut + rowBytes, laterRows.data(), rowBytes * (group - 1));
            y += group - 1;
            previous = groupOut + rowBytes * (group - 1);
            continue;
        }
        uint8_t* target = channels == 4 ? image.pixels.data() + y * rowBytes : rgbRows[y % 2].data();
        if (!png::unfilterRow(row[0], row + 1, previous, target, rowBytes, channels)) return std::nullopt;
        if (channels == 3) {
            uint8_t* out = image.pixel(0, y);
            for (uint32_t x = 0; x < header.width; ++x) {
                out[x * 4] = target[x * 3];
                out[x * 4 + 1] = target[x * 3 + 1];
                out[x * 4 + 2] = target[x * 3 + 2];
                out[x * 4 + 3] = 255;
            }
        }
        previous = target;
    }
    image.pixels.resize(size_t{header.width} * header.height * 4);
    return image;
}

struct ContextDeleter {
    void operator()(spng_ctx* context) const { spng_ctx_free(context); }
};

// Decodes through libspng into RGBA of the sample type's depth.
template <typename AnImage>
std::optional<AnImage> decodeGeneral(std::span<const uint8_t> bytes, const ChunkLayout& layout,
                                     std::string* error) {
    constexpr auto format = sizeof(*AnImage().pixels.data()) == 1 ? SPNG_FMT_RGBA8 : SPNG_FMT_RGBA16;
    std::unique_ptr<spng_ctx, ContextDeleter> context{spng_ctx_new(0)};
    AnImage image(layout.header.width, layout.header.height);
    size_t size = 0;
    int status = context ? spng_set_png_buffer(context.get(), bytes.data(), bytes.size()) : SPNG_EMEM;
    if (status == 0) status = spng_decoded_image_size(context.get(), format, &size);
    if (status == 0 && size != image.pixels.size() * sizeof(image.pixels[0])) status = SPNG_EINTERNAL;
    if (status == 0) status = spng_decode_image(context.get(), image.pixels.data(), size, format, SPNG_DECODE_TRNS);
    if (status != 0) {
        if (error) *error = std::string("corrupt PNG file: ") + spng_strerror(status);
        return std::nullopt;
    }
    return image;
}

std::optional<Image> decode8(std::span<const uint8_t> bytes, std::string* error) {
    auto layout = png::readChunkLayout(bytes, error);
    if (!layout) return std::nullopt;
    if (takesFastPath(*layout)) {
        if (auto image = decodeFast(*layout)) return image;
    }
    return decodeGeneral<Image>(bytes, *layout, error);
}

}  // namespace

std::optional<Image> decodePNG(std::span<const uint8_t> bytes, std::string* error) { return decode8(bytes, error); }

std::optional<Image> decodePNG(const std::vector<uint8_t>& bytes, std::string* error) {
    return decode8(bytes, error);
}

std::optional<Image16> decodePNG16(std::span<const uint8_t> bytes, std::string* error) {
    auto header = readPNGHeader(bytes, error);
    if (!header) return std::nullopt;
    if (header->bitDepth == 16) {
        auto layout = png::readChunkLayout(bytes, error);
        if (!layout) return std::nullopt;
        return decodeGeneral<Image16>(bytes, *layout, error);
    }
    auto narrow = decode8(bytes, error);
    if (!narrow) return std::nullopt;
    Image16 wide(narrow->width, narrow->height);
    for (size_t i = 0; i < wide.pixels.size(); ++i) wide.pixels[i] = uint16_t(narrow->pixels[i] * 257);
    return wide;
}

}  // namespace jtk::imaging
