// The platform's key codes, text and modifier flags in X11's and GDK's terms.
#include <gtest/gtest.h>

#include <ostream>

#include "GtkKeyMapping.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Events.h"

using namespace jtk;
namespace flags = platform::eventFlags;

namespace {

struct KeyCase {
    const char* name;  // as the framework's key table names the key, or a label
    uint16_t keyCode;
    unsigned long keysym;
    friend void PrintTo(const KeyCase& c, std::ostream* out) { *out << c.name; }
};

class KeyMapping : public ::testing::TestWithParam<KeyCase> {};

TEST_P(KeyMapping, namesTheKeysUnshiftedSymbolAndBack) {
    EXPECT_EQ(gtk::keysymForKeyCode(GetParam().keyCode), GetParam().keysym);
    EXPECT_EQ(gtk::keyCodeForKeysym(GetParam().keysym), GetParam().keyCode);
    // Where the framework's table names the key, it is the same key.
    auto named = JTKTestSuite::keyCodeMap().find(GetParam().name);
    if (named != JTKTestSuite::keyCodeMap().end()) {
        EXPECT_EQ(named->second, GetParam().keyCode);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Gtk, KeyMapping,
    ::testing::Values(KeyCase{"a", 0, GDK_KEY_a}, KeyCase{"z", 6, GDK_KEY_z}, KeyCase{"b", 11, GDK_KEY_b},
                      KeyCase{"0", 29, GDK_KEY_0}, KeyCase{"5", 23, GDK_KEY_5}, KeyCase{"\r", 36, GDK_KEY_Return},
                      KeyCase{"\t", 48, GDK_KEY_Tab}, KeyCase{" ", 49, GDK_KEY_space},
                      KeyCase{"F1", 122, GDK_KEY_F1}, KeyCase{"F12", 111, GDK_KEY_F12},
                      KeyCase{"apostrophe", 39, GDK_KEY_apostrophe}, KeyCase{"grave", 50, GDK_KEY_grave},
                      KeyCase{"backspace", 51, GDK_KEY_BackSpace}, KeyCase{"escape", 53, GDK_KEY_Escape},
                      KeyCase{"forwardDelete", 117, GDK_KEY_Delete}, KeyCase{"left", 123, GDK_KEY_Left},
                      KeyCase{"up", 126, GDK_KEY_Up}, KeyCase{"keypadEnter", 76, GDK_KEY_KP_Enter}),
    [](const auto& info) { return std::to_string(info.param.keyCode); });

TEST(KeyMapping, everyKeyOfTheFrameworksTableHasASymbol) {
    for (const auto& [name, keyCode] : JTKTestSuite::keyCodeMap())
        EXPECT_TRUE(gtk::keysymForKeyCode(keyCode)) << name;
}

TEST(KeyMapping, unknownCodesAndSymbolsHaveNoKey) {
    EXPECT_FALSE(gtk::keysymForKeyCode(10));
    EXPECT_FALSE(gtk::keysymForKeyCode(platform::noKeyCode));
    EXPECT_EQ(gtk::keyCodeForKeysym(GDK_KEY_eacute), platform::noKeyCode);
    EXPECT_EQ(gtk::keyCodeForKeysym(GDK_KEY_ISO_Left_Tab), 48);  // Shift+Tab is the Tab key
}

struct TextCase {
    const char* label;
    std::string utf8;
    std::optional<std::vector<unsigned long>> keysyms;  // none: not typable
    friend void PrintTo(const TextCase& c, std::ostream* out) { *out << c.label; }
};

class TextKeysyms : public ::testing::TestWithParam<TextCase> {};

TEST_P(TextKeysyms, areLatin1ItselfAndUnicodeAbove) {
    std::optional<std::vector<unsigned long>> keysyms;
    if (auto codePoints = gtk::codePointsOf(GetParam().utf8)) {
        keysyms.emplace();
        for (char32_t codePoint : *codePoints) {
            auto keysym = gtk::keysymForCodePoint(codePoint);
            if (!keysym) {
                keysyms.reset();
                break;
            }
            keysyms->push_back(*keysym);
        }
    }
    EXPECT_EQ(keysyms, GetParam().keysyms);
}

INSTANTIATE_TEST_SUITE_P(
    Gtk, TextKeysyms,
    ::testing::Values(TextCase{"ascii", "A\"", {{0x41, 0x22}}}, TextCase{"latin1", "\u00e9\u00df", {{0xe9, 0xdf}}},
                      TextCase{"greek", "\u03b1", {{0x010003b1}}},
                      TextCase{"emojiWithModifier", "\U0001F44D\U0001F3FD", {{0x0101F44D, 0x0101F3FD}}},
                      TextCase{"controlCharacter", "\x01", std::nullopt},
                      TextCase{"truncatedSequence", "\xc3", std::nullopt},
                      TextCase{"strayContinuation", "a\x80", std::nullopt}),
    [](const auto& info) { return std::string(info.param.label); });

struct FlagCase {
    const char* label;
    uint64_t flags;
    unsigned state;
    friend void PrintTo(const FlagCase& c, std::ostream* out) { *out << c.label; }
};

class ModifierFlags : public ::testing::TestWithParam<FlagCase> {};

TEST_P(ModifierFlags, mapCommandToControlAndControlToSuper) {
    EXPECT_EQ(gtk::gdkModifiers(GetParam().flags), GdkModifierType(GetParam().state));
    EXPECT_EQ(gtk::platformFlags(GdkModifierType(GetParam().state | GDK_BUTTON1_MASK)), GetParam().flags);
}

INSTANTIATE_TEST_SUITE_P(
    Gtk, ModifierFlags,
    ::testing::Values(FlagCase{"none", 0, 0}, FlagCase{"shift", flags::shift, GDK_SHIFT_MASK},
                      FlagCase{"command", flags::command, GDK_CONTROL_MASK},
                      FlagCase{"control", flags::control, GDK_SUPER_MASK},
                      FlagCase{"alternate", flags::alternate, GDK_ALT_MASK},
                      FlagCase{"all", flags::shift | flags::command | flags::control | flags::alternate,
                               GDK_SHIFT_MASK | GDK_CONTROL_MASK | GDK_SUPER_MASK | GDK_ALT_MASK}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(ModifierKeys, holdEachFlagWithTheKeyThatReportsIt) {
    for (const auto& key : gtk::modifierKeys()) EXPECT_EQ(gtk::flagOfModifierKeysym(key.keysym), key.flag);
    EXPECT_EQ(gtk::flagOfModifierKeysym(GDK_KEY_Control_R), flags::command);
    EXPECT_EQ(gtk::flagOfModifierKeysym(GDK_KEY_a), 0u);
}

}  // namespace
