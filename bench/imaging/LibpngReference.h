// The reference the encoder is measured against: libpng with its default
// settings (zlib's default level, adaptive filters), as most programs use it.
#pragma once

#include <cstdint>
#include <vector>

#include "JTK/imaging/Image.h"

namespace jtk::bench {

std::vector<uint8_t> encodeWithLibpng(const imaging::Image& image);

}  // namespace jtk::bench
