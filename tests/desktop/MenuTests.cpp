// Pop-up and menu-bar menus that a person drives with the mouse and the
// keyboard while they track in a nested loop.
#include <map>

#include "JTK/desktop/MenuBar.h"
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

// Menu-bar menus with the mouse, File (New, Open) and Edit (Copy, Paste).
// A step posts an event at a title or a row below it ("outside": in the
// window), or ("tracks") checks which menu is open once the events are handled.
struct BarStep {
    enum Kind { down, drag, move, up, click, tracks } kind;
    std::string title;
    int row = -1;
};
struct BarCase {
    const char* label;
    std::vector<BarStep> steps;
    std::vector<std::string> chosen;
    friend void PrintTo(const BarCase& c, std::ostream* out) { *out << c.label; }
};
using S = BarStep;
const std::vector<BarCase> barCases = {
    {"pressDragRelease", {{S::down, "File"}, {S::tracks, "File"}, {S::drag, "File", 1}, {S::up, "File", 1}}, {"Open"}},
    {"clickTitleThenRow", {{S::click, "File"}, {S::tracks, "File"}, {S::click, "File", 0}}, {"New"}},
    {"clickOutsideCloses", {{S::click, "File"}, {S::tracks, "File"}, {S::click, "outside"}}, {}},
    {"clickTitleAgainCloses", {{S::click, "File"}, {S::tracks, "File"}, {S::click, "File"}}, {}},
    {"dragOffAndReleaseChoosesNothing", {{S::down, "File"}, {S::drag, "File", 0}, {S::drag, "outside"}, {S::up, "outside"}}, {}},
    {"dragOntoOtherTitle", {{S::down, "File"}, {S::drag, "Edit"}, {S::tracks, "Edit"}, {S::drag, "Edit", 1}, {S::up, "Edit", 1}}, {"Paste"}},
    {"moveOntoOtherTitle", {{S::click, "File"}, {S::move, "Edit"}, {S::tracks, "Edit"}, {S::click, "Edit", 0}}, {"Copy"}},
};

class MenuBar : public DesktopTest, public testing::WithParamInterface<BarCase> {};

TEST_P(MenuBar, opensTracksAndChoosesWithTheMouse) {
    makeWindow({100, 100, 400, 300});
    auto mainMenu = Menu::make("Main");
    std::map<std::string, std::shared_ptr<Menu>> menus{{"", nullptr}};
    std::vector<std::string> chosen;
    for (auto [title, items] : {std::pair{"File", std::vector<std::string>{"New", "Open"}}, {"Edit", {"Copy", "Paste"}}}) {
        auto item = MenuItem::make(title);
        item->setSubmenu(menus[title] = Menu::make(title));
        for (const auto& name : items) menus[title]->addItem(MenuItem::make(name, [&](MenuItem& i) { chosen.push_back(i.title()); }));
        mainMenu->addItem(item);
    }
    desktop::Application::shared()->setMainMenu(mainMenu);
    std::map<std::string, Rect> titles{{"outside", {300, 200, 0, 0}}};
    for (const auto& title : desktop::menuBarTitles(desktop::Application::shared()->name(), mainMenu.get())) titles[title.title] = title.frameOnScreen;
    auto tracking = [] { return onMain([] { return Menu::trackingMenu(); }); };
    onQueue([&] {
        for (const auto& step : GetParam().steps) {
            Rect t = titles.at(step.title);
            Point at = step.row < 0 ? Point{t.midX(), t.midY()} : Point{t.minX() + 30, t.minY() - Menu::rowHeight * (step.row + 0.5)};
            EventType types[] = {EventType::leftMouseDown, EventType::leftMouseDragged, EventType::mouseMoved, EventType::leftMouseUp};
            if (step.kind == S::click) pressAt(at);
            else if (step.kind == S::tracks) EXPECT_TRUE(settleEvents() && tracking() == menus.at(step.title)) << step.title;
            else postMouseAt(types[step.kind], at);
        }
        EXPECT_TRUE(settleEvents() && tracking() == nullptr) << "the menu is still open";
        if (tracking()) pressKey(53);  // Escape, so that the test can end
    });
    EXPECT_EQ(chosen, GetParam().chosen);
}

INSTANTIATE_TEST_SUITE_P(Gestures, MenuBar, testing::ValuesIn(barCases), [](const auto& info) { return std::string(info.param.label); });

}  // namespace
