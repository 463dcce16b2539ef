// Posted events travel window server -> application queue -> run loop ->
// window -> view, driven from a test queue: buttons, modifier flags, key
// windows and key equivalents.
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

// A press on a window behind makes it key, and the action sees the held flags
// and the release's; a button acts on a press and release on it, and once more
// for a double click.
TEST_F(EventsRouting, aPressOnAWindowBehindMakesItKeyAndAButtonActsOnAPressAndReleaseOnItAndOnDoubleClicks) {
    auto front = makeWindow({150, 150, 300, 200}, "Front");
    ASSERT_FALSE(platform::pointInRect(center, front->frame()));
    onQueue([&] {
        pressKey(platform::noKeyCode, command);  // held from now on
        auto privateSource = platform::createEventSource(platform::EventSourceState::privateState);
        EXPECT_EQ(platform::createKeyboardEvent(privateSource, 0, true)->flags, 0u) << "a private source has its own";
        postMouseAt(EventType::leftMouseDown, center);
        postMouseAt(EventType::leftMouseUp, center, 1, shift);
        pressKey(platform::noKeyCode, 0);
        // Released outside, or pressed outside: no click.
        postMouseAt(EventType::leftMouseDown, center);
        postMouseAt(EventType::leftMouseUp, {center.x + 200, center.y});
        postMouseAt(EventType::leftMouseDown, {center.x + 200, center.y});
        postMouseAt(EventType::leftMouseUp, center);
        drainEvents();
        EXPECT_EQ(onMain([&] { return actions; }), 1);
        EXPECT_EQ(onMain([&] { return flagsAtAction; }), shift);
        // As the framework posts a double click (all four with click state 2), and as a person makes one.
        pressAt(center, 2);
        pressAt(center, 2);
        pressAt(center);
        pressAt(center, 2);
        drainEvents();
    });
    EXPECT_TRUE(window->isKeyWindow());
    EXPECT_EQ(desktop::Application::shared()->orderedWindows().front(), window);
    EXPECT_EQ(posted({EventType::leftMouseDown}).at(0).event.flags, command) << "held modifiers reach new HID events";
    EXPECT_EQ(actions, 5);
    EXPECT_EQ(doubleActions, 2);
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(EventsRouting, aCommandKeyPerformsTheMainMenuItemInsteadOfTyping) {
    int saves = 0, saveAs = 0;
    auto fileMenu = desktop::Menu::make("File"), mainMenu = desktop::Menu::make("Main");
    fileMenu->addItem(desktop::MenuItem::make("Save", [&](desktop::MenuItem&) { ++saves; }, "s"));
    fileMenu->addItem(desktop::MenuItem::make("Save As…", [&](desktop::MenuItem&) { ++saveAs; }, "S"));
    mainMenu->addItem(desktop::MenuItem::make("File"));
    mainMenu->itemAtIndex(0)->setSubmenu(fileMenu);
    desktop::Application::shared()->setMainMenu(mainMenu);
    auto field = add<desktop::TextField>(window->desktopContentView(), Rect{20, 200, 200, 24});
    field->beginEditing();
    onQueue([&] {
        pressKey(1, command);          // command-S
        pressKey(1, command | shift);  // command-shift-S
        pressKey(1);                   // a plain s types into the field
        pressKey(2, command);          // command-D: no item, nothing happens
        drainEvents();
    });
    EXPECT_EQ(saves, 1);
    EXPECT_EQ(saveAs, 1);
    EXPECT_EQ(field->stringValue(), "s");
}

}  // namespace
