#include "viewer/ViewerWindow.h"

#include <SDL.h>

#include <algorithm>
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

}  // namespace

std::unique_ptr<ViewerWindow> ViewerWindow::open(const std::string& title, uint32_t width, uint32_t height,
                                                 std::string& failure) {
    if (!displayAvailable(failure)) return nullptr;
    // The application's own signal handling (a test run restores the user's
    // data on SIGINT and SIGTERM) must stay in charge.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
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
    return std::unique_ptr<ViewerWindow>(new ViewerWindow(window));
}

ViewerWindow::~ViewerWindow() {
    SDL_StopTextInput();
    SDL_DestroyWindow(window_);
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
    SDL_Quit();
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

uint32_t ViewerWindow::windowID() const { return SDL_GetWindowID(window_); }

}  // namespace jtk::desktop
