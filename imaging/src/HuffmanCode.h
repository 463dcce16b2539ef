// Length-limited canonical Huffman codes, as deflate's dynamic blocks use.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace jtk::imaging::png {

// The largest alphabet deflate codes: literals and lengths.
inline constexpr size_t maximumSymbols = 286;

// Fixed-size, so that making a code allocates nothing: a block of a small
// image makes three codes, and that cost counts for thousands of views.
struct HuffmanCode {
    std::array<uint8_t, maximumSymbols> lengths{};  // bits per symbol, 0 for an unused symbol
    std::array<uint16_t, maximumSymbols> codes{};   // bit-reversed, ready to write least significant bit first
};

// A complete prefix code for the symbol frequencies (at most maximumSymbols)
// with no code longer than maxLength. At least two symbols get a code
// (symbols 0 and 1 step in when fewer are used), so that every decoder
// accepts the code.
HuffmanCode makeHuffmanCode(std::span<const uint32_t> frequencies, int maxLength);

}  // namespace jtk::imaging::png
