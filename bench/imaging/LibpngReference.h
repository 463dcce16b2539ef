// The references the encoder is measured against: libpng with its default
// settings (zlib's default level, adaptive filters), as most programs use it,
// and libpng tuned for speed (zlib level 1, the sub filter on every row).
#pragma once

#include <cstdint>
#include <vector>

#include "JTK/imaging/Image.h"

namespace jtk::bench {

std::vector<uint8_t> encodeWithLibpng(const imaging::Image& image);
std::vector<uint8_t> encodeWithLibpngFast(const imaging::Image& image);

}  // namespace jtk::bench
