// The recorder's status item (a small window of its own at the top right
// whose button is a StatusBarButton and runs the action on a click) and the
// comparison window loaded from its interface file.
#include <gtest/gtest.h>

#include "GtkMenusFixture.h"
#include "GtkWrappers.h"
#include "JTK/platform/Interface.h"
#include "JTK/platform/StatusBar.h"

namespace {

using namespace gtkmenus;

TEST(GtkStatusItemTest, itemIsAButtonAtTheTopRightThatRunsItsAction) {
    auto item = jtk::platform::statusItemWithLength(jtk::platform::variableStatusItemLength);
    ASSERT_TRUE(item);
    int chosen = 0;
    item->setAction([&] { ++chosen; });
    item->setTitle("Record UX Test");
    EXPECT_EQ(item->title(), "Record UX Test");
    auto button = item->button();
    ASSERT_TRUE(button);
    EXPECT_EQ(button->className(), jtk::platform::statusBarButtonClassName);
    auto screen = jtk::platform::screens().front().frame;
    // 20 points and 7.5 per character, 8 points from the right edge, 22 high at the top.
    jtk::platform::Rect expected{screen.maxX() - 8 - 125, screen.maxY() - 22, 125, 22};
    ASSERT_TRUE(turnUntil([&] { return button->window() && button->window()->frame() == expected; }))
        << "the item's window is at " << button->window()->frame().origin.x << ", " << button->window()->frame().origin.y;
    click(eventPointOf(*button));
    EXPECT_EQ(chosen, 1);
}

struct Owner : jtk::platform::InterfaceOwner {
    std::vector<std::string> outlets, actions;
    void connectOutlet(const std::string& outlet, const std::shared_ptr<jtk::platform::View>& view) override {
        if (view) outlets.push_back(outlet);
    }
    void performAction(const std::string& action, const std::shared_ptr<jtk::platform::View>&) override {
        actions.push_back(action);
    }
};

TEST(GtkInterfaceTest, theComparisonWindowLoadsHiddenAndSendsItsButtonsActions) {
    auto owner = std::make_shared<Owner>();
    auto loaded = jtk::platform::loadInterface("JTKComparisonWindow", owner);
    ASSERT_TRUE(loaded.window) << loaded.error;
    EXPECT_FALSE(loaded.window->isVisible());
    EXPECT_EQ(loaded.window->title(), "Screenshot Comparison");
    EXPECT_EQ(owner->outlets, (std::vector<std::string>{"testName", "currentImage"}));
    loaded.window->makeKeyAndOrderFront();
    ASSERT_TRUE(turnUntil([&] { return loaded.window->isVisible(); }));
    auto content = loaded.window->contentView();
    std::shared_ptr<jtk::platform::View> accept;
    std::function<void(const std::shared_ptr<jtk::platform::View>&)> find = [&](const auto& view) {
        if (view->respondsToSelector("title") && view->performSelector("title").text() &&
            *view->performSelector("title").text() == "Accept")
            accept = view;
        for (const auto& subview : view->subviews()) find(subview);
    };
    find(content);
    ASSERT_TRUE(accept);
    click(eventPointOf(*accept));
    EXPECT_EQ(owner->actions, std::vector<std::string>{"AcceptImage:"});
    loaded.window->close();
}

TEST(GtkInterfaceTest, aMissingFileLoadsNothingAndSaysWhy) {
    auto loaded = jtk::platform::loadInterface("NoSuchInterface", std::make_shared<Owner>());
    EXPECT_FALSE(loaded.window);
    EXPECT_NE(loaded.error.find("NoSuchInterface"), std::string::npos) << loaded.error;
}

}  // namespace
