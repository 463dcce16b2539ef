// The encoder's core, for callers that make their rows on the fly: each row
// is filtered as it comes and fed to the deflater, so no whole filtered
// image is ever held. Writes IHDR, IDAT and IEND only, so the bytes depend
// on the pixels alone.
#pragma once

#include <libdeflate.h>

#include <cstring>

#include "PNGDeflate.h"
#include "PNGFormat.h"
#include "PNGRowFilters.h"

namespace jtk::imaging::png {

inline bool encodable(uint32_t width, uint32_t height) {
    return width > 0 && height > 0 && width <= 0x7fffffff && height <= 0x7fffffff &&
           uint64_t{width} * height <= (uint64_t{1} << 28);
}

// An RGBA PNG of rows that rowOf(y, buffer) gives: a pointer to row y's
// bytes (8 bits a sample, or 16 bits big-endian), possibly made in `buffer`
// (one row long; two are used in turn, so the previous row stays valid).
template <typename RowSource>
std::vector<uint8_t> encodeRows(uint32_t width, uint32_t height, uint8_t bitDepth, RowSource rowOf) {
    int bytesPerPixel = bitDepth / 2;
    size_t rowBytes = size_t{width} * bytesPerPixel;
    std::vector<uint8_t> out(signature.begin(), signature.end());
    std::vector<uint8_t> header;
    appendBigEndian32(header, width);
    appendBigEndian32(header, height);
    header.insert(header.end(), {bitDepth, 6, 0, 0, 0});  // RGBA, deflate, adaptive filters, no interlace
    appendChunk(out, "IHDR", header);

    // The compressed stream goes straight into the IDAT chunk's place.
    size_t chunkStart = out.size();
    out.resize(chunkStart + 8);
    std::memcpy(out.data() + chunkStart + 4, "IDAT", 4);
    {
        PNGDeflater deflater(bytesPerPixel, rowBytes + 1, out);
        std::vector<uint8_t> zeroRow(rowBytes, 0), scratch(rowBytes * 3), rowBuffers[2] = {
                                                                                std::vector<uint8_t>(rowBytes),
                                                                                std::vector<uint8_t>(rowBytes)};
        const uint8_t* previous = zeroRow.data();
        for (uint32_t y = 0; y < height; ++y) {
            const uint8_t* row = rowOf(y, rowBuffers[y % 2].data());
            filterRow(row, previous, deflater.append(rowBytes + 1), scratch.data(), rowBytes, bytesPerPixel);
            previous = row;
        }
        deflater.finish();
    }
    size_t compressed = out.size() - chunkStart - 8;
    if (compressed > 0x7fffffff) return {};
    for (int i = 0; i < 4; ++i) out[chunkStart + i] = uint8_t(compressed >> (24 - 8 * i));
    appendBigEndian32(out, libdeflate_crc32(0, out.data() + chunkStart + 4, 4 + compressed));
    appendChunk(out, "IEND", {});
    return out;
}

}  // namespace jtk::imaging::png
