// The application-wide searches and the searches below an element, on real
// desktop windows, from a test queue as a test run makes them.
#include <gtest/gtest.h>

#include "ElementFixture.h"
#include "JTK/JTKClass.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ImageView.h"
#include "JTK/desktop/controls/Label.h"

using namespace jtk;

namespace {

using platform::Rect;

class SearchApplication : public ElementFixture {};

TEST_F(SearchApplication, contentViewOccursTwiceWithTheWindowElementLast) {
    auto window = makeWindow(0, 0, 400, 300);
    auto content = window->desktopContentView();
    name(content, "Main");
    add<desktop::Button>(content, Rect{10, 250, 80, 20}, "Top");
    add<desktop::Button>(content, Rect{10, 10, 80, 20}, "Bottom");
    onQueue([&] {
        auto all = JTKTestSuite::appElements();
        ASSERT_EQ(all.size(), 4u);
        EXPECT_EQ(all.front().view(), content);
        EXPECT_EQ(all.back().view(), content);
        auto main = JTKTestSuite::elements("Main");
        ASSERT_EQ(main.size(), 2u);
        EXPECT_TRUE(main[0] == main[1]);
        auto views = JTKTestSuite::elements("View");
        ASSERT_EQ(views.size(), 2u) << "the content view's type name matches, the buttons' does not";
        EXPECT_EQ(views[1].view(), content);
        EXPECT_EQ(JTKTestSuite::elements("Top").size(), 1u);
    });
}

TEST_F(SearchApplication, windowThatIsNotShownIsSearchedToo) {
    auto shown = makeWindow(0, 0, 400, 300, "Shown");
    auto hidden = makeWindow(500, 0, 400, 300, "Hidden", false);
    auto button = add<desktop::Button>(hidden->desktopContentView(), Rect{10, 10, 80, 20}, "Later");
    auto ordered = makeWindow(0, 400, 400, 300, "Ordered out");
    auto other = add<desktop::Button>(ordered->desktopContentView(), Rect{10, 10, 80, 20}, "Away");
    ordered->orderOut();
    onQueue([&] {
        auto found = JTKTestSuite::elements("Later");
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0].view(), button);
        EXPECT_EQ(JTKTestSuite::element("Away").view(), other);
        EXPECT_TRUE(JTKTestSuite::elementExists("Away"));
        EXPECT_EQ(JTKTestSuite::appWindows().size(), 3u);
        EXPECT_EQ(JTKTestSuite::appWindow("Ordered out").view(), ordered->desktopContentView());
    });
}

TEST_F(SearchApplication, hiddenViewsAndHiddenSubtreesAreNotFound) {
    auto window = makeWindow(0, 0, 400, 300);
    auto content = window->desktopContentView();
    auto hiddenButton = add<desktop::Button>(content, Rect{10, 10, 80, 20}, "Secret");
    hiddenButton->setHidden(true);
    auto box = add<desktop::Box>(content, Rect{100, 100, 200, 100}, "Group");
    add<desktop::Button>(box, Rect{10, 10, 80, 20}, "Inside");
    box->setHidden(true);
    onQueue([&] {
        EXPECT_TRUE(JTKTestSuite::elements("Secret").empty());
        EXPECT_FALSE(JTKTestSuite::elementExists("Secret"));
        EXPECT_TRUE(JTKTestSuite::elements("Inside").empty()) << "the subtree of a hidden view is not walked";
        EXPECT_TRUE(JTKTestSuite::elements("Button").empty());
        EXPECT_EQ(JTKTestSuite::appViews().size(), 1u);
    });
}

TEST_F(SearchApplication, emptyLookupMatchesVisibleViewsWithAnEmptyText) {
    auto window = makeWindow(0, 0, 400, 300);
    auto content = window->desktopContentView();
    auto plain = add<desktop::View>(content, Rect{10, 200, 80, 20});
    // Name, title and value all set: nothing is empty.
    auto full = add<desktop::Button>(content, Rect{10, 100, 80, 20}, "Titled");
    name(full, "Named");
    answer(full, "hbViewValue", 1);
    add<desktop::View>(content, Rect{10, 10, 80, 20})->setHidden(true);
    onQueue([&] {
        auto found = JTKTestSuite::elements("");
        ASSERT_EQ(found.size(), 3u);
        EXPECT_EQ(found[0].view(), content);
        EXPECT_EQ(found[1].view(), plain);
        EXPECT_EQ(found[2].view(), content);
    });
}

