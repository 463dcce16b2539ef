// A deflate compressor made for filtered PNG rows. Images compress mostly
// through repeats at a few fixed distances: runs of one byte (flat areas
// after filtering), the previous pixel and the row above; a small hash of
// recent four-byte strings catches the rest (repeated glyphs). Looking only
// there makes it several times faster than a general compressor at a
// similar size on screen pictures.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace jtk::imaging::png {

class BlockWriter;

// Compresses a stream given piece by piece into deflate blocks appended to
// `out`. The input lives in a window of the last 32 KiB plus the pending
// piece, so memory stays small whatever the image size. Rows are `rowStride`
// bytes apart, pixels `pixelBytes` wide.
//
// A stream may be compressed in parts by several deflaters: every part but
// the last ends byte-aligned and not final, and the parts' blocks are simply
// joined (a part never refers back into the one before).
//
// The window, the hash of recent strings and the token buffer are kept per
// thread and reused by the next deflater on the thread, the hash without
// being cleared (its entries carry the number of the stream that made them):
// a small image then costs no allocation and no 64 KiB clearing, which were
// a large part of encoding a control's picture.
class PNGDeflater {
public:
    PNGDeflater(size_t pixelBytes, size_t rowStride, std::vector<uint8_t>& out);
    ~PNGDeflater();
    PNGDeflater(const PNGDeflater&) = delete;
    PNGDeflater& operator=(const PNGDeflater&) = delete;

    // Room for the next `length` input bytes, to be filled by the caller
    // before the next call.
    uint8_t* append(size_t length);
    // Compresses what is left and ends the part: the final block when `last`,
    // else an empty stored block that leaves the output byte-aligned.
    void finish(bool last);
    // Adler-32 of the input so far (for the zlib trailer).
    uint32_t adler() const { return adler_; }

private:
    struct Workspace;
    static Workspace& acquire(std::unique_ptr<Workspace>& own);
    void compressPending(bool last);

    std::unique_ptr<Workspace> own_;  // only when the thread's own is taken
    Workspace& work_;
    std::vector<uint8_t>& out_;
    std::unique_ptr<BlockWriter> blocks_;
    size_t candidates_[5];  // the fixed distances tried, ascending
    size_t candidateCount_ = 5;
    size_t filled_ = 0;     // bytes of the window holding input
    size_t compressed_ = 0; // bytes of the window already turned into tokens
    uint64_t windowStart_ = 0;  // stream offset of the window's first byte
    uint32_t adler_ = 1;
};

// The Adler-32 of two pieces joined, from each piece's own and the second's length.
uint32_t combineAdler32(uint32_t first, uint32_t second, uint64_t secondLength);

}  // namespace jtk::imaging::png
