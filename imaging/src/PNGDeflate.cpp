// Greedy parsing into literals and matches, then one dynamic-Huffman block
// per slice of tokens.
#include "PNGDeflate.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "HuffmanCode.h"

namespace jtk::imaging::png {

namespace {

constexpr size_t minimumMatch = 4, maximumMatch = 258, maximumDistance = 32768;
constexpr size_t tokensPerBlock = 1 << 15;
constexpr size_t pieceSize = 256 * 1024;  // input compressed at a time
constexpr int hashBits = 14;

constexpr std::array<uint16_t, 29> lengthBase{3,  4,  5,  6,  7,  8,  9,  10, 11,  13,  15,  17,  19,  23, 27,
                                              31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
constexpr std::array<uint8_t, 29> lengthExtra{0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                              2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
constexpr std::array<uint16_t, 30> distanceBase{1,    2,    3,    4,    5,    7,     9,     13,    17,  25,
                                                33,   49,   65,   97,   129,  193,   257,   385,   513, 769,
                                                1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
constexpr std::array<uint8_t, 30> distanceExtra{0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                                6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};

// Index into lengthBase for a match length of 3 to 258.
constexpr int lengthIndex(size_t length) {
    if (length == 258) return 28;
    if (length < 11) return int(length) - 3;
    size_t v = length - 3;
    int top = std::bit_width(v) - 1;
    return 4 * (top - 1) + int((v >> (top - 2)) & 3);
}

// Distance code for a distance of 1 to 32768.
constexpr int distanceCode(size_t distance) {
    if (distance <= 4) return int(distance) - 1;
    size_t v = distance - 1;
    int top = std::bit_width(v) - 1;
    return 2 * top + int((v >> (top - 1)) & 1);
}

constexpr bool tablesAgree() {
    for (size_t length = 3; length <= 258; ++length) {
        int i = lengthIndex(length);
        if (length < lengthBase[i] || length - lengthBase[i] >= (size_t{1} << lengthExtra[i])) return false;
        if (i == 27 && length == 258) return false;
    }
    for (size_t distance = 1; distance <= maximumDistance; ++distance) {
        int c = distanceCode(distance);
        if (distance < distanceBase[c] || distance - distanceBase[c] >= (size_t{1} << distanceExtra[c])) return false;
    }
    return true;
}
static_assert(tablesAgree());

// Bytes that data[at...] and data[at - distance...] have in common, at most
// `limit`: sixteen at a time where there is SSE2, else eight.
size_t commonLength(const uint8_t* data, size_t at, size_t distance, size_t limit) {
    const uint8_t* here = data + at;
    const uint8_t* there = here - distance;
    size_t length = 0;
#if defined(__SSE2__)
    for (; length + 16 <= limit; length += 16) {
        __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(here + length));
        __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(there + length));
        if (unsigned differing = ~unsigned(_mm_movemask_epi8(_mm_cmpeq_epi8(a, b))) & 0xffff) {
            return length + std::countr_zero(differing);
        }
    }
#endif
    for (; length + 8 <= limit; length += 8) {
        uint64_t a, b;
        std::memcpy(&a, here + length, 8);
        std::memcpy(&b, there + length, 8);
        if (uint64_t difference = a ^ b) {
            int equalBits = std::endian::native == std::endian::little ? std::countr_zero(difference)
                                                                       : std::countl_zero(difference);
            return length + equalBits / 8;
        }
    }
    while (length < limit && here[length] == there[length]) ++length;
    return length;
}

uint32_t hashOf(const uint8_t* bytes) {
    uint32_t word;
    std::memcpy(&word, bytes, 4);
    return (word * 2654435761u) >> (32 - hashBits);
}

}  // namespace

// Literal: distance 0 and the byte in length.
struct Token {
    uint16_t length;
    uint16_t distance;
};

class BitWriter {
public:
    explicit BitWriter(std::vector<uint8_t>& out) : out_(out) {}
    void put(uint32_t value, int count) {
        bits_ |= uint64_t{value} << count_;
        count_ += count;
        if (count_ >= 32) {
            uint8_t bytes[4] = {uint8_t(bits_), uint8_t(bits_ >> 8), uint8_t(bits_ >> 16), uint8_t(bits_ >> 24)};
            out_.insert(out_.end(), bytes, bytes + 4);
            bits_ >>= 32;
            count_ -= 32;
        }
    }
    void flushToByte() {
        for (; count_ > 0; count_ -= 8, bits_ >>= 8) out_.push_back(uint8_t(bits_));
        count_ = 0;
        bits_ = 0;
    }

private:
    std::vector<uint8_t>& out_;
    uint64_t bits_ = 0;
    int count_ = 0;
};

class BlockWriter {
public:
    BlockWriter(std::vector<uint8_t>& out, std::vector<Token>& tokens) : tokens(tokens), bits_(out) {}

    std::vector<Token>& tokens;  // of the block being parsed