TEST_F(SearchApplication, appWindowTakesTheFirstOfTwoWithOneTitle) {
    auto first = makeWindow(0, 0, 400, 300, "Document");
    auto second = makeWindow(0, 400, 400, 300, "Document");
    auto accented = makeWindow(500, 0, 400, 300, "Caf\u00e9");
    onQueue([&] {
        EXPECT_EQ(JTKTestSuite::appWindow("Document").view(), first->desktopContentView());
        EXPECT_EQ(JTKTestSuite::appWindow("Cafe\u0301").view(), accented->desktopContentView());
        auto windows = JTKTestSuite::appWindows();
        ASSERT_EQ(windows.size(), 3u);
        EXPECT_EQ(windows[1].view(), second->desktopContentView());
    });
}

TEST_F(SearchApplication, keyWindowFallsBackToTheFirstWindow) {
    auto first = makeWindow(0, 0, 400, 300, "First", false);
    auto second = makeWindow(0, 400, 400, 300, "Second", false);
    onQueue([&] { EXPECT_EQ(JTKTestSuite::keyWindow().view(), first->desktopContentView()); });
    second->makeKeyAndOrderFront();
    onQueue([&] { EXPECT_EQ(JTKTestSuite::keyWindow().view(), second->desktopContentView()); });
}

TEST_F(SearchApplication, elementsWhereKeepsBoxesHoldingAMatchIncludingTheirOwnTitle) {
    auto window = makeWindow(0, 0, 600, 400);
    auto content = window->desktopContentView();
    auto options = add<desktop::Box>(content, Rect{10, 200, 250, 150}, "Options");
    add<desktop::Button>(options, Rect{10, 10, 80, 20}, "Apply");
    auto colours = add<desktop::Box>(content, Rect{300, 200, 250, 150}, "Colours");
    add<desktop::Button>(colours, Rect{10, 10, 80, 20}, "Red");
    auto hiding = add<desktop::Box>(content, Rect{10, 10, 250, 150}, "More");
    add<desktop::Button>(hiding, Rect{10, 10, 80, 20}, "Apply")->setHidden(true);
    onQueue([&] {
        auto byTitle = JTKTestSuite::elementsWhere(jtkClass<desktop::Box>(), "Options");
        ASSERT_EQ(byTitle.size(), 1u);
        EXPECT_EQ(byTitle[0].view(), options);
        auto byContent = JTKTestSuite::elementsWhere(jtkClass<desktop::Box>(), "Apply");
        ASSERT_EQ(byContent.size(), 1u);
        EXPECT_EQ(byContent[0].view(), options);
        EXPECT_EQ(JTKTestSuite::elementsWhere(jtkClass<desktop::Box>(), "Button").size(), 2u)
            << "the box whose only button is hidden holds no match";
        EXPECT_TRUE(JTKTestSuite::elementsWhere(jtkClass<desktop::Button>(), "Options").empty());
    });
}

TEST_F(SearchApplication, classArgumentNarrowsTheLookup) {
    auto window = makeWindow(0, 0, 400, 300);
    auto content = window->desktopContentView();
    auto label = add<desktop::Label>(content, Rect{10, 250, 80, 20}, "OK");
    auto button = add<desktop::Button>(content, Rect{10, 10, 80, 20}, "OK");
    onQueue([&] {
        EXPECT_EQ(JTKTestSuite::element("OK").view(), label) << "reading order: the label is higher";
        EXPECT_EQ(JTKTestSuite::element("OK", std::nullopt).view(), label);
        EXPECT_EQ(JTKTestSuite::element("OK", jtkClass<desktop::Button>()).view(), button);
        auto buttons = JTKTestSuite::elements("OK", jtkClass<desktop::Button>());
        ASSERT_EQ(buttons.size(), 1u);
        EXPECT_EQ(buttons[0].view(), button);
        EXPECT_EQ(JTKTestSuite::elements("OK", std::nullopt).size(), 2u);
        EXPECT_FALSE(JTKTestSuite::elementExists("OK", jtkClass<desktop::ImageView>()));
        EXPECT_TRUE(JTKTestSuite::elementExists("OK", jtkClass<desktop::Label>()));
    });
}

