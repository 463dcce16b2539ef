// The PNG file format's building blocks shared by the encoder and the
// decoder: the signature, big-endian numbers, chunks and their checksums,
// and the walk over a file's chunks.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "JTK/imaging/PNG.h"

namespace jtk::imaging::png {

inline constexpr std::array<uint8_t, 8> signature{137, 80, 78, 71, 13, 10, 26, 10};

inline uint32_t readBigEndian32(const uint8_t* bytes) {
    return uint32_t{bytes[0]} << 24 | uint32_t{bytes[1]} << 16 | uint32_t{bytes[2]} << 8 | bytes[3];
}

inline void appendBigEndian32(std::vector<uint8_t>& out, uint32_t value) {
    out.insert(out.end(), {uint8_t(value >> 24), uint8_t(value >> 16), uint8_t(value >> 8), uint8_t(value)});
}

// Appends one chunk: length, type, data, checksum over type and data.
void appendChunk(std::vector<uint8_t>& out, const char (&type)[5], std::span<const uint8_t> data);

// Samples per pixel of a colour type (1 grey, 3 RGB, 1 palette, 2 grey+alpha, 4 RGBA).
int channelsOf(uint8_t colourType);

// What a walk over all chunks found: the image data (the IDAT chunks in
// order, each a span into the file) and whether transparency is given.
struct ChunkLayout {
    PNGHeader header;
    std::vector<std::span<const uint8_t>> imageData;
    bool hasTransparency = false;
};

// Walks the whole file: every chunk inside the bytes, checksums of the
// critical chunks right, image data present, an end chunk. None with a
// one-line reason otherwise.
std::optional<ChunkLayout> readChunkLayout(std::span<const uint8_t> bytes, std::string* error);

}  // namespace jtk::imaging::png
