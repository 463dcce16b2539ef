// Length-limited canonical Huffman codes, as deflate's dynamic blocks use.
#pragma once

#include <cstdint>
#include <vector>

namespace jtk::imaging::png {

struct HuffmanCode {
    std::vector<uint8_t> lengths;  // bits per symbol, 0 for an unused symbol
    std::vector<uint16_t> codes;   // bit-reversed, ready to write least significant bit first
};

// A complete prefix code for the symbol frequencies with no code longer than
// maxLength. At least two symbols get a code (symbols 0 and 1 step in when
// fewer are used), so that every decoder accepts the code.
HuffmanCode makeHuffmanCode(const std::vector<uint32_t>& frequencies, int maxLength);

}  // namespace jtk::imaging::png
