// The view walk and the reading order of the application-wide searches.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "ElementFixture.h"
#include "elements/JTKReadingOrder.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/controls/Label.h"

using namespace jtk;

namespace {

using platform::Rect;
using ViewList = std::vector<std::shared_ptr<platform::View>>;

class SearchReadingOrder : public ElementFixture {
protected:
    void SetUp() override {
        ElementFixture::SetUp();
        window = makeWindow(0, -200, 1000, 800);
        content = window->desktopContentView();
    }
    // A label whose top edge on screen is top and whose left edge is x.
    std::shared_ptr<desktop::Label> labelAt(double x, double top) {
        return add<desktop::Label>(content, Rect{x, top + 200 - 20, 50, 20}, "label");
    }
    ViewList sorted(ViewList views) {
        ViewList result;
        onQueue([&] { result = jtkSortedInReadingOrder(views); });
        return result;
    }
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::View> content;
};

TEST_F(SearchReadingOrder, labelsWithinTwentyPointsShareARow) {
    auto right = labelAt(300, 500);
    auto left = labelAt(10, 485);
    EXPECT_EQ(sorted({right, left}), (ViewList{left, right}));
}

TEST_F(SearchReadingOrder, twentyPointsBelowOpensANewRow) {
    auto right = labelAt(300, 500);
    auto left = labelAt(10, 480);
    EXPECT_EQ(sorted({left, right}), (ViewList{right, left}));
}

TEST_F(SearchReadingOrder, rowKeyIsTheFirstViewsTopEdge) {
    // 485 joins the row of 500; 470 is 30 below the row's key, though only 15
    // below its neighbour, and opens the next row.
    auto a = labelAt(300, 500);
    auto b = labelAt(200, 485);
    auto c = labelAt(10, 470);
    EXPECT_EQ(sorted({c, b, a}), (ViewList{b, a, c}));
}

TEST_F(SearchReadingOrder, rowsCompareTruncatedTopEdges) {
    // 500.1 and 480.9 are less than 20 apart, but their truncated tops 500 and 480 are not.
    auto high = labelAt(300, 500.1);
    auto low = labelAt(10, 480.9);
    EXPECT_EQ(sorted({high, low}), (ViewList{high, low}));
}

TEST_F(SearchReadingOrder, truncationIsTowardZeroAcrossTheScreenEdge) {
    // Truncated, 9.5 and -10.5 give 9 and -10: one row. Rounded down they would not.
    auto above = labelAt(300, 9.5);
    auto below = labelAt(10, -10.5);
    EXPECT_EQ(sorted({above, below}), (ViewList{below, above}));
}

TEST_F(SearchReadingOrder, equalEdgesKeepWindowThenWalkOrder) {
    auto other = makeWindow(0, -200, 1000, 800, "Other");
    auto a = add<desktop::View>(content, Rect{10, 10, 20, 20});
    auto b = add<desktop::View>(content, Rect{10, 10, 20, 20});
    auto c = add<desktop::View>(other->desktopContentView(), Rect{10, 10, 20, 20});
    ViewList views;
    onQueue([&] { views = JTKTestSuite::appViews(); });
    EXPECT_EQ(views, (ViewList{content, other->desktopContentView(), a, b, c}));
}

TEST_F(SearchReadingOrder, frameThatIsNotANumberSortsLastWithoutHarm) {
    auto top = labelAt(10, 500);
    auto odd = labelAt(10, 300);
    odd->setFrame(Rect{std::nan(""), std::nan(""), 50, 20});
    auto sky = labelAt(10, 300);
    sky->setFrame(Rect{10, std::numeric_limits<double>::infinity(), 50, 20});
    auto low = labelAt(10, -100);
    EXPECT_EQ(sorted({top, odd, low, sky}), (ViewList{sky, top, low, odd}));
}

TEST_F(SearchReadingOrder, emptyListStaysEmpty) { EXPECT_TRUE(sorted({}).empty()); }

TEST(SearchTruncatedCoordinate, saturatesAndTruncates) {
    EXPECT_EQ(jtkTruncatedCoordinate(99.99), 99);
    EXPECT_EQ(jtkTruncatedCoordinate(-0.5), 0);
    EXPECT_EQ(jtkTruncatedCoordinate(-20.5), -20);
    EXPECT_EQ(jtkTruncatedCoordinate(1e300), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(jtkTruncatedCoordinate(-1e300), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(jtkTruncatedCoordinate(std::nan("")), 0);
    EXPECT_EQ(jtkTruncatedCoordinate(std::nan(""), -1), -1);
}

class SearchViewWalk : public ElementFixture {};

TEST_F(SearchViewWalk, preOrderSkippingHiddenSubtrees) {
    auto window = makeWindow(0, 0, 400, 300);
    auto content = window->desktopContentView();
    auto box = add<desktop::View>(content, Rect{0, 0, 100, 100});
    auto first = add<desktop::View>(box, Rect{});
    auto nested = add<desktop::View>(first, Rect{});
    auto second = add<desktop::View>(box, Rect{});
    auto last = add<desktop::View>(content, Rect{});
    ViewList all, withoutBox, hiddenRoot, frameRoot, detached;
    auto loose = std::make_shared<desktop::View>();
    add<desktop::View>(loose, Rect{});
    onQueue([&] {
        all = jtkAllViews(content);
        jtkOnMainThread([&] { box->setHidden(true); });
        withoutBox = jtkAllViews(content);
        jtkOnMainThread([&] { content->setHidden(true); });
        hiddenRoot = jtkAllViews(content);
        frameRoot = jtkAllViews(window->frameView());
        detached = jtkAllViews(loose);
    });
    EXPECT_EQ(all, (ViewList{content, box, first, nested, second, last}));
    EXPECT_EQ(withoutBox, (ViewList{content, last}));
    EXPECT_TRUE(hiddenRoot.empty());
    EXPECT_TRUE(frameRoot.empty()) << "the frame view has no superview";
    EXPECT_TRUE(detached.empty());
}

}  // namespace