    // Writes the tokens as one block with its own codes, and clears them.
    void write(bool last) {
        std::array<uint32_t, 286> literalFrequencies{};
        std::array<uint32_t, 30> distanceFrequencies{};
        for (Token token : tokens) {
            if (token.distance == 0) {
                ++literalFrequencies[token.length];
            } else {
                ++literalFrequencies[257 + lengthIndex(token.length)];
                ++distanceFrequencies[distanceCode(token.distance)];
            }
        }
        ++literalFrequencies[256];
        HuffmanCode literals = makeHuffmanCode(literalFrequencies, 15);
        HuffmanCode distances = makeHuffmanCode(distanceFrequencies, 15);

        bits_.put(last ? 1 : 0, 1);
        bits_.put(2, 2);  // dynamic Huffman codes
        writeCodes(literals, distances);
        for (Token token : tokens) {
            if (token.distance == 0) {
                bits_.put(literals.codes[token.length], literals.lengths[token.length]);
                continue;
            }
            int length = lengthIndex(token.length), distance = distanceCode(token.distance);
            bits_.put(literals.codes[257 + length], literals.lengths[257 + length]);
            bits_.put(token.length - lengthBase[length], lengthExtra[length]);
            bits_.put(distances.codes[distance], distances.lengths[distance]);
            bits_.put(token.distance - distanceBase[distance], distanceExtra[distance]);
        }
        bits_.put(literals.codes[256], literals.lengths[256]);
        if (last) bits_.flushToByte();
        tokens.clear();
    }

    // A non-final stored block of no bytes: its header, padding to a byte,
    // then the length 0 and its complement.
    void alignWithEmptyStoredBlock() {
        bits_.put(0, 3);
        bits_.flushToByte();
        bits_.put(0xffff0000u, 32);
    }

private:
    // The two codes' lengths, run-length coded with symbols 16 to 18 and
    // sent with a code of their own.
    void writeCodes(const HuffmanCode& literals, const HuffmanCode& distances) {
        size_t literalCount = 286, distanceCount = 30;
        while (literalCount > 257 && literals.lengths[literalCount - 1] == 0) --literalCount;
        while (distanceCount > 1 && distances.lengths[distanceCount - 1] == 0) --distanceCount;
        std::array<uint8_t, 286 + 30> lengths;
        size_t lengthCount = literalCount + distanceCount;
        std::copy_n(literals.lengths.begin(), literalCount, lengths.begin());
        std::copy_n(distances.lengths.begin(), distanceCount, lengths.begin() + literalCount);

        struct Item {
            uint8_t symbol, extra;
        };
        std::array<Item, 286 + 30> itemStore;  // at most one item per length
        size_t itemCount = 0;
        auto items = [&] { return std::span(itemStore.data(), itemCount); };
        auto add = [&](Item item) { itemStore[itemCount++] = item; };
        for (size_t i = 0; i < lengthCount;) {
            uint8_t value = lengths[i];
            size_t run = 1;
            while (i + run < lengthCount && lengths[i + run] == value) ++run;
            i += run;
            if (value == 0) {
                for (size_t part; run >= 11; run -= part) {
                    part = std::min<size_t>(run, 138);
                    add({18, uint8_t(part - 11)});
                }
                if (run >= 3) add({17, uint8_t(run - 3)}), run = 0;
            } else {
                add({value, 0}), --run;
                for (size_t part; run >= 3; run -= part) {
                    part = std::min<size_t>(run, 6);
                    add({16, uint8_t(part - 3)});
                }
            }
            for (; run > 0; --run) add({value, 0});
        }
        std::array<uint32_t, 19> frequencies{};
        for (Item item : items()) ++frequencies[item.symbol];
        HuffmanCode lengthCode = makeHuffmanCode(frequencies, 7);
        static constexpr uint8_t order[19] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
        size_t orderCount = 19;
        while (orderCount > 4 && lengthCode.lengths[order[orderCount - 1]] == 0) --orderCount;

        bits_.put(uint32_t(literalCount - 257), 5);
        bits_.put(uint32_t(distanceCount - 1), 5);
        bits_.put(uint32_t(orderCount - 4), 4);
        for (size_t i = 0; i < orderCount; ++i) bits_.put(lengthCode.lengths[order[i]], 3);
        static constexpr uint8_t extraBits[19] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 3, 7};
        for (Item item : items()) {
            bits_.put(lengthCode.codes[item.symbol], lengthCode.lengths[item.symbol]);
            bits_.put(item.extra, extraBits[item.symbol]);
        }
    }

    BitWriter bits_;
};


// What a deflater keeps for the next on its thread. Hash entries hold
// base + stream offset + 1, base growing past every stream made before, so
// an entry of an earlier stream is at most base and is ignored.
struct PNGDeflater::Workspace {
    std::vector<uint8_t> window;
    std::vector<uint32_t> recent = std::vector<uint32_t>(size_t{1} << hashBits, 0);
    std::vector<Token> tokens;
    uint32_t base = 0;
    bool taken = false;

