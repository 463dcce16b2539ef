// View geometry: conversions to window and screen coordinates, scrolled clip
// views, visible rectangles, hidden views and hit testing.
#include <gtest/gtest.h>

#include <limits>

#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/Label.h"
#include "JTK/desktop/controls/ScrollView.h"
#include "tests/desktop/ViewKitTestSupport.h"

using namespace jtk;

using desktop::View;
using platform::Point;
using platform::Rect;

using ViewKitGeometry = ViewKitTest;

TEST_F(ViewKitGeometry, AButtonInTheContentViewConvertsToWindowAndScreen) {
    auto window = shownWindow({200, 500, 300, 200});
    auto button = std::make_shared<desktop::Button>(Rect{20, 30, 100, 40}, "OK");
    window->desktopContentView()->addSubview(button);

    Rect inWindow = button->convertRectToWindow(button->bounds());
    EXPECT_EQ(inWindow, (Rect{20, 30, 100, 40}));
    Rect onScreen = window->convertRectToScreen(inWindow);
    EXPECT_EQ(onScreen, (Rect{220, 530, 100, 40}));
    EXPECT_EQ(onScreen.midX(), 270);
    EXPECT_EQ(onScreen.midY(), 550);
    // The frame adds the title bar above the content area.
    EXPECT_EQ(window->frame(), (Rect{200, 500, 300, 200 + desktop::Window::titleBarHeight}));
    EXPECT_EQ(window->convertPointFromScreen(window->convertPointToScreen({3, 4})), (Point{3, 4}));
}

TEST_F(ViewKitGeometry, NestedViewsAddTheirOriginsAndConvertBackExactly) {
    auto window = shownWindow({0, 0, 400, 300});
    auto box = std::make_shared<desktop::Box>(Rect{10, 20, 200, 100}, "Group");
    auto inner = std::make_shared<View>(Rect{5, 6, 80, 50});
    auto label = std::make_shared<desktop::Label>(Rect{1, 2, 30, 10}, "x");
    window->desktopContentView()->addSubview(box);
    box->addSubview(inner);
    inner->addSubview(label);

    EXPECT_EQ(label->convertRectToWindow(label->bounds()), (Rect{16, 28, 30, 10}));
    EXPECT_EQ(label->convertPointFromWindow({16, 28}), (Point{0, 0}));
    EXPECT_EQ(inner->convertPointFromWindow(label->convertPointToWindow({7, 3})), (Point{8, 5}));
    EXPECT_EQ(label->window(), window);
    EXPECT_EQ(label->desktopSuperview(), inner);

    // Removed from its window, a view has no window and no visible part.
    inner->removeFromSuperview();
    EXPECT_EQ(label->window(), nullptr);
    EXPECT_EQ(label->visibleRect(), Rect{});
    EXPECT_TRUE(box->desktopSubviews().empty());
}

TEST_F(ViewKitGeometry, TheFrameViewIsTheRootAndTheContentViewItsOnlySubview) {
    auto window = shownWindow({50, 60, 320, 240});
    auto frameView = window->desktopFrameView();
    EXPECT_EQ(frameView->superview(), nullptr);
    ASSERT_EQ(frameView->subviews().size(), 1u);
    EXPECT_EQ(frameView->subviews()[0], window->contentView());
    EXPECT_EQ(frameView->frame(), (Rect{0, 0, 320, 240 + desktop::Window::titleBarHeight}));
    EXPECT_EQ(window->contentView()->frame(), (Rect{0, 0, 320, 240}));
    EXPECT_EQ(frameView->className(), "FrameView");

    auto replacement = std::make_shared<desktop::Box>();
    window->setContentView(replacement);
    EXPECT_EQ(window->contentView(), replacement);
    EXPECT_EQ(replacement->frame(), (Rect{0, 0, 320, 240}));
    ASSERT_EQ(frameView->subviews().size(), 1u);
    EXPECT_EQ(frameView->subviews()[0], replacement);
}

