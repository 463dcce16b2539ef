// The platform's key codes and modifier flags in Qt's terms.
#include <gtest/gtest.h>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Events.h"
#include "QtKeyMapping.h"

using namespace jtk;
namespace flags = platform::eventFlags;

namespace {

struct KeyCase {
    const char* label;
    uint16_t keyCode;
    uint64_t flags;
    std::string unicodeText;
    int qtKey;
    QString text;
};

class KeyMapping : public ::testing::TestWithParam<KeyCase> {};

TEST_P(KeyMapping, givesQtsKeyAndText) {
    auto stroke = qt::qtKeyStroke(GetParam().keyCode, GetParam().flags, GetParam().unicodeText);
    EXPECT_EQ(stroke.key, GetParam().qtKey);
    EXPECT_EQ(stroke.text, GetParam().text);
    if (GetParam().keyCode != platform::noKeyCode) {
        EXPECT_EQ(qt::platformKeyCode(stroke.key), GetParam().keyCode);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Qt, KeyMapping,
    ::testing::Values(KeyCase{"letter", 0, 0, "", Qt::Key_A, "a"}, KeyCase{"shiftedLetter", 0, flags::shift, "", Qt::Key_A, "A"},
                      KeyCase{"shiftedDigit", 18, flags::shift, "", Qt::Key_1, "!"},
                      KeyCase{"commandKeyTypesNothing", 1, flags::command, "", Qt::Key_S, ""},
                      KeyCase{"return", 36, 0, "", Qt::Key_Return, "\r"},
                      KeyCase{"shiftTabIsBacktab", 48, flags::shift, "", Qt::Key_Backtab, "\t"},
                      KeyCase{"arrow", 123, 0, "", Qt::Key_Left, ""},
                      KeyCase{"textWithoutKey", platform::noKeyCode, 0, "é", 0xC9, QStringLiteral("é")}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(KeyMapping, theNamedDigitsAndFunctionKeysAreTheirQtKeys) {
    const std::pair<const char*, int> named[] = {
        {"0", Qt::Key_0}, {"1", Qt::Key_1}, {"2", Qt::Key_2}, {"3", Qt::Key_3}, {"4", Qt::Key_4},
        {"5", Qt::Key_5}, {"6", Qt::Key_6}, {"7", Qt::Key_7}, {"8", Qt::Key_8}, {"9", Qt::Key_9},
        {"F1", Qt::Key_F1}, {"F2", Qt::Key_F2}, {"F3", Qt::Key_F3}, {"F4", Qt::Key_F4},
        {"F5", Qt::Key_F5}, {"F6", Qt::Key_F6}, {"F7", Qt::Key_F7}, {"F8", Qt::Key_F8},
        {"F9", Qt::Key_F9}, {"F10", Qt::Key_F10}, {"F11", Qt::Key_F11}, {"F12", Qt::Key_F12}};
    for (const auto& [name, qtKey] : named) {
        auto code = JTKTestSuite::keyCodeMap().find(name);
        ASSERT_NE(code, JTKTestSuite::keyCodeMap().end()) << name;
        auto stroke = qt::qtKeyStroke(code->second, 0, "");
        EXPECT_EQ(stroke.key, qtKey) << name;
        // A digit types itself; a function key types nothing.
        EXPECT_EQ(stroke.text, name[1] ? QString() : QString::fromLatin1(name)) << name;
    }
}

struct ModifierCase {
    uint64_t flags;
    Qt::KeyboardModifiers modifiers;
};

class Modifiers : public ::testing::TestWithParam<ModifierCase> {};

TEST_P(Modifiers, mapBothWays) {
    EXPECT_EQ(qt::qtModifiers(GetParam().flags), GetParam().modifiers);
    EXPECT_EQ(qt::platformFlags(GetParam().modifiers), GetParam().flags);
}

INSTANTIATE_TEST_SUITE_P(Qt, Modifiers,
                         ::testing::Values(ModifierCase{flags::shift, Qt::ShiftModifier},
                                           ModifierCase{flags::control, Qt::MetaModifier},
                                           ModifierCase{flags::alternate, Qt::AltModifier},
                                           ModifierCase{flags::command, Qt::ControlModifier},
                                           ModifierCase{flags::command | flags::shift,
                                                        Qt::ControlModifier | Qt::ShiftModifier}));

}  // namespace
