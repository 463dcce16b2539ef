// The viewer's SDL window: made at the size of the main screen, shows one
// picture at a time through its window surface (no GPU needed), one pixel a
// point. Main thread only, like every SDL call.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "JTK/imaging/Image.h"

struct SDL_Window;

namespace jtk::desktop {

class ViewerWindow {
public:
    // Opens SDL's video and a window of that size; none, with the reason, when
    // there is no display or SDL fails.
    static std::unique_ptr<ViewerWindow> open(const std::string& title, uint32_t width, uint32_t height,
                                              std::string& failure);
    ~ViewerWindow();
    ViewerWindow(const ViewerWindow&) = delete;
    ViewerWindow& operator=(const ViewerWindow&) = delete;

    // Shows rows [firstRow, endRow) of the picture (straight RGBA, opaque);
    // the rest of the window keeps what it shows. A picture of another size
    // than the window resizes it and is shown whole. False when SDL failed.
    bool present(const imaging::Image& picture, uint32_t firstRow, uint32_t endRow);
    // Shows the last picture again (after the window was uncovered).
    void refresh();
    // Whether the window system took the window away (destroyed from outside).
    bool isLost() const;

private:
    explicit ViewerWindow(SDL_Window* window) : window_(window) {}
    SDL_Window* window_;
};

}  // namespace jtk::desktop
