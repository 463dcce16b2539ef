// The status bar: items are status-level windows at the right end of the
// menu bar, listed with the application's windows, never key; a press on an
// item's button sends its action.
#include "JTK/desktop/StatusBar.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using StatusBar = DesktopTest;

TEST_F(StatusBar, itemsLineUpFromTheRightOfTheMenuBarAndSendTheirActions) {
    auto key = makeWindow({100, 100, 200, 100}, "Key");
    auto first = std::dynamic_pointer_cast<desktop::StatusItem>(platform::statusItemWithLength(platform::variableStatusItemLength));
    auto second = std::dynamic_pointer_cast<desktop::StatusItem>(platform::statusItemWithLength(40));
    first->setTitle("Record UX Test");
    second->setTitle("A long title that a fixed length cuts");
    auto screen = platform::screens().front().frame;
    Rect firstFrame = first->window()->contentRect(), secondFrame = second->window()->contentRect();
    EXPECT_EQ(firstFrame.maxY(), screen.maxY());
    EXPECT_GT(firstFrame.maxX(), screen.maxX() - 20);
    EXPECT_GT(firstFrame.width(), 100);  // fits its title
    EXPECT_EQ(secondFrame.width(), 40);
    EXPECT_EQ(secondFrame.maxX(), firstFrame.minX());
    auto windows = desktop::Application::shared()->windows();
    EXPECT_NE(std::find(windows.begin(), windows.end(), first->window()), windows.end());
    EXPECT_EQ(first->window()->level(), desktop::Window::statusLevel);
    EXPECT_EQ(first->button()->className(), platform::statusBarButtonClassName);

    int chosen = 0;
    first->setAction([&] { ++chosen; });
    pressAt(centerOnScreen(*std::dynamic_pointer_cast<desktop::View>(first->button())));
    pumpMainLoop(0.05);
    EXPECT_EQ(chosen, 1);
    EXPECT_EQ(desktop::Application::shared()->keyWindow(), key);
    first->setAction({});
}

}  // namespace
