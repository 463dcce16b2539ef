// The five PNG row filters (none, sub, up, average, Paeth): choosing and
// applying one per row when encoding, undoing them when decoding.
#pragma once

#include <cstddef>
#include <cstdint>

namespace jtk::imaging::png {

// Filters `length` bytes of `row` (pixels of `bytesPerPixel` bytes, the row
// above in `previous`, zeros for the first row) with the filter whose output
// has the smallest sum of magnitudes, the usual heuristic of PNG encoders.
// Writes the filter type followed by the filtered bytes to `out` (length + 1
// bytes). `scratch` holds 3 * length bytes of working space.
void filterRow(const uint8_t* row, const uint8_t* previous, uint8_t* out, uint8_t* scratch, size_t length,
               int bytesPerPixel);

// Undoes filter `type` of one row into `out` for pixels of 3, 4 or 8
// bytes; false for an unknown type or another pixel size. `out` may lie
// before `filtered` in the same buffer (decoding in place).
bool unfilterRow(uint8_t type, const uint8_t* filtered, const uint8_t* previous, uint8_t* out, size_t length,
                 int bytesPerPixel);

// Undoes the Paeth filter of `count` (2 or 4) consecutive rows together, two
// to three times as fast as one after the other. `filtered` is the first
// row's filtered bytes, the others follow `filteredStride` apart; `previous`
// is the row above the first. The first row is made into `firstOut`, which
// may lie before `filtered` in the same buffer as for unfilterRow; the
// others into consecutive rows of `laterOut`, which must not overlap any
// input. False, with nothing done, where only unfilterRow applies (pixels
// not 4 bytes, rows too short).
bool unfilterPaethRows(const uint8_t* filtered, size_t filteredStride, int count, const uint8_t* previous,
                       uint8_t* firstOut, uint8_t* laterOut, size_t length, int bytesPerPixel);

}  // namespace jtk::imaging::png
