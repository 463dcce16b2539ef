// Pop-up menus that a person drives with the mouse and the keyboard while
// they track in a nested loop.
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using desktop::Menu;
using desktop::MenuItem;

class PopUpMenu : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        window = makeWindow({100, 400, 400, 300});
        menu = Menu::make("Colours");
        popUp = add<desktop::PopUpButton>(window->desktopContentView(), Rect{20, 200, 120, 24}, menu);
        for (const char* title : {"Red", "Green", "Blue"}) popUp->addItemWithTitle(title);
        popUp->setAction([this](desktop::Button&) { ++popUpActions; });
    }
    // Clicks the pop-up button (from the test queue) and waits until its menu tracks.
    void open() {
        pressAt(onMain([&] { return centerOnScreen(*popUp); }));
        ASSERT_TRUE(eventually([&] { return Menu::trackingMenu() == menu; }));
    }
    bool closed() { return eventually([] { return Menu::trackingMenu() == nullptr; }); }
    // The centre of an item's row while its menu is open (main thread).
    static Point rowCenter(const Menu& open, int row) {
        auto frame = open.frameOnScreen();
        return {frame.midX(), frame.maxY() - Menu::rowHeight * (row + 0.5)};
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<Menu> menu;
    std::shared_ptr<desktop::PopUpButton> popUp;
    int popUpActions = 0;
};

TEST_F(PopUpMenu, theMenuTracksInANestedLoopThatServesTheMainQueueAndARowClickChoosesItsItem) {
    onQueue([&] {
        open();
        drainEvents();  // the release of the opening click leaves the menu open
        EXPECT_EQ(onMain([] { return desktop::RunLoop::main().currentMode(); }), platform::RunLoopMode::eventTracking);
        pressAt(onMain([&] { return rowCenter(*menu, 1); }));
        EXPECT_TRUE(closed());
    });
    EXPECT_EQ(popUp->titleOfSelectedItem(), "Green");
    EXPECT_EQ(menu->itemWithTitle("Green")->state(), MenuItem::onState);
    EXPECT_EQ(menu->itemWithTitle("Red")->state(), MenuItem::offState);
    EXPECT_EQ(popUpActions, 1);
    EXPECT_TRUE(menu->frameOnScreen().isEmpty());
}

TEST_F(PopUpMenu, aClickOutsideEscapeAndCancelFromAnotherThreadCloseItChoosingNothing) {
    onQueue([&] {
        open();
        pressAt({10, 10});
        EXPECT_TRUE(closed());
        open();
        pressKey(53);  // Escape
        EXPECT_TRUE(closed());
        open();
        auto other = Menu::make("Other");
        other->addItem(MenuItem::make("X"));
        EXPECT_EQ(other->popUp({0, 500}), nullptr) << "one menu tracks at a time";
        menu->cancelTracking();  // from the test queue: handed to the main thread
        EXPECT_TRUE(closed());
    });
    EXPECT_EQ(popUpActions, 0);
    EXPECT_EQ(popUp->titleOfSelectedItem(), "Red");
}

}  // namespace
