// Code lengths from a Huffman tree built with two queues over the sorted
// frequencies; codes that come out too long are moved up by the usual
// rebalancing of the per-length counts (as zlib-compatible encoders do).
#include "HuffmanCode.h"

#include <algorithm>
#include <numeric>

namespace jtk::imaging::png {

namespace {

// Depth of every leaf in a Huffman tree of the (ascending) weights.
std::vector<int> leafDepths(const std::vector<uint64_t>& weights) {
    size_t leaves = weights.size();
    std::vector<uint64_t> weight(weights);
    weight.resize(2 * leaves - 1);
    std::vector<size_t> parent(2 * leaves - 1, 0);
    size_t nextLeaf = 0, nextInner = leaves;
    auto takeSmallest = [&](size_t made) {
        bool leaf = nextLeaf < leaves && (nextInner >= made || weight[nextLeaf] <= weight[nextInner]);
        return leaf ? nextLeaf++ : nextInner++;
    };
    for (size_t made = leaves; made < 2 * leaves - 1; ++made) {
        size_t first = takeSmallest(made), second = takeSmallest(made);
        weight[made] = weight[first] + weight[second];
        parent[first] = parent[second] = made;
    }
    std::vector<int> depth(2 * leaves - 1, 0);
    for (size_t node = 2 * leaves - 2; node-- > 0;) depth[node] = depth[parent[node]] + 1;
    depth.resize(leaves);
    return depth;
}

}  // namespace

HuffmanCode makeHuffmanCode(const std::vector<uint32_t>& frequencies, int maxLength) {
    size_t symbols = frequencies.size();
    std::vector<uint32_t> used;
    for (uint32_t symbol = 0; symbol < symbols; ++symbol) {
        if (frequencies[symbol] > 0) used.push_back(symbol);
    }
    for (uint32_t symbol = 0; used.size() < 2 && symbol < symbols; ++symbol) {
        if (frequencies[symbol] == 0) used.push_back(symbol);
    }
    // Ascending frequency, ties by symbol, so the code depends on the counts alone.
    std::sort(used.begin(), used.end(), [&](uint32_t a, uint32_t b) {
        return frequencies[a] != frequencies[b] ? frequencies[a] < frequencies[b] : a < b;
    });
    std::vector<uint64_t> weights;
    for (uint32_t symbol : used) weights.push_back(std::max<uint32_t>(frequencies[symbol], 1));
    std::vector<int> depths = leafDepths(weights);

    std::vector<uint32_t> perLength(std::max(maxLength, *std::max_element(depths.begin(), depths.end())) + 1, 0);
    for (int depth : depths) ++perLength[depth];
    for (size_t length = maxLength + 1; length < perLength.size(); ++length) {
        perLength[maxLength] += perLength[length];
        perLength[length] = 0;
    }
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

    HuffmanCode code{std::vector<uint8_t>(symbols, 0), std::vector<uint16_t>(symbols, 0)};
    size_t next = 0;  // the least frequent symbols get the longest codes
    for (int length = maxLength; length > 0; --length) {
        for (uint32_t i = 0; i < perLength[length]; ++i) code.lengths[used[next++]] = uint8_t(length);
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
