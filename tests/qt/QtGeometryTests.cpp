// Geometry of widgets as the platform sees it: y up, frames in the
// superview's coordinates, windows on the screen.
#include <QScreen>
#include <QScrollArea>

#include "JTK/platform/Screen.h"
#include "JTK/platform/Window.h"
#include "QtFixture.h"
#include "QtWrappers.h"

using namespace jtk;
using platform::Rect;
using qttest::QtTest;

namespace {

struct GeometryCase {
    const char* label;
    QRect child;       // in the 300×200 window, Qt's coordinates
    QRect grandchild;  // in the child
    Rect childFrame;
    Rect grandchildInContent;  // in the content view's coordinates
    Rect grandchildVisible;
};

class Geometry : public QtTest, public ::testing::WithParamInterface<GeometryCase> {};

TEST_P(Geometry, framesAreInTheSuperviewWithYUp) {
    auto* window = makeWindow(QRect(100, 50, 300, 200));
    auto* child = new QWidget(window);
    child->setGeometry(GetParam().child);
    auto* grandchild = new QWidget(child);
    grandchild->setGeometry(GetParam().grandchild);
    auto childView = qt::viewFor(child);
    auto grandchildView = qt::viewFor(grandchild);
    EXPECT_EQ(childView->frame(), GetParam().childFrame);
    // The window's coordinates are its frame's: the content sits inside the frame's margins.
    platform::Rect content = qt::viewFor(window)->frame();
    EXPECT_EQ(grandchildView->convertRectToWindow(grandchildView->bounds()),
              offsetRect(GetParam().grandchildInContent, content.minX(), content.minY()));
    EXPECT_EQ(grandchildView->visibleRect(), GetParam().grandchildVisible);
    EXPECT_EQ(grandchildView->superview(), childView);
}

INSTANTIATE_TEST_SUITE_P(
    Qt, Geometry,
    ::testing::Values(GeometryCase{"inside", QRect(10, 20, 80, 30), QRect(5, 5, 20, 10), Rect(10, 150, 80, 30),
                                   Rect(15, 165, 20, 10), Rect(0, 0, 20, 10)},
                      // The grandchild hangs 10 points over the child's bottom edge.
                      GeometryCase{"clippedAtTheBottom", QRect(0, 0, 100, 50), QRect(0, 40, 30, 20),
                                   Rect(0, 150, 100, 50), Rect(0, 140, 30, 20), Rect(0, 10, 30, 10)}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(QtTest, aWindowsFrameIsOnTheScreenWithYUpAndItsFrameViewHoldsTheContent) {
    auto* top = makeWindow(QRect(100, 50, 300, 200));
    double screenHeight = QGuiApplication::primaryScreen()->geometry().height();
    auto window = qt::windowFor(top);
    // The frame holds the content and the decorations' margins.
    QMargins margins(top->geometry().left() - top->frameGeometry().left(),
                     top->geometry().top() - top->frameGeometry().top(),
                     top->frameGeometry().right() - top->geometry().right(),
                     top->frameGeometry().bottom() - top->geometry().bottom());
    Rect frame(100 - margins.left(), screenHeight - (250 + margins.bottom()), 300 + margins.left() + margins.right(),
               200 + margins.top() + margins.bottom());
    EXPECT_EQ(window->frame(), frame);
    EXPECT_EQ(window->convertRectToScreen(Rect(10, 20, 5, 5)), Rect(frame.minX() + 10, frame.minY() + 20, 5, 5));
    auto content = window->contentView();
    EXPECT_EQ(content->superview(), window->frameView());
    EXPECT_EQ(window->frameView()->subviews(), std::vector{content});
    EXPECT_EQ(content->frame(), Rect(margins.left(), margins.bottom(), 300, 200));
    auto screens = platform::screens();
    ASSERT_FALSE(screens.empty());
    EXPECT_EQ(screens.front().frame.size.height, screenHeight);
}

TEST_F(QtTest, aScrollAreaScrollsAViewIntoSight) {
    auto* top = makeWindow(QRect(0, 0, 200, 150));
    auto* area = new QScrollArea(top);
    area->setGeometry(0, 0, 200, 150);
    auto* content = new QWidget;
    content->resize(180, 1200);
    auto* far = new QWidget(content);
    far->setGeometry(10, 1000, 50, 20);
    area->setWidget(content);
    area->show();
    qttest::pump(20);
    auto areaView = qt::viewFor(area);
    auto farView = qt::viewFor(far);
    EXPECT_TRUE(areaView->isScrollView());
    EXPECT_TRUE(farView->visibleRect().isEmpty());
    ASSERT_TRUE(areaView->respondsToSelector("hbScrollToViewAnimated:"));
    areaView->performSelector("hbScrollToViewAnimated:", platform::Value(farView));
    EXPECT_EQ(farView->visibleRect(), farView->bounds());
}

}  // namespace
