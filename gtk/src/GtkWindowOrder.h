// The order of the windows, front first, and their placement. GTK 4 has no
// stacking order of its own to read; without a window manager every window
// opens at (0, 0) and none becomes active. So the backend keeps the order
// (a window comes to the front when it maps or becomes active) and places
// and focuses windows itself through X11:
//  - a window the program placed (placeWindow) opens where it was placed;
//  - a window transient for another opens centred over it;
//  - any other window opens one cascade step (24 points) right of and below
//    the front visible window, at (0, 0) when there is none, back at (0, 0)
//    when it would not fit on the main screen;
//  - a window that maps is raised and given the keyboard focus, as a window
//    manager activates a new window; popovers and tooltips are not placed;
//  - when the active window unmaps, the front visible window is activated.
// Main thread only.
#pragma once

#include <gtk/gtk.h>
#include <vector>

#include "JTK/platform/Geometry.h"

namespace jtk::gtk {

// Starts following the natives as they map (once, from installBackend).
void startWindowTracking();
// The mapped GtkWindows, front first.
std::vector<GtkWidget*> orderedWindows();
// The open native surfaces other than GtkWindows (popovers, popover menus,
// tooltips), front first: a popover opened from another before it.
std::vector<GtkWidget*> openPopups();
// Every mapped native: the pop-ups, then the windows.
std::vector<GtkWidget*> listedNatives();
// The first visible window of orderedWindows() not kept from the focus, or null.
GtkWidget* frontVisibleWindow();
// Marks the window as front-most.
void bringToFront(GtkWidget* native);
// Places a window's top left corner at a point of the main screen (y down):
// now when it has a surface, else when it maps. It is then not cascaded.
void placeWindow(GtkWidget* window, platform::Point topLeft);
// Marks a window that never takes the keyboard focus (the status item's):
// when it maps it is raised, not activated.
void keepFromFocus(GtkWidget* window);
// Raises, focuses and brings to the front a GtkWindow (not a pop-up).
void activateWindow(GtkWidget* window);

}  // namespace jtk::gtk
