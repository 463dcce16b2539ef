// The screens as the platform sees them (origin bottom left of the main
// screen, y up) and the conversions between Qt's global coordinates (y down
// from the top of the main screen) and the platform's.
#pragma once

#include <QRect>

#include "JTK/platform/Geometry.h"

namespace jtk::qt {

// Reads the screens again (main thread), and follows their changes from now on.
void refreshScreens();
// The main screen's height; from the snapshot, so any thread may ask.
double mainScreenHeight();

platform::Rect screenRectFromGlobal(const QRectF& global);
// A point in Qt's global coordinates (event coordinates) to screen coordinates and back.
platform::Point screenPointFromGlobal(platform::Point global);
platform::Point globalPointFromScreen(platform::Point screen);

}  // namespace jtk::qt
