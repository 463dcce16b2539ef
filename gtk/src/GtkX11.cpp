#include "GtkX11.h"

#include <gdk/x11/gdkx.h>

#include <unordered_map>

#include "GtkMainThread.h"

namespace jtk::gtk {

namespace {

Display* xDisplay() {
    GdkDisplay* display = gdk_display_get_default();
    return display && GDK_IS_X11_DISPLAY(display) ? gdk_x11_display_get_xdisplay(display) : nullptr;
}

GdkSurface* x11SurfaceOf(GtkWidget* native) {
    if (!native || !GTK_IS_NATIVE(native)) return nullptr;
    GdkSurface* surface = gtk_native_get_surface(GTK_NATIVE(native));
    return surface && GDK_IS_X11_SURFACE(surface) ? surface : nullptr;
}

// Positions read during the current main-queue step: a search asks for the
// frames of many views of one window, each a round trip to the X server.
struct KnownPosition {
    uint64_t step = 0;
    platform::Point position;
};

std::unordered_map<Window, KnownPosition>& knownPositions() {
    static auto* positions = new std::unordered_map<Window, KnownPosition>;  // main thread
    return *positions;
}

}  // namespace

bool displayIsX11() { return xDisplay() != nullptr; }

uint64_t xWindowOf(GtkWidget* native) {
    GdkSurface* surface = x11SurfaceOf(native);
    return surface ? gdk_x11_surface_get_xid(surface) : 0;
}

std::optional<platform::Point> rootPositionOf(GtkWidget* native) {
    Display* display = xDisplay();
    Window window = xWindowOf(native);
    if (!display || !window) return std::nullopt;
    uint64_t step = mainQueueStep();
    auto& known = knownPositions();
    if (auto found = known.find(window); step && found != known.end() && found->second.step == step)
        return found->second.position;
    GdkDisplay* gdkDisplay = gdk_display_get_default();
    gdk_x11_display_error_trap_push(gdkDisplay);
    int x = 0, y = 0;
    Window child = 0;
    Bool same = XTranslateCoordinates(display, window, DefaultRootWindow(display), 0, 0, &x, &y, &child);
    if (gdk_x11_display_error_trap_pop(gdkDisplay) || !same) return std::nullopt;
    platform::Point position{double(x), double(y)};
    if (step) {
        if (known.size() > 256) known.clear();  // windows that are gone
        known[window] = {step, position};
    }
    return position;
}

void moveSurfaceTo(GtkWidget* native, platform::Point topLeft) {
    Display* display = xDisplay();
    Window window = xWindowOf(native);
    if (!display || !window) return;
    knownPositions().erase(window);
    XMoveWindow(display, window, int(topLeft.x), int(topLeft.y));
    XFlush(display);
}

void raiseSurface(GtkWidget* native, bool focus) {
    Display* display = xDisplay();
    Window window = xWindowOf(native);
    if (!display || !window) return;
    GdkDisplay* gdkDisplay = gdk_display_get_default();
    gdk_x11_display_error_trap_push(gdkDisplay);
    XRaiseWindow(display, window);
    // Focus needs a viewable window; a window not mapped yet raises a
    // BadMatch, ignored here: it is focused when it maps.
    if (focus) XSetInputFocus(display, window, RevertToParent, CurrentTime);
    XSync(display, False);
    gdk_x11_display_error_trap_pop_ignored(gdkDisplay);
}

void syncWithServer() {
    if (Display* display = xDisplay()) XSync(display, False);
}

}  // namespace jtk::gtk
