// The screens as GDK's monitors give them, kept in a list any thread may
// read (refreshed on the main thread when the monitors change), and the
// conversions between global coordinates (y down from the top of the main
// screen) and the platform's screen coordinates (y up from its bottom).
#pragma once

#include "JTK/platform/Geometry.h"

namespace jtk::gtk {

// Reads the monitors now and follows their changes (main thread).
void refreshScreens();
// The main screen's size; any thread.
platform::Size mainScreenSize();
// A global rectangle or point (y down) in screen coordinates (y up); any thread.
platform::Rect screenRectFromGlobal(const platform::Rect& global);
platform::Point screenPointFromGlobal(platform::Point global);

}  // namespace jtk::gtk
