// The observer's side of GtkInput.h that startInput needs: the hook on
// GdkSurface's "event" signal. Main thread.
#pragma once

namespace jtk::gtk {

// Installs the emission hook that converts and hands over every event GTK
// delivers (GtkInput.h: observeEvents). Idempotent.
void installEventHook();

}  // namespace jtk::gtk
