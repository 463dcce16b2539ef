// The encoder's core, for callers that make their rows on the fly: each row
// is filtered as it comes and fed to the deflater, so no whole filtered
// image is ever held. Writes IHDR, IDAT and IEND only, so the bytes depend
// on the pixels alone.
#pragma once

#include <libdeflate.h>

#include <cstring>
#include <thread>

#include "PNGDeflate.h"
#include "PNGFormat.h"
#include "PNGRowFilters.h"

namespace jtk::imaging::png {

inline bool encodable(uint32_t width, uint32_t height) {
    return width > 0 && height > 0 && width <= 0x7fffffff && height <= 0x7fffffff &&
           uint64_t{width} * height <= (uint64_t{1} << 28);
}

// Images from this many pixels on are compressed in two halves on two threads.
inline constexpr uint64_t parallelPixels = uint64_t{1} << 20;

// Filters and compresses rows [first, end) as one part of the stream.
template <typename RowSource>
uint32_t compressRows(uint32_t first, uint32_t end, size_t rowBytes, int bytesPerPixel, int part, bool last,
                      RowSource& rowOf, std::vector<uint8_t>& out) {
    PNGDeflater deflater(bytesPerPixel, rowBytes + 1, out);
    std::vector<uint8_t> zeroRow(rowBytes, 0), scratch(rowBytes * 3), buffers[2] = {std::vector<uint8_t>(rowBytes),
                                                                                    std::vector<uint8_t>(rowBytes)};
    const uint8_t* previous = zeroRow.data();
    if (first > 0) {  // the row above the part, for the filters: asked as part 2
        const uint8_t* above = rowOf(first - 1, buffers[(first - 1) % 2].data(), 2);
        if (above != buffers[(first - 1) % 2].data()) std::memcpy(buffers[(first - 1) % 2].data(), above, rowBytes);
        previous = buffers[(first - 1) % 2].data();
    }
    for (uint32_t y = first; y < end; ++y) {
        const uint8_t* row = rowOf(y, buffers[y % 2].data(), part);
        filterRow(row, previous, deflater.append(rowBytes + 1), scratch.data(), rowBytes, bytesPerPixel);
        previous = row;
    }
    deflater.finish(last);
    return deflater.adler();
}

// An RGBA PNG of rows that rowOf(y, buffer, part) gives: a pointer to row y's
// bytes (8 bits a sample, or 16 bits big-endian), possibly made in `buffer`
// (one row long; the previous row's buffer stays valid). Large images are
// made in two parts (0 and 1) on two threads; rowOf is then called from both,
// with the part, so that it can keep any state of its own per part; the row
// just above part 1, which part 0 makes too, is asked once more as part 2 on
// part 1's thread. The split is fixed, so the bytes are the same on every run.
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
    out.insert(out.end(), {0x78, 0x01});  // zlib: deflate, 32 KiB window, fastest
    uint32_t adler;
    if (uint64_t{width} * height >= parallelPixels && height >= 2) {
        uint32_t split = height / 2;
        std::vector<uint8_t> secondPart;
        uint32_t secondAdler = 1;
        std::thread second([&] {
            secondAdler = compressRows(split, height, rowBytes, bytesPerPixel, 1, true, rowOf, secondPart);
        });
        adler = compressRows(0, split, rowBytes, bytesPerPixel, 0, false, rowOf, out);
        second.join();
        out.insert(out.end(), secondPart.begin(), secondPart.end());
        adler = combineAdler32(adler, secondAdler, uint64_t{height - split} * (rowBytes + 1));
    } else {
        adler = compressRows(0, height, rowBytes, bytesPerPixel, 0, true, rowOf, out);
    }
    appendBigEndian32(out, adler);
    size_t compressed = out.size() - chunkStart - 8;
    if (compressed > 0x7fffffff) return {};
    for (int i = 0; i < 4; ++i) out[chunkStart + i] = uint8_t(compressed >> (24 - 8 * i));
    appendBigEndian32(out, libdeflate_crc32(0, out.data() + chunkStart + 4, 4 + compressed));
    appendChunk(out, "IEND", {});
    return out;
}

}  // namespace jtk::imaging::png
