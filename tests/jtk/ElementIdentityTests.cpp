// Element geometry, the default lookup description, equality (including
// elements whose view has gone) and the chain of ancestors.
#include <gtest/gtest.h>

#include "ElementFixture.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/Button.h"

using namespace jtk;

namespace {

using platform::Point;
using platform::Rect;

class ElementIdentity : public ElementFixture {};

TEST_F(ElementIdentity, framesInWindowAndOnScreen) {
    auto window = makeWindow(200, 500, 400, 300);
    auto button = add<desktop::Button>(window->desktopContentView(), Rect{20, 30, 100, 40}, "Save");
    onQueue([&] {
        JTKElement element(button);
        EXPECT_EQ(element.frameInWindow(), (Rect{20, 30, 100, 40}));
        EXPECT_EQ(element.frameOnScreen(), (Rect{220, 530, 100, 40}));
        EXPECT_EQ(element.frameCenterOnScreen(), (Point{270, 550}));
        EXPECT_EQ(element.elementLookupDescription(), "270550");
    });
}

TEST_F(ElementIdentity, viewOutsideAnyWindowHasZeroFrameOnScreen) {
    auto window = makeWindow(200, 500, 400, 300);
    auto button = add<desktop::Button>(window->desktopContentView(), Rect{20, 30, 100, 40}, "Save");
    name(button, "Save");
    button->removeFromSuperview();
    onQueue([&] {
        JTKElement element(button);
        EXPECT_EQ(element.frameOnScreen(), Rect{});
        EXPECT_EQ(element.frameCenterOnScreen(), Point{});
        EXPECT_EQ(element.elementLookupDescription(), "Save00");
    });
}

TEST_F(ElementIdentity, defaultLookupDescriptionTruncatesTowardZero) {
    // Centre (99.99, -0.5): both coordinates truncate toward zero.
    auto low = makeWindow(0, -100, 400, 300);
    auto ok = add<desktop::Button>(low->desktopContentView(), Rect{89.99, 99, 20, 1}, "OK");
    name(ok, "OK");
    // Centre (-20.5, 10.0), no name.
    auto left = makeWindow(-100, 0, 400, 300);
    auto unnamed = add<desktop::View>(left->desktopContentView(), Rect{69, 0, 21, 20});
    // Centre (512.75, 384.2).
    auto main = makeWindow(0, 0, 1000, 800);
    auto save = add<desktop::Button>(main->desktopContentView(), Rect{500, 374.2, 25.5, 20}, "Save");
    name(save, "Save");
    onQueue([&] {
        EXPECT_EQ(JTKElement(ok).elementLookupDescription(), "OK990");
        EXPECT_EQ(JTKElement(unnamed).elementLookupDescription(), "-2010");
        EXPECT_EQ(JTKElement(save).elementLookupDescription(), "Save512384");
    });
}

TEST_F(ElementIdentity, descriptionIsFixedAtCreation) {
    auto window = makeWindow(0, 0, 400, 300);
    auto button = add<desktop::Button>(window->desktopContentView(), Rect{0, 0, 20, 20}, "A");
    auto other = add<desktop::Button>(window->desktopContentView(), Rect{100, 100, 20, 20}, "B");
    onQueue([&] {
        JTKElement element(button);
        EXPECT_EQ(element.elementLookupDescription(), "1010");
        jtkOnMainThread([&] { button->setFrameOrigin({50, 50}); });
        EXPECT_EQ(element.elementLookupDescription(), "1010");
        EXPECT_EQ(element.frameCenterOnScreen(), (Point{60, 60})) << "geometry is read live";
        element.setView(other);
        EXPECT_EQ(element.elementLookupDescription(), "1010");
        EXPECT_EQ(element.view(), other);
    });
}

TEST_F(ElementIdentity, equalityFollowsTheViewNotTheDescription) {
    auto window = makeWindow(0, 0, 400, 300);
    auto button = add<desktop::Button>(window->desktopContentView(), Rect{10, 10, 80, 20}, "Go");
    auto other = add<desktop::Button>(window->desktopContentView(), Rect{100, 10, 80, 20}, "Stop");
    onQueue([&] {
        auto first = JTKTestSuite::elements("Go");
        auto second = JTKTestSuite::elements("Go");
        ASSERT_EQ(first.size(), 1u);
        ASSERT_EQ(second.size(), 1u);
        EXPECT_NE(&first[0], &second[0]);
        EXPECT_TRUE(first[0].isEqual(&second[0]));
        second[0].setElementLookupDescription("renamed");
        EXPECT_TRUE(first[0] == second[0]) << "the lookup description plays no part";
        EXPECT_FALSE(first[0].isEqual(nullptr));
        EXPECT_FALSE(first[0] == JTKElement(other));
    });
}

TEST_F(ElementIdentity, elementsOfGoneViewsEqualEachOtherAndNone) {
    auto window = makeWindow(0, 0, 400, 300);
    auto button = add<desktop::Button>(window->desktopContentView(), Rect{10, 10, 80, 20}, "Go");
    auto other = add<desktop::Button>(window->desktopContentView(), Rect{100, 10, 80, 20}, "Stop");
    std::optional<JTKElement> gone;
    std::optional<JTKElement> alsoGone;
    onQueue([&] {
        gone.emplace(button);
        alsoGone.emplace(button);
    });
    button->removeFromSuperview();
    button.reset();
    onQueue([&] {
        EXPECT_EQ(gone->view(), nullptr);
        EXPECT_TRUE(gone->isEqual(nullptr));
        EXPECT_TRUE(*gone == *alsoGone);
        EXPECT_FALSE(*gone == JTKElement(other));
        EXPECT_FALSE(JTKElement(other) == *gone);
    });
}

TEST_F(ElementIdentity, ancestorsRunUpToTheFrameView) {
    auto window = makeWindow(0, 0, 400, 300);
    auto content = window->desktopContentView();
    auto box = add<desktop::Box>(content, Rect{10, 10, 200, 200}, "Options");
    auto button = add<desktop::Button>(box, Rect{10, 10, 80, 20}, "Apply");
    std::shared_ptr<platform::View> frameView = window->frameView();
    onQueue([&] {
        auto contentAncestors = JTKElement(content).superElements();
        ASSERT_EQ(contentAncestors.size(), 1u);
        EXPECT_EQ(contentAncestors[0].view(), frameView);
        EXPECT_FALSE(JTKElement(frameView).superElement().has_value());
        EXPECT_TRUE(JTKElement(frameView).superElements().empty());

        auto chain = JTKElement(button).superElements();
        ASSERT_EQ(chain.size(), 3u);
        EXPECT_EQ(chain[0].view(), box);
        EXPECT_EQ(chain[1].view(), content);
        EXPECT_EQ(chain[2].view(), frameView);
        auto parent = JTKElement(button).superElement();
        ASSERT_TRUE(parent.has_value());
        EXPECT_EQ(parent->view(), box);
        EXPECT_EQ(parent->elementLookupDescription(), JTKElement(box).elementLookupDescription());
    });
}

}  // namespace
