// Code lengths from a Huffman tree built with two queues over the sorted
// frequencies; codes that come out too long are moved up by the usual
// rebalancing of the per-length counts (as zlib-compatible encoders do).
// All on the stack: no allocation.
#include "HuffmanCode.h"

#include <algorithm>

namespace jtk::imaging::png {

namespace {

constexpr size_t maximumNodes = 2 * maximumSymbols - 1;

// Depth of each of the `leaves` leaves of a Huffman tree of the ascending
// weights, into depth[0, leaves).
void leafDepths(const uint64_t* weights, size_t leaves, int* depth) {
    uint64_t weight[maximumNodes];
    uint16_t parent[maximumNodes];
    std::copy_n(weights, leaves, weight);
    size_t nextLeaf = 0, nextInner = leaves, nodes = 2 * leaves - 1;
    auto takeSmallest = [&](size_t made) {
        bool leaf = nextLeaf < leaves && (nextInner >= made || weight[nextLeaf] <= weight[nextInner]);
        return leaf ? nextLeaf++ : nextInner++;
    };
    for (size_t made = leaves; made < nodes; ++made) {
        size_t first = takeSmallest(made), second = takeSmallest(made);
        weight[made] = weight[first] + weight[second];
        parent[first] = parent[second] = uint16_t(made);
    }
    int nodeDepth[maximumNodes];
    nodeDepth[nodes - 1] = 0;
    for (size_t node = nodes - 1; node-- > 0;) nodeDepth[node] = nodeDepth[parent[node]] + 1;
    std::copy_n(nodeDepth, leaves, depth);
}

}  // namespace

HuffmanCode makeHuffmanCode(std::span<const uint32_t> frequencies, int maxLength) {
    size_t symbols = std::min(frequencies.size(), maximumSymbols);
    // Ascending frequency, ties by symbol, so the code depends on the counts
    // alone: one sort of (frequency, symbol) keys.
    uint64_t keys[maximumSymbols];
    size_t used = 0;
    for (size_t symbol = 0; symbol < symbols; ++symbol) {
        if (frequencies[symbol] > 0) keys[used++] = uint64_t{frequencies[symbol]} << 16 | symbol;
    }
    for (size_t symbol = 0; used < 2 && symbol < symbols; ++symbol) {
        if (frequencies[symbol] == 0) keys[used++] = symbol;
    }
    std::sort(keys, keys + used);
    uint64_t weights[maximumSymbols];
    for (size_t i = 0; i < used; ++i) weights[i] = std::max<uint64_t>(keys[i] >> 16, 1);
    int depths[maximumSymbols];
    leafDepths(weights, used, depths);

    // Codes longer than maxLength are counted at maxLength first; a tree of
    // 286 leaves is at most 285 deep.
    uint32_t perLength[maximumSymbols] = {};
    for (size_t i = 0; i < used; ++i) ++perLength[std::min(depths[i], maxLength)];
    // Each step removes one longest code and splits a shorter one in two:
    // the code count stays, the Kraft sum drops by one unit until it fits.
    uint64_t kraft = 0;
    for (int length = 1; length <= maxLength; ++length) kraft += uint64_t{perLength[length]} << (maxLength - length);
    while (kraft > (uint64_t{1} << maxLength)) {
        --perLength[maxLength];
        for (int length = maxLength - 1; length > 0; --length) {
            if (perLength[length] > 0) {
                --perLength[length];
                perLength[length + 1] += 2;
                break;
            }
        }
        --kraft;
    }

    HuffmanCode code;
    size_t next = 0;  // the least frequent symbols get the longest codes
    for (int length = maxLength; length > 0; --length) {
        for (uint32_t i = 0; i < perLength[length]; ++i) code.lengths[keys[next++] & 0xffff] = uint8_t(length);
    }
    // Canonical codes: by length, then by symbol.
    uint16_t nextCode[16] = {};
    uint16_t value = 0;
    for (int length = 1; length <= maxLength; ++length) {
        value = uint16_t((value + perLength[length - 1]) << 1);
        nextCode[length] = value;
    }
    for (size_t symbol = 0; symbol < symbols; ++symbol) {
        int length = code.lengths[symbol];
        if (length == 0) continue;
        uint16_t canonical = nextCode[length]++, reversed = 0;
        for (int bit = 0; bit < length; ++bit) reversed = uint16_t(reversed << 1 | ((canonical >> bit) & 1));
        code.codes[symbol] = reversed;
    }
    return code;
}

}  // namespace jtk::imaging::png
