// Filtering reads only the unfiltered rows, so its loops have no carried
// dependency and vectorise; unfiltering depends on the pixel just made and
// is specialised on the pixel size instead.
#include "PNGRowFilters.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif
#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace jtk::imaging::png {

namespace {

enum FilterType : uint8_t { none = 0, sub = 1, up = 2, average = 3, paeth = 4 };

inline int paethPredictor(int left, int above, int aboveLeft) {
    int distanceLeft = std::abs(above - aboveLeft);
    int distanceAbove = std::abs(left - aboveLeft);
    int distanceAboveLeft = std::abs(left + above - 2 * aboveLeft);
    int predicted = left;
    if (distanceAbove < distanceLeft) distanceLeft = distanceAbove, predicted = above;
    if (distanceAboveLeft < distanceLeft) predicted = aboveLeft;
    return predicted;
}

// The sum of the bytes' magnitudes (read as signed), the measure the choice
// minimises: |x| is the smaller of x and -x as unsigned bytes (128 for
// -128), and the sum-of-differences instruction adds sixteen at a time.
[[gnu::always_inline]] inline uint64_t sumOfMagnitudes(const uint8_t* bytes, size_t length) {
    uint64_t sum = 0;
    size_t i = 0;
#if defined(__SSE2__)
    const __m128i zero = _mm_setzero_si128();
    __m128i sums = zero;
    for (; i + 16 <= length; i += 16) {
        __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes + i));
        sums = _mm_add_epi64(sums, _mm_sad_epu8(_mm_min_epu8(v, _mm_sub_epi8(zero, v)), zero));
    }
    alignas(16) uint64_t lanes[2];
    _mm_store_si128(reinterpret_cast<__m128i*>(lanes), sums);
    sum = lanes[0] + lanes[1];
#endif
    for (; i < length; ++i) sum += uint32_t(std::abs(int(int8_t(bytes[i]))));
    return sum;
}

#if defined(__x86_64__)
// The same sum, thirty-two bytes at a time.
__attribute__((target("avx2"))) uint64_t sumOfMagnitudesAVX2(const uint8_t* bytes, size_t length) {
    const __m256i zero = _mm256_setzero_si256();
    __m256i sums = zero;
    size_t i = 0;
    for (; i + 32 <= length; i += 32) {
        __m256i v = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes + i));
        sums = _mm256_add_epi64(sums, _mm256_sad_epu8(_mm256_abs_epi8(v), zero));
    }
    alignas(32) uint64_t lanes[4];
    _mm256_store_si256(reinterpret_cast<__m256i*>(lanes), sums);
    return lanes[0] + lanes[1] + lanes[2] + lanes[3] + sumOfMagnitudes(bytes + i, length - i);
}
#endif

// The filters write bytes [from, to) of their output only, in loops without
// a carried dependency, so that they vectorise.
[[gnu::always_inline]] inline void applySub(const uint8_t* row, uint8_t* out, size_t from, size_t to, int bpp) {
    size_t i = from;
    for (; i < to && i < size_t(bpp); ++i) out[i] = row[i];
    for (; i < to; ++i) out[i] = uint8_t(row[i] - row[i - bpp]);
}

[[gnu::always_inline]] inline void applyUp(const uint8_t* row, const uint8_t* previous, uint8_t* out, size_t from,
                                           size_t to) {
    for (size_t i = from; i < to; ++i) out[i] = uint8_t(row[i] - previous[i]);
}

[[gnu::always_inline]] inline void applyAverage(const uint8_t* row, const uint8_t* previous, uint8_t* out,
                                                size_t from, size_t to, int bpp) {
    size_t i = from;
    for (; i < to && i < size_t(bpp); ++i) out[i] = uint8_t(row[i] - (previous[i] >> 1));
    for (; i < to; ++i) out[i] = uint8_t(row[i] - ((row[i - bpp] + previous[i]) >> 1));
}

// Written with branch-free selects so that the loop vectorises.
[[gnu::always_inline]] inline void applyPaeth(const uint8_t* row, const uint8_t* previous, uint8_t* out,
                                              size_t from, size_t to, int bpp) {
    size_t i = from;
    for (; i < to && i < size_t(bpp); ++i) out[i] = uint8_t(row[i] - previous[i]);
    for (; i < to; ++i) {
        int16_t left = row[i - bpp], above = previous[i], aboveLeft = previous[i - bpp];
        int16_t distanceLeft = int16_t(std::abs(above - aboveLeft));
        int16_t distanceAbove = int16_t(std::abs(left - aboveLeft));
        int16_t distanceAboveLeft = int16_t(std::abs(left + above - 2 * aboveLeft));
        int16_t predicted = distanceAbove < distanceLeft ? above : left;
        int16_t smallest = distanceAbove < distanceLeft ? distanceAbove : distanceLeft;
        predicted = distanceAboveLeft < smallest ? aboveLeft : predicted;
        out[i] = uint8_t(row[i] - predicted);
    }
}