TEST_F(ViewKitGeometry, AddSubviewRefusesCyclesAndMovesAViewBetweenParents) {
    auto a = std::make_shared<View>(Rect{0, 0, 10, 10});
    auto b = std::make_shared<View>(Rect{0, 0, 10, 10});
    auto c = std::make_shared<View>(Rect{0, 0, 10, 10});
    EXPECT_TRUE(a->addSubview(b));
    EXPECT_TRUE(b->addSubview(c));
    EXPECT_FALSE(c->addSubview(a));
    EXPECT_FALSE(a->addSubview(a));
    EXPECT_FALSE(a->addSubview(nullptr));
    EXPECT_EQ(a->superview(), nullptr);

    EXPECT_TRUE(a->addSubview(c));  // moves c from b to a, after b
    EXPECT_TRUE(b->desktopSubviews().empty());
    ASSERT_EQ(a->desktopSubviews().size(), 2u);
    EXPECT_EQ(a->desktopSubviews()[1], c);
    EXPECT_TRUE(c->isDescendantOf(*a));
    EXPECT_FALSE(c->isDescendantOf(*b));
}

TEST_F(ViewKitGeometry, AChildOutlivingItsSuperviewHasNoSuperview) {
    auto child = std::make_shared<View>(Rect{0, 0, 10, 10});
    {
        auto parent = std::make_shared<View>(Rect{5, 5, 50, 50});
        parent->addSubview(child);
        EXPECT_EQ(child->convertPointToWindow({0, 0}), (Point{5, 5}));
    }
    EXPECT_EQ(child->superview(), nullptr);
    EXPECT_EQ(child->convertPointToWindow({0, 0}), (Point{0, 0}));
}

