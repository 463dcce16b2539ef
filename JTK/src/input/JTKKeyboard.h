// How typed text becomes key strokes: the text split into user-perceived
// characters (extended grapheme clusters), and for each one the key code,
// flags and, for characters without a key of their own, the text it carries.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "JTK/platform/Events.h"

namespace jtk {

// A key stroke as the platform types it.
using JTKKeyStroke = platform::KeyStroke;

// The keys by name (US ANSI positions): the letters, Return, space and Tab,
// the digits, and the function keys "F1" to "F12", which type no character.
const std::map<std::string, uint16_t>& jtkKeyCodeTable();

// The extended grapheme clusters of a UTF-8 text, in order. Malformed UTF-8
// comes out as U+FFFD, one per bad sequence.
std::vector<std::string> jtkCharacters(const std::string& text);

// The full lower-case mapping of a UTF-8 text (root locale).
std::string jtkLowercase(const std::string& text);

// A character found in the key table (through its lower case) is its key,
// with shift when lower-casing changed it; a line feed or a CR LF pair is
// Return, like a carriage return; any other character is typed with the
// no-key code (platform::noKeyCode, not 0, which is the A key) without
// flags, carrying the character as its text.
JTKKeyStroke jtkKeyStrokeForCharacter(const std::string& character);

}  // namespace jtk
