// JTKTestSuite's keyboard: keys and text posted to the own process, and
// modifier holds posted through the HID tap so that mouse events see them.
#include "run/JTKMainThread.h"
#include "JTK/JTKTestSuite.h"
#include "run/JTKProcessEnd.h"
#include "input/JTKEventPosting.h"
#include "input/JTKKeyStrokes.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Process.h"

namespace jtk {

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
    for (const auto& character : jtkCharacters(text)) postKeyStroke(jtkKeyStrokeForCharacter(character));
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
