// Posted events travel window server -> application queue -> run loop ->
// window -> view, driven from a test queue: the window server's HID state,
// buttons, key windows, monitors, the scroll wheel and key equivalents.
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ScrollView.h"
#include "JTK/desktop/controls/TextField.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

class EventsRouting : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        window = makeWindow({100, 100, 400, 300});
        button = add<desktop::Button>(window->desktopContentView(), Rect{20, 20, 100, 30}, "OK");
        button->setAction([this](desktop::Button& b) {
            ++actions;
            flagsAtAction = b.lastEventFlags();
        });
        button->setDoubleAction([this](desktop::Button&) { ++doubleActions; });
        center = centerOnScreen(*button);
    }
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::Button> button;
    Point center;
    int actions = 0, doubleActions = 0;
    uint64_t flagsAtAction = 0;
};

TEST_F(EventsRouting, theHidStateFollowsPostedEventsAndNewHidEventsStartWithIt) {
    onQueue([&] {
        postFlags(command | shift);
        auto hid = platform::createEventSource(platform::EventSourceState::hidSystemState);
        auto privateSource = platform::createEventSource(platform::EventSourceState::privateState);
        EXPECT_EQ(platform::createMouseEvent(hid, EventType::leftMouseDown, {}, platform::MouseButton::left)->flags,
                  command | shift);
        EXPECT_EQ(platform::createKeyboardEvent(privateSource, 0, true)->flags, 0u) << "a private source has its own";
        postFlags(0);
        postMouse(EventType::leftMouseDown, {100, 200});
        EXPECT_TRUE(desktop::WindowServer::shared().isButtonDown(platform::MouseButton::left));
        EXPECT_EQ(platform::mouseLocation(), (Point{100, 200}));
        postMouse(EventType::leftMouseUp, {100, 200});
        EXPECT_FALSE(desktop::WindowServer::shared().isButtonDown(platform::MouseButton::left));
        platform::moveCursorToPoint(platform::mainDisplayID(), {5, 7});
        EXPECT_EQ(platform::mouseLocation(), (Point{5, 900 - 8})) << "screen y grows upwards";
    });
    EXPECT_EQ(typesOf(posted()), (std::vector{EventType::flagsChanged, EventType::flagsChanged, EventType::leftMouseDown,
                                               EventType::leftMouseUp}))
        << "moving the cursor posts nothing";
}

