// The platform's key codes and modifier flags in Qt's terms.
#include <gtest/gtest.h>

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
