// The application's event dispatch: the handler on the main run loop that
// takes each event from the application's queue and delivers it, in this
// order, to the local event monitors, to a tracking menu, to the menu bar (a
// press on it), to a main-menu key equivalent, and to the window and view it
// belongs to. The monitors see neither a tracking menu's mouse events nor a
// press on the menu bar.
#pragma once

#include <memory>

#include "JTK/platform/Events.h"

namespace jtk::desktop {

class View;

// Installs the dispatch handler on the main run loop (once; later calls do
// nothing). The application does it when it is created.
void installEventRouting();

// Delivers one event as the run loop's handler does (main thread).
void routeEvent(std::shared_ptr<platform::Event> event);

// The left button as the application has seen it: a press was delivered and
// its release not yet (main thread).
bool isLeftButtonDownInApplication();

// The event being delivered now, if any (main thread).
std::shared_ptr<const platform::Event> currentEvent();

}  // namespace jtk::desktop
