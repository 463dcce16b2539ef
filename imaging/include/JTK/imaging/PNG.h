// PNG encoding and decoding. Encoding is deterministic: the same image gives
// the same bytes on every run (no time, text or other varying chunk).
// Decoding takes every colour type and bit depth of the format (grey, grey
// with alpha, RGB, RGBA, palette, with or without tRNS transparency, 1 to 16
// bits, interlaced or not) and yields straight RGBA; no gamma or colour
// profile is applied, so the values are the file's own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "JTK/imaging/Image.h"

namespace jtk::imaging {

// What the header chunk of a PNG file says.
struct PNGHeader {
    uint32_t width = 0;
    uint32_t height = 0;
    uint8_t bitDepth = 0;    // 1, 2, 4, 8 or 16
    uint8_t colourType = 0;  // 0 grey, 2 RGB, 3 palette, 4 grey+alpha, 6 RGBA
    bool interlaced = false;
};

// PNG bytes of the image; empty when it cannot be encoded.
std::vector<uint8_t> encodePNG(const Image& image);

// A 16-bit RGBA PNG of the image; empty when it cannot be encoded.
std::vector<uint8_t> encodePNG(const Image16& image);

// An 8-bit RGBA PNG of a bitmap in the cairo/pixman ARGB32 layout: native-
// endian 32-bit words 0xAARRGGBB with premultiplied colour, rows `stride`
// bytes apart. Colour is un-premultiplied as cairo's own PNG writer does it.
std::vector<uint8_t> encodePNGFromPremultipliedARGB32(const uint8_t* rows, uint32_t width, uint32_t height,
                                                      size_t stride);

// The header of the PNG bytes, checked (signature, header chunk, a valid bit
// depth for the colour type), or none with a one-line reason in error.
std::optional<PNGHeader> readPNGHeader(std::span<const uint8_t> bytes, std::string* error = nullptr);

// The image in the PNG bytes, or none with a one-line reason in error.
// 16-bit files are reduced to their high byte.
std::optional<Image> decodePNG(const std::vector<uint8_t>& bytes, std::string* error = nullptr);
std::optional<Image> decodePNG(std::span<const uint8_t> bytes, std::string* error = nullptr);

// The image at 16 bits per channel: 16-bit files keep every bit, smaller
// depths are widened exactly (8-bit v becomes v * 257).
std::optional<Image16> decodePNG16(std::span<const uint8_t> bytes, std::string* error = nullptr);

}  // namespace jtk::imaging
