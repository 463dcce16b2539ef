// Escaping, base64 and number texts for the report.
#include "JTK/review/HtmlText.h"

#include <cmath>
#include <cstdio>

namespace jtk::review {

std::string escapeHtml(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        switch (c) {
            case '&': out += "&amp;"; break;
            case '<': out += "&lt;"; break;
            case '>': out += "&gt;"; break;
            case '"': out += "&quot;"; break;
            case '\'': out += "&#39;"; break;
            default: out += c;
        }
    }
    return out;
}

std::string base64(std::string_view bytes) {
    static constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    size_t i = 0;
    auto byte = [&](size_t at) { return uint32_t(uint8_t(bytes[at])); };
    for (; i + 3 <= bytes.size(); i += 3) {
        uint32_t group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
        for (int shift = 18; shift >= 0; shift -= 6) out += digits[(group >> shift) & 63];
    }
    size_t left = bytes.size() - i;
    if (left) {
        uint32_t group = byte(i) << 16 | (left == 2 ? byte(i + 1) << 8 : 0);
        out += digits[group >> 18];
        out += digits[(group >> 12) & 63];
        out += left == 2 ? digits[(group >> 6) & 63] : '=';
        out += '=';
    }
    return out;
}

std::string pngDataUri(std::string_view png) { return "data:image/png;base64," + base64(png); }

std::string groupedNumber(uint64_t number) {
    std::string digits = std::to_string(number), out;
    for (size_t i = 0; i < digits.size(); ++i) {
        if (i && (digits.size() - i) % 3 == 0) out += "\u2009";
        out += digits[i];
    }
    return out;
}

std::string duration(double seconds) {
    char text[64];
    if (!std::isfinite(seconds) || seconds < 0) seconds = 0;
    if (seconds > 1e9) seconds = 1e9;
    if (seconds < 10)
        std::snprintf(text, sizeof text, "%.2f s", seconds);
    else if (seconds < 60)
        std::snprintf(text, sizeof text, "%.1f s", seconds);
    else
        std::snprintf(text, sizeof text, "%d min %d s", int(seconds / 60), int(std::fmod(seconds, 60)));
    return text;
}

}  // namespace jtk::review
