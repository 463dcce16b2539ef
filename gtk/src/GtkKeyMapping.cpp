#include "GtkKeyMapping.h"

#include "JTK/platform/Events.h"

namespace jtk::gtk {

namespace {

namespace flags = platform::eventFlags;

struct KeyEntry {
    uint16_t keyCode;
    unsigned long keysym;  // what the key types without shift (GDK keyvals are X keysyms)
};

// The platform's key codes (a US ANSI layout), as the embedded desktop and
// the framework's key table know them.
constexpr KeyEntry keyTable[] = {
    {0, GDK_KEY_a},  {1, GDK_KEY_s},  {2, GDK_KEY_d},  {3, GDK_KEY_f},  {4, GDK_KEY_h},  {5, GDK_KEY_g},
    {6, GDK_KEY_z},  {7, GDK_KEY_x},  {8, GDK_KEY_c},  {9, GDK_KEY_v},  {11, GDK_KEY_b}, {12, GDK_KEY_q},
    {13, GDK_KEY_w}, {14, GDK_KEY_e}, {15, GDK_KEY_r}, {16, GDK_KEY_y}, {17, GDK_KEY_t}, {31, GDK_KEY_o},
    {32, GDK_KEY_u}, {34, GDK_KEY_i}, {35, GDK_KEY_p}, {37, GDK_KEY_l}, {38, GDK_KEY_j}, {40, GDK_KEY_k},
    {45, GDK_KEY_n}, {46, GDK_KEY_m},
    {18, GDK_KEY_1}, {19, GDK_KEY_2}, {20, GDK_KEY_3}, {21, GDK_KEY_4}, {23, GDK_KEY_5},
    {22, GDK_KEY_6}, {26, GDK_KEY_7}, {28, GDK_KEY_8}, {25, GDK_KEY_9}, {29, GDK_KEY_0},
    {24, GDK_KEY_equal}, {27, GDK_KEY_minus}, {30, GDK_KEY_bracketright}, {33, GDK_KEY_bracketleft},
    {39, GDK_KEY_apostrophe}, {41, GDK_KEY_semicolon}, {42, GDK_KEY_backslash}, {43, GDK_KEY_comma},
    {44, GDK_KEY_slash}, {47, GDK_KEY_period}, {50, GDK_KEY_grave},
    {36, GDK_KEY_Return}, {48, GDK_KEY_Tab}, {49, GDK_KEY_space}, {51, GDK_KEY_BackSpace},
    {53, GDK_KEY_Escape}, {117, GDK_KEY_Delete}, {76, GDK_KEY_KP_Enter}, {114, GDK_KEY_Insert},
    {115, GDK_KEY_Home}, {119, GDK_KEY_End}, {116, GDK_KEY_Page_Up}, {121, GDK_KEY_Page_Down},
    {123, GDK_KEY_Left}, {124, GDK_KEY_Right}, {125, GDK_KEY_Down}, {126, GDK_KEY_Up},
    {122, GDK_KEY_F1}, {120, GDK_KEY_F2}, {99, GDK_KEY_F3},   {118, GDK_KEY_F4},
    {96, GDK_KEY_F5},  {97, GDK_KEY_F6},  {98, GDK_KEY_F7},   {100, GDK_KEY_F8},
    {101, GDK_KEY_F9}, {109, GDK_KEY_F10}, {103, GDK_KEY_F11}, {111, GDK_KEY_F12},
};

}  // namespace

std::optional<unsigned long> keysymForKeyCode(uint16_t keyCode) {
    for (const auto& entry : keyTable)
        if (entry.keyCode == keyCode) return entry.keysym;
    return std::nullopt;
}

uint16_t keyCodeForKeysym(unsigned long keysym) {
    // A shifted Tab is still the Tab key.
    if (keysym == GDK_KEY_ISO_Left_Tab) keysym = GDK_KEY_Tab;
    for (const auto& entry : keyTable)
        if (entry.keysym == keysym) return entry.keyCode;
    return platform::noKeyCode;
}

std::optional<unsigned long> keysymForCodePoint(char32_t codePoint) {
    if (codePoint < 0x20 || (codePoint >= 0x7f && codePoint < 0xa0)) return std::nullopt;
    if (codePoint > 0x10ffff || (codePoint >= 0xd800 && codePoint <= 0xdfff)) return std::nullopt;
    if (codePoint <= 0xff) return codePoint;
    return 0x01000000UL + codePoint;
}

std::optional<std::vector<char32_t>> codePointsOf(const std::string& utf8) {
    std::vector<char32_t> result;
    for (size_t i = 0; i < utf8.size();) {
        auto lead = static_cast<unsigned char>(utf8[i]);
        size_t length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xe ? 3 : (lead >> 3) == 0x1e ? 4 : 0;
        if (length == 0 || i + length > utf8.size()) return std::nullopt;
        char32_t codePoint = length == 1 ? lead : lead & (0x7f >> length);
        for (size_t k = 1; k < length; ++k) {
            auto next = static_cast<unsigned char>(utf8[i + k]);
            if ((next & 0xc0) != 0x80) return std::nullopt;
            codePoint = (codePoint << 6) | (next & 0x3f);
        }
        result.push_back(codePoint);
        i += length;
    }
    return result;
}

const std::vector<ModifierKey>& modifierKeys() {
    static const std::vector<ModifierKey> keys{{flags::shift, GDK_KEY_Shift_L},
                                               {flags::command, GDK_KEY_Control_L},
                                               {flags::alternate, GDK_KEY_Alt_L},
                                               {flags::control, GDK_KEY_Super_L}};
    return keys;
}

uint64_t flagOfModifierKeysym(unsigned long keysym) {
    switch (keysym) {
        case GDK_KEY_Shift_L:
        case GDK_KEY_Shift_R:
            return flags::shift;
        case GDK_KEY_Control_L:
        case GDK_KEY_Control_R:
            return flags::command;
        case GDK_KEY_Alt_L:
        case GDK_KEY_Alt_R:
            return flags::alternate;
        case GDK_KEY_Super_L:
        case GDK_KEY_Super_R:
            return flags::control;
        default:
            return 0;
    }
}

uint64_t platformFlags(GdkModifierType state) {
    uint64_t result = 0;
    if (state & GDK_SHIFT_MASK) result |= flags::shift;
    if (state & GDK_CONTROL_MASK) result |= flags::command;
    if (state & GDK_ALT_MASK) result |= flags::alternate;
    if (state & GDK_SUPER_MASK) result |= flags::control;
    return result;
}

GdkModifierType gdkModifiers(uint64_t eventFlags) {
    unsigned state = 0;
    if (eventFlags & flags::shift) state |= GDK_SHIFT_MASK;
    if (eventFlags & flags::command) state |= GDK_CONTROL_MASK;
    if (eventFlags & flags::alternate) state |= GDK_ALT_MASK;
    if (eventFlags & flags::control) state |= GDK_SUPER_MASK;
    return static_cast<GdkModifierType>(state);
}

}  // namespace jtk::gtk