#if defined(__SSE2__)
// Four-byte pixels (RGBA) one whole pixel per step in 16-bit lanes: the
// chain from one pixel to the next stays, but each step is a few vector
// instructions instead of four branchy scalar predictions.
[[gnu::always_inline]] inline __m128i loadPixel(const uint8_t* bytes) {
    int32_t word;
    std::memcpy(&word, bytes, 4);
    return _mm_unpacklo_epi8(_mm_cvtsi32_si128(word), _mm_setzero_si128());
}

[[gnu::always_inline]] inline void storePixel(uint8_t* bytes, __m128i wide) {
    int32_t word = _mm_cvtsi128_si32(_mm_packus_epi16(wide, wide));
    std::memcpy(bytes, &word, 4);
}

[[gnu::always_inline]] inline __m128i absolute(__m128i value) {
    return _mm_max_epi16(value, _mm_sub_epi16(_mm_setzero_si128(), value));
}

[[gnu::always_inline]] inline __m128i select(__m128i mask, __m128i ifSet, __m128i otherwise) {
    return _mm_or_si128(_mm_and_si128(mask, ifSet), _mm_andnot_si128(mask, otherwise));
}

// One Paeth step on pixels widened to 16-bit lanes. Every candidate result
// (input plus left, above or above-left) is made while the choice is being
// worked out, so the chain from the left pixel to the result is short; the
// byte-wise add of zero-extended lanes wraps as the filter does, without a
// mask.
[[gnu::always_inline]] inline __m128i paethStep(__m128i in, __m128i above, __m128i left, __m128i aboveLeft) {
    __m128i towardsAbove = _mm_sub_epi16(above, aboveLeft), towardsLeft = _mm_sub_epi16(left, aboveLeft);
    __m128i distanceLeft = absolute(towardsAbove);
    __m128i distanceAbove = absolute(towardsLeft);
    __m128i distanceAboveLeft = absolute(_mm_add_epi16(towardsAbove, towardsLeft));
    __m128i notLeft = _mm_cmpgt_epi16(distanceLeft, _mm_min_epi16(distanceAbove, distanceAboveLeft));
    __m128i aboveLeftWins = _mm_cmpgt_epi16(distanceAbove, distanceAboveLeft);
    __m128i fromAboveOrAboveLeft =
        select(aboveLeftWins, _mm_add_epi8(in, aboveLeft), _mm_add_epi8(in, above));
    return select(notLeft, fromAboveOrAboveLeft, _mm_add_epi8(in, left));
}

void undoPaeth4(const uint8_t* in, const uint8_t* previous, uint8_t* out, size_t length) {
    __m128i left = _mm_setzero_si128(), aboveLeft = _mm_setzero_si128();
    for (size_t i = 0; i < length; i += 4) {
        __m128i above = loadPixel(previous + i);
        left = paethStep(loadPixel(in + i), above, left, aboveLeft);
        storePixel(out + i, left);
        aboveLeft = above;
    }
}

// Two Paeth rows in one register: lanes 0-3 make pixel x of the first row,
// lanes 4-7 pixel x - 1 of the second, whose above and above-left pixels are
// the first row's x - 1 and x - 2, made in the two steps before. The chain
// from pixel to pixel is barely longer than for one row, so two rows take
// little more time than one.
struct PaethPair {
    const uint8_t* firstIn;
    const uint8_t* secondIn;
    const uint8_t* previous;
    uint8_t* firstOut;
    uint8_t* secondOut;
    size_t length;
    __m128i left = _mm_setzero_si128(), aboveLeft = _mm_setzero_si128();

