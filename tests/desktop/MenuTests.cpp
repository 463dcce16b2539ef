// Menus: the item list and its back references, performing items, and pop-up
// menus that track in a nested loop while main-queue work still runs.
#include <gtest/gtest.h>

#include <mutex>
#include <vector>

#include "JTK/desktop/Menu.h"
#include "JTK/desktop/controls/PopUpButton.h"
#include "JTK/platform/Notifications.h"
#include "tests/desktop/EventsTestSupport.h"

using namespace jtk;

using namespace eventstest;
using desktop::Menu;
using desktop::MenuItem;
using platform::Rect;

namespace {

// Records the menu notifications (posted on the main thread, read anywhere).
struct MenuNotifications {
    MenuNotifications() {
        auto& center = platform::defaultNotificationCenter();
        for (const char* name : {platform::menuDidBeginTrackingNotification, platform::menuDidSendActionNotification,
                                 desktop::menuDidEndTrackingNotification})
            tokens.push_back(center.addObserver(name, {}, platform::DeliveryQueue::postingThread,
                                                [this](const platform::Notification& n) { record(n); }));
    }
    ~MenuNotifications() {
        for (auto token : tokens) platform::defaultNotificationCenter().removeObserver(token);
    }
    void record(const platform::Notification& n) {
        std::lock_guard lock(mutex);
        std::string entry = n.name;
        if (auto menu = std::dynamic_pointer_cast<platform::Menu>(n.object.object())) entry += " " + menu->title();
        if (auto item = n.userInfo.find("MenuItem"))
            if (auto menuItem = std::dynamic_pointer_cast<platform::MenuItem>(item->object())) entry += " " + menuItem->title();
        log.push_back(entry);
        if (n.name == platform::menuDidBeginTrackingNotification)
            begunMenu = std::dynamic_pointer_cast<platform::Menu>(n.object.object());
    }
    std::vector<std::string> entries() {
        std::lock_guard lock(mutex);
        return log;
    }
    std::shared_ptr<platform::Menu> menuThatBegan() {
        std::lock_guard lock(mutex);
        return begunMenu;
    }

    std::vector<uint64_t> tokens;
    std::mutex mutex;
    std::vector<std::string> log;
    std::shared_ptr<platform::Menu> begunMenu;
};

TEST(MenuModel, ItemsKnowTheirMenuAndAnItemBelongsToOneMenuAtATime) {
    auto menu = Menu::make("M");
    auto a = MenuItem::make("A"), b = MenuItem::make("B"), c = MenuItem::make("C");
    menu->addItem(a);
    menu->addItem(c);
    menu->insertItem(b, 1);
    menu->insertItem(nullptr, 0);
    EXPECT_EQ(menu->numberOfItems(), 3);
    EXPECT_EQ(menu->indexOfItem(b), 1);
    EXPECT_EQ(menu->indexOfItemWithTitle("C"), 2);
    EXPECT_EQ(b->menu(), menu);

    auto other = Menu::make("Other");
    other->insertItem(b, 99);  // past the end appends
    EXPECT_EQ(menu->indexOfItem(b), -1);
    EXPECT_EQ(menu->numberOfItems(), 2);
    EXPECT_EQ(b->menu(), other);

    menu->removeItem(a);
    EXPECT_EQ(a->menu(), nullptr);
    EXPECT_EQ(menu->itemAtIndex(0), c);
    EXPECT_EQ(menu->itemAtIndex(5), nullptr);
    menu->removeItemAtIndex(-1);  // nothing to remove
    EXPECT_EQ(menu->numberOfItems(), 1);

    // A submenu hangs below one item; giving it to another moves it.
    auto submenu = Menu::make("Sub");
    a->setSubmenu(submenu);
    c->setSubmenu(submenu);
    EXPECT_EQ(a->submenu(), nullptr);
    EXPECT_EQ(c->submenu(), submenu);
    EXPECT_EQ(submenu->parentItem(), c);
}

TEST(MenuModel, PerformingAnItemRunsItsActionAndPostsTheItemButNotForDisabledItems) {
    testsupport::pumpMainLoop(0);
    MenuNotifications notifications;
    auto menu = Menu::make("M");
    int performed = 0;
    auto item = MenuItem::make("Go", [&](MenuItem& self) {
        ++performed;
        self.desktopMenu()->removeItem(self.sharedItem());  // an action may remove its own item
    });
    auto disabled = MenuItem::make("Off", [&](MenuItem&) { ++performed; });
    disabled->setEnabled(false);
    menu->addItem(disabled);
    menu->addItem(item);
    menu->addItem(MenuItem::separatorItem());
    menu->performActionForItemAtIndex(0);
    menu->performActionForItemAtIndex(2);
    menu->performActionForItemAtIndex(7);
    menu->performActionForItemAtIndex(1);
    EXPECT_EQ(performed, 1);
    EXPECT_EQ(menu->numberOfItems(), 2);
    EXPECT_EQ(notifications.entries(), (std::vector<std::string>{"MenuDidSendActionNotification M Go"}));
}

class PopUpMenuTest : public EventsTest {
protected:
    void SetUp() override {
        EventsTest::SetUp();
        window = shownWindow({100, 400, 400, 300});
        menu = Menu::make("Colours");
        popUp = std::make_shared<desktop::PopUpButton>(Rect{20, 200, 120, 24}, menu);
        for (const char* title : {"Red", "Green", "Blue"}) popUp->addItemWithTitle(title);
        auto more = MenuItem::make("More");
        auto submenu = Menu::make("More");
        submenu->addItem(MenuItem::make("Cyan", [this](MenuItem&) { ++cyan; }));
        submenu->addItem(MenuItem::make("Magenta", [this](MenuItem&) { ++magenta; }));
        more->setSubmenu(submenu);
        menu->addItem(more);
        popUp->setAction([this](desktop::Button&) { ++popUpActions; });
        window->desktopContentView()->addSubview(popUp);
        popUpCenter = centerOnScreen(*popUp);
    }

