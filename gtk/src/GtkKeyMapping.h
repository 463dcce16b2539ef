// Key codes and modifier flags of the platform in X11's and GDK's terms, and
// back. The key codes are the platform's physical keys on a US layout (0 A,
// 36 Return, 48 Tab...), each named by the X keysym its key types without
// shift; the modifiers map shift→Shift, control→Super, alternate→Alt and
// command→Control, as the on-screen viewer maps a person's Ctrl to command:
// command-C copies, as Ctrl+C does on Linux.
#pragma once

#include <gdk/gdk.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace jtk::gtk {

// The X keysym of a platform key code (the key's unshifted symbol); none for
// a code the platform does not define.
std::optional<unsigned long> keysymForKeyCode(uint16_t keyCode);
// The platform key code of an unshifted X keysym (as GDK's keyvals are);
// platform::noKeyCode when no platform key types it.
uint16_t keyCodeForKeysym(unsigned long keysym);

// The X keysym that types one Unicode code point: Latin-1 keysyms are the
// code point itself, the rest are 0x01000000 + the code point. None for
// control characters and for values that are no code point.
std::optional<unsigned long> keysymForCodePoint(char32_t codePoint);
// The code points of UTF-8 text; an invalid byte gives none (the text is
// then not typable).
std::optional<std::vector<char32_t>> codePointsOf(const std::string& utf8);

// The modifier keys that hold the platform's flags down, one keysym per
// flag, in the order they are pressed.
struct ModifierKey {
    uint64_t flag;
    unsigned long keysym;
};
const std::vector<ModifierKey>& modifierKeys();
// The flag a modifier key holds, 0 for any other keysym.
uint64_t flagOfModifierKeysym(unsigned long keysym);

// GDK's modifier state as platform flags and back (buttons ignored).
uint64_t platformFlags(GdkModifierType state);
GdkModifierType gdkModifiers(uint64_t flags);

}  // namespace jtk::gtk
