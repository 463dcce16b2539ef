// Menus chosen by title: pop-up menus opened by a real click and tracking
// on the main thread, nested submenus, the captured current open menu and a
// main-menu shortcut typed with command.
#include "input/JTKEventPosting.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/MenuItem.h"
#include "JTK/desktop/controls/PopUpButton.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Notifications.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

class InputMenuTest : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        window = makeWindow({100, 100, 400, 300});
        menu = desktop::Menu::make("Choices");
        for (const char* title : {"One", "Two", "Three"}) menu->addItem(item(title));
        auto more = item("More");
        auto submenu = desktop::Menu::make("More");
        submenu->addItem(item("Two"));  // the top-level "Two" comes first
        submenu->addItem(item("Deep"));
        auto deeper = item("Deeper");
        auto innermost = desktop::Menu::make("Deeper");
        innermost->addItem(item("Nested"));
        innermost->addItem(item("Innermost"));
        deeper->setSubmenu(innermost);
        submenu->addItem(deeper);
        more->setSubmenu(submenu);
        menu->addItem(more);
        popUp = add<desktop::PopUpButton>(window->desktopContentView(), Rect{50, 200, 120, 24}, menu);
        popUp->selectItemWithTitle("One");
    }

    // An item that notes its title, and the menu that performed it, when chosen.
    std::shared_ptr<desktop::MenuItem> item(const std::string& title) {
        return desktop::MenuItem::make(title, [this](desktop::MenuItem& chosen) {
            chosenTitles.push_back(chosen.title());
            chosenFrom.push_back(chosen.desktopMenu());
        });
    }
    static bool anyMenuTracking() {
        return onMain([] { return desktop::Menu::trackingMenu() != nullptr; });
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::Menu> menu;
    std::shared_ptr<desktop::PopUpButton> popUp;
    // Main thread only.
    std::vector<std::string> chosenTitles;
    std::vector<std::shared_ptr<desktop::Menu>> chosenFrom;
};

TEST_F(InputMenuTest, WithNoOpenMenuTheElementIsClickedAndTheItemChosen) {
    onQueue([&] { JTKElement(popUp).clickMenuItem("Three", platform::eventFlags::alternate); });
    EXPECT_EQ(chosenTitles, (std::vector<std::string>{"Three"}));
    EXPECT_EQ(popUp->titleOfSelectedItem(), "Three");
    EXPECT_FALSE(anyMenuTracking()) << "the menu was closed";
    auto presses = posted({EventType::leftMouseDown});
    ASSERT_EQ(presses.size(), 1u);
    EXPECT_EQ(presses[0].event.flags, 0u) << "the first press carries the source's flags";
    auto releases = posted({EventType::leftMouseUp});
    ASSERT_EQ(releases.size(), 1u);
    EXPECT_EQ(releases[0].event.flags, platform::eventFlags::alternate);
    EXPECT_EQ(JTKElement::currentOpenMenu(), menu) << "the click's own capture saw the menu too";
}

TEST_F(InputMenuTest, AfterAClickThatOpenedTheMenuTheItemIsChosenWithoutAnotherClick) {
    onQueue([&] {
        JTKElement element = JTKElement(popUp);
        element.click();
        EXPECT_EQ(JTKElement::currentOpenMenu(), menu);
        EXPECT_TRUE(anyMenuTracking());
        element.clickMenuItem("Two");
    });
    EXPECT_EQ(posted({EventType::leftMouseDown}).size(), 1u);
    ASSERT_EQ(chosenTitles, (std::vector<std::string>{"Two"}));
    EXPECT_EQ(chosenFrom[0], menu) << "the top-level Two wins over the submenu's";
    EXPECT_FALSE(anyMenuTracking());
}

TEST_F(InputMenuTest, ANestedItemIsPerformedByItsOwnSubmenuAndAnUnknownTitleChoosesNothing) {
    onQueue([&] { JTKElement(popUp).clickMenuItem("Innermost"); });
    ASSERT_EQ(chosenTitles, (std::vector<std::string>{"Innermost"}));
    EXPECT_EQ(chosenFrom[0]->title(), "Deeper");
    EXPECT_FALSE(anyMenuTracking());
    JTKElement::setCurrentOpenMenu(nullptr);
    onQueue([&] { JTKElement(popUp).clickMenuItem("two"); });
    EXPECT_EQ(chosenTitles.size(), 1u) << "titles compare exactly";
    EXPECT_FALSE(anyMenuTracking()) << "the menu was closed";
    EXPECT_EQ(popUp->titleOfSelectedItem(), "One");
}

TEST_F(InputMenuTest, TheCapturedMenuServesLaterChoicesUntilAnotherOpens) {
    onQueue([&] {
        JTKElement(popUp).clickMenuItem("Deep");
        // The menu is closed, but it is still the current open menu: the next
        // choice is made from it without a click.
        JTKElement(window->contentView()).clickMenuItem("Nested");
    });
    EXPECT_EQ(chosenTitles, (std::vector<std::string>{"Deep", "Nested"}));
    EXPECT_EQ(posted({EventType::leftMouseDown}).size(), 1u);
}

TEST_F(InputMenuTest, AMenuOpeningAfterTheCaptureWindowIsNotCaptured) {
    auto late = desktop::Menu::make("Late");
    auto announce = [](platform::Value object) {
        platform::dispatchSyncMain(
            [&] { platform::defaultNotificationCenter().post(platform::menuDidBeginTrackingNotification, object); });
    };
    onQueue([&] {
        JTKElement element = JTKElement(window->contentView());
        element.caputureMenuIfOneOpens();
        JTKEventPosting::pause(150'000);
        announce(late);
        EXPECT_EQ(JTKElement::currentOpenMenu(), nullptr);
        element.caputureMenuIfOneOpens();
        announce(late);
        EXPECT_EQ(JTKElement::currentOpenMenu(), late);
        announce(popUp);
        EXPECT_EQ(JTKElement::currentOpenMenu(), nullptr) << "a non-menu object empties it";
    });
}

TEST_F(InputMenuTest, AMainMenuShortcutTypedWithCommandPerformsItsItem) {
    auto mainMenu = desktop::Menu::make("Main");
    auto file = desktop::MenuItem::make("File");
    auto fileMenu = desktop::Menu::make("File");
    fileMenu->addItem(desktop::MenuItem::make(
        "Save", [this](desktop::MenuItem& chosen) { chosenTitles.push_back(chosen.title()); }, "s"));
    file->setSubmenu(fileMenu);
    mainMenu->addItem(file);
    desktop::Application::shared()->setMainMenu(mainMenu);
    onQueue([&] {
        JTKTestSuite::typeKey(1, 0, false);  // s without command: not the shortcut
        JTKTestSuite::typeKey(1, platform::eventFlags::command, false);
    });
    EXPECT_EQ(chosenTitles, (std::vector<std::string>{"Save"}));
}

}  // namespace
