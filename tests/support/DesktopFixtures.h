// The fixture of every test that runs on the embedded desktop: the test thread
// is the main thread, a body may run on a queue as in a test run, and every
// test starts and ends with no window, no held key or button, no recorder, no
// open menu, no main menu and the default screen.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

#include "JTK/JTKClass.h"
#include "JTK/JTKElement.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/Screens.h"
#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/WindowServer.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/Label.h"
#include "JTK/desktop/controls/PopUpButton.h"
#include "JTK/desktop/controls/ScrollView.h"
#include "JTK/desktop/controls/Slider.h"
#include "JTK/desktop/controls/TextField.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Value.h"
#include "run/JTKMainThread.h"
#include "tests/support/PostedGestures.h"

using namespace jtk;

namespace testsupport {

using platform::EventType;
using platform::Point;
using platform::Rect;
using Posted = desktop::WindowServer::PostedEvent;

// Building windows and views, also for tests that run outside a DesktopTest.
inline void closeAllWindows() {
    auto windows = desktop::Application::shared()->desktopWindows();
    for (auto& window : windows) window->close();
}
inline std::shared_ptr<desktop::Window> makeWindow(const Rect& content, std::string title = "Window", bool show = true) {
    auto window = desktop::Window::make(content, std::move(title));
    if (show) window->makeKeyAndOrderFront();
    return window;
}
template <class V, class... Args>
std::shared_ptr<V> addView(const std::shared_ptr<desktop::View>& parent, Args&&... args) {
    auto view = std::make_shared<V>(std::forward<Args>(args)...);
    parent->addSubview(view);
    return view;
}
// Gives the view a method by name, as an application does; name() gives it its name.
inline void answer(const std::shared_ptr<desktop::View>& view, const std::string& selector, platform::Value value) {
    view->addMethod(selector, [value](platform::Object&, const platform::Value&) { return value; });
}
template <class V>
std::shared_ptr<V> name(const std::shared_ptr<V>& view, const std::string& text) {
    answer(view, "hbViewName", text);
    return view;
}
// Runs body as a test run does: on a serial queue while this (main) thread
// services the main run loop until the body has finished; false when it has
// not finished after 60 seconds.
inline bool runOnQueue(const std::function<void()>& body) {
    auto& loop = desktop::RunLoop::main();
    std::atomic<bool> finished{false};
    auto queue = platform::makeSerialQueue("TestBodyQueue");
    queue->async([&] {
        body();
        finished = true;
        loop.wakeUp();
    });
    loop.runMode(platform::RunLoopMode::defaultMode, desktop::Clock::now() + std::chrono::seconds(60),
                 [&] { return finished.load(); });
    return finished;
}
// The centre of a view on screen (main thread).
inline Point centerOnScreen(const desktop::View& view) {
    auto rect = view.desktopWindow()->convertRectToScreen(view.convertRectToWindow(view.bounds()));
    return {rect.midX(), rect.midY()};
}

class DesktopTest : public ::testing::Test {
protected:
    void SetUp() override { reset(); }
    void TearDown() override { reset(); }
    static void reset() {
        desktop::RunLoop::main().adoptCurrentThreadAsMain();
        JTKTestSuite::setRecorder(nullptr);
        JTKElement::setCurrentOpenMenu(nullptr);
        auto app = desktop::Application::shared();
        closeAllWindows();
        app->setMainMenu(nullptr);
        app->deactivate();
        desktop::WindowServer::shared().resetState();
        desktop::setScreens({});
        pumpMainLoop(0.02);
        desktop::WindowServer::clearEventLog();
    }

    // A window whose content area is the rectangle on screen; shown and key unless show is false.
    static std::shared_ptr<desktop::Window> makeWindow(const Rect& content, std::string title = "Window", bool show = true) {
        return testsupport::makeWindow(content, std::move(title), show);
    }
    template <class V, class... Args>
    static std::shared_ptr<V> add(const std::shared_ptr<desktop::View>& parent, Args&&... args) {
        return addView<V>(parent, std::forward<Args>(args)...);
    }

    // Services the main run loop for a while (main thread only).
    static void pumpMainLoop(double seconds) { desktop::RunLoop::main().runFor(seconds); }
    static void onQueue(const std::function<void()>& body) {
        ASSERT_TRUE(runOnQueue(body)) << "the test body did not finish within 60 s";
    }
    static auto onMain(auto&& work) { return jtkOnMainThread(work); }
    // Polls a condition until it holds, for up to 10 s, servicing the main run
    // loop meanwhile when called on the main thread; eventually() reads it there.
    static bool waitFor(const std::function<bool()>& condition) {
        auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (!condition()) {
            if (std::chrono::steady_clock::now() > deadline) return false;
            platform::isMainThread() ? pumpMainLoop(0.01) : std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }
    static bool eventually(const std::function<bool()>& condition) { return waitFor([&] { return onMain(condition); }); }
    static void drainEvents() { EXPECT_TRUE(settleEvents()) << "posted events were not dispatched"; }

    // The events posted through the window server, optionally only some types.
    static std::vector<Posted> posted(std::vector<EventType> types = {}) {
        std::vector<Posted> result;
        for (auto& entry : desktop::WindowServer::eventLog())
            if (types.empty() || std::find(types.begin(), types.end(), entry.event.type) != types.end())
                result.push_back(entry);
        return result;
    }
    static std::vector<Posted> mouseEvents() {
        return posted({EventType::leftMouseDown, EventType::leftMouseUp, EventType::leftMouseDragged});
    }
    static std::vector<EventType> typesOf(const std::vector<Posted>& events) {
        std::vector<EventType> types;
        for (auto& entry : events) types.push_back(entry.event.type);
        return types;
    }
};

}  // namespace testsupport
