// A fixture for element and search tests: real desktop windows and views,
// built on the main thread, searched from a test queue as a test run does.
// Every test starts and ends with no window open.
#pragma once

#include "tests/support/DesktopFixtures.h"
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "JTK/JTKElement.h"
#include "run/JTKMainThread.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/platform/Value.h"
#include "tests/support/TestQueue.h"

using namespace jtk;

class ElementFixture : public ::testing::Test {
protected:
    void SetUp() override {
        desktop::RunLoop::main().adoptCurrentThreadAsMain();
        closeAllWindows();
    }
    void TearDown() override { closeAllWindows(); }

    static void closeAllWindows() { testsupport::closeAllWindows(); }

    // A window whose content area starts at (x, y) on screen; shown (and key) unless told otherwise.
    static std::shared_ptr<desktop::Window> makeWindow(double x, double y, double width, double height,
                                                       std::string title = "Window", bool show = true) {
        return testsupport::makeWindow(platform::Rect{x, y, width, height}, std::move(title), show);
    }

    template <class V, class... Args>
    static std::shared_ptr<V> add(const std::shared_ptr<desktop::View>& parent, Args&&... args) {
        return testsupport::addView<V>(parent, std::forward<Args>(args)...);
    }

    // Gives the view a method by name, as an application does.
    static void answer(const std::shared_ptr<desktop::View>& view, const std::string& selector, platform::Value value) {
        view->addMethod(selector, [value](platform::Object&, const platform::Value&) { return value; });
    }
    static void name(const std::shared_ptr<desktop::View>& view, const std::string& text) {
        answer(view, "hbViewName", text);
    }

    // Runs body on a serial queue while this (main) thread services the run loop.
    static void onQueue(const std::function<void()>& body) { testsupport::runOnTestQueue(body, 60); }

    // The lookup descriptions of a list of elements, for readable comparisons.
    static std::vector<std::string> descriptions(const std::vector<JTKElement>& elements) {
        std::vector<std::string> texts;
        for (const auto& element : elements) texts.push_back(element.elementLookupDescription());
        return texts;
    }
};
