// The backend's main queue and the modal state: work handed to the thread
// that runs GTK's main context, from any thread, in arrival order; it also
// runs inside nested loops (a modal alert's, a dialog's).
#pragma once

#include <functional>

namespace jtk::gtk {

// Queues work for the main thread; any thread.
void enqueueOnMain(std::function<void()> work);
// True on the thread that owns GTK's default main context.
bool onMainThread();

// Modal loops the backend runs (an alert's) or sees running (a modal
// dialog's) are counted here rather than in run-loop modes, which GLib does
// not have: timers scheduled for the default mode only wait while one runs.
// Main thread.
class ModalScope {
public:
    ModalScope();
    ~ModalScope();
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;
};
bool modalRunning();

}  // namespace jtk::gtk
