// Typed text to key strokes: the key table, character splitting and the
// lower-case rule that decides shift, with no desktop involved.
#include <gtest/gtest.h>

#include "JTK/JTKTestSuite.h"
#include "input/JTKKeyStrokes.h"
#include "JTK/platform/Events.h"

using namespace jtk;

namespace {

using Strings = std::vector<std::string>;

TEST(InputKeyCodeMap, HoldsExactlyTheLettersReturnSpaceAndTab) {
    const auto& map = JTKTestSuite::keyCodeMap();
    const std::map<std::string, uint16_t> expected{
        {"a", 0},  {"b", 11}, {"c", 8},  {"d", 2},  {"e", 14}, {"f", 3},  {"g", 5},  {"h", 4},  {"i", 34}, {"j", 38},
        {"k", 40}, {"l", 37}, {"m", 46}, {"n", 45}, {"o", 31}, {"p", 35}, {"q", 12}, {"r", 15}, {"s", 1},  {"t", 17},
        {"u", 32}, {"v", 9},  {"w", 13}, {"x", 7},  {"y", 16}, {"z", 6},  {"\r", 36}, {" ", 49}, {"\t", 48}};
    EXPECT_EQ(map, expected);
    EXPECT_EQ(map.size(), 29u);
    EXPECT_EQ(&map, &JTKTestSuite::keyCodeMap()) << "built once";
    for (const char* absent : {"1", "\n", ".", "A"}) EXPECT_FALSE(map.contains(absent)) << absent;
}

TEST(InputCharacters, SplitsIntoExtendedGraphemeClusters) {
    EXPECT_TRUE(jtkCharacters("").empty());
    EXPECT_EQ(jtkCharacters("Hi 1"), (Strings{"H", "i", " ", "1"}));
    // e + combining acute, a flag of two regional indicators, a family joined by ZWJ.
    EXPECT_EQ(jtkCharacters("e\u0301x"), (Strings{"e\u0301", "x"}));
    EXPECT_EQ(jtkCharacters("\U0001F1E9\U0001F1EA!"), (Strings{"\U0001F1E9\U0001F1EA", "!"}));
    EXPECT_EQ(jtkCharacters("\U0001F468\u200D\U0001F469\u200D\U0001F467"),
              (Strings{"\U0001F468\u200D\U0001F469\u200D\U0001F467"}));
    EXPECT_EQ(jtkCharacters("a\r\nb"), (Strings{"a", "\r\n", "b"}));
    EXPECT_EQ(jtkCharacters("\u65E5\u672C"), (Strings{"\u65E5", "\u672C"}));
}

TEST(InputCharacters, MalformedUtf8BecomesReplacementCharacters) {
    auto characters = jtkCharacters(std::string("a\xff") + "b");
    ASSERT_EQ(characters.size(), 3u);
    EXPECT_EQ(characters[0], "a");
    EXPECT_EQ(characters[1], "\uFFFD");
    EXPECT_EQ(characters[2], "b");
}

TEST(InputKeyStrokes, TableCharactersUseTheirKeyAndShiftOnlyForUpperCase) {
    using platform::eventFlags::shift;
    EXPECT_EQ(jtkKeyStrokeForCharacter("a"), (JTKKeyStroke{0, 0, {}}));
    EXPECT_EQ(jtkKeyStrokeForCharacter("A"), (JTKKeyStroke{0, shift, {}}));
    EXPECT_EQ(jtkKeyStrokeForCharacter("W"), (JTKKeyStroke{13, shift, {}}));
    EXPECT_EQ(jtkKeyStrokeForCharacter(" "), (JTKKeyStroke{49, 0, {}}));
    EXPECT_EQ(jtkKeyStrokeForCharacter("\t"), (JTKKeyStroke{48, 0, {}}));
    EXPECT_EQ(jtkKeyStrokeForCharacter("\r"), (JTKKeyStroke{36, 0, {}}));
}

TEST(InputKeyStrokes, LineFeedAndCrLfAreReturnAsAPersonTypesThem) {
    for (const std::string lineBreak : {"\n", "\r\n"}) {
        EXPECT_EQ(jtkKeyStrokeForCharacter(lineBreak), (JTKKeyStroke{36, 0, {}})) << testing::PrintToString(lineBreak);
    }
}

TEST(InputKeyStrokes, OtherCharactersCarryThemselvesAsText) {
    for (const std::string character : {"1", ".", "\u00C4", "\u00E9", "\u65E5", "e\u0301"}) {
        EXPECT_EQ(jtkKeyStrokeForCharacter(character), (JTKKeyStroke{0, 0, character})) << character;
    }
}

TEST(InputKeyStrokes, LowerCaseFollowsUnicodeNotAscii) {
    EXPECT_EQ(jtkLowercase("HeLLo"), "hello");
    EXPECT_EQ(jtkLowercase("\u00C4\u0391"), "\u00E4\u03B1");  // Latin A umlaut, Greek Alpha
    // Capital I with dot above lowers to i + combining dot: not a table key.
    EXPECT_EQ(jtkLowercase("\u0130"), "i\u0307");
    EXPECT_EQ(jtkKeyStrokeForCharacter("\u0130"), (JTKKeyStroke{0, 0, "\u0130"}));
    // The Kelvin sign lowers to a plain k, so it is typed as shift-k.
    EXPECT_EQ(jtkKeyStrokeForCharacter("\u212A"), (JTKKeyStroke{40, platform::eventFlags::shift, {}}));
}

}  // namespace
