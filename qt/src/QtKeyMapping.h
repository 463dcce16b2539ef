// Key codes and modifier flags of the platform in Qt's terms and back. The
// key codes are the platform's physical keys (0 A, 36 Return, 48 Tab...);
// the modifiers map shift→Shift, control→Meta, alternate→Alt and
// command→Control, as the on-screen viewer maps a person's Ctrl to command.
#pragma once

#include <QString>
#include <Qt>
#include <cstdint>
#include <string>

namespace jtk::qt {

struct QtKeyStroke {
    int key = 0;   // a Qt::Key; 0 for text without a key
    QString text;  // what the stroke types; empty for keys that type nothing
};

// The Qt key and text of a platform key event. A key code of
// platform::noKeyCode gives the event's own text.
QtKeyStroke qtKeyStroke(uint16_t keyCode, uint64_t flags, const std::string& unicodeText);
// The platform key code of a Qt key; platform::noKeyCode when the platform has none.
uint16_t platformKeyCode(int qtKey);

Qt::KeyboardModifiers qtModifiers(uint64_t flags);
uint64_t platformFlags(Qt::KeyboardModifiers modifiers);

}  // namespace jtk::qt
