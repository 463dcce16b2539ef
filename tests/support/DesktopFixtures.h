// Small helpers that the desktop and framework tests share for building
// windows and view trees on the embedded desktop (main thread).
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "JTK/desktop/Application.h"
#include "JTK/desktop/Window.h"

using namespace jtk;

namespace testsupport {

// Closes every window of the application, so a test starts with none.
inline void closeAllWindows() {
    auto windows = desktop::Application::shared()->desktopWindows();
    for (auto& window : windows) window->close();
}

// A window whose content area is the rectangle on screen, shown and key unless show is false.
inline std::shared_ptr<desktop::Window> makeWindow(const platform::Rect& contentRect, std::string title,
                                                   bool show = true) {
    auto window = desktop::Window::make(contentRect, std::move(title));
    if (show) window->makeKeyAndOrderFront();
    return window;
}

// Makes a view of class V and adds it to parent.
template <class V, class... Args>
std::shared_ptr<V> addView(const std::shared_ptr<desktop::View>& parent, Args&&... args) {
    auto view = std::make_shared<V>(std::forward<Args>(args)...);
    parent->addSubview(view);
    return view;
}

}  // namespace testsupport
