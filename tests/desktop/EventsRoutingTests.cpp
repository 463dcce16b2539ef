// Posted events travel window server -> application queue -> run loop ->
// window -> view: buttons, sliders, scroll views, key windows, monitors and
// main-menu key equivalents, all driven from a test queue.
#include <gtest/gtest.h>

#include <mutex>
#include <vector>

#include "JTK/desktop/Menu.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ScrollView.h"
#include "JTK/desktop/controls/Slider.h"
#include "JTK/desktop/controls/TextField.h"
#include "JTK/platform/Notifications.h"
#include "tests/desktop/EventsTestSupport.h"

using namespace jtk;

using namespace eventstest;
using platform::Rect;

namespace {

class EventsRoutingTest : public EventsTest {
protected:
    void SetUp() override {
        EventsTest::SetUp();
        window = shownWindow({100, 100, 400, 300});
        button = std::make_shared<desktop::Button>(Rect{20, 20, 100, 30}, "OK");
        button->setAction([this](desktop::Button& b) {
            ++actions;
            flagsAtAction = b.lastEventFlags();
            clickCountAtAction = b.clickCount();
        });
        button->setDoubleAction([this](desktop::Button&) { ++doubleActions; });
        window->desktopContentView()->addSubview(button);
        buttonCenter = centerOnScreen(*button);
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::Button> button;
    Point buttonCenter;
    int actions = 0, doubleActions = 0;
    uint64_t flagsAtAction = 0;
    int64_t clickCountAtAction = 0;
};

TEST_F(EventsRoutingTest, APressAndReleaseOnAButtonSendsItsActionOnce) {
    testsupport::runOnTestQueue([&] {
        click(buttonCenter);
        drainEvents();
    });
    EXPECT_EQ(actions, 1);
    EXPECT_EQ(doubleActions, 0);
    EXPECT_EQ(clickCountAtAction, 1);
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(EventsRoutingTest, AReleaseOutsideTheButtonSendsNothingAndTheNextPressStartsAfresh) {
    testsupport::runOnTestQueue([&] {
        postMouse(EventType::leftMouseDown, buttonCenter);
        postMouse(EventType::leftMouseDragged, {buttonCenter.x + 200, buttonCenter.y});
        postMouse(EventType::leftMouseUp, {buttonCenter.x + 200, buttonCenter.y});
        // A release over the button without a press on it is no click either.
        postMouse(EventType::leftMouseDown, {buttonCenter.x + 200, buttonCenter.y});
        postMouse(EventType::leftMouseUp, buttonCenter);
        drainEvents();
    });
    EXPECT_EQ(actions, 0);
}

TEST_F(EventsRoutingTest, ADoubleClickSendsTheDoubleActionOnceWhetherTheFirstClickCarriesOneOrTwo) {
    testsupport::runOnTestQueue([&] {
        // As the framework posts it: all four events with click state 2.
        for (int i = 0; i < 2; ++i) {
            postMouse(EventType::leftMouseDown, buttonCenter, 2);
            postMouse(EventType::leftMouseUp, buttonCenter, 2);
        }
        drainEvents();
        EXPECT_EQ(onMain([&] { return doubleActions; }), 1);
        // As a person makes it: a single click, then the second with 2.
        click(buttonCenter);
        postMouse(EventType::leftMouseDown, buttonCenter, 2);
        postMouse(EventType::leftMouseUp, buttonCenter, 2);
        drainEvents();
    });
    EXPECT_EQ(doubleActions, 2);
    EXPECT_EQ(actions, 4);
    EXPECT_EQ(clickCountAtAction, 2);
}

TEST_F(EventsRoutingTest, HeldModifiersReachTheNextMouseEventAndTheActionSeesTheReleaseFlags) {
    using namespace platform::eventFlags;
    std::vector<uint64_t> pressFlags;
    auto token = desktop::Application::shared()->addLocalMonitorForEvents(
        platform::eventMaskBit(EventType::leftMouseDown), [&](auto event) {
            pressFlags.push_back(event->flags);
            return event;
        });
    testsupport::runOnTestQueue([&] {
        postFlags(command);
        // The press keeps the flags it was created with, the release gets shift.
        postMouse(EventType::leftMouseDown, buttonCenter);
        postMouse(EventType::leftMouseUp, buttonCenter, 1, shift);
        postFlags(0);
        drainEvents();
    });
    desktop::Application::shared()->removeMonitor(token);
    ASSERT_EQ(pressFlags.size(), 1u);
    EXPECT_EQ(pressFlags[0], command);
    EXPECT_EQ(flagsAtAction, shift);
    EXPECT_EQ(platform::currentModifierFlags(), 0u);
}

TEST_F(EventsRoutingTest, APressOnAWindowBehindMakesItKeyAndFrontAndTheClickReachesItsView) {
    auto back = window;
    auto front = shownWindow({150, 150, 300, 200}, "Front");
    ASSERT_TRUE(front->isKeyWindow());
    // A point of the back window that the front one does not cover.
    Point uncovered = buttonCenter;
    ASSERT_FALSE(platform::pointInRect(uncovered, front->frame()));
    testsupport::runOnTestQueue([&] {
        click(uncovered);
        drainEvents();
    });
    EXPECT_TRUE(back->isKeyWindow());
    EXPECT_FALSE(front->isKeyWindow());
    EXPECT_EQ(desktop::Application::shared()->orderedWindows().front(), back);
    EXPECT_EQ(actions, 1);
}

TEST_F(EventsRoutingTest, MonitorsSeeEventsBeforeTheViewsAndCanSwallowThem) {
    auto app = desktop::Application::shared();
    std::vector<std::string> seen;
    uint64_t mouseMask = platform::eventMaskBit(EventType::leftMouseDown) | platform::eventMaskBit(EventType::leftMouseUp);
    auto watch = app->addLocalMonitorForEvents(mouseMask, [&](auto event) {
        seen.push_back("monitor " + std::to_string(static_cast<int>(event->type)) + " actions " + std::to_string(actions));
        return event;
    });
    auto swallow = app->addLocalMonitorForEvents(platform::eventMaskBit(EventType::leftMouseUp),
                                                 [&](auto) { return std::shared_ptr<platform::Event>{}; });
    testsupport::runOnTestQueue([&] {
        click(buttonCenter);
        drainEvents();
    });
    app->removeMonitor(swallow);
    EXPECT_EQ(actions, 0) << "the swallowed release never reached the button";
    testsupport::runOnTestQueue([&] {
        click(buttonCenter);
        drainEvents();
    });
    app->removeMonitor(watch);
    EXPECT_EQ(actions, 1);
    ASSERT_EQ(seen.size(), 4u);
    EXPECT_EQ(seen[2], "monitor 1 actions 0");
    EXPECT_EQ(seen[3], "monitor 2 actions 0") << "the monitor runs before the button acts";
}

TEST_F(EventsRoutingTest, KeyEventsForAnotherProcessNeverReachTheApplication) {
    int keys = 0;
    auto app = desktop::Application::shared();
    auto token = app->addLocalMonitorForEvents(platform::eventMaskBit(EventType::keyDown), [&](auto event) {
        ++keys;
        return event;
    });
    testsupport::runOnTestQueue([&] {
        auto key = platform::createKeyboardEvent(platform::createEventSource(platform::EventSourceState::hidSystemState), 0, true);
        platform::postEventToPid(::getpid() + 100000, *key);
        platform::postEventToPid(::getpid(), *key);
        drainEvents();
    });
    app->removeMonitor(token);
    EXPECT_EQ(keys, 1);
}

TEST_F(EventsRoutingTest, ASliderFollowsADragAndStaysWithinItsRange) {
    auto slider = std::make_shared<desktop::Slider>(Rect{20, 100, 200, 20}, 0, 100, 0);
    int changes = 0;
    slider->setOnChange([&](desktop::Slider&) { ++changes; });
    window->desktopContentView()->addSubview(slider);
    auto frame = window->convertRectToScreen(slider->convertRectToWindow(slider->bounds()));
    double y = frame.midY();
    double valueAtMiddle = -1;
    testsupport::runOnTestQueue([&] {
        postMouse(EventType::leftMouseDown, {frame.minX() + 10, y});
        postMouse(EventType::leftMouseDragged, {frame.minX() + 100, y});
        drainEvents();
        valueAtMiddle = onMain([&] { return slider->doubleValue(); });
        postMouse(EventType::leftMouseDragged, {frame.minX() + 150, y});
        postMouse(EventType::leftMouseDragged, {frame.maxX() + 50, y});
        postMouse(EventType::leftMouseUp, {frame.maxX() + 50, y});
        drainEvents();
    });
    EXPECT_DOUBLE_EQ(valueAtMiddle, 50);
    EXPECT_DOUBLE_EQ(slider->doubleValue(), 100);
    EXPECT_EQ(changes, 4);
}

TEST_F(EventsRoutingTest, TheScrollWheelScrollsTheScrollViewUnderThePointer) {
    auto scrollView = std::make_shared<desktop::ScrollView>(Rect{150, 20, 200, 100});
    auto document = std::make_shared<desktop::View>(Rect{0, 0, 200, 1000});
    scrollView->setDocumentView(document);
    window->desktopContentView()->addSubview(scrollView);
    scrollView->scroll({0, 0});
    testsupport::runOnTestQueue([&] {
        platform::moveCursorToPoint(platform::mainDisplayID(), eventPoint(centerOnScreen(*scrollView)));
        auto wheel = platform::createMouseEvent(platform::createEventSource(platform::EventSourceState::hidSystemState),
                                                EventType::scrollWheel, {}, platform::MouseButton::left);
        wheel->scrollDeltaY = 120;
        platform::postEvent(platform::EventTap::hid, *wheel);
        wheel->scrollDeltaY = -20;
        platform::postEvent(platform::EventTap::hid, *wheel);
        // Away from the scroll view the wheel scrolls nothing.
        platform::moveCursorToPoint(platform::mainDisplayID(), eventPoint(buttonCenter));
        wheel->scrollDeltaY = 300;
        platform::postEvent(platform::EventTap::hid, *wheel);
        drainEvents();
    });
    EXPECT_DOUBLE_EQ(scrollView->documentVisibleRect().minY(), 100);
}

class MainMenuKeyTest : public EventsRoutingTest {
protected:
    void SetUp() override {
        EventsRoutingTest::SetUp();
        auto mainMenu = desktop::Menu::make("Main");
        auto fileItem = desktop::MenuItem::make("File");
        auto fileMenu = desktop::Menu::make("File");
        fileMenu->addItem(desktop::MenuItem::make("Save", [this](desktop::MenuItem&) { ++saves; }, "s"));
        fileMenu->addItem(desktop::MenuItem::make("Save As…", [this](desktop::MenuItem&) { ++saveAs; }, "S"));
        fileItem->setSubmenu(fileMenu);
        mainMenu->addItem(fileItem);
        desktop::Application::shared()->setMainMenu(mainMenu);
        field = std::make_shared<desktop::TextField>(Rect{20, 200, 200, 24});
        window->desktopContentView()->addSubview(field);
        observer = platform::defaultNotificationCenter().addObserver(
            platform::menuDidSendActionNotification, {}, platform::DeliveryQueue::postingThread,
            [this](const platform::Notification& n) {
                auto item = n.userInfo.find("MenuItem");
                std::lock_guard lock(mutex);
                if (item && item->object())
                    sentTitles.push_back(std::dynamic_pointer_cast<platform::MenuItem>(item->object())->title());
            });
    }
    void TearDown() override {
        platform::defaultNotificationCenter().removeObserver(observer);
        EventsRoutingTest::TearDown();
    }
    std::shared_ptr<desktop::TextField> field;
    int saves = 0, saveAs = 0;
    uint64_t observer = 0;
    std::mutex mutex;
    std::vector<std::string> sentTitles;
};

TEST_F(MainMenuKeyTest, ACommandKeyPerformsTheMainMenuItemInsteadOfTyping) {
    using namespace platform::eventFlags;
    field->beginEditing();
    testsupport::runOnTestQueue([&] {
        typeKey(1, command);          // command-S
        typeKey(1, command | shift);  // command-shift-S
        typeKey(1);                   // a plain s types into the field
        typeKey(2, command);          // command-D: no item, nothing happens
        drainEvents();
    });
    EXPECT_EQ(saves, 1);
    EXPECT_EQ(saveAs, 1);
    EXPECT_EQ(field->stringValue(), "s");
    std::lock_guard lock(mutex);
    EXPECT_EQ(sentTitles, (std::vector<std::string>{"Save", "Save As…"}));
}

}  // namespace
