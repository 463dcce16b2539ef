// The keyboard: key strokes for characters, typeKey, typeText and held
// modifier keys.
#include <memory>
#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Process.h"
#include "input/JTKEventPosting.h"
#include "input/JTKKeyboard.h"
#include "run/JTKMainThread.h"
#include "run/JTKProcessEnd.h"

namespace jtk {

const std::map<std::string, uint16_t>& jtkKeyCodeTable() {
    // Built once (thread-safe static initialisation), read-only afterwards.
    static const std::map<std::string, uint16_t> table{
        {"a", 0},  {"b", 11}, {"c", 8},  {"d", 2},  {"e", 14}, {"f", 3},  {"g", 5},    {"h", 4},
        {"i", 34}, {"j", 38}, {"k", 40}, {"l", 37}, {"m", 46}, {"n", 45}, {"o", 31},   {"p", 35},
        {"q", 12}, {"r", 15}, {"s", 1},  {"t", 17}, {"u", 32}, {"v", 9},  {"w", 13},   {"x", 7},
        {"y", 16}, {"z", 6},  {"\r", 36}, {" ", 49}, {"\t", 48},
        // The digits of the top row, and the function keys by name, so that
        // shortcuts such as Ctrl+1 or F5 can be typed: typeKey("F5").
        {"0", 29}, {"1", 18}, {"2", 19}, {"3", 20}, {"4", 21}, {"5", 23}, {"6", 22}, {"7", 26}, {"8", 28}, {"9", 25},
        {"F1", 122}, {"F2", 120}, {"F3", 99},  {"F4", 118},  {"F5", 96},  {"F6", 97},
        {"F7", 98},  {"F8", 100}, {"F9", 101}, {"F10", 109}, {"F11", 103}, {"F12", 111},
    };
    return table;
}

const std::map<std::string, uint16_t>& JTKTestSuite::keyCodeMap() { return jtkKeyCodeTable(); }

std::vector<std::string> jtkCharacters(const std::string& text) {
    std::vector<std::string> characters;
    if (text.empty()) return characters;
    icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(text);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> breaks(icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    if (U_FAILURE(status) || !breaks) {
        // No break rules: fall back to one character per code point.
        for (int32_t i = 0; i < unicode.length(); i = unicode.moveIndex32(i, 1)) {
            std::string character;
            icu::UnicodeString(unicode, i, unicode.moveIndex32(i, 1) - i).toUTF8String(character);
            characters.push_back(std::move(character));
        }
        return characters;
    }
    breaks->setText(unicode);
    int32_t start = breaks->first();
    for (int32_t end = breaks->next(); end != icu::BreakIterator::DONE; start = end, end = breaks->next()) {
        std::string character;
        icu::UnicodeString(unicode, start, end - start).toUTF8String(character);
        characters.push_back(std::move(character));
    }
    return characters;
}

std::string jtkLowercase(const std::string& text) {
    icu::UnicodeString unicode = icu::UnicodeString::fromUTF8(text);
    unicode.toLower(icu::Locale::getRoot());
    std::string lower;
    unicode.toUTF8String(lower);
    return lower;
}

JTKKeyStroke jtkKeyStrokeForCharacter(const std::string& character) {
    // A line break in a test's text means what a person types for it: Return.
    if (character == "\n" || character == "\r\n") return JTKKeyStroke{jtkKeyCodeTable().at("\r"), 0, {}};
    std::string lower = jtkLowercase(character);
    const auto& table = jtkKeyCodeTable();
    if (auto found = table.find(lower); found != table.end()) {
        return JTKKeyStroke{found->second, lower != character ? platform::eventFlags::shift : 0, {}};
    }
    // No key of its own: the event carries only the text (never key code 0, the A key).
    return JTKKeyStroke{platform::noKeyCode, 0, character};
}

// JTKTestSuite's keyboard: keys and text posted to the own process, and
// modifier holds posted through the HID tap so that mouse events see them.

namespace {

// One key press and release, with the pauses after each. The press carries
// the given flags; the release keeps what it got from the source.
void postKeyStroke(const JTKKeyStroke& stroke) {
    auto source = JTKEventPosting::makeEventSource();
    if (!source) {
        platform::systemLog("FakeKey: No event source");
        return;
    }
    std::shared_ptr<platform::Event> press, release;
    jtkOnMainThread([&] {
        press = platform::createKeyboardEvent(source, stroke.keyCode, true);
        if (press) press->flags = stroke.flags;
        release = platform::createKeyboardEvent(source, stroke.keyCode, false);
        if (!stroke.unicodeText.empty()) {
            if (press) platform::keyboardEventSetUnicodeString(*press, stroke.unicodeText);
            if (release) platform::keyboardEventSetUnicodeString(*release, stroke.unicodeText);
        }
    });
    int pid = platform::processIdentifier();
    if (press) platform::postEventToPid(pid, *press);
    JTKEventPosting::pause(JTKPacing::betweenKeyPressAndRelease);
    if (release) platform::postEventToPid(pid, *release);
    JTKEventPosting::pause(JTKPacing::afterKeyRelease);
}

}  // namespace

void JTKTestSuite::typeKey(uint16_t keyCode, uint64_t flags, bool /*keyUp: every call presses and releases*/) {
    if (JTKEventPosting::handOverToRecorder(nullptr, "typeKey(_:flags:keyUp:)", {JTKKeyCode{keyCode}, JTKEventFlags{flags}},
                                            false)) {
        return;
    }
    postKeyStroke(JTKKeyStroke{keyCode, flags, {}});
}

void JTKTestSuite::typeKey(std::string_view key, uint64_t flags) {
    auto code = keyCodeMap().find(std::string(key));
    if (code == keyCodeMap().end()) {
        jtkFatalStop("typeKey: no key types \"" + std::string(key) + "\"", "JTK/JTKTestSuite");
    }
    typeKey(code->second, flags);
}

void JTKTestSuite::typeText(const std::string& text) {
    if (JTKEventPosting::handOverToRecorder(nullptr, "typeText(_:)", {text}, false)) return;
    JTKEventPosting::activateApplicationIfNeeded();
    std::vector<JTKKeyStroke> strokes;
    for (const auto& character : jtkCharacters(text)) strokes.push_back(jtkKeyStrokeForCharacter(character));
    // A backend that types faster in one batch does; the others get a stroke at a time.
    if (!platform::postKeyStrokesToPid(platform::processIdentifier(), strokes)) {
        for (const auto& stroke : strokes) postKeyStroke(stroke);
    }
    JTKEventPosting::pause(JTKPacing::afterText);
}

std::shared_ptr<platform::Event> JTKTestSuite::beginModifierKeyHold(uint64_t flags) {
    auto source = JTKEventPosting::makeEventSource();
    auto event = platform::createKeyboardEvent(source, platform::noKeyCode, true);
    if (!event) return nullptr;
    event->flags = flags;
    event->type = platform::EventType::flagsChanged;
    platform::postEvent(platform::EventTap::hid, *event);
    return event;
}

void JTKTestSuite::releaseModifierKeys(const std::shared_ptr<platform::Event>& event) {
    if (!event) return;
    event->type = platform::EventType::flagsChanged;
    event->flags = 0;
    platform::postEvent(platform::EventTap::hid, *event);
}

}  // namespace jtk
