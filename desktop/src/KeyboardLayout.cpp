#include "JTK/desktop/KeyboardLayout.h"

#include <array>

namespace jtk::desktop {

namespace {

struct KeyEntry {
    uint16_t code;
    char plain;
    char shifted;
};

// The printable keys of the US ANSI layout, by virtual key code.
constexpr std::array<KeyEntry, 50> printableKeys{{
    {0, 'a', 'A'},   {1, 's', 'S'},   {2, 'd', 'D'},   {3, 'f', 'F'},   {4, 'h', 'H'},   {5, 'g', 'G'},
    {6, 'z', 'Z'},   {7, 'x', 'X'},   {8, 'c', 'C'},   {9, 'v', 'V'},   {11, 'b', 'B'},  {12, 'q', 'Q'},
    {13, 'w', 'W'},  {14, 'e', 'E'},  {15, 'r', 'R'},  {16, 'y', 'Y'},  {17, 't', 'T'},  {18, '1', '!'},
    {19, '2', '@'},  {20, '3', '#'},  {21, '4', '$'},  {22, '6', '^'},  {23, '5', '%'},  {24, '=', '+'},
    {25, '9', '('},  {26, '7', '&'},  {27, '-', '_'},  {28, '8', '*'},  {29, '0', ')'},  {30, ']', '}'},
    {31, 'o', 'O'},  {32, 'u', 'U'},  {33, '[', '{'},  {34, 'i', 'I'},  {35, 'p', 'P'},  {37, 'l', 'L'},
    {38, 'j', 'J'},  {39, '\'', '"'}, {40, 'k', 'K'},  {41, ';', ':'},  {42, '\\', '|'}, {43, ',', '<'},
    {44, '/', '?'},  {45, 'n', 'N'},  {46, 'm', 'M'},  {47, '.', '>'},  {50, '`', '~'},  {36, '\r', '\r'},
    {48, '\t', '\t'}, {49, ' ', ' '},
}};

}  // namespace

std::string charactersForKey(uint16_t keyCode, uint64_t flags) {
    if (keyCode == keyCodes::deleteKey) return "\x7f";
    if (keyCode == keyCodes::escape) return "\x1b";
    bool shift = (flags & platform::eventFlags::shift) != 0;
    for (const auto& key : printableKeys)
        if (key.code == keyCode) return std::string(1, shift ? key.shifted : key.plain);
    return {};
}

std::string charactersOfEvent(const platform::Event& event) {
    if (!event.unicodeText.empty()) return event.unicodeText;
    return charactersForKey(event.keyCode, event.flags);
}

std::optional<uint16_t> keyCodeForCharacter(char character) {
    for (const auto& key : printableKeys)
        if (key.plain == character) return key.code;
    return std::nullopt;
}

}  // namespace jtk::desktop
