// Windows and the application: the window list, key window and window
// order, activation, first responders, the application name, event monitors,
// the main event loop and the screens.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <set>
#include <thread>

#include "JTK/desktop/Application.h"
#include "JTK/desktop/Screens.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Label.h"
#include "JTK/desktop/controls/TextField.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Screen.h"
#include "tests/desktop/ViewKitTestSupport.h"

using namespace jtk;

using desktop::Application;
using desktop::Window;
using platform::Rect;

using ViewKitWindows = ViewKitTest;

namespace {

class CountingField : public desktop::TextField {
public:
    using TextField::TextField;
    bool resignFirstResponder() override {
        ++resigned;
        return true;
    }
    int resigned = 0;
};

}  // namespace

TEST_F(ViewKitWindows, WindowsAreListedInCreationOrderUntilClosed) {
    auto app = Application::shared();
    auto first = Window::make(Rect{0, 0, 100, 100}, "First");
    auto second = Window::make(Rect{0, 0, 100, 100}, "Second");
    auto third = Window::make(Rect{0, 0, 100, 100}, "Third");
    ASSERT_EQ(app->windows().size(), 3u);
    EXPECT_EQ(app->windows()[0], first);
    EXPECT_EQ(app->windows()[2], third);
    EXPECT_EQ(platform::sharedApplication(), app);

    // A new window is listed but hidden; ordering out keeps it listed.
    EXPECT_FALSE(second->isVisible());
    second->makeKeyAndOrderFront();
    second->orderOut();
    EXPECT_EQ(app->windows().size(), 3u);
    EXPECT_FALSE(second->isVisible());

    second->close();
    ASSERT_EQ(app->windows().size(), 2u);
    EXPECT_EQ(app->windows()[1], third);
    EXPECT_EQ(first->title(), "First");

    std::set<int> numbers{first->windowNumber(), second->windowNumber(), third->windowNumber()};
    EXPECT_EQ(numbers.size(), 3u);
    EXPECT_EQ(app->windowWithNumber(third->windowNumber()), third);
    EXPECT_EQ(app->windowWithNumber(second->windowNumber()), nullptr);
}

TEST_F(ViewKitWindows, MakeKeyAndOrderFrontLeadsTheOrderAndHidingPassesKeyOn) {
    auto app = Application::shared();
    EXPECT_EQ(app->keyWindow(), nullptr);
    auto a = shownWindow({0, 0, 100, 100}, "A");
    auto b = shownWindow({0, 0, 100, 100}, "B");
    EXPECT_TRUE(b->isKeyWindow());
    EXPECT_FALSE(a->isKeyWindow());
    ASSERT_EQ(app->orderedWindows().size(), 2u);
    EXPECT_EQ(app->orderedWindows()[0], b);

    a->makeKeyAndOrderFront();
    EXPECT_EQ(app->keyWindow(), a);
    EXPECT_EQ(app->orderedWindows()[0], a);

    // A floating window stays in front of normal ones that come forward later.
    auto panel = shownWindow({0, 0, 50, 50}, "Panel");
    panel->setLevel(Window::floatingLevel);
    b->makeKeyAndOrderFront();
    EXPECT_EQ(app->orderedWindows()[0], panel);
    EXPECT_EQ(app->orderedWindows()[1], b);

    b->orderOut();
    EXPECT_EQ(app->keyWindow(), panel);
    panel->close();
    EXPECT_EQ(app->keyWindow(), a);
    a->close();
    EXPECT_EQ(app->keyWindow(), nullptr);
    EXPECT_TRUE(app->orderedWindows().empty());
}

TEST_F(ViewKitWindows, ActivationMakesTheFrontmostVisibleWindowKeyWhenNoneIs) {
    auto app = Application::shared();
    auto back = shownWindow({0, 0, 100, 100}, "Back");
    auto front = shownWindow({0, 0, 100, 100}, "Front");
    auto hidden = Window::make(Rect{0, 0, 100, 100}, "Hidden");
    front->orderOut();
    back->orderOut();
    EXPECT_EQ(app->keyWindow(), nullptr);
    back->orderFront();  // visible again, but not key
    EXPECT_EQ(app->keyWindow(), nullptr);

    EXPECT_FALSE(app->isActive());
    app->activateIgnoringOtherApps(true);
    EXPECT_TRUE(app->isActive());
    EXPECT_EQ(app->keyWindow(), back);

    // A window that cannot be key (a status-bar window) is passed over.
    auto status = Window::make(Rect{0, 0, 20, 20}, "Status");
    status->setCanBecomeKeyWindow(false);
    status->makeKeyAndOrderFront();
    EXPECT_EQ(app->keyWindow(), back);
    back->orderOut();
    app->activateIgnoringOtherApps(true);
    EXPECT_EQ(app->keyWindow(), nullptr);
    app->deactivate();
    EXPECT_FALSE(app->isActive());
}

