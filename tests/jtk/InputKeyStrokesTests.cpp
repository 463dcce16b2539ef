// Pure input rules: typed text to key strokes (the key table, character
// splitting, the lower-case rule that decides shift) and screen points to
// event points.
#include <gtest/gtest.h>

#include "tests/support/TestFiles.h"

#include "JTK/desktop/Screens.h"
#include "JTK/platform/Events.h"
#include "input/JTKEventPosting.h"
#include "input/JTKKeyboard.h"

using namespace jtk;

namespace {

using testsupport::escaped;

using Strings = std::vector<std::string>;
using platform::eventFlags::shift;

TEST(InputCharacters, areExtendedGraphemeClustersAndMalformedBytesBecomeReplacements) {
    EXPECT_TRUE(jtkCharacters("").empty());
    EXPECT_EQ(jtkCharacters("Hi 1"), (Strings{"H", "i", " ", "1"}));
    EXPECT_EQ(jtkCharacters("e\u0301x"), (Strings{"e\u0301", "x"}));
    EXPECT_EQ(jtkCharacters("\U0001F1E9\U0001F1EA!"), (Strings{"\U0001F1E9\U0001F1EA", "!"}));
    EXPECT_EQ(jtkCharacters("\U0001F468\u200D\U0001F469"), (Strings{"\U0001F468\u200D\U0001F469"}));
    EXPECT_EQ(jtkCharacters("a\r\nb"), (Strings{"a", "\r\n", "b"}));
    EXPECT_EQ(jtkCharacters("a\xff"
                            "b"),
              (Strings{"a", "\uFFFD", "b"}));
}

struct StrokeCase {
    std::string character;
    JTKKeyStroke expected;
    friend void PrintTo(const StrokeCase& c, std::ostream* out) { *out << escaped(c.character); }
};

class InputKeyStroke : public testing::TestWithParam<StrokeCase> {};

constexpr uint16_t textOnly = platform::noKeyCode;

TEST_P(InputKeyStroke, tableKeysWithShiftForUpperCaseElseTheCharacterAsText) {
    EXPECT_EQ(jtkKeyStrokeForCharacter(GetParam().character), GetParam().expected) << GetParam().character;
}

INSTANTIATE_TEST_SUITE_P(Characters, InputKeyStroke,
                         testing::Values(StrokeCase{"a", {0, 0, {}}}, StrokeCase{"A", {0, shift, {}}},
                                         StrokeCase{"W", {13, shift, {}}}, StrokeCase{" ", {49, 0, {}}},
                                         StrokeCase{"\t", {48, 0, {}}}, StrokeCase{"\r", {36, 0, {}}},
                                         StrokeCase{"1", {18, 0, {}}}, StrokeCase{"0", {29, 0, {}}}, StrokeCase{"!", {textOnly, 0, "!"}},
                                         // A line break is Return, as a person types it.
                                         StrokeCase{"\n", {36, 0, {}}}, StrokeCase{"\r\n", {36, 0, {}}},
                                         StrokeCase{"\u00C4", {textOnly, 0, "\u00C4"}}, StrokeCase{"e\u0301", {textOnly, 0, "e\u0301"}},
                                         // Lower-cased by Unicode: I with dot above gives i + a mark, no table key;
                                         // the Kelvin sign gives a plain k.
                                         StrokeCase{"\u0130", {textOnly, 0, "\u0130"}},
                                         StrokeCase{"\u212A", {40, shift, {}}}));

struct EventPointCase {
    const char* label;
    std::vector<platform::Rect> screens;
    platform::Point screenPoint, expected;
    friend void PrintTo(const EventPointCase& c, std::ostream* out) { *out << c.label; }
};

class InputEventPoint : public testing::TestWithParam<EventPointCase> {
protected:
    void TearDown() override { desktop::setScreens({}); }
};

TEST_P(InputEventPoint, flipsAgainstTheHeightOfTheLastScreenHoldingThePoint) {
    desktop::setScreens(GetParam().screens);
    EXPECT_EQ(JTKEventPosting::eventPoint(GetParam().screenPoint), GetParam().expected);
}

const std::vector<platform::Rect> oneScreen{{0, 0, 800, 600}};
const std::vector<platform::Rect> tallRight{{0, 0, 800, 600}, {800, -200, 1000, 1200}};
const std::vector<platform::Rect> overlapping{{0, 0, 800, 600}, {400, 0, 800, 300}};

INSTANTIATE_TEST_SUITE_P(
    Screens, InputEventPoint,
    testing::Values(EventPointCase{"bottomRow", oneScreen, {10, 0}, {10, 599}},
                    EventPointCase{"fractions", oneScreen, {12.25, 100.75}, {12.25, 498.25}},
                    EventPointCase{"topEdgeIsOnNoScreen", oneScreen, {10, 600}, {10, -601}},
                    EventPointCase{"rightEdgeIsOnNoScreen", oneScreen, {800, 10}, {800, -11}},
                    EventPointCase{"secondScreensHeightNotItsOrigin", tallRight, {900, 100}, {900, 1099}},
                    EventPointCase{"belowTheMainScreen", tallRight, {900, -150}, {900, 1349}},
                    EventPointCase{"lastOfOverlappingScreens", overlapping, {500, 100}, {500, 199}},
                    EventPointCase{"onlyTheMainHoldsIt", overlapping, {500, 450}, {500, 149}}),
    [](const auto& info) { return std::string(info.param.label); });

}  // namespace
