#include "QtKeyMapping.h"

#include <array>

#include "JTK/platform/Events.h"

namespace jtk::qt {

namespace {

namespace flags = platform::eventFlags;

struct KeyEntry {
    uint16_t keyCode;
    int qtKey;
    char plain;    // 0: the key types nothing
    char shifted;
};

// The platform's key codes (a US layout), as the embedded desktop knows them.
constexpr KeyEntry keyTable[] = {
    {0, Qt::Key_A, 'a', 'A'},   {1, Qt::Key_S, 's', 'S'},   {2, Qt::Key_D, 'd', 'D'},   {3, Qt::Key_F, 'f', 'F'},
    {4, Qt::Key_H, 'h', 'H'},   {5, Qt::Key_G, 'g', 'G'},   {6, Qt::Key_Z, 'z', 'Z'},   {7, Qt::Key_X, 'x', 'X'},
    {8, Qt::Key_C, 'c', 'C'},   {9, Qt::Key_V, 'v', 'V'},   {11, Qt::Key_B, 'b', 'B'},  {12, Qt::Key_Q, 'q', 'Q'},
    {13, Qt::Key_W, 'w', 'W'},  {14, Qt::Key_E, 'e', 'E'},  {15, Qt::Key_R, 'r', 'R'},  {16, Qt::Key_Y, 'y', 'Y'},
    {17, Qt::Key_T, 't', 'T'},  {18, Qt::Key_1, '1', '!'},  {19, Qt::Key_2, '2', '@'},  {20, Qt::Key_3, '3', '#'},
    {21, Qt::Key_4, '4', '$'},  {22, Qt::Key_6, '6', '^'},  {23, Qt::Key_5, '5', '%'},  {24, Qt::Key_Equal, '=', '+'},
    {25, Qt::Key_9, '9', '('},  {26, Qt::Key_7, '7', '&'},  {27, Qt::Key_Minus, '-', '_'}, {28, Qt::Key_8, '8', '*'},
    {29, Qt::Key_0, '0', ')'},  {30, Qt::Key_BracketRight, ']', '}'}, {31, Qt::Key_O, 'o', 'O'},
    {32, Qt::Key_U, 'u', 'U'},  {33, Qt::Key_BracketLeft, '[', '{'}, {34, Qt::Key_I, 'i', 'I'},
    {35, Qt::Key_P, 'p', 'P'},  {37, Qt::Key_L, 'l', 'L'},  {38, Qt::Key_J, 'j', 'J'},  {39, Qt::Key_Apostrophe, '\'', '"'},
    {40, Qt::Key_K, 'k', 'K'},  {41, Qt::Key_Semicolon, ';', ':'}, {42, Qt::Key_Backslash, '\\', '|'},
    {43, Qt::Key_Comma, ',', '<'}, {44, Qt::Key_Slash, '/', '?'}, {45, Qt::Key_N, 'n', 'N'}, {46, Qt::Key_M, 'm', 'M'},
    {47, Qt::Key_Period, '.', '>'}, {50, Qt::Key_QuoteLeft, '`', '~'}, {36, Qt::Key_Return, '\r', '\r'},
    {48, Qt::Key_Tab, '\t', '\t'}, {49, Qt::Key_Space, ' ', ' '}, {51, Qt::Key_Backspace, '\b', '\b'},
    {53, Qt::Key_Escape, '\x1b', '\x1b'}, {117, Qt::Key_Delete, '\x7f', '\x7f'}, {115, Qt::Key_Home, 0, 0},
    {119, Qt::Key_End, 0, 0},   {116, Qt::Key_PageUp, 0, 0}, {121, Qt::Key_PageDown, 0, 0},
    {123, Qt::Key_Left, 0, 0},  {124, Qt::Key_Right, 0, 0}, {125, Qt::Key_Down, 0, 0},  {126, Qt::Key_Up, 0, 0},
    {76, Qt::Key_Enter, '\r', '\r'}, {56, Qt::Key_Shift, 0, 0}, {59, Qt::Key_Meta, 0, 0},
    {122, Qt::Key_F1, 0, 0},    {120, Qt::Key_F2, 0, 0},    {99, Qt::Key_F3, 0, 0},    {118, Qt::Key_F4, 0, 0},
    {96, Qt::Key_F5, 0, 0},     {97, Qt::Key_F6, 0, 0},     {98, Qt::Key_F7, 0, 0},    {100, Qt::Key_F8, 0, 0},
    {101, Qt::Key_F9, 0, 0},    {109, Qt::Key_F10, 0, 0},   {103, Qt::Key_F11, 0, 0},  {111, Qt::Key_F12, 0, 0},
};

const KeyEntry* entryForKeyCode(uint16_t keyCode) {
    for (const auto& entry : keyTable)
        if (entry.keyCode == keyCode) return &entry;
    return nullptr;
}

}  // namespace

QtKeyStroke qtKeyStroke(uint16_t keyCode, uint64_t eventFlags, const std::string& unicodeText) {
    QString text = QString::fromStdString(unicodeText);
    const KeyEntry* entry = keyCode == platform::noKeyCode ? nullptr : entryForKeyCode(keyCode);
    if (!entry) {
        // Text without a key: the key is the character's own code, upper
        // case, as a keyboard layout that has the character reports it.
        QtKeyStroke stroke{0, text};
        if (text.size() == 1 && !QChar(text[0]).isSurrogate()) stroke.key = QChar(text[0]).toUpper().unicode();
        return stroke;
    }
    QtKeyStroke stroke{entry->qtKey, text};
    // A command- or control-modified key types nothing; a shortcut takes it.
    bool typesText = entry->plain && !(eventFlags & (flags::command | flags::control));
    if (stroke.text.isEmpty() && typesText)
        stroke.text = QChar(QLatin1Char((eventFlags & flags::shift) ? entry->shifted : entry->plain));
    if (stroke.key == Qt::Key_Tab && (eventFlags & flags::shift)) stroke.key = Qt::Key_Backtab;
    return stroke;
}

uint16_t platformKeyCode(int qtKey) {
    if (qtKey == Qt::Key_Backtab) qtKey = Qt::Key_Tab;
    for (const auto& entry : keyTable)
        if (entry.qtKey == qtKey) return entry.keyCode;
    return platform::noKeyCode;
}

Qt::KeyboardModifiers qtModifiers(uint64_t eventFlags) {
    Qt::KeyboardModifiers modifiers;
    if (eventFlags & flags::shift) modifiers |= Qt::ShiftModifier;
    if (eventFlags & flags::control) modifiers |= Qt::MetaModifier;
    if (eventFlags & flags::alternate) modifiers |= Qt::AltModifier;
    if (eventFlags & flags::command) modifiers |= Qt::ControlModifier;
    return modifiers;
}

uint64_t platformFlags(Qt::KeyboardModifiers modifiers) {
    uint64_t eventFlags = 0;
    if (modifiers & Qt::ShiftModifier) eventFlags |= flags::shift;
    if (modifiers & Qt::MetaModifier) eventFlags |= flags::control;
    if (modifiers & Qt::AltModifier) eventFlags |= flags::alternate;
    if (modifiers & Qt::ControlModifier) eventFlags |= flags::command;
    return eventFlags;
}

}  // namespace jtk::qt
