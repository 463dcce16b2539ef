// Screen points to event points: the flip against the height of the last
// screen that contains the point, with the platform's edge rule.
#include <gtest/gtest.h>

#include "input/JTKEventPosting.h"
#include "JTK/desktop/Screens.h"

using namespace jtk;

namespace {

using platform::Point;

class InputEventPointTest : public ::testing::Test {
protected:
    void TearDown() override { desktop::setScreens({}); }
};

TEST_F(InputEventPointTest, FlipsAgainstTheMainScreenWithTheMaximumEdgesOutside) {
    desktop::setScreens({{0, 0, 800, 600}});
    EXPECT_EQ(JTKEventPosting::eventPoint({10, 0}), (Point{10, 599}));
    EXPECT_EQ(JTKEventPosting::eventPoint({0, 599.5}), (Point{0, -0.5}));
    EXPECT_EQ(JTKEventPosting::eventPoint({12.25, 100.75}), (Point{12.25, 498.25}));
    // The top and right edges lie on no screen: H is 0 there.
    EXPECT_EQ(JTKEventPosting::eventPoint({10, 600}), (Point{10, -601}));
    EXPECT_EQ(JTKEventPosting::eventPoint({800, 10}), (Point{800, -11}));
    EXPECT_EQ(JTKEventPosting::eventPoint({-1, 10}), (Point{-1, -11}));
}

TEST_F(InputEventPointTest, UsesTheHeightOfTheScreenThatHoldsThePoint) {
    // A tall screen to the right of the main one, lower origin.
    desktop::setScreens({{0, 0, 800, 600}, {800, -200, 1000, 1200}});
    EXPECT_EQ(JTKEventPosting::eventPoint({100, 100}), (Point{100, 499}));
    EXPECT_EQ(JTKEventPosting::eventPoint({900, 100}), (Point{900, 1099})) << "second screen's height, not its origin";
    EXPECT_EQ(JTKEventPosting::eventPoint({900, -150}), (Point{900, 1349}));
    EXPECT_EQ(JTKEventPosting::eventPoint({900, 1000}), (Point{900, -1001})) << "above the second screen";
}

TEST_F(InputEventPointTest, OverlappingScreensUseTheLastOneInTheList) {
    desktop::setScreens({{0, 0, 800, 600}, {400, 0, 800, 300}});
    EXPECT_EQ(JTKEventPosting::eventPoint({500, 100}), (Point{500, 199}));
    EXPECT_EQ(JTKEventPosting::eventPoint({500, 450}), (Point{500, 149})) << "only the main screen holds it";
    EXPECT_EQ(JTKEventPosting::eventPoint({100, 100}), (Point{100, 499}));
}

}  // namespace
