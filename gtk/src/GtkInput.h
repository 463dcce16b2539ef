// Input through the X server, as a person's: XTest on a connection of the
// backend's own posts the platform's mouse and keyboard events, so GTK sees
// them exactly as it sees a person's (it lets no process build its own
// events). And the other way: every event GTK delivers, observed (it cannot
// be swallowed or changed in GTK 4) and converted to a platform event for
// the event monitors and the recorder.
#pragma once

#include <gtk/gtk.h>
#include <functional>

#include "JTK/platform/Events.h"

namespace jtk::gtk {

// Opens the XTest connection on GDK's X11 display and installs the event
// observer. Main thread, from installBackend; idempotent.
void startInput();

// Called on the main thread for every event GTK delivers to one of the
// process's surfaces, before GTK handles it, with the event as a platform
// event (location global, y down) and the window (GtkWindow or GtkPopover)
// it went to. One observer; a new one replaces the old.
using EventObserver = std::function<void(const platform::Event& event, GtkWidget* window)>;
void observeEvents(EventObserver observer);

// The platform event GTK is delivering now (for a monitor that wants the
// platform's own fields), null outside a delivery. Main thread.
const platform::Event* eventBeingDelivered();

}  // namespace jtk::gtk
