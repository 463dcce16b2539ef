#include "JTK/desktop/Screens.h"

#include <mutex>

namespace jtk::desktop {

namespace {

struct ScreenList {
    std::mutex mutex;
    std::vector<platform::Rect> frames{defaultScreenFrame()};
};

ScreenList& screenList() {
    static ScreenList list;
    return list;
}

}  // namespace

platform::Rect defaultScreenFrame() { return {0, 0, 1440, 900}; }

void setScreens(std::vector<platform::Rect> frames) {
    if (frames.empty()) frames.push_back(defaultScreenFrame());
    auto& list = screenList();
    std::lock_guard lock(list.mutex);
    list.frames = std::move(frames);
}

}  // namespace jtk::desktop

namespace jtk::platform {

std::vector<Screen> screens() {
    auto& list = desktop::screenList();
    std::lock_guard lock(list.mutex);
    std::vector<Screen> result;
    for (const auto& frame : list.frames) result.push_back(Screen{frame});
    return result;
}

}  // namespace jtk::platform
