#include "viewer/ViewerWindow.h"

#include <SDL.h>
#include <SDL_syswm.h>
#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>

namespace jtk::desktop {

namespace {

// Whether any window system is there to talk to. Without one SDL might pick
// the console's graphics device, which a headless run must never take over;
// an explicit SDL_VIDEODRIVER is left to SDL.
bool displayAvailable(std::string& failure) {
    auto set = [](const char* name) {
        const char* value = std::getenv(name);
        return value && *value;
    };
    if (set("SDL_VIDEODRIVER") || set("DISPLAY") || set("WAYLAND_DISPLAY")) return true;
    failure = "DISPLAY is not set";
    return false;
}

// Xlib ends the process on any protocol error unless a handler says
// otherwise, and a window destroyed from outside (a tool, a failing window
// manager) makes every later request for it one. The viewer's windows are
// the only ones of the process, so an error naming a window or drawable that
// is gone marks the viewer's window lost; other errors go on to the handler
// before. Xlib is looked up in the process rather than linked, as SDL may
// load it itself. Main thread.
namespace xlib {
std::atomic<bool> watching{false};
std::atomic<bool> windowLost{false};
XErrorHandler previousHandler = nullptr;
XErrorHandler (*setErrorHandler)(XErrorHandler) = nullptr;
int (*sync)(Display*, Bool) = nullptr;
Display* display = nullptr;

int onError(Display* display, XErrorEvent* error) {
    if (watching && (error->error_code == BadWindow || error->error_code == BadDrawable)) {
        windowLost = true;
        return 0;
    }
    return previousHandler ? previousHandler(display, error) : 0;
}

void watch(SDL_Window* window) {
    SDL_SysWMinfo info;
    SDL_VERSION(&info.version);
    if (!SDL_GetWindowWMInfo(window, &info) || info.subsystem != SDL_SYSWM_X11) return;
    void* library = dlopen("libX11.so.6", RTLD_NOW | RTLD_NOLOAD);
    if (!library) return;
    setErrorHandler = reinterpret_cast<XErrorHandler (*)(XErrorHandler)>(dlsym(library, "XSetErrorHandler"));
    sync = reinterpret_cast<int (*)(Display*, Bool)>(dlsym(library, "XSync"));
    dlclose(library);  // SDL holds it loaded
    if (!setErrorHandler || !sync) {
        setErrorHandler = nullptr;
        return;
    }
    display = info.info.x11.display;
    windowLost = false;
    watching = true;
    previousHandler = setErrorHandler(onError);
}

// Lets the errors of requests made so far reach the handler, while it is ours
// (SDL puts its own back before it closes the display).
void collectErrors() {
    if (setErrorHandler && display) sync(display, False);
}

// After the display is closed: the handler before comes back, unless SDL
// has already put back the one it found.
void stopWatching() {
    if (!setErrorHandler) return;
    if (auto current = setErrorHandler(previousHandler); current != onError) setErrorHandler(current);
    setErrorHandler = nullptr;
    display = nullptr;
    watching = false;
}
}  // namespace xlib

}  // namespace

std::unique_ptr<ViewerWindow> ViewerWindow::open(const std::string& title, uint32_t width, uint32_t height,
                                                 std::string& failure) {
    if (!displayAvailable(failure)) return nullptr;
    // The application's own signal handling (a test run restores the user's
    // data on SIGINT and SIGTERM) must stay in charge.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    // The window surface goes to the display as it is (shared memory or plain
    // X requests), not through an OpenGL texture: no GPU driver is loaded,
    // and a software one would cost more than it saves.
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    // The click that brings the window to the front lands too: SDL would
    // otherwise drop a press that comes within moments of the focus.
    SDL_SetHint(SDL_HINT_MOUSE_FOCUS_CLICKTHROUGH, "1");
    // A person's screen saver may run while the viewer is open.
    SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) {
        failure = SDL_GetError();
        return nullptr;
    }
    SDL_Window* window = SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_UNDEFINED, SDL_WINDOWPOS_UNDEFINED, int(width),
                                          int(height), SDL_WINDOW_SHOWN);
    if (!window) {
        failure = SDL_GetError();
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
        SDL_Quit();
        return nullptr;
    }
    SDL_StartTextInput();
    xlib::watch(window);
    return std::unique_ptr<ViewerWindow>(new ViewerWindow(window));
}

ViewerWindow::~ViewerWindow() {
    SDL_StopTextInput();
    SDL_DestroyWindow(window_);
    xlib::collectErrors();
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
    SDL_Quit();
    xlib::stopWatching();
}

bool ViewerWindow::present(const imaging::Image& picture, uint32_t firstRow, uint32_t endRow) {
    int width = 0, height = 0;
    SDL_GetWindowSize(window_, &width, &height);
    if (uint32_t(width) != picture.width || uint32_t(height) != picture.height) {
        SDL_SetWindowSize(window_, int(picture.width), int(picture.height));
        firstRow = 0;
        endRow = picture.height;
    }
    // The surface follows the window's size; it is fetched anew each time.
    SDL_Surface* surface = SDL_GetWindowSurface(window_);
    if (!surface) return false;
    endRow = std::min({endRow, picture.height, uint32_t(std::max(surface->h, 0))});
    int columns = std::min<int>(surface->w, int(picture.width));
    if (firstRow >= endRow || columns <= 0) return true;
    if (SDL_MUSTLOCK(surface)) SDL_LockSurface(surface);
    int converted = SDL_ConvertPixels(columns, int(endRow - firstRow), SDL_PIXELFORMAT_RGBA32, picture.pixel(0, firstRow),
                                      int(picture.width) * 4, surface->format->format,
                                      static_cast<uint8_t*>(surface->pixels) + size_t(firstRow) * surface->pitch,
                                      surface->pitch);
    if (SDL_MUSTLOCK(surface)) SDL_UnlockSurface(surface);
    SDL_Rect band{0, int(firstRow), columns, int(endRow - firstRow)};
    return converted == 0 && SDL_UpdateWindowSurfaceRects(window_, &band, 1) == 0;
}

void ViewerWindow::refresh() { SDL_UpdateWindowSurface(window_); }

bool ViewerWindow::isLost() const { return xlib::windowLost; }

}  // namespace jtk::desktop