TEST_F(ViewKitWindows, FirstResponderIsAViewOfTheWindowThatAcceptsIt) {
    auto window = shownWindow({0, 0, 200, 100});
    auto other = shownWindow({0, 0, 200, 100});
    auto field = std::make_shared<CountingField>(Rect{10, 10, 100, 20});
    auto label = std::make_shared<desktop::Label>(Rect{10, 40, 100, 20}, "Name");
    auto elsewhere = std::make_shared<desktop::TextField>(Rect{10, 10, 100, 20});
    window->desktopContentView()->addSubview(field);
    window->desktopContentView()->addSubview(label);
    other->desktopContentView()->addSubview(elsewhere);

    EXPECT_EQ(window->firstResponder(), nullptr);
    EXPECT_FALSE(window->makeFirstResponder(label));
    EXPECT_FALSE(window->makeFirstResponder(elsewhere));
    EXPECT_TRUE(window->makeFirstResponder(field));
    EXPECT_EQ(window->firstResponder(), field);

    // A responder that leaves the window resigns and no longer has the keys,
    // even when it comes back.
    field->removeFromSuperview();
    EXPECT_EQ(field->resigned, 1);
    window->desktopContentView()->addSubview(field);
    EXPECT_EQ(window->firstResponder(), nullptr);
    field->setEditable(false);
    EXPECT_FALSE(window->makeFirstResponder(field));
    EXPECT_TRUE(window->makeFirstResponder(nullptr));
}

TEST_F(ViewKitWindows, TheNameIsTheExecutablesFileNameUntilSet) {
    auto app = Application::shared();
    EXPECT_EQ(app->name(), std::filesystem::read_symlink("/proc/self/exe").filename().string());
    EXPECT_FALSE(app->name().empty());
    app->setName("Sample");
    EXPECT_EQ(app->name(), "Sample");
}

TEST_F(ViewKitWindows, MonitorsSeeTheirEventTypesInOrderAndCanSwallowThem) {
    auto app = Application::shared();
    std::vector<std::string> seen;
    auto keys = app->addLocalMonitorForEvents(platform::eventMaskBit(platform::EventType::keyDown), [&](auto event) {
        seen.push_back("key");
        event->keyCode = 7;
        return event;
    });
    auto all = app->addLocalMonitorForEvents(platform::anyEventMask, [&](auto event) {
        seen.push_back("all");
        return event->keyCode == 7 ? nullptr : event;
    });

    auto key = std::make_shared<platform::Event>();
    key->type = platform::EventType::keyDown;
    EXPECT_EQ(app->runMonitors(key), nullptr);
    auto click = std::make_shared<platform::Event>();
    click->type = platform::EventType::leftMouseDown;
    EXPECT_EQ(app->runMonitors(click), click);
    EXPECT_EQ(seen, (std::vector<std::string>{"key", "all", "all"}));

    app->removeMonitor(all);
    auto another = std::make_shared<platform::Event>();
    another->type = platform::EventType::keyDown;
    EXPECT_EQ(app->runMonitors(another), another);
    EXPECT_EQ(another->keyCode, 7);
    app->removeMonitor(keys);
    app->removeMonitor(keys);  // a second removal is harmless
}

TEST_F(ViewKitWindows, RunServesTheMainQueueUntilTerminateAndReturnsItsStatus) {
    auto app = Application::shared();
    bool ran = false;
    platform::dispatchAsyncMain([&] { ran = true; });
    // Terminated from another thread, as a test queue would.
    std::thread other([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        app->terminate(3);
    });
    EXPECT_EQ(app->run(), 3);
    other.join();
    EXPECT_TRUE(ran);
    EXPECT_TRUE(app->isActive());
}

TEST(ViewKitScreens, DefaultScreenReplacementAndReadsFromOtherThreads) {
    ASSERT_EQ(platform::screens().size(), 1u);
    EXPECT_EQ(platform::screens()[0].frame, (Rect{0, 0, 1440, 900}));

    desktop::setScreens({{0, 0, 1920, 1080}, {1920, 0, 1280, 1024}});
    ASSERT_EQ(platform::screens().size(), 2u);
    EXPECT_EQ(platform::screens()[1].frame, (Rect{1920, 0, 1280, 1024}));

    std::atomic<bool> sawEmpty{false};
    std::thread reader([&] {
        for (int i = 0; i < 2000; ++i)
            if (platform::screens().empty()) sawEmpty = true;
    });
    for (int i = 0; i < 200; ++i) desktop::setScreens(i % 2 ? std::vector<Rect>{} : std::vector<Rect>{{0, 0, 800, 600}});
    reader.join();
    EXPECT_FALSE(sawEmpty);

    // An empty list brings back the default main screen.
    desktop::setScreens({});
    ASSERT_EQ(platform::screens().size(), 1u);
    EXPECT_EQ(platform::screens()[0].frame, desktop::defaultScreenFrame());
}