    static __m128i pair(__m128i first, __m128i second) { return _mm_unpacklo_epi64(first, second); }
    void storeSecond(size_t i, __m128i made) const {
        int32_t word = _mm_cvtsi128_si32(_mm_srli_si128(_mm_packus_epi16(made, made), 4));
        std::memcpy(secondOut + i - 4, &word, 4);
    }
    // Pixel 0 of the first row; the second row's lanes start from zeros.
    [[gnu::always_inline]] void start() {
        const __m128i zero = _mm_setzero_si128();
        aboveLeft = pair(loadPixel(previous), zero);
        left = pair(paethStep(loadPixel(firstIn), aboveLeft, zero, zero), zero);
        storePixel(firstOut, left);
    }
    // The first row's pixel at byte i (4 <= i < length), the second's at i - 4.
    [[gnu::always_inline]] void step(size_t i) {
        __m128i above = pair(loadPixel(previous + i), left);
        left = paethStep(pair(loadPixel(firstIn + i), loadPixel(secondIn + i - 4)), above, left, aboveLeft);
        storePixel(firstOut + i, left);
        storeSecond(i, left);
        aboveLeft = above;
    }
    // The second row's last pixel.
    [[gnu::always_inline]] void finish() {
        __m128i above = pair(_mm_setzero_si128(), left);
        __m128i in = pair(_mm_setzero_si128(), loadPixel(secondIn + length - 4));
        storeSecond(length, paethStep(in, above, left, aboveLeft));
    }
};

// Two or four rows (`count`) `inStride` apart; the first is made into
// firstOut, the others into consecutive rows of laterOut. Four rows run as
// two pairs side by side, the lower a step behind and reading the upper's
// second row as it is made, so that the processor overlaps the two chains.
// Inlined into two copies below: one for AVX2, whose three-operand forms
// drop most of the register copies.
[[gnu::always_inline]] inline void undoPaeth4Rows(const uint8_t* in, size_t inStride, int count,
                                                  const uint8_t* previous, uint8_t* firstOut, uint8_t* laterOut,
                                                  size_t length) {
    PaethPair upper{in, in + inStride, previous, firstOut, laterOut, length};
    upper.start();
    if (count == 2) {
        for (size_t i = 4; i < length; i += 4) upper.step(i);
        upper.finish();
        return;
    }
    PaethPair lower{in + 2 * inStride, in + 3 * inStride, laterOut, laterOut + length, laterOut + 2 * length, length};
    upper.step(4);
    lower.start();
    for (size_t i = 8; i < length; i += 4) {
        upper.step(i);
        lower.step(i - 4);
    }
    upper.finish();
    lower.step(length - 4);
    lower.finish();
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void undoPaeth4RowsAVX2(const uint8_t* in, size_t inStride, int count,
                                                        const uint8_t* previous, uint8_t* firstOut,
                                                        uint8_t* laterOut, size_t length) {
    undoPaeth4Rows(in, inStride, count, previous, firstOut, laterOut, length);
}
#endif

void undoPaeth4RowsSSE2(const uint8_t* in, size_t inStride, int count, const uint8_t* previous, uint8_t* firstOut,
                        uint8_t* laterOut, size_t length) {
    undoPaeth4Rows(in, inStride, count, previous, firstOut, laterOut, length);
}

void undoAverage4(const uint8_t* in, const uint8_t* previous, uint8_t* out, size_t length) {
    const __m128i mask = _mm_set1_epi16(0xff);
    __m128i left = _mm_setzero_si128();
    for (size_t i = 0; i < length; i += 4) {
        __m128i predicted = _mm_srli_epi16(_mm_add_epi16(left, loadPixel(previous + i)), 1);
        left = _mm_and_si128(_mm_add_epi16(loadPixel(in + i), predicted), mask);
        storePixel(out + i, left);
    }
}
#endif

template <int bpp>
void undo(uint8_t type, const uint8_t* in, const uint8_t* previous, uint8_t* out, size_t length) {
    switch (type) {
        case none: std::memmove(out, in, length); break;  // may be in place
        case sub:
            std::memcpy(out, in, bpp);
            for (size_t i = bpp; i < length; ++i) out[i] = uint8_t(in[i] + out[i - bpp]);
            break;
        case up:
            for (size_t i = 0; i < length; ++i) out[i] = uint8_t(in[i] + previous[i]);
            break;
        case average:
#if defined(__SSE2__)
            if constexpr (bpp == 4) return undoAverage4(in, previous, out, length);
#endif
            for (int i = 0; i < bpp; ++i) out[i] = uint8_t(in[i] + (previous[i] >> 1));
            for (size_t i = bpp; i < length; ++i) out[i] = uint8_t(in[i] + ((out[i - bpp] + previous[i]) >> 1));
            break;
        case paeth:
#if defined(__SSE2__)
            if constexpr (bpp == 4) return undoPaeth4(in, previous, out, length);
#endif
            for (int i = 0; i < bpp; ++i) out[i] = uint8_t(in[i] + previous[i]);
            for (size_t i = bpp; i < length; ++i) {
                out[i] = uint8_t(in[i] + paethPredictor(out[i - bpp], previous[i], previous[i - bpp]));
            }
            break;
    }
}

// The choice, inlined into two copies below: one compiled for AVX2.
// `sumOf` is one of the two sums above.
template <uint64_t (*sumOf)(const uint8_t*, size_t)>
[[gnu::always_inline]] inline void chooseFilter(const uint8_t* row, const uint8_t* previous, uint8_t* out,
                                                uint8_t* scratch, size_t length, int bytesPerPixel) {
    // A row equal to the one above (most rows of a flat area) needs no search.
    uint64_t sums[5] = {0, 0, 0, 0, 0};
    applyUp(row, previous, out + 1, 0, length);
    sums[up] = sumOf(out + 1, length);
    if (sums[up] == 0) {
        out[0] = up;
        return;
    }
    // In slices small enough that the four outputs are still in the first
    // level cache when they are summed.
    constexpr size_t slice = 2048;
    uint8_t* candidates[5] = {const_cast<uint8_t*>(row), scratch, out + 1, scratch + length, scratch + 2 * length};
    for (size_t from = 0; from < length; from += slice) {
        size_t to = std::min(length, from + slice);
        applySub(row, candidates[sub], from, to, bytesPerPixel);
        applyAverage(row, previous, candidates[average], from, to, bytesPerPixel);
        applyPaeth(row, previous, candidates[paeth], from, to, bytesPerPixel);
        for (uint8_t type : {none, sub, average, paeth}) {
            sums[type] += sumOf(candidates[type] + from, to - from);
        }
    }
    uint8_t best = up;  // ties keep the first in this order: up, none, sub, average, Paeth
    for (uint8_t type : {none, sub, average, paeth}) {
        if (sums[type] < sums[best]) best = type;
    }
    out[0] = best;
    if (best != up) std::memcpy(out + 1, candidates[best], length);
}

#if defined(__x86_64__)
__attribute__((target("avx2"))) void chooseFilterAVX2(const uint8_t* row, const uint8_t* previous, uint8_t* out,
                                                      uint8_t* scratch, size_t length, int bytesPerPixel) {
    chooseFilter<sumOfMagnitudesAVX2>(row, previous, out, scratch, length, bytesPerPixel);
}
#endif

}  // namespace