    // The centre of an item's row while its menu is open (main thread).
    static Point rowCenter(const Menu& open, int row) {
        auto frame = open.frameOnScreen();
        return {frame.midX(), frame.maxY() - Menu::rowHeight * (row + 0.5)};
    }

    // Clicks the pop-up button and waits until its menu tracks.
    void openFromTestQueue(MenuNotifications& notifications) {
        click(popUpCenter);
        ASSERT_TRUE(eventually([&] { return Menu::trackingMenu() != nullptr; }));
        EXPECT_EQ(notifications.menuThatBegan(), menu);
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<Menu> menu;
    std::shared_ptr<desktop::PopUpButton> popUp;
    Point popUpCenter;
    int popUpActions = 0, cyan = 0, magenta = 0;
};

TEST_F(PopUpMenuTest, APressOpensTheMenuWhichTracksWhileMainQueueWorkRunsAndTheFrameworkChoosesAnItem) {
    MenuNotifications notifications;
    EXPECT_EQ(popUp->titleOfSelectedItem(), "Red");
    testsupport::runOnTestQueue([&] {
        openFromTestQueue(notifications);
        // Main-queue work reaches the main thread inside the tracking loop.
        auto [mode, tracking] = onMain([&] {
            return std::pair{desktop::RunLoop::main().currentMode(), Menu::trackingMenu()};
        });
        EXPECT_EQ(mode, platform::RunLoopMode::eventTracking);
        EXPECT_EQ(tracking, menu);
        // The release of the opening click left the menu open.
        drainEvents();
        EXPECT_TRUE(onMain([&] { return menu->isTracking(); }));
        // As the framework chooses: perform the item, then cancel tracking.
        onMain([&] {
            menu->performActionForItemAtIndex(menu->indexOfItemWithTitle("Blue"));
            menu->cancelTracking();
        });
        EXPECT_TRUE(eventually([&] { return Menu::trackingMenu() == nullptr; }));
    });
    EXPECT_EQ(popUp->titleOfSelectedItem(), "Blue");
    EXPECT_EQ(popUp->indexOfSelectedItem(), 2);
    EXPECT_EQ(menu->itemWithTitle("Blue")->state(), MenuItem::onState);
    EXPECT_EQ(menu->itemWithTitle("Red")->state(), MenuItem::offState);
    EXPECT_EQ(popUpActions, 1);
    EXPECT_TRUE(menu->frameOnScreen().isEmpty()) << "the menu closed";
    EXPECT_EQ(notifications.entries(),
              (std::vector<std::string>{"MenuDidBeginTrackingNotification Colours",
                                        "MenuDidSendActionNotification Colours Blue",
                                        "MenuDidEndTrackingNotification Colours"}));
}

TEST_F(PopUpMenuTest, AClickOnARowChoosesItsItemAndAClickOutsideChoosesNothing) {
    MenuNotifications notifications;
    testsupport::runOnTestQueue([&] {
        openFromTestQueue(notifications);
        Point green = onMain([&] { return rowCenter(*menu, 1); });
        EXPECT_LT(green.y, popUpCenter.y) << "the menu opens below the button";
        click(green);
        drainEvents();
        EXPECT_EQ(onMain([&] { return popUp->titleOfSelectedItem(); }), "Green");

        openFromTestQueue(notifications);
        click({10, 10});
        drainEvents();
        EXPECT_EQ(onMain([&] { return Menu::trackingMenu(); }), nullptr);
    });
    EXPECT_EQ(popUp->titleOfSelectedItem(), "Green");
    EXPECT_EQ(popUpActions, 1);
    EXPECT_EQ(window->desktopContentView()->desktopSubviews().size(), 1u);
}

TEST_F(PopUpMenuTest, ASubmenuOpensBesideItsRowAndItsItemsArePerformedByTheSubmenu) {
    MenuNotifications notifications;
    auto submenu = menu->itemWithTitle("More")->desktopSubmenu();
    testsupport::runOnTestQueue([&] {
        // With the mouse: the row with the submenu opens it, a row there chooses.
        openFromTestQueue(notifications);
        click(onMain([&] { return rowCenter(*menu, 3); }));
        drainEvents();
        ASSERT_TRUE(onMain([&] { return !submenu->frameOnScreen().isEmpty(); }));
        click(onMain([&] { return rowCenter(*submenu, 1); }));
        drainEvents();
        EXPECT_EQ(onMain([&] { return Menu::trackingMenu(); }), nullptr);

        // As the framework does: the submenu performs, the top menu closes.
        openFromTestQueue(notifications);
        onMain([&] {
            auto item = submenu->itemWithTitle("Cyan");
            auto owner = item->desktopMenu();
            owner->performActionForItemAtIndex(owner->indexOfItem(item));
            menu->cancelTracking();
        });
        EXPECT_TRUE(eventually([&] { return Menu::trackingMenu() == nullptr; }));
    });
    EXPECT_EQ(magenta, 1);
    EXPECT_EQ(cyan, 1);
    EXPECT_EQ(popUp->titleOfSelectedItem(), "Red") << "a submenu item is not one of the pop-up's own";
    EXPECT_EQ(popUpActions, 0);
    auto entries = notifications.entries();
    EXPECT_EQ(std::count(entries.begin(), entries.end(), "MenuDidSendActionNotification More Magenta"), 1);
    EXPECT_EQ(std::count(entries.begin(), entries.end(), "MenuDidSendActionNotification More Cyan"), 1);
    EXPECT_TRUE(submenu->frameOnScreen().isEmpty());
}

TEST_F(PopUpMenuTest, EscapeAndCancelTrackingFromAnotherThreadCloseTheMenu) {
    MenuNotifications notifications;
    testsupport::runOnTestQueue([&] {
        openFromTestQueue(notifications);
        typeKey(53);
        EXPECT_TRUE(eventually([&] { return Menu::trackingMenu() == nullptr; }));
        openFromTestQueue(notifications);
        menu->cancelTracking();  // from the test queue: handed to the main thread
        EXPECT_TRUE(eventually([&] { return Menu::trackingMenu() == nullptr; }));
    });
    EXPECT_EQ(popUpActions, 0);
    auto entries = notifications.entries();
    EXPECT_EQ(std::count(entries.begin(), entries.end(), "MenuDidEndTrackingNotification Colours"), 2);
}

TEST_F(PopUpMenuTest, OnlyOneMenuTracksAtATime) {
    testsupport::runOnTestQueue([&] {
        MenuNotifications notifications;
        openFromTestQueue(notifications);
        auto other = Menu::make("Other");
        other->addItem(MenuItem::make("X"));
        EXPECT_EQ(other->popUp({0, 500}), nullptr);
        EXPECT_EQ(onMain([&] { return Menu::trackingMenu(); }), menu);
        menu->cancelTracking();
        EXPECT_TRUE(eventually([&] { return Menu::trackingMenu() == nullptr; }));
    });
}

}  // namespace
