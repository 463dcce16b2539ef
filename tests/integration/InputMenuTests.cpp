// Menus chosen by title: pop-up menus opened by a real click and tracking
// on the main thread, nested submenus, the captured current open menu and a
// main-menu shortcut typed with command.
#include "input/JTKEventPosting.h"
#include "JTK/desktop/MenuItem.h"
#include "JTK/platform/Notifications.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

class InputMenuTest : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        window = makeWindow({100, 100, 400, 300});
        // Choices: One, Two, Three, More > (Two, Deeper > (Nested, Innermost)).
        auto menuOf = [](const char* title, std::vector<std::shared_ptr<desktop::MenuItem>> items) {
            auto made = desktop::Menu::make(title);
            for (auto& entry : items) made->addItem(entry);
            return made;
        };
        auto withSubmenu = [this](const char* title, std::shared_ptr<desktop::Menu> submenu) {
            auto made = item(title);
            made->setSubmenu(submenu);
            return made;
        };
        menu = menuOf("Choices", {item("One"), item("Two"), item("Three"),
                                  withSubmenu("More", menuOf("More", {item("Two"), withSubmenu("Deeper", menuOf("Deeper",
                                                                     {item("Nested"), item("Innermost")}))}))});
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

TEST_F(InputMenuTest, WithNoOpenMenuTheElementIsClickedAndTheItemChosenANestedOneByItsSubmenu) {
    onQueue([&] { JTKElement(popUp).clickMenuItem("Three", platform::eventFlags::alternate); });
    EXPECT_FALSE(anyMenuTracking()) << "the menu was closed";
    auto presses = posted({EventType::leftMouseDown});
    ASSERT_EQ(presses.size(), 1u);
    EXPECT_EQ(presses[0].event.flags, 0u) << "the first press carries the source's flags";
    auto releases = posted({EventType::leftMouseUp});
    ASSERT_EQ(releases.size(), 1u);
    EXPECT_EQ(releases[0].event.flags, platform::eventFlags::alternate);
    EXPECT_EQ(JTKElement::currentOpenMenu(), nullptr) << "the choice closed the menu it was made in";
    onQueue([&] { JTKElement(popUp).clickMenuItem("Innermost"); });
    EXPECT_FALSE(anyMenuTracking()) << "the menu was closed";
    ASSERT_EQ(chosenTitles, (std::vector<std::string>{"Three", "Innermost"}));
    EXPECT_EQ(chosenFrom[1]->title(), "Deeper");
    EXPECT_EQ(popUp->titleOfSelectedItem(), "Three") << "chosen on top, and not changed by a nested title";
}

TEST_F(InputMenuTest, AfterAClickThatOpenedTheMenuTheChoiceIsMadeThereAndALaterOneOpensItAfresh) {
    onQueue([&] {
        JTKElement(popUp).click();
        EXPECT_EQ(JTKElement::currentOpenMenu(), menu);
        EXPECT_TRUE(anyMenuTracking());
        JTKElement(popUp).clickMenuItem("Two");
        EXPECT_EQ(posted({EventType::leftMouseDown}).size(), 1u) << "no second click";
        JTKElement(popUp).clickMenuItem("Nested");
    });
    EXPECT_EQ(posted({EventType::leftMouseDown}).size(), 2u) << "the closed menu was opened again";
    EXPECT_EQ(chosenTitles, (std::vector<std::string>{"Two", "Nested"}));
    EXPECT_EQ(chosenFrom.at(0), menu) << "the top-level Two wins over the submenu's";
    EXPECT_FALSE(anyMenuTracking());
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

}  // namespace
