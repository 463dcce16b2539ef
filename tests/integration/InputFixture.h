// A fixture for the input actions: real desktop windows and controls built on
// the main thread, actions run from a test queue while the main thread runs
// the run loop, and the window server's log of what the actions posted.
#pragma once

#include "tests/support/DesktopFixtures.h"
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "JTK/JTKElement.h"
#include "run/JTKMainThread.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/Screens.h"
#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/WindowServer.h"
#include "JTK/platform/Events.h"
#include "tests/support/TestQueue.h"

using namespace jtk;

class InputFixture : public ::testing::Test {
protected:
    using Posted = desktop::WindowServer::PostedEvent;

    void SetUp() override {
        desktop::RunLoop::main().adoptCurrentThreadAsMain();
        desktop::Application::shared();  // installs the event routing
        reset();
    }
    void TearDown() override {
        reset();
        desktop::setScreens({});
    }

    static void reset() {
        JTKTestSuite::setRecorder(nullptr);
        JTKElement::setCurrentOpenMenu(nullptr);
        testsupport::closeAllWindows();
        desktop::WindowServer::shared().resetState();
        testsupport::pumpMainLoop(0.02);
        desktop::WindowServer::clearEventLog();
    }

    // A shown, key window whose content area starts at (x, y) on screen.
    static std::shared_ptr<desktop::Window> makeWindow(double x, double y, double width, double height,
                                                       std::string title = "Window") {
        return testsupport::makeWindow(platform::Rect{x, y, width, height}, std::move(title));
    }

    template <class V, class... Args>
    static std::shared_ptr<V> add(const std::shared_ptr<desktop::View>& parent, Args&&... args) {
        return testsupport::addView<V>(parent, std::forward<Args>(args)...);
    }

    static JTKElement elementOf(const std::shared_ptr<platform::View>& view) { return JTKElement(view); }

    static void onQueue(const std::function<void()>& body) { testsupport::runOnTestQueue(body, 60); }

    // The posted events, optionally only those of some types.
    static std::vector<Posted> posted(std::vector<platform::EventType> types = {}) {
        std::vector<Posted> result;
        for (auto& entry : desktop::WindowServer::eventLog()) {
            bool wanted = types.empty();
            for (auto type : types) wanted = wanted || entry.event.type == type;
            if (wanted) result.push_back(entry);
        }
        return result;
    }
    static std::vector<platform::EventType> typesOf(const std::vector<Posted>& events) {
        std::vector<platform::EventType> types;
        for (auto& entry : events) types.push_back(entry.event.type);
        return types;
    }
    static std::vector<Posted> mouseEvents() {
        using platform::EventType;
        return posted({EventType::leftMouseDown, EventType::leftMouseUp, EventType::leftMouseDragged});
    }
    static std::vector<Posted> keyEvents() {
        return posted({platform::EventType::keyDown, platform::EventType::keyUp});
    }
};

// A view that keeps a copy of every mouse event routing gives it.
class RecordingView : public desktop::View {
public:
    using desktop::View::View;
    void mouseDown(const platform::Event& event, platform::Point) override { received.push_back(event); }
    void mouseDragged(const platform::Event& event, platform::Point) override { received.push_back(event); }
    void mouseUp(const platform::Event& event, platform::Point) override { received.push_back(event); }
    std::vector<platform::Event> received;  // main thread
};
