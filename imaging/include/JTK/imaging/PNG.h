// PNG encoding and decoding. Encoding is deterministic: the same image gives
// the same bytes on every run (no time, text or other varying chunk).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "JTK/imaging/Image.h"

namespace jtk::imaging {

// PNG bytes of the image; empty when it cannot be encoded.
std::vector<uint8_t> encodePNG(const Image& image);

// The image in the PNG bytes, or none with a one-line reason in error.
std::optional<Image> decodePNG(const std::vector<uint8_t>& bytes, std::string* error = nullptr);

}  // namespace jtk::imaging
