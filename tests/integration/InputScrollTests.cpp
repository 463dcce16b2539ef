// scrollTo() before a click: the visibility test, the search for the
// enclosing scroll view, and the application's hbScrollToViewAnimated:.
#include <atomic>

#include "InputFixture.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ScrollView.h"

using namespace jtk;

namespace {

using platform::EventType;

class InputScrollTest : public InputFixture {
protected:
    // A scroll view showing 100 of the 1000 points of a column of 50 rows of
    // 20 points; row 0 is at the bottom of the document and in view.
    void SetUp() override {
        InputFixture::SetUp();
        window = makeWindow(100, 100, 400, 300);
        scrollView = add<desktop::ScrollView>(window->desktopContentView(), platform::Rect{20, 20, 200, 100});
        auto document = std::make_shared<desktop::View>(platform::Rect{0, 0, 200, 1000});
        for (int i = 0; i < 50; ++i) {
            auto row = add<desktop::Button>(document, platform::Rect{0, 20.0 * i, 200, 20}, "Row " + std::to_string(i));
            row->setAction([this, i](desktop::Button&) { pressedRows.push_back(i); });
            rows.push_back(row);
        }
        scrollView->setDocumentView(document);
    }

    void answerScrollToView() {
        scrollView->addMethod("hbScrollToViewAnimated:", [this](platform::Object& self, const platform::Value& argument) {
            auto view = std::dynamic_pointer_cast<desktop::View>(argument.object());
            scrollRequests.push_back(view);
            if (view) static_cast<desktop::ScrollView&>(self).scrollToVisible(*view);
            return platform::Value{};
        });
    }
    platform::Point scrollPosition() {
        return jtkOnMainThread([&] { return scrollView->contentView()->bounds().origin; });
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::ScrollView> scrollView;
    std::vector<std::shared_ptr<desktop::Button>> rows;
    // Main thread only.
    std::vector<int> pressedRows;
    std::vector<std::shared_ptr<desktop::View>> scrollRequests;
};

TEST_F(InputScrollTest, ARowOutOfViewIsScrolledIntoViewThenClicked) {
    answerScrollToView();
    onQueue([&] { elementOf(rows[40]).click(); });
    ASSERT_EQ(scrollRequests.size(), 1u);
    EXPECT_EQ(scrollRequests[0], rows[40]);
    EXPECT_EQ(jtkOnMainThread([&] { return rows[40]->visibleRect(); }), rows[40]->bounds());
    EXPECT_EQ(pressedRows, (std::vector<int>{40}));
}

TEST_F(InputScrollTest, WithoutTheScrollMethodNothingScrollsAndTheClickGoesToTheComputedPoint) {
    auto before = scrollPosition();
    onQueue([&] { elementOf(rows[40]).click(); });
    EXPECT_EQ(scrollPosition(), before);
    EXPECT_TRUE(pressedRows.empty());
    EXPECT_EQ(mouseEvents().size(), 2u) << "the click is posted all the same";
}

TEST_F(InputScrollTest, AVisibleElementIsNotScrolled) {
    answerScrollToView();
    onQueue([&] { elementOf(rows[2]).click(); });
    EXPECT_TRUE(scrollRequests.empty());
    EXPECT_EQ(pressedRows, (std::vector<int>{2}));
}

TEST_F(InputScrollTest, TouchingTheWindowsRightEdgeCountsAsNotVisible) {
    answerScrollToView();
    // The scroll view's right edge on the window's right edge: row 0 is fully
    // shown, but its maximum x lies on the window's maximum edge.
    jtkOnMainThread([&] { scrollView->setFrame({200, 20, 200, 100}); });
    ASSERT_EQ(jtkOnMainThread([&] { return JTKElement(rows[0]).frameInWindow().maxX(); }), 400);
    onQueue([&] { elementOf(rows[0]).scrollTo(); });
    ASSERT_EQ(scrollRequests.size(), 1u);
    EXPECT_EQ(scrollRequests[0], rows[0]);
}

TEST_F(InputScrollTest, AnElementInNoScrollViewIsLeftAlone) {
    answerScrollToView();
    // Half outside the window's content on the left.
    auto outside = jtkOnMainThread(
        [&] { return add<desktop::Button>(window->desktopContentView(), platform::Rect{-20, 200, 60, 20}, "Half"); });
    onQueue([&] { elementOf(outside).scrollTo(); });
    EXPECT_TRUE(scrollRequests.empty());
}

}  // namespace