TEST_F(EventsRouting, aButtonActsOnAPressAndReleaseOnItAndOnceMoreForADoubleClick) {
    onQueue([&] {
        click(center);
        // Released outside, or pressed outside: no click.
        postMouse(EventType::leftMouseDown, center);
        postMouse(EventType::leftMouseUp, {center.x + 200, center.y});
        postMouse(EventType::leftMouseDown, {center.x + 200, center.y});
        postMouse(EventType::leftMouseUp, center);
        drainEvents();
        EXPECT_EQ(onMain([&] { return actions; }), 1);
        // As the framework posts a double click (all four with click state 2), and as a person makes one.
        click(center, 2);
        click(center, 2);
        click(center);
        click(center, 2);
        drainEvents();
    });
    EXPECT_EQ(actions, 5);
    EXPECT_EQ(doubleActions, 2);
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(EventsRouting, heldModifiersReachThePressAndTheActionSeesTheReleasesFlags) {
    std::vector<uint64_t> pressFlags;
    auto app = desktop::Application::shared();
    auto token = app->addLocalMonitorForEvents(platform::eventMaskBit(EventType::leftMouseDown), [&](auto event) {
        pressFlags.push_back(event->flags);
        return event;
    });
    onQueue([&] {
        postFlags(command);
        postMouse(EventType::leftMouseDown, center);
        postMouse(EventType::leftMouseUp, center, 1, shift);
        postFlags(0);
        drainEvents();
    });
    app->removeMonitor(token);
    EXPECT_EQ(pressFlags, std::vector<uint64_t>{command});
    EXPECT_EQ(flagsAtAction, shift);
}

TEST_F(EventsRouting, aPressOnAWindowBehindMakesItKeyAndFrontAndReachesItsView) {
    auto front = makeWindow({150, 150, 300, 200}, "Front");
    ASSERT_FALSE(platform::pointInRect(center, front->frame()));
    onQueue([&] {
        click(center);
        drainEvents();
    });
    EXPECT_TRUE(window->isKeyWindow());
    EXPECT_EQ(desktop::Application::shared()->orderedWindows().front(), window);
    EXPECT_EQ(actions, 1);
}

TEST_F(EventsRouting, monitorsRunBeforeTheViewsAndMaySwallowAndKeysForAnotherProcessNeverArrive) {
    auto app = desktop::Application::shared();
    std::vector<std::string> seen;
    auto watch = app->addLocalMonitorForEvents(platform::anyEventMask, [&](auto event) {
        seen.push_back(std::to_string(static_cast<int>(event->type)) + " after " + std::to_string(actions));
        return event;
    });
    auto swallow = app->addLocalMonitorForEvents(platform::eventMaskBit(EventType::leftMouseUp),
                                                 [&](auto) { return std::shared_ptr<platform::Event>{}; });
    onQueue([&] {
        click(center);
        auto key = platform::createKeyboardEvent(platform::createEventSource(platform::EventSourceState::hidSystemState), 0, true);
        platform::postEventToPid(::getpid() + 100000, *key);
        drainEvents();
    });
    app->removeMonitor(swallow);
    app->removeMonitor(watch);
    EXPECT_EQ(actions, 0) << "the swallowed release never reached the button";
    // The press, the release, the marker key of drainEvents: nothing of the other process.
    EXPECT_EQ(seen, (std::vector<std::string>{"1 after 0", "2 after 0", "11 after 0"}));
}

TEST_F(EventsRouting, theScrollWheelScrollsTheScrollViewUnderThePointer) {
    auto scrollView = add<desktop::ScrollView>(window->desktopContentView(), Rect{150, 20, 200, 100});
    scrollView->setDocumentView(std::make_shared<desktop::View>(Rect{0, 0, 200, 1000}));
    onQueue([&] {
        auto wheel = platform::createMouseEvent(platform::createEventSource(platform::EventSourceState::hidSystemState),
                                                EventType::scrollWheel, {}, platform::MouseButton::left);
        for (auto [where, delta] : {std::pair{centerOnScreen(*scrollView), 120.0}, {centerOnScreen(*scrollView), -20.0},
                                    {center, 300.0} /* away from the scroll view */}) {
            platform::moveCursorToPoint(platform::mainDisplayID(), desktop::WindowServer::eventPointFromScreenPoint(where));
            wheel->scrollDeltaY = delta;
            platform::postEvent(platform::EventTap::hid, *wheel);
        }
        drainEvents();
    });
    EXPECT_DOUBLE_EQ(scrollView->documentVisibleRect().minY(), 100);
}

TEST_F(EventsRouting, aCommandKeyPerformsTheMainMenuItemInsteadOfTyping) {
    int saves = 0, saveAs = 0;
    auto fileItem = desktop::MenuItem::make("File");
    auto fileMenu = desktop::Menu::make("File");
    fileMenu->addItem(desktop::MenuItem::make("Save", [&](desktop::MenuItem&) { ++saves; }, "s"));
    fileMenu->addItem(desktop::MenuItem::make("Save As…", [&](desktop::MenuItem&) { ++saveAs; }, "S"));
    fileItem->setSubmenu(fileMenu);
    auto mainMenu = desktop::Menu::make("Main");
    mainMenu->addItem(fileItem);
    desktop::Application::shared()->setMainMenu(mainMenu);
    auto field = add<desktop::TextField>(window->desktopContentView(), Rect{20, 200, 200, 24});
    field->beginEditing();
    onQueue([&] {
        typeKey(1, command);          // command-S
        typeKey(1, command | shift);  // command-shift-S
        typeKey(1);                   // a plain s types into the field
        typeKey(2, command);          // command-D: no item, nothing happens
        drainEvents();
    });
    EXPECT_EQ(saves, 1);
    EXPECT_EQ(saveAs, 1);
    EXPECT_EQ(field->stringValue(), "s");
}

}  // namespace