    Workspace() {
        window.reserve(maximumDistance + 2 * pieceSize);
        tokens.reserve(tokensPerBlock);
    }
};

PNGDeflater::Workspace& PNGDeflater::acquire(std::unique_ptr<Workspace>& own) {
    thread_local Workspace threads;
    Workspace& work = threads.taken ? *(own = std::make_unique<Workspace>()) : threads;
    work.taken = true;
    // A stream is under 2^31.2 bytes (2^28 pixels of 8 bytes, plus the
    // filter bytes), so base + offset stays below 2^32.
    if (work.base > (uint32_t{1} << 30)) {
        std::fill(work.recent.begin(), work.recent.end(), 0);
        work.base = 0;
    }
    work.tokens.clear();
    return work;
}

PNGDeflater::PNGDeflater(size_t pixelBytes, size_t rowStride, std::vector<uint8_t>& out)
    : work_(acquire(own_)), out_(out), blocks_(std::make_unique<BlockWriter>(out, work_.tokens)),
      candidates_{1, pixelBytes, 2 * pixelBytes, rowStride, 2 * rowStride} {
    // Nearest first (a one-pixel-wide row is nearer than two pixels), and
    // only those a match may reach.
    std::sort(std::begin(candidates_), std::end(candidates_));
    while (candidateCount_ > 0 && candidates_[candidateCount_ - 1] > maximumDistance) --candidateCount_;
}

PNGDeflater::~PNGDeflater() {
    work_.base += uint32_t(windowStart_ + filled_ + 1);
    work_.taken = false;
}

uint8_t* PNGDeflater::append(size_t length) {
    if (filled_ - compressed_ >= pieceSize) compressPending(false);
    std::vector<uint8_t>& window = work_.window;
    if (window.size() < filled_ + length) window.resize(filled_ + length);
    filled_ += length;
    return window.data() + filled_ - length;
}

void PNGDeflater::finish(bool last) {
    compressPending(last);
    if (!last) {
        blocks_->write(false);
        blocks_->alignWithEmptyStoredBlock();
    }
}

uint32_t combineAdler32(uint32_t first, uint32_t second, uint64_t secondLength) {
    constexpr uint64_t base = 65521;
    uint64_t remainder = secondLength % base;
    uint64_t sum1 = first & 0xffff;
    uint64_t sum2 = remainder * sum1 % base;
    sum1 += (second & 0xffff) + base - 1;
    sum2 += ((first >> 16) & 0xffff) + ((second >> 16) & 0xffff) + base - remainder;
    sum1 %= base;
    sum2 %= base;
    return uint32_t(sum1 | sum2 << 16);
}

// Greedy parse of the pending input: at each position the longest match at
// the fixed distances (nearest first: a shorter distance costs fewer bits),
// then at the hashed one; a literal when none reaches the minimum.
void PNGDeflater::compressPending(bool last) {
    std::vector<uint8_t>& window = work_.window;
    uint32_t* recent = work_.recent.data();
    const uint32_t base = work_.base;
    const uint8_t* bytes = window.data();
    adler_ = libdeflate_adler32(adler_, bytes + compressed_, filled_ - compressed_);
    std::vector<Token>& tokens = blocks_->tokens;
    size_t at = compressed_, size = filled_;
    while (at < size) {
        size_t limit = std::min(maximumMatch, size - at), bestLength = 0, bestDistance = 0;
        uint64_t position = windowStart_ + at;
        if (limit >= minimumMatch) {
            for (size_t i = 0; i < candidateCount_; ++i) {
                size_t distance = candidates_[i];
                if (distance > position) break;
                if (bytes[at] != bytes[at - distance] || bytes[at + 3] != bytes[at + 3 - distance]) continue;
                size_t length = commonLength(bytes, at, distance, limit);
                if (length > bestLength) bestLength = length, bestDistance = distance;
                if (bestLength == limit) break;  // no farther distance can do better
            }
            uint32_t hash = hashOf(bytes + at);
            uint32_t previous = recent[hash], here = base + uint32_t(position) + 1;
            recent[hash] = here;
            if (bestLength < 32 && previous > base && here - previous <= maximumDistance) {
                size_t distance = here - previous;
                size_t length = commonLength(bytes, at, distance, limit);
                if (length > bestLength) bestLength = length, bestDistance = distance;
            }
        }
        if (bestLength >= minimumMatch) {
            tokens.push_back({uint16_t(bestLength), uint16_t(bestDistance)});
            at += bestLength;
        } else {
            tokens.push_back({bytes[at], 0});
            ++at;
        }
        if (tokens.size() == tokensPerBlock) blocks_->write(false);
    }
    compressed_ = at;
    if (last) {
        blocks_->write(true);
        return;
    }
    if (filled_ <= maximumDistance) return;
    // Keep the last 32 KiB as the history later matches may reach into.
    size_t keep = std::min<size_t>(filled_, maximumDistance);
    size_t drop = filled_ - keep;
    std::memmove(window.data(), window.data() + drop, keep);
    windowStart_ += drop;
    filled_ = keep;
    compressed_ -= drop;
}

}  // namespace jtk::imaging::png
