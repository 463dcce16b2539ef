// scrollTo() before a click: the visibility test, the search for the
// enclosing scroll view, and the application's hbScrollToViewAnimated:.
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using Views = std::vector<std::shared_ptr<desktop::View>>;

class InputScroll : public DesktopTest {
protected:
    // A scroll view showing 100 of the 1000 points of a column of 50 rows of
    // 20 points; row 0 is at the bottom of the document and in view.
    void SetUp() override {
        DesktopTest::SetUp();
        window = makeWindow({100, 100, 400, 300});
        scrollView = add<desktop::ScrollView>(window->desktopContentView(), Rect{20, 20, 200, 100});
        auto document = std::make_shared<desktop::View>(Rect{0, 0, 200, 1000});
        for (int i = 0; i < 50; ++i) {
            rows.push_back(add<desktop::Button>(document, Rect{0, 20.0 * i, 200, 20}, "Row " + std::to_string(i)));
            rows.back()->setAction([this, i](desktop::Button&) { pressedRows.push_back(i); });
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

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::ScrollView> scrollView;
    std::vector<std::shared_ptr<desktop::Button>> rows;
    std::vector<int> pressedRows;  // main thread
    Views scrollRequests;
};

TEST_F(InputScroll, aRowOutOfViewIsScrolledIntoViewThenClickedAndAVisibleOneIsNotScrolled) {
    answerScrollToView();
    onQueue([&] {
        JTKElement(rows[2]).click();
        JTKElement(rows[40]).click();
    });
    EXPECT_EQ(scrollRequests, Views{rows[40]});
    EXPECT_EQ(rows[40]->visibleRect(), rows[40]->bounds());
    EXPECT_EQ(pressedRows, (std::vector<int>{2, 40}));
}

TEST_F(InputScroll, withoutTheScrollMethodNothingScrollsButTheClickIsPostedAllTheSame) {
    onQueue([&] { JTKElement(rows[40]).click(); });
    EXPECT_EQ(scrollView->contentView()->bounds().origin, (Point{0, 0}));
    EXPECT_TRUE(pressedRows.empty());
    EXPECT_EQ(mouseEvents().size(), 2u);
}

TEST_F(InputScroll, touchingTheWindowsRightEdgeCountsAsNotVisibleAndAViewInNoScrollViewIsLeftAlone) {
    answerScrollToView();
    scrollView->setFrame({200, 20, 200, 100});  // row 0 shows whole, but its maximum x is the window's
    auto halfOutside = add<desktop::Button>(window->desktopContentView(), Rect{-20, 200, 60, 20}, "Half");
    onQueue([&] {
        JTKElement(rows[0]).scrollTo();
        JTKElement(halfOutside).scrollTo();
    });
    EXPECT_EQ(scrollRequests, Views{rows[0]});
}

}  // namespace