class ScrolledDocument : public ViewKitTest {
protected:
    void SetUp() override {
        ViewKitTest::SetUp();
        window = shownWindow({100, 100, 300, 200});
        scrollView = std::make_shared<desktop::ScrollView>(Rect{10, 10, 100, 100});
        window->desktopContentView()->addSubview(scrollView);
        document = std::make_shared<View>(Rect{0, 0, 100, 400});
        scrollView->setDocumentView(document);
        for (int i = 0; i < 10; ++i) {
            rows.push_back(std::make_shared<View>(Rect{0, 40.0 * i, 100, 40}));
            document->addSubview(rows.back());
        }
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::ScrollView> scrollView;
    std::shared_ptr<View> document;
    std::vector<std::shared_ptr<View>> rows;
};

TEST_F(ScrolledDocument, ScrollingShiftsTheDocumentInTheWindowAndClipsVisibleRects) {
    EXPECT_TRUE(scrollView->isScrollView());
    EXPECT_EQ(scrollView->contentSize(), (platform::Size{100, 100}));
    EXPECT_EQ(rows[2]->visibleRect(), (Rect{0, 0, 100, 20}));
    EXPECT_EQ(rows[5]->visibleRect(), Rect{});

    scrollView->scroll({0, 150});
    EXPECT_EQ(scrollView->contentView()->bounds(), (Rect{0, 150, 100, 100}));
    // Row 5 spans 200..240 in the document; the clip view shows 150..250.
    EXPECT_EQ(rows[5]->convertRectToWindow(rows[5]->bounds()), (Rect{10, 60, 100, 40}));
    EXPECT_EQ(rows[5]->visibleRect(), (Rect{0, 0, 100, 40}));
    EXPECT_EQ(rows[6]->visibleRect(), (Rect{0, 0, 100, 10}));
    EXPECT_EQ(rows[3]->visibleRect(), (Rect{0, 30, 100, 10}));
    EXPECT_EQ(rows[0]->visibleRect(), Rect{});
    EXPECT_EQ(document->visibleRect(), (Rect{0, 150, 100, 100}));
    EXPECT_EQ(scrollView->documentVisibleRect(), (Rect{0, 150, 100, 100}));
}

TEST_F(ScrolledDocument, ScrollingStaysInsideTheDocument) {
    scrollView->scroll({-50, 1000});
    EXPECT_EQ(scrollView->contentView()->bounds().origin, (Point{0, 300}));
    scrollView->scroll({0, -5});
    EXPECT_EQ(scrollView->contentView()->bounds().origin, (Point{0, 0}));
    scrollView->scroll({0, std::numeric_limits<double>::quiet_NaN()});
    EXPECT_EQ(scrollView->contentView()->bounds().origin, (Point{0, 0}));
}

TEST_F(ScrolledDocument, ScrollToVisibleMovesAsLittleAsNeeded) {
    EXPECT_TRUE(scrollView->scrollToVisible(*rows[7]));  // 280..320 must show at the top
    EXPECT_EQ(scrollView->contentView()->bounds().origin, (Point{0, 220}));
    EXPECT_EQ(rows[7]->visibleRect(), rows[7]->bounds());
    EXPECT_FALSE(scrollView->scrollToVisible(*rows[6]));  // already in view
    EXPECT_TRUE(scrollView->scrollToVisible(*rows[1]));   // 40..80 must show at the bottom
    EXPECT_EQ(scrollView->contentView()->bounds().origin, (Point{0, 40}));

    auto outsider = std::make_shared<View>(Rect{0, 0, 10, 10});
    window->desktopContentView()->addSubview(outsider);
    EXPECT_FALSE(scrollView->scrollToVisible(*outsider));
}

TEST_F(ScrolledDocument, HitTestingFollowsTheScrolledDocument) {
    auto frameView = window->desktopFrameView();
    EXPECT_EQ(frameView->hitTest({15, 15}), rows[0].get());
    scrollView->scroll({0, 150});
    // Window point (15, 15) is document point (5, 155): row 3.
    EXPECT_EQ(frameView->hitTest({15, 15}), rows[3].get());
    // Outside the clip view the document is not hit even where it would be.
    EXPECT_EQ(frameView->hitTest({15, 115}), window->desktopContentView().get());
}

TEST_F(ViewKitGeometry, VisibleRectIsClippedByTheWindowsContentArea) {
    auto window = shownWindow({0, 0, 300, 200});
    auto view = std::make_shared<View>(Rect{250, 180, 100, 40});
    window->desktopContentView()->addSubview(view);
    EXPECT_EQ(view->visibleRect(), (Rect{0, 0, 50, 20}));
    view->setFrameOrigin({400, 10});
    EXPECT_EQ(view->visibleRect(), Rect{});
    auto loose = std::make_shared<View>(Rect{0, 0, 10, 10});
    EXPECT_EQ(loose->visibleRect(), Rect{});
}

TEST_F(ViewKitGeometry, HitTestTakesTheLastVisibleSubviewAndTheDeepestView) {
    auto root = std::make_shared<View>(Rect{0, 0, 200, 200});
    auto below = std::make_shared<View>(Rect{10, 10, 100, 100});
    auto above = std::make_shared<View>(Rect{50, 50, 100, 100});
    auto inner = std::make_shared<View>(Rect{10, 10, 20, 20});
    root->addSubview(below);
    root->addSubview(above);
    above->addSubview(inner);

    EXPECT_EQ(root->hitTest({55, 55}), above.get());
    EXPECT_EQ(root->hitTest({65, 65}), inner.get());
    EXPECT_EQ(root->hitTest({20, 20}), below.get());
    EXPECT_EQ(root->hitTest({5, 5}), root.get());
    // Maximum edges are outside.
    EXPECT_EQ(root->hitTest({200, 10}), nullptr);
    EXPECT_EQ(root->hitTest({80, 80}), above.get());
    EXPECT_EQ(root->hitTest({79.9, 79.9}), inner.get());

    above->setHidden(true);
    EXPECT_EQ(root->hitTest({65, 65}), below.get());
    EXPECT_TRUE(inner->isHiddenOrHasHiddenAncestor());
    EXPECT_FALSE(inner->isHidden());
    root->setHidden(true);
    EXPECT_EQ(root->hitTest({20, 20}), nullptr);
}
