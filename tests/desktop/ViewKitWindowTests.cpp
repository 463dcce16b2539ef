// Windows and the application: the window list, key window and window order,
// activation, first responders and modal alerts.
#include "JTK/desktop/Alert.h"
#include "JTK/desktop/KeyboardLayout.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using desktop::Application;
using desktop::Window;
using ViewKitWindows = DesktopTest;
using Windows = std::vector<std::shared_ptr<desktop::Window>>;

TEST_F(ViewKitWindows, windowsAreListedFromCreationToCloseAndTheKeyWindowLeadsTheOrder) {
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

TEST_F(ViewKitWindows, activationMakesTheFrontmostWindowThatCanBeKeyTheKeyWindow) {
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

TEST_F(ViewKitWindows, theFirstResponderIsAViewOfTheWindowThatAcceptsItUntilItLeaves) {
    auto window = makeWindow({0, 0, 200, 100});
    auto field = add<desktop::TextField>(window->desktopContentView(), Rect{10, 10, 100, 20});
    auto label = add<desktop::Label>(window->desktopContentView(), Rect{10, 40, 100, 20}, "Name");
    auto elsewhere = add<desktop::TextField>(makeWindow({0, 0, 200, 100})->desktopContentView(), Rect{10, 10, 100, 20});
    EXPECT_FALSE(window->makeFirstResponder(label));
    EXPECT_FALSE(window->makeFirstResponder(elsewhere));
    EXPECT_TRUE(window->makeFirstResponder(field));
    EXPECT_EQ(window->firstResponder(), field);
    field->removeFromSuperview();
    window->desktopContentView()->addSubview(field);
    EXPECT_EQ(window->firstResponder(), nullptr) << "a responder that left the window has resigned";
}

TEST_F(ViewKitWindows, anAlertRunFromATestQueueIsAnsweredByThePostedReturnKey) {
    auto alert = platform::makeAlert();
    alert->setMessageText("Continue?");
    int result = 0;
    onQueue([&] {
        auto person = platform::makeSerialQueue("Person");
        person->async([&] {
            while (!onMain([] { return desktop::Alert::current() != nullptr; })) std::this_thread::yield();
            typeKey(desktop::keyCodes::returnKey);
        });
        result = alert->runModal();  // hops to the main thread and waits there
        person->sync([] {});
    });
    EXPECT_EQ(result, 1000) << "the OK every alert without buttons gets";
    EXPECT_EQ(desktop::Alert::current(), nullptr);
}

}  // namespace
