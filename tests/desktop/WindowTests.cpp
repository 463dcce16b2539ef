// Windows and the application: the window list, key window and window order,
// and activation. (The final alert of a run is checked by the driver's launches.)
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using desktop::Application;
using desktop::Window;
using DesktopWindows = DesktopTest;
using Windows = std::vector<std::shared_ptr<desktop::Window>>;

TEST_F(DesktopWindows, windowsAreListedFromCreationToCloseAndTheKeyWindowLeadsTheOrder) {
    auto app = Application::shared();
    auto a = makeWindow({0, 0, 100, 100}, "A");
    auto hidden = makeWindow({0, 0, 100, 100}, "Hidden", false);
    auto b = makeWindow({0, 0, 100, 100}, "B");
    EXPECT_EQ(app->desktopWindows(), (Windows{a, hidden, b}));
    EXPECT_EQ(app->orderedWindows(), (Windows{b, a}));
    EXPECT_EQ(app->windowWithNumber(hidden->windowNumber()), hidden);
    a->makeKeyAndOrderFront();
    EXPECT_EQ(app->keyWindow(), a);
    // A floating window stays in front of normal ones that come forward later.
    auto panel = makeWindow({0, 0, 50, 50}, "Panel");
    panel->setLevel(Window::floatingLevel);
    b->makeKeyAndOrderFront();
    EXPECT_EQ(app->orderedWindows(), (Windows{panel, b, a}));
    // Hiding or closing the key window passes the keys on.
    b->orderOut();
    EXPECT_EQ(app->keyWindow(), panel);
    panel->close();
    EXPECT_EQ(app->keyWindow(), a);
    EXPECT_EQ(app->desktopWindows(), (Windows{a, hidden, b}));
    EXPECT_EQ(app->windowWithNumber(panel->windowNumber()), nullptr);
}

TEST_F(DesktopWindows, activationMakesTheFrontmostWindowThatCanBeKeyTheKeyWindow) {
    auto app = Application::shared();
    auto back = makeWindow({0, 0, 100, 100}, "Back");
    back->orderOut();
    back->orderFront();  // visible again, but not key
    auto status = makeWindow({0, 0, 20, 20}, "Status", false);
    status->setCanBecomeKeyWindow(false);
    status->makeKeyAndOrderFront();
    EXPECT_EQ(app->keyWindow(), nullptr);
    app->activateIgnoringOtherApps(true);
    EXPECT_TRUE(app->isActive());
    EXPECT_EQ(app->keyWindow(), back);
}

}  // namespace
