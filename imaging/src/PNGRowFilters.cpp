// Filtering reads only the unfiltered rows, so its loops have no carried
// dependency and vectorise; unfiltering depends on the pixel just made and
// is specialised on the pixel size instead.
#include "PNGRowFilters.h"

#include <cstdlib>
#include <cstring>
#include <initializer_list>

#if defined(__SSE2__)
#include <emmintrin.h>
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

// Each filter writes its output and answers the sum of the output's
// magnitudes (bytes read as signed), the measure the choice minimises.
[[gnu::always_inline]] inline uint32_t magnitude(uint8_t byte) { return uint32_t(std::abs(int(int8_t(byte)))); }

[[gnu::always_inline]] inline uint64_t applyNone(const uint8_t* row, size_t length) {
    uint64_t sum = 0;
    for (size_t i = 0; i < length; ++i) sum += magnitude(row[i]);
    return sum;
}

[[gnu::always_inline]] inline uint64_t applySub(const uint8_t* row, uint8_t* out, size_t length, int bpp) {
    uint64_t sum = 0;
    for (int i = 0; i < bpp; ++i) sum += magnitude(out[i] = row[i]);
    for (size_t i = bpp; i < length; ++i) sum += magnitude(out[i] = uint8_t(row[i] - row[i - bpp]));
    return sum;
}

[[gnu::always_inline]] inline uint64_t applyUp(const uint8_t* row, const uint8_t* previous, uint8_t* out,
                                               size_t length) {
    uint64_t sum = 0;
    for (size_t i = 0; i < length; ++i) sum += magnitude(out[i] = uint8_t(row[i] - previous[i]));
    return sum;
}

[[gnu::always_inline]] inline uint64_t applyAverage(const uint8_t* row, const uint8_t* previous, uint8_t* out,
                                                    size_t length, int bpp) {
    uint64_t sum = 0;
    for (int i = 0; i < bpp; ++i) sum += magnitude(out[i] = uint8_t(row[i] - (previous[i] >> 1)));
    for (size_t i = bpp; i < length; ++i) {
        sum += magnitude(out[i] = uint8_t(row[i] - ((row[i - bpp] + previous[i]) >> 1)));
    }
    return sum;
}

// Written with branch-free selects so that the loop vectorises.
[[gnu::always_inline]] inline uint64_t applyPaeth(const uint8_t* row, const uint8_t* previous, uint8_t* out,
                                                  size_t length, int bpp) {
    uint64_t sum = 0;
    for (int i = 0; i < bpp; ++i) sum += magnitude(out[i] = uint8_t(row[i] - previous[i]));
    for (size_t i = bpp; i < length; ++i) {
        int16_t left = row[i - bpp], above = previous[i], aboveLeft = previous[i - bpp];
        int16_t distanceLeft = int16_t(std::abs(above - aboveLeft));
        int16_t distanceAbove = int16_t(std::abs(left - aboveLeft));
        int16_t distanceAboveLeft = int16_t(std::abs(left + above - 2 * aboveLeft));
        int16_t predicted = distanceAbove < distanceLeft ? above : left;
        int16_t smallest = distanceAbove < distanceLeft ? distanceAbove : distanceLeft;
        predicted = distanceAboveLeft < smallest ? aboveLeft : predicted;
        sum += magnitude(out[i] = uint8_t(row[i] - predicted));
    }
    return sum;
}

#if defined(__SSE2__)
// Four-byte pixels (RGBA) one whole pixel per step in 16-bit lanes: the
// chain from one pixel to the next stays, but each step is a few vector
// instructions instead of four branchy scalar predictions.
__m128i loadPixel(const uint8_t* bytes) {
    int32_t word;
    std::memcpy(&word, bytes, 4);
    return _mm_unpacklo_epi8(_mm_cvtsi32_si128(word), _mm_setzero_si128());
}

void storePixel(uint8_t* bytes, __m128i wide) {
    int32_t word = _mm_cvtsi128_si32(_mm_packus_epi16(wide, wide));
    std::memcpy(bytes, &word, 4);
}

__m128i absolute(__m128i value) { return _mm_max_epi16(value, _mm_sub_epi16(_mm_setzero_si128(), value)); }

__m128i select(__m128i mask, __m128i ifSet, __m128i otherwise) {
    return _mm_or_si128(_mm_and_si128(mask, ifSet), _mm_andnot_si128(mask, otherwise));
}

void undoPaeth4(const uint8_t* in, const uint8_t* previous, uint8_t* out, size_t length) {
    const __m128i mask = _mm_set1_epi16(0xff);
    __m128i left = _mm_setzero_si128(), aboveLeft = _mm_setzero_si128();
    for (size_t i = 0; i < length; i += 4) {
        __m128i above = loadPixel(previous + i);
        __m128i distanceLeft = _mm_sub_epi16(above, aboveLeft);
        __m128i distanceAbove = _mm_sub_epi16(left, aboveLeft);
        __m128i distanceAboveLeft = absolute(_mm_add_epi16(distanceLeft, distanceAbove));
        distanceLeft = absolute(distanceLeft);
        distanceAbove = absolute(distanceAbove);
        __m128i smallest = _mm_min_epi16(distanceAboveLeft, _mm_min_epi16(distanceLeft, distanceAbove));
        __m128i predicted = select(_mm_cmpeq_epi16(distanceLeft, smallest), left,
                                   select(_mm_cmpeq_epi16(distanceAbove, smallest), above, aboveLeft));
        left = _mm_and_si128(_mm_add_epi16(loadPixel(in + i), predicted), mask);
        storePixel(out + i, left);
        aboveLeft = above;
    }
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
[[gnu::always_inline]] inline void chooseFilter(const uint8_t* row, const uint8_t* previous, uint8_t* out,
                                                uint8_t* scratch, size_t length, int bytesPerPixel) {
    // A row equal to the one above (most rows of a flat area) needs no search.
    uint64_t sums[5];
    sums[up] = applyUp(row, previous, out + 1, length);
    if (sums[up] == 0) {
        out[0] = up;
        return;
    }
    uint8_t* candidates[5] = {const_cast<uint8_t*>(row), scratch, out + 1, scratch + length, scratch + 2 * length};
    sums[none] = applyNone(row, length);
    sums[sub] = applySub(row, candidates[sub], length, bytesPerPixel);
    sums[average] = applyAverage(row, previous, candidates[average], length, bytesPerPixel);
    sums[paeth] = applyPaeth(row, previous, candidates[paeth], length, bytesPerPixel);
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
    chooseFilter(row, previous, out, scratch, length, bytesPerPixel);
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
    chooseFilter(row, previous, out, scratch, length, bytesPerPixel);
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

}  // namespace jtk::imaging::png
