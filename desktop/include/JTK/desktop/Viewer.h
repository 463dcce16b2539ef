// The on-screen viewer: the embedded desktop shown in a real window on the
// person's display, one pixel a point, and the person's mouse and keyboard
// turned into ordinary window-server events. Application::run() attaches it
// when the launch asks for it ("--viewer" among the arguments, or the
// environment variable JTK_VIEWER=1); a tool that always wants it calls
// attachViewer() itself. Main thread only.
#pragma once

#include <string>
#include <vector>

namespace jtk::desktop {

// Whether these arguments (the first is the program) or the environment ask
// for the viewer.
bool viewerRequestedBy(const std::vector<std::string>& arguments, const char* environmentValue);
// The same for this process's arguments and environment.
bool viewerRequested();

// Opens the viewer window, once, and starts its redraw and input timer. True
// when the window is open; without a display it prints one line on standard
// error, stays headless and returns false (and tries again on a later call).
bool attachViewer();
// Attaches when the launch asks for it; whether the viewer is attached then.
bool attachViewerIfRequested();
// Closes the window and shuts the window system connection down.
void detachViewer();
bool isViewerAttached();

}  // namespace jtk::desktop
