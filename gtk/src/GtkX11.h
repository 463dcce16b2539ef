// What the backend asks of the X server directly, past GDK: where a native
// surface lies on the root window, and, since no window manager may be
// running, moving, raising and focusing windows. Main thread only; every
// call is a no-op (or none) for a widget without an X11 surface.
#pragma once

#include <gtk/gtk.h>
#include <cstdint>
#include <optional>

#include "JTK/platform/Geometry.h"

namespace jtk::gtk {

// True when GDK's default display is an X11 display.
bool displayIsX11();
// The X window of a native's surface; 0 when it has none (yet).
uint64_t xWindowOf(GtkWidget* native);
// The surface's top left corner on the root window (y down); read once per
// main-queue step (the backend's own moves read it again).
std::optional<platform::Point> rootPositionOf(GtkWidget* native);
// Moves the surface's top left corner to a point of the root window (y down).
void moveSurfaceTo(GtkWidget* native, platform::Point topLeft);
// Raises the surface above its siblings and, when focus is true, gives it
// the keyboard focus (what a window manager does when it activates a window).
void raiseSurface(GtkWidget* native, bool focus);
// Waits until the X server has handled every request sent so far.
void syncWithServer();

}  // namespace jtk::gtk
