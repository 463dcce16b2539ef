// A fixture for the view kit's tests: the test thread is the main thread,
// and every window a test leaves behind is closed afterwards.
#pragma once

#include "tests/support/DesktopFixtures.h"
#include <gtest/gtest.h>

#include "JTK/desktop/Application.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/Window.h"

using namespace jtk;

class ViewKitTest : public ::testing::Test {
protected:
    void SetUp() override {
        desktop::RunLoop::main().adoptCurrentThreadAsMain();
        closeAllWindows();
        desktop::Application::shared()->deactivate();
    }
    void TearDown() override { closeAllWindows(); }

    static void closeAllWindows() { testsupport::closeAllWindows(); }

    // A shown, key window whose content area is the rectangle on screen.
    static std::shared_ptr<desktop::Window> shownWindow(const platform::Rect& contentRect, const std::string& title = "W") {
        return testsupport::makeWindow(contentRect, title);
    }
};
