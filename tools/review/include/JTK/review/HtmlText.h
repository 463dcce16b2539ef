// Texts for an HTML page: escaping, base64 data: URIs and numbers a person
// reads easily.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace jtk::review {

// The text with & < > " ' as character references: safe in element content
// and in quoted attribute values.
std::string escapeHtml(std::string_view text);

// Standard base64 with padding (RFC 4648).
std::string base64(std::string_view bytes);

// "data:image/png;base64,..." for PNG bytes.
std::string pngDataUri(std::string_view png);

// 1234567 as "1 234 567" (thin spaces between groups of three).
std::string groupedNumber(uint64_t number);

// Seconds as "0.25 s", "12.3 s" or "3 min 5 s".
std::string duration(double seconds);

}  // namespace jtk::review