// Picks the AVX2 copy where the processor has it. (A plain check rather than
// an ifunc, which runs before the sanitizers' runtimes are ready.)
void filterRow(const uint8_t* row, const uint8_t* previous, uint8_t* out, uint8_t* scratch, size_t length,
               int bytesPerPixel) {
#if defined(__x86_64__)
    static const bool hasAVX2 = __builtin_cpu_supports("avx2");
    if (hasAVX2) return chooseFilterAVX2(row, previous, out, scratch, length, bytesPerPixel);
#endif
    chooseFilter<sumOfMagnitudes>(row, previous, out, scratch, length, bytesPerPixel);
}

bool unfilterRow(uint8_t type, const uint8_t* filtered, const uint8_t* previous, uint8_t* out, size_t length,
                 int bytesPerPixel) {
    if (type > paeth) return false;
    switch (bytesPerPixel) {
        case 3: undo<3>(type, filtered, previous, out, length); break;
        case 4: undo<4>(type, filtered, previous, out, length); break;
        case 8: undo<8>(type, filtered, previous, out, length); break;
        default: return false;
    }
    return true;
}

bool unfilterPaethRows(const uint8_t* filtered, size_t filteredStride, int count, const uint8_t* previous,
                       uint8_t* firstOut, uint8_t* laterOut, size_t length, int bytesPerPixel) {
#if defined(__SSE2__)
    if (bytesPerPixel != 4 || (count != 2 && count != 4) || length < size_t(count) * 2) return false;
#if defined(__x86_64__)
    static const bool hasAVX2 = __builtin_cpu_supports("avx2");
    if (hasAVX2) return undoPaeth4RowsAVX2(filtered, filteredStride, count, previous, firstOut, laterOut, length), true;
#endif
    undoPaeth4RowsSSE2(filtered, filteredStride, count, previous, firstOut, laterOut, length);
    return true;
#else
    (void)filtered, (void)filteredStride, (void)count, (void)previous, (void)firstOut, (void)laterOut;
    (void)length, (void)bytesPerPixel;
    return false;
#endif
}

}  // namespace jtk::imaging::png
