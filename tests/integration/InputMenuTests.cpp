// Menus chosen by title: pop-up menus opened by a real click and tracking
// on the main thread, nested submenus, the captured current open menu, a
// main-menu shortcut typed with command, and openMenu's time-out.
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "InputFixture.h"
#include "input/JTKEventPosting.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/MenuItem.h"
#include "JTK/desktop/controls/PopUpButton.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Notifications.h"

using namespace jtk;

namespace {

using platform::EventType;

class InputMenuTest : public InputFixture {
protected:
    void SetUp() override {
        InputFixture::SetUp();
        window = makeWindow(100, 100, 400, 300);
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
        popUp = add<desktop::PopUpButton>(window->desktopContentView(), platform::Rect{50, 200, 120, 24}, menu);
        popUp->selectItemWithTitle("One");
    }

    // An item that notes its title, and the menu that performed it, when chosen.
    std::shared_ptr<desktop::MenuItem> item(const std::string& title) {
        return desktop::MenuItem::make(title, [this](desktop::MenuItem& chosen) {
            chosenTitles.push_back(chosen.title());
            chosenFrom.push_back(chosen.desktopMenu());
        });
    }
    bool anyMenuTracking() {
        return jtkOnMainThread([] { return desktop::Menu::trackingMenu() != nullptr; });
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::Menu> menu;
    std::shared_ptr<desktop::PopUpButton> popUp;
    // Main thread only.
    std::vector<std::string> chosenTitles;
    std::vector<std::shared_ptr<desktop::Menu>> chosenFrom;
};

TEST_F(InputMenuTest, WithNoOpenMenuTheElementIsClickedAndTheItemChosen) {
    onQueue([&] { elementOf(popUp).clickMenuItem("Three", platform::eventFlags::alternate); });
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
        JTKElement element = elementOf(popUp);
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

TEST_F(InputMenuTest, ANestedItemIsPerformedByItsOwnSubmenuAndTheTopMenuCloses) {
    onQueue([&] { elementOf(popUp).clickMenuItem("Innermost"); });
    ASSERT_EQ(chosenTitles, (std::vector<std::string>{"Innermost"}));
    EXPECT_EQ(chosenFrom[0]->title(), "Deeper");
    EXPECT_FALSE(anyMenuTracking());
}

TEST_F(InputMenuTest, TheCapturedMenuServesLaterChoicesUntilAnotherOpens) {
    onQueue([&] {
        elementOf(popUp).clickMenuItem("Deep");
        // The menu is closed, but it is still the current open menu: the next
        // choice is made from it without a click.
        elementOf(window->contentView()).clickMenuItem("Nested");
    });
    EXPECT_EQ(chosenTitles, (std::vector<std::string>{"Deep", "Nested"}));
    EXPECT_EQ(posted({EventType::leftMouseDown}).size(), 1u);
}

TEST_F(InputMenuTest, AnUnknownTitleChoosesNothingAndClosesTheMenu) {
    onQueue([&] { elementOf(popUp).clickMenuItem("two"); });
    EXPECT_TRUE(chosenTitles.empty()) << "titles compare exactly";
    EXPECT_FALSE(anyMenuTracking());
    EXPECT_EQ(popUp->titleOfSelectedItem(), "One");
}

TEST_F(InputMenuTest, AMenuOpeningAfterTheCaptureWindowIsNotCaptured) {
    auto late = desktop::Menu::make("Late");
    auto announce = [](platform::Value object) {
        platform::dispatchSyncMain(
            [&] { platform::defaultNotificationCenter().post(platform::menuDidBeginTrackingNotification, object); });
    };
    onQueue([&] {
        JTKElement element = elementOf(window->contentView());
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
    auto app = desktop::Application::shared();
    auto previous = app->mainMenu();
    app->setMainMenu(mainMenu);
    onQueue([&] {
        JTKTestSuite::typeKey(1, 0, false);  // s without command: not the shortcut
        JTKTestSuite::typeKey(1, platform::eventFlags::command, false);
    });
    app->setMainMenu(previous);
    EXPECT_EQ(chosenTitles, (std::vector<std::string>{"Save"}));
}

// openMenu on a view that opens no menu ends the run after 5 seconds with a
// message, having put the user's data back.
TEST(InputOpenMenuTimeout, EndsTheRunWithAMessageAndRestoresTheData) {
    namespace fs = std::filesystem;
    const char* bin = std::getenv("JTK_BIN_DIR");
    ASSERT_NE(bin, nullptr) << "run through ctest, or set JTK_BIN_DIR";
    fs::path home = fs::temp_directory_path() / ("jtk-input-openmenu-" + std::to_string(::getpid()));
    fs::remove_all(home);
    fs::create_directories(home / "data" / "InputOpenMenuTimeout");
    std::ofstream(home / "data" / "InputOpenMenuTimeout" / "user.txt") << "the user's own";
    fs::create_directories(home / "testdata");
    std::ofstream(home / "testdata" / "test.txt") << "test data";
    std::string command = "XDG_DATA_HOME='" + (home / "data").string() + "' '" +
                          (fs::path(bin) / "InputOpenMenuTimeout").string() + "' '" + (home / "testdata").string() +
                          "' 2>&1";
    FILE* pipe = ::popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string output;
    char buffer[512];
    while (size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, n);
    int status = ::pclose(pipe);
    ASSERT_TRUE(WIFEXITED(status)) << output;
    EXPECT_EQ(WEXITSTATUS(status), 1) << output;
    EXPECT_NE(output.find("test data installed"), std::string::npos) << output;
    EXPECT_NE(output.find("\nJTK: no menu opened within 5 seconds after clicking Plain"), std::string::npos) << output;
    EXPECT_EQ(output.find("returned"), std::string::npos) << output;
    // The user's folder is back, the test data and the aside folder are gone.
    EXPECT_TRUE(fs::exists(home / "data" / "InputOpenMenuTimeout" / "user.txt"));
    EXPECT_FALSE(fs::exists(home / "data" / "InputOpenMenuTimeout" / "test.txt"));
    EXPECT_FALSE(fs::exists(home / "data" / "InputOpenMenuTimeout_Temp"));
    fs::remove_all(home);
}

}  // namespace
