// Reading a PNG file's structure with messages a person can act on; the
// pixel work is left to the decoder.
#include "PNGFormat.h"

#include <libdeflate.h>

#include <algorithm>
#include <cstring>

namespace jtk::imaging::png {

namespace {

// Larger images are refused rather than risking an allocation that fails.
constexpr uint64_t maximumPixels = uint64_t{1} << 28;

bool fail(std::string* error, std::string message) {
    if (error) *error = std::move(message);
    return false;
}

uint32_t checksumOf(const uint8_t* typeAndData, size_t length) {
    return libdeflate_crc32(0, typeAndData, length);
}

// A chunk type as four printable characters; any other byte (the type of a
// damaged chunk) as \xHH, so that a message stays one line of text.
std::string printableType(const uint8_t* type) {
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string text;
    for (int i = 0; i < 4; ++i) {
        uint8_t byte = type[i];
        if (byte >= 0x20 && byte < 0x7f && byte != '\\') {
            text += char(byte);
        } else {
            text += {'\\', 'x', hex[byte >> 4], hex[byte & 15]};
        }
    }
    return text;
}

bool validDepth(uint8_t colourType, uint8_t depth) {
    switch (colourType) {
        case 0: return depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 16;
        case 3: return depth == 1 || depth == 2 || depth == 4 || depth == 8;
        case 2:
        case 4:
        case 6: return depth == 8 || depth == 16;
        default: return false;
    }
}

}  // namespace

void appendChunk(std::vector<uint8_t>& out, const char (&type)[5], std::span<const uint8_t> data) {
    appendBigEndian32(out, static_cast<uint32_t>(data.size()));
    size_t typeStart = out.size();
    out.insert(out.end(), type, type + 4);
    out.insert(out.end(), data.begin(), data.end());
    appendBigEndian32(out, checksumOf(out.data() + typeStart, 4 + data.size()));
}

int channelsOf(uint8_t colourType) {
    switch (colourType) {
        case 2: return 3;
        case 4: return 2;
        case 6: return 4;
        default: return 1;
    }
}

}  // namespace jtk::imaging::png

namespace jtk::imaging {

std::optional<PNGHeader> readPNGHeader(std::span<const uint8_t> bytes, std::string* error) {
    using namespace png;
    size_t prefix = std::min(bytes.size(), signature.size());
    if (bytes.empty()) return fail(error, "empty file, not a PNG file"), std::nullopt;
    if (!std::equal(bytes.begin(), bytes.begin() + prefix, signature.begin())) {
        return fail(error, "not a PNG file"), std::nullopt;
    }
    constexpr size_t headerEnd = 8 + 8 + 13 + 4;
    if (bytes.size() < headerEnd) return fail(error, "truncated PNG file"), std::nullopt;
    const uint8_t* chunk = bytes.data() + 8;
    if (readBigEndian32(chunk) != 13 || std::memcmp(chunk + 4, "IHDR", 4) != 0) {
        return fail(error, "corrupt PNG file: it does not start with a header chunk"), std::nullopt;
    }
    if (checksumOf(chunk + 4, 4 + 13) != readBigEndian32(chunk + 8 + 13)) {
        return fail(error, "corrupt PNG file: bad checksum in the header chunk"), std::nullopt;
    }
    const uint8_t* fields = chunk + 8;
    PNGHeader header{readBigEndian32(fields), readBigEndian32(fields + 4), fields[8], fields[9], fields[12] == 1};
    if (header.width == 0 || header.height == 0 || header.width > 0x7fffffff || header.height > 0x7fffffff) {
        return fail(error, "corrupt PNG file: invalid width or height"), std::nullopt;
    }
    if (header.colourType > 6 || header.colourType == 1 || header.colourType == 5) {
        return fail(error, "unsupported PNG colour type " + std::to_string(header.colourType)), std::nullopt;
    }
    if (!validDepth(header.colourType, header.bitDepth)) {
        return fail(error, "unsupported bit depth " + std::to_string(header.bitDepth) + " for PNG colour type " +
                               std::to_string(header.colourType)),
               std::nullopt;
    }
    if (fields[10] != 0 || fields[11] != 0 || fields[12] > 1) {
        return fail(error, "unsupported PNG compression, filter or interlace method"), std::nullopt;
    }
    if (uint64_t{header.width} * header.height > maximumPixels) {
        return fail(error, "PNG image too large (" + std::to_string(header.width) + "x" +
                               std::to_string(header.height) + ")"),
               std::nullopt;
    }
    return header;
}

}  // namespace jtk::imaging

namespace jtk::imaging::png {

std::optional<ChunkLayout> readChunkLayout(std::span<const uint8_t> bytes, std::string* error) {
    ChunkLayout layout;
    auto header = readPNGHeader(bytes, error);
    if (!header) return std::nullopt;
    layout.header = *header;
    bool hasPalette = false;
    size_t at = 8;
    while (true) {
        if (bytes.size() - at < 12) return fail(error, "truncated PNG file"), std::nullopt;
        const uint8_t* chunk = bytes.data() + at;
        uint32_t length = readBigEndian32(chunk);
        if (length > 0x7fffffff) return fail(error, "corrupt PNG file: invalid chunk length"), std::nullopt;
        if (bytes.size() - at - 12 < length) return fail(error, "truncated PNG file"), std::nullopt;
        std::string type(reinterpret_cast<const char*>(chunk + 4), 4);
        bool critical = (type[0] & 0x20) == 0;
        if (critical && checksumOf(chunk + 4, 4 + size_t{length}) != readBigEndian32(chunk + 8 + length)) {
            return fail(error, "corrupt PNG file: bad checksum in the " + printableType(chunk + 4) + " chunk"),
                   std::nullopt;
        }
        if (type == "IDAT") {
            layout.imageData.emplace_back(chunk + 8, length);
        } else if (type == "PLTE") {
            hasPalette = true;
        } else if (type == "tRNS") {
            layout.hasTransparency = true;
        } else if (type == "IEND") {
            break;
        } else if (critical && type != "IHDR") {
            return fail(error, "unsupported critical PNG chunk " + printableType(chunk + 4)), std::nullopt;
        }
        at += 12 + size_t{length};
    }
    if (layout.imageData.empty()) return fail(error, "corrupt PNG file: no image data"), std::nullopt;
    if (layout.header.colourType == 3 && !hasPalette) {
        return fail(error, "corrupt PNG file: palette image without a palette"), std::nullopt;
    }
    return layout;
}

}  // namespace jtk::imaging::png
