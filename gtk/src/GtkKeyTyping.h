// Keyboard input through XTest: the platform's key events and batches of
// key strokes as presses of real key codes. A key code of the platform is
// pressed on the X key that types its symbol; a character without a key
// (an é, an emoji) on a spare key code lent to its symbol for the time of
// the typing, once GDK has seen the changed mapping.
#pragma once

#include <vector>

#include "JTK/platform/Events.h"

namespace jtk::gtk {

// A keyDown or keyUp of the platform. A keyDown presses the key (for text,
// types every code point but the last and presses the last); its keyUp
// releases it and gives back any key lent for it. Any thread but the main.
void postKeyEvent(const platform::Event& event);

// Types the strokes, lending spare keys for all their text at once (in
// chunks of as many as there are spare keys), then gives the keys back.
// Input settles after every stroke, so a stroke that moves the focus or
// opens a window has taken effect before the next. Any thread.
void typeKeyStrokes(const std::vector<platform::KeyStroke>& strokes);

}  // namespace jtk::gtk
