// What a recorded action becomes in each language: argument literals and the
// default rule, call texts, element references and statements.
#include <gtest/gtest.h>

#include "JTK/platform/Events.h"
#include "recorder/JTKCodeGeneration.h"
#include "tests/support/TestFiles.h"

using namespace jtk;
using testsupport::escaped;

namespace {

constexpr uint64_t shiftFlag = platform::eventFlags::shift, commandFlag = platform::eventFlags::command;
constexpr uint64_t controlFlag = platform::eventFlags::control, alternateFlag = platform::eventFlags::alternate;
const std::string hostile = "a\"b\\c\nd\re\tf\x01g\xF0\x9F\x98\x80";  // ends with an emoji

struct LiteralCase {
    const char* label;
    JTKStringConvertable value;
    std::string swift, objectiveC, cpp;
    bool isDefault;
    friend void PrintTo(const LiteralCase& c, std::ostream* out) { *out << c.label; }
};

class RecorderLiterals : public testing::TestWithParam<LiteralCase> {};

TEST_P(RecorderLiterals, areWrittenPerLanguageAndDefaultsAreKnownByTheirSwiftText) {
    const auto& c = GetParam();
    EXPECT_EQ(sourceLiteral(c.value, JTKDialect::swift), c.swift);
    EXPECT_EQ(sourceLiteral(c.value, JTKDialect::objectiveC), c.objectiveC);
    EXPECT_EQ(sourceLiteral(c.value, JTKDialect::cpp), c.cpp);
    EXPECT_EQ(isDefaultValue(c.value), c.isDefault);
}

INSTANTIATE_TEST_SUITE_P(
    Values, RecorderLiterals,
    testing::Values(
        LiteralCase{"negativeZero", platform::Point{0, -0.0}, "NSPoint(0.0,-0.0)", "NSMakePoint(0.0,-0.0)", "{0.0, -0.0}", false},
        LiteralCase{"fraction", platform::Point{0.5, 1e20}, "NSPoint(0.5,1e+20)", "NSMakePoint(0.5,1e+20)", "{0.5, 1e+20}", false},
        LiteralCase{"hostileText", hostile, "\"a\\\"b\\\\c\\nd\\re\\tf\\u{1}g\xF0\x9F\x98\x80\"",
                    "@\"a\\\"b\\\\c\\nd\\re\\tf\\001g\xF0\x9F\x98\x80\"", "\"a\\\"b\\\\c\\nd\\re\\tf\\001g\xF0\x9F\x98\x80\"",
                    false},
        LiteralCase{"noFlags", JTKEventFlags{0}, "[]", "()", "0", true},
        LiteralCase{"commandShift", JTKEventFlags{shiftFlag | commandFlag}, "[.maskCommand,.maskShift]",
                    "(kCGEventFlagMaskCommand | kCGEventFlagMaskShift)", "jtk::command | jtk::shift", false},
        LiteralCase{"commandControl", JTKEventFlags{controlFlag | commandFlag}, "[.maskCommand,.maskControl]",
                    "(kCGEventFlagMaskCommand | kCGEventFlagMaskControl )", "jtk::command | jtk::control", false},
        LiteralCase{"alternateShift", JTKEventFlags{alternateFlag | shiftFlag}, "[.maskShift,.maskAlternate]",
                    "(kCGEventFlagMaskShift | kCGEventFlagMaskAlternate)", "jtk::shift | jtk::alternate", false}),
    [](const auto& info) { return std::string(info.param.label); });

const std::string clickSignature = "click(offset:modifierFlags:doubleClick:mouseUp:)";

struct CallCase {
    const char* label;
    std::string signature;
    std::vector<JTKStringConvertable> arguments;
    std::string swift, objectiveC, cpp;
    friend void PrintTo(const CallCase& c, std::ostream* out) { *out << c.label; }
};

class RecorderCallTexts : public testing::TestWithParam<CallCase> {};

TEST_P(RecorderCallTexts, keepTheArgumentsThatDifferFromTheirDefaults) {
    const auto& c = GetParam();
    EXPECT_EQ(swiftCallText(c.signature, c.arguments), c.swift);
    EXPECT_EQ(objcCallText(c.signature, c.arguments), c.objectiveC);
    EXPECT_EQ(cppCallText(c.signature, c.arguments), c.cpp);
}

using Flags = JTKEventFlags;
using Key = JTKKeyCode;
using Point = platform::Point;

INSTANTIATE_TEST_SUITE_P(
    Actions, RecorderCallTexts,
    testing::Values(
        CallCase{"clickOffset", clickSignature, {Point{3, -2}, Flags{}, false}, "click(offset: NSPoint(3.0,-2.0))",
                 "[__element__ clickWithOffset: NSMakePoint(3.0,-2.0)];", "click({.offset = {3.0, -2.0}})"},
        CallCase{"clickAll", clickSignature, {Point{3, -2}, Flags{shiftFlag}, true},
                 "click(offset: NSPoint(3.0,-2.0), modifierFlags: [.maskShift], doubleClick: true)",
                 "[__element__ clickWithOffset: NSMakePoint(3.0,-2.0) modifierFlags: (kCGEventFlagMaskShift) doubleClick: true];",
                 "click({.offset = {3.0, -2.0}, .modifierFlags = jtk::shift, .doubleClick = true})"},
        CallCase{"clickAtCentre", clickSignature, {Point{}, Flags{0x100}, false}, "click()", "[__element__ click];", "click()"},
        CallCase{"clickWithCommand", clickSignature, {Point{}, Flags{commandFlag}, false},
                 "click(modifierFlags: [.maskCommand])", "[__element__ clickmodifierFlags: (kCGEventFlagMaskCommand)];",
                 "click({.modifierFlags = jtk::command})"},
        CallCase{"drag", "drag(offset:)", {Point{3, -2}}, "drag(offset: NSPoint(3.0,-2.0))",
                 "[__element__ dragWithOffset: NSMakePoint(3.0,-2.0)];", "drag({3.0, -2.0})"},
        CallCase{"menuItem", "clickMenuItem(title:flags:)", {std::string("Open"), Flags{}}, "clickMenuItem(title: \"Open\")",
                 "[__element__ clickMenuItemWithTitle: @\"Open\"];", "clickMenuItem(\"Open\")"},
        CallCase{"menuItemWithFlags", "clickMenuItem(title:flags:)", {std::string("Open"), Flags{shiftFlag}},
                 "clickMenuItem(title: \"Open\", flags: [.maskShift])",
                 "[__element__ clickMenuItemWithTitle: @\"Open\" flags: (kCGEventFlagMaskShift)];",
                 "clickMenuItem(\"Open\", jtk::shift)"},
        CallCase{"text", "typeText(_:)", {std::string("abc")}, "typeText(\"abc\")", "[__element__ typeText: @\"abc\"];",
                 "typeText(\"abc\")"},
        CallCase{"emptyText", "typeText(_:)", {std::string()}, "typeText()", "[__element__ typeText];", "typeText(\"\")"},
        // Texts that look like the separators of a call stay as they are.
        CallCase{"separatorsInText", "typeText(_:)", {std::string("a_: b, ) ]")}, "typeText(\"a_: b, ) ]\")",
                 "[__element__ typeText: @\"a_: b, ) ]\"];", "typeText(\"a_: b, ) ]\")"},
        CallCase{"tabWithShift", "typeKey(_:flags:keyUp:)", {Key{48}, Flags{shiftFlag}}, "typeKey(48, flags: [.maskShift])",
                 "[__element__ typeKey: @48 flags: (kCGEventFlagMaskShift)];", "typeKey(\"\\t\", jtk::shift)"},
        CallCase{"shortcut", "typeKey(_:flags:keyUp:)", {Key{1}, Flags{commandFlag}}, "typeKey(1, flags: [.maskCommand])",
                 "[__element__ typeKey: @1 flags: (kCGEventFlagMaskCommand)];", "typeKey(\"s\", jtk::command)"},
        CallCase{"keyCodeZero", "typeKey(_:flags:keyUp:)", {Key{0}, Flags{commandFlag}}, "typeKey(flags: [.maskCommand])",
                 "[__element__ typeKeyflags: (kCGEventFlagMaskCommand)];", "typeKey(\"a\", jtk::command)"},
        CallCase{"keyWithoutCharacter", "typeKey(_:flags:keyUp:)", {Key{51}, Flags{}}, "typeKey(51)",
                 "[__element__ typeKey: @51];", "typeKey(51)"}),
    [](const auto& info) { return std::string(info.param.label); });

struct StatementCase {
    const char* label;
    JTKDialect dialect;
    std::string callText;
    std::optional<JTKElementReference> reference;
    JTKChaining chaining;
    std::string statement;
    friend void PrintTo(const StatementCase& c, std::ostream* out) { *out << c.label; }
};

class RecorderStatements : public testing::TestWithParam<StatementCase> {};

TEST_P(RecorderStatements, nameTheElementOnceAndContinueChainedLines) {
    const auto& c = GetParam();
    std::optional<std::string> reference;
    if (c.reference) reference = jtkReferenceText(*c.reference, c.dialect);
    EXPECT_EQ(jtkStatement(c.dialect, c.callText, reference, c.chaining), c.statement) << escaped(c.statement);
}

// The Swift and Objective-C forms of a text, a single element, a list element
// and a chained call are those of the recorded Sample session (tests/roundtrip),
// whose files are compared with the expected ones; C++ files are only replayed.
const std::string cppClick = "click({.offset = {3.0, -2.0}})";
const JTKElementReference ok{"OK", std::nullopt}, thirdRow{"Row", 2}, quoted{"say \"hi\"\\", std::nullopt};
// A key without a name, by its title narrowed to its class (a Qt program's own Button subclass).
const JTKElementReference seven{"7", std::nullopt, {}, "Button"}, secondPlus{"+", 1, {}, "Button"};

INSTANTIATE_TEST_SUITE_P(
    Forms, RecorderStatements,
    testing::Values(
        StatementCase{"swiftQuotedLookup", JTKDialect::swift, "click()", quoted, JTKChaining::none,
                      "element(\"say \\\"hi\\\"\\\\\").click()"},
        StatementCase{"objcPlaceholderInText", JTKDialect::objectiveC, "[__element__ typeText: @\"[__element__\"];",
                      std::nullopt, JTKChaining::none, "[self typeText: @\"[__element__\"];"},
        StatementCase{"cppText", JTKDialect::cpp, "typeText(\"abc\")", std::nullopt, JTKChaining::none, "typeText(\"abc\");"},
        StatementCase{"cppSingle", JTKDialect::cpp, cppClick, ok, JTKChaining::none, "element(\"OK\")." + cppClick + ";"},
        StatementCase{"cppList", JTKDialect::cpp, "click()", thirdRow, JTKChaining::none, "elements(\"Row\").at(2).click();"},
        StatementCase{"cppChained", JTKDialect::cpp, "drag({40.0, 0.0})", ok, JTKChaining::ontoElement, ".drag({40.0, 0.0});"},
        StatementCase{"cppAfterCallWithoutElement", JTKDialect::cpp, "clickMenuItem(\"Two\")", ok, JTKChaining::ontoOtherCall,
                      "; element(\"OK\").clickMenuItem(\"Two\");"},
        StatementCase{"cppTitleAndClass", JTKDialect::cpp, "click()", seven, JTKChaining::none,
                      "element(\"7\", jtk::JTKClass{\"Button\"}).click();"},
        StatementCase{"cppTitleAndClassInList", JTKDialect::cpp, "click()", secondPlus, JTKChaining::none,
                      "elements(\"+\", jtk::JTKClass{\"Button\"}).at(1).click();"},
        StatementCase{"keysAreNeverChained", JTKDialect::cpp, "typeKey(\"\\t\")", std::nullopt, JTKChaining::ontoElement,
                      "typeKey(\"\\t\");"}),
    [](const auto& info) { return std::string(info.param.label); });

struct ShortcutKeyCase {
    const char* keyEquivalent;
    std::string key;
};

class RecorderShortcutKeys : public testing::TestWithParam<ShortcutKeyCase> {};

// Qt writes a shortcut's key as lower-case text ("f5"), the desktop as a character.
TEST_P(RecorderShortcutKeys, nameFunctionKeysInFullAndTypeCharactersInLowerCase) {
    EXPECT_EQ(jtkShortcutKey(GetParam().keyEquivalent), GetParam().key);
}

INSTANTIATE_TEST_SUITE_P(Keys, RecorderShortcutKeys,
                         testing::Values(ShortcutKeyCase{"f5", "F5"}, ShortcutKeyCase{"F12", "F12"},
                                         ShortcutKeyCase{"f1", "F1"}, ShortcutKeyCase{"s", "s"}, ShortcutKeyCase{"S", "s"},
                                         ShortcutKeyCase{"3", "3"}, ShortcutKeyCase{"fx", "f"},
                                         ShortcutKeyCase{"\\", "\\"}, ShortcutKeyCase{"\x01", "\\"},
                                         ShortcutKeyCase{"", ""}));

TEST(RecorderDialects, followTheFileExtension) {
    for (const char* cpp : {"a.cpp", "a.cc", "a.cxx", "a.c++", "a.hpp", "a.hh"}) EXPECT_EQ(jtkDialectOfFile(cpp), JTKDialect::cpp) << cpp;
    EXPECT_EQ(jtkDialectOfFile("/x y/Tests.swift"), JTKDialect::swift);
    for (const char* other : {"a.m", "a.mm", "a.h", "a", "a.Swift", "a.CPP"})
        EXPECT_EQ(jtkDialectOfFile(other), JTKDialect::objectiveC) << other;
}

}  // namespace
