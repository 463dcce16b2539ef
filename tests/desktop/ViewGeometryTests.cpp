// View geometry and the view tree: conversions to window and screen
// coordinates, scrolled clip views, visible rectangles, hit testing, and a
// button that leaves the tree while it is clicked.
#include <limits>

#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using desktop::View;
using DesktopGeometry = DesktopTest;

TEST_F(DesktopGeometry, aScrolledDocumentShiftsInTheWindowIsClippedAndHitThereOnly) {
    auto window = makeWindow({100, 100, 300, 200});
    auto scrollView = add<desktop::ScrollView>(window->desktopContentView(), Rect{10, 10, 100, 100});
    auto document = std::make_shared<View>(Rect{0, 0, 100, 400});
    scrollView->setDocumentView(document);
    std::vector<std::shared_ptr<View>> rows;
    for (int i = 0; i < 10; ++i) rows.push_back(add<View>(document, Rect{0, 40.0 * i, 100, 40}));
    EXPECT_EQ(rows[2]->visibleRect(), (Rect{0, 0, 100, 20}));
    scrollView->scroll({0, 150});  // the clip view shows 150..250 of the document
    EXPECT_EQ(rows[5]->convertRectToWindow(rows[5]->bounds()), (Rect{10, 60, 100, 40}));
    EXPECT_EQ(rows[6]->visibleRect(), (Rect{0, 0, 100, 10}));
    EXPECT_EQ(rows[3]->visibleRect(), (Rect{0, 30, 100, 10}));
    EXPECT_EQ(rows[0]->visibleRect(), Rect{});
    EXPECT_EQ(window->desktopFrameView()->hitTest({15, 15}), rows[3].get());
    EXPECT_EQ(window->desktopFrameView()->hitTest({15, 115}), window->desktopContentView().get()) << "outside the clip";
    scrollView->scroll({-50, 1000});
    EXPECT_EQ(scrollView->contentView()->bounds().origin, (Point{0, 300})) << "scrolling stays in the document";
    scrollView->scroll({0, std::numeric_limits<double>::quiet_NaN()});
    EXPECT_EQ(scrollView->contentView()->bounds().origin, (Point{0, 300}));
    // Scrolling to a view moves as little as needed.
    EXPECT_TRUE(scrollView->scrollToVisible(*rows[1]));
    EXPECT_EQ(scrollView->contentView()->bounds().origin, (Point{0, 40}));
    EXPECT_FALSE(scrollView->scrollToVisible(*rows[2]));
    EXPECT_TRUE(scrollView->scrollToVisible(*rows[7]));
    EXPECT_EQ(scrollView->contentView()->bounds().origin, (Point{0, 220}));
}

TEST_F(DesktopGeometry, hitTestTakesTheLastVisibleSubviewAndTheDeepestViewWithMaximumEdgesOutside) {
    auto root = std::make_shared<View>(Rect{0, 0, 200, 200});
    auto below = add<View>(root, Rect{10, 10, 100, 100});
    auto above = add<View>(root, Rect{50, 50, 100, 100});
    auto inner = add<View>(above, Rect{10, 10, 20, 20});
    EXPECT_EQ(root->hitTest({55, 55}), above.get());
    EXPECT_EQ(root->hitTest({79.9, 79.9}), inner.get());
    EXPECT_EQ(root->hitTest({80, 80}), above.get());
    EXPECT_EQ(root->hitTest({20, 20}), below.get());
    EXPECT_EQ(root->hitTest({200, 10}), nullptr);
    above->setHidden(true);
    EXPECT_EQ(root->hitTest({65, 65}), below.get());
    EXPECT_TRUE(inner->isHiddenOrHasHiddenAncestor());
}

TEST_F(DesktopGeometry, aCheckboxTogglesBeforeItsActionAndAnActionMayRemoveItsButton) {
    auto check = std::make_shared<desktop::Button>(Rect{}, "Bold", desktop::Button::Type::checkbox);
    std::vector<int> states;
    check->setAction([&](desktop::Button& b) { states.push_back(b.state()); });
    check->performClick();
    check->performClick();
    check->setEnabled(false);
    check->performClick();
    EXPECT_EQ(states, (std::vector<int>{1, 0}));

    auto window = makeWindow({0, 0, 200, 100});
    std::weak_ptr<desktop::Button> weak = add<desktop::Button>(window->desktopContentView(), Rect{10, 10, 80, 24}, "Close");
    weak.lock()->setAction([](desktop::Button& b) {
        b.removeFromSuperview();  // drops the last owner while the click runs
        b.setTitle("gone");
    });
    desktop::Button* button = weak.lock().get();  // only the window owns it
    button->performClick();
    EXPECT_TRUE(weak.expired());
}

}  // namespace
