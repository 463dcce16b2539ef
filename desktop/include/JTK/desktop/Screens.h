// The screens of the embedded desktop, main screen first. By default one
// screen of 1440 x 900 points at the origin; tests and multi-screen set-ups
// replace the list. Readable and settable from any thread.
#pragma once

#include <vector>

#include "JTK/platform/Screen.h"

namespace jtk::desktop {

// Replaces the screen list (frames in screen coordinates, main screen first).
// An empty list brings back the default screen: there is always a main screen.
void setScreens(std::vector<platform::Rect> frames);
// The default: one 1440 x 900 screen at the origin.
platform::Rect defaultScreenFrame();

}  // namespace jtk::desktop