TEST_F(SearchApplication, queueAndMainThreadGiveTheSameAnswer) {
    auto window = makeWindow(0, 0, 600, 400);
    auto content = window->desktopContentView();
    for (int row = 0; row < 5; ++row)
        for (int column = 0; column < 4; ++column)
            add<desktop::Button>(content, Rect{10.0 + 120 * column, 10.0 + 60 * row + column * 7, 100, 20}, "Cell");
    auto second = makeWindow(100, 100, 300, 200, "Second");
    add<desktop::Button>(second->desktopContentView(), Rect{10, 10, 100, 20}, "Cell");
    std::vector<JTKElement> fromQueue, views;
    onQueue([&] {
        fromQueue = JTKTestSuite::elements("Cell");
        views = JTKTestSuite::appElements();
    });
    auto onMain = JTKTestSuite::elements("Cell");
    ASSERT_EQ(fromQueue.size(), 21u);
    EXPECT_EQ(descriptions(onMain), descriptions(fromQueue));
    EXPECT_EQ(onMain, fromQueue);
    EXPECT_EQ(descriptions(JTKTestSuite::appElements()), descriptions(views));
}

class SearchBelowElement : public ElementFixture {
protected:
    void SetUp() override {
        ElementFixture::SetUp();
        window = makeWindow(0, 0, 600, 400);
        content = window->desktopContentView();
        box = add<desktop::Box>(content, Rect{10, 10, 300, 300}, "Options");
        name(box, "Panel");
        apply = add<desktop::Button>(box, Rect{10, 250, 80, 20}, "Apply");
        inner = add<desktop::Box>(box, Rect{10, 10, 200, 200}, "Inner");
        cancel = add<desktop::Button>(inner, Rect{10, 10, 80, 20}, "Cancel");
        // Walk order, not reading order: this button is higher but comes last.
        late = add<desktop::Button>(box, Rect{100, 280, 80, 20}, "Apply");
    }
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::View> content;
    std::shared_ptr<desktop::Box> box, inner;
    std::shared_ptr<desktop::Button> apply, cancel, late;
};

TEST_F(SearchBelowElement, subElementsInWalkOrderStartingWithTheOwnView) {
    onQueue([&] {
        JTKElement panel(box);
        auto applies = panel.subElements("Apply");
        ASSERT_EQ(applies.size(), 2u);
        EXPECT_EQ(applies[0].view(), apply);
        EXPECT_EQ(applies[1].view(), late);
        EXPECT_EQ(panel.subElement("Apply").view(), apply);
        EXPECT_EQ(panel.subElement("Panel").view(), box) << "the element's own view is searched first";
        EXPECT_EQ(panel.subElement("Cancel").view(), cancel);
        EXPECT_TRUE(JTKElement(inner).subElements("Apply").empty());
        EXPECT_TRUE(panel.subElements("Nothing").empty());
    });
}

TEST_F(SearchBelowElement, typeSearchesUseTheTypeNameRule) {
    onQueue([&] {
        JTKElement panel(box);
        auto buttons = panel.subElementsWithType(jtkClass<desktop::Button>());
        ASSERT_EQ(buttons.size(), 3u);
        EXPECT_EQ(buttons[0].view(), apply);
        EXPECT_EQ(buttons[1].view(), cancel);
        EXPECT_EQ(buttons[2].view(), late);
        EXPECT_EQ(panel.subElementWithType(jtkClass<desktop::Box>()).view(), box);
        EXPECT_EQ(panel.subElementsWithType(std::nullopt).size(), 5u);
        EXPECT_TRUE(panel.subElementsWithType(jtkClass<desktop::View>()).empty());
    });
}

TEST_F(SearchBelowElement, hiddenOrDetachedViewsHaveNoSubElements) {
    inner->setHidden(true);
    auto loose = std::make_shared<desktop::Button>(Rect{0, 0, 10, 10}, "Loose");
    onQueue([&] {
        EXPECT_TRUE(JTKElement(inner).subElements("Cancel").empty());
        EXPECT_TRUE(JTKElement(inner).subElementsWithType(std::nullopt).empty());
        EXPECT_TRUE(JTKElement(box).subElements("Cancel").empty());
        EXPECT_TRUE(JTKElement(loose).subElements("Loose").empty()) << "a view without a superview is not walked";
        EXPECT_TRUE(JTKElement(loose).matchesLookup("Loose"));
    });
}

}  // namespace
