#include "GtkKeyTyping.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "GtkKeyMapping.h"
#include "GtkMainQueue.h"
#include "GtkXTest.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Process.h"
#include "JTK/services/HidState.h"

namespace jtk::gtk {

namespace {

namespace flags = platform::eventFlags;
using Keysyms = std::vector<unsigned long>;

// One typist at a time: the lent keys are shared. Held while waiting for
// the main thread, so the main thread only ever tries it.
std::mutex typingMutex;

// What a keyDown pressed, for its keyUp: by platform key code, or by text.
struct PressedKeys {
    std::mutex mutex;
    std::map<uint16_t, unsigned> byKeyCode;
    std::map<std::string, unsigned> byText;
    bool lent = false;  // spare keys are lent until the text's keyUp
};

PressedKeys& pressedKeys() {
    static auto* keys = new PressedKeys;
    return *keys;
}

std::unique_lock<std::mutex> lockTyping() {
    if (!onMainThread()) return std::unique_lock(typingMutex);
    std::unique_lock lock(typingMutex, std::try_to_lock);
    if (!lock) platform::systemLog("GTK input: another thread is typing; the main thread's key event is dropped");
    return lock;
}

// The symbols a stroke types: its key's, or its text's code points'.
std::optional<Keysyms> strokeKeysyms(uint16_t keyCode, const std::string& text) {
    if (keyCode != platform::noKeyCode) {
        auto keysym = keysymForKeyCode(keyCode);
        if (!keysym) platform::systemLog("GTK input: no key has the key code " + std::to_string(keyCode));
        return keysym ? std::optional<Keysyms>(Keysyms{*keysym}) : std::nullopt;
    }
    Keysyms keysyms;
    auto codePoints = codePointsOf(text);
    for (char32_t codePoint : codePoints.value_or(std::vector<char32_t>{})) {
        auto keysym = keysymForCodePoint(codePoint);
        if (!keysym) codePoints.reset();
        if (!keysym) break;
        keysyms.push_back(*keysym);
    }
    if (!codePoints || keysyms.empty()) {
        platform::systemLog("GTK input: no key types the text \"" + text + "\"");
        return std::nullopt;
    }
    return keysyms;
}

// The symbols no key of the keyboard has (a lent key does not count: the
// next lending takes it back), less those already to be lent.
Keysyms withoutKeys(const Keysyms& keysyms, const Keysyms& already) {
    Keysyms missing;
    auto& connection = XTestConnection::shared();
    for (auto keysym : keysyms)
        if (!connection.keyFor(keysym, false) && std::find(already.begin(), already.end(), keysym) == already.end() &&
            std::find(missing.begin(), missing.end(), keysym) == missing.end())
            missing.push_back(keysym);
    return missing;
}

// Lends spare keys to the symbols and waits until GDK translates them (it
// reads the mapping again once it has seen the change). Earlier input has
// settled: it was translated with the mapping it was typed with.
bool lendKeys(const Keysyms& keysyms) {
    auto& connection = XTestConnection::shared();
    std::vector<unsigned> keycodes = connection.lendSpareKeys(keysyms);
    auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    for (;;) {
        platform::settleInput();
        bool seen = true;
        platform::dispatchSyncMain([&] {
            GdkDisplay* display = gdk_display_get_default();
            for (size_t i = 0; i < keycodes.size() && seen; ++i) {
                guint keyval = 0;
                gdk_display_translate_key(display, keycodes[i], GdkModifierType(0), 0, &keyval, nullptr, nullptr, nullptr);
                seen = keyval == keysyms[i];
            }
        });
        if (seen) return true;
        if (std::chrono::steady_clock::now() > deadline) {
            platform::systemLog("GTK input: GDK did not see the changed keyboard mapping; the text is not typed");
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

void giveKeysBack() {
    // The keys typed so far are translated with the lent mapping first.
    platform::settleInput();
    XTestConnection::shared().returnSpareKeys();
}

// Presses (and releases, unless the last is to stay down) the keys of the
// symbols, each under the flags (with Shift for a key's second level).
// Returns the key code of the last.
std::optional<unsigned> pressKeys(const Keysyms& keysyms, uint64_t eventFlags, bool releaseLast) {
    auto& connection = XTestConnection::shared();
    std::optional<unsigned> last;
    for (size_t i = 0; i < keysyms.size(); ++i) {
        auto key = connection.keyFor(keysyms[i]);
        if (!key) continue;
        connection.holdModifiers(eventFlags | (key->shifted ? flags::shift : 0));
        connection.key(key->keycode, true);
        if (releaseLast || i + 1 < keysyms.size()) connection.key(key->keycode, false);
        last = key->keycode;
    }
    return last;
}

void restoreModifiers() { XTestConnection::shared().holdModifiers(services::HidState::shared().modifierFlags()); }

void keyDown(const platform::Event& event, const Keysyms& keysyms) {
    auto lock = lockTyping();
    if (!lock) return;
    Keysyms missing = withoutKeys(keysyms, {});
    if (missing.size() > XTestConnection::shared().spareKeyCount()) {
        platform::systemLog("GTK input: not enough spare key codes to type \"" + event.unicodeText + "\"");
        return;
    }
    if (!missing.empty()) {
        platform::settleInput();
        if (!lendKeys(missing)) return giveKeysBack();
    }
    auto keycode = pressKeys(keysyms, event.flags, false);
    auto& pressed = pressedKeys();
    std::lock_guard guard(pressed.mutex);
    pressed.lent = pressed.lent || !missing.empty();
    if (!keycode) return;
    if (event.keyCode == platform::noKeyCode)
        pressed.byText[event.unicodeText] = *keycode;
    else
        pressed.byKeyCode[event.keyCode] = *keycode;
}

void keyUp(const platform::Event& event, const Keysyms& keysyms) {
    auto lock = lockTyping();
    if (!lock) return;
    auto& pressed = pressedKeys();
    std::optional<unsigned> keycode;
    bool giveBack = false;
    {
        std::lock_guard guard(pressed.mutex);
        if (event.keyCode == platform::noKeyCode) {
            if (auto found = pressed.byText.find(event.unicodeText); found != pressed.byText.end()) {
                keycode = found->second;
                pressed.byText.erase(found);
            }
            giveBack = pressed.lent && pressed.byText.empty();
            if (giveBack) pressed.lent = false;
        } else if (auto found = pressed.byKeyCode.find(event.keyCode); found != pressed.byKeyCode.end()) {
            keycode = found->second;
            pressed.byKeyCode.erase(found);
        }
    }
    // A release without its press: the key that types the symbol now.
    if (!keycode)
        if (auto key = XTestConnection::shared().keyFor(keysyms.back())) keycode = key->keycode;
    if (keycode) XTestConnection::shared().key(*keycode, false);
    restoreModifiers();
    if (giveBack) giveKeysBack();
}

}  // namespace

void postKeyEvent(const platform::Event& event) {
    auto keysyms = strokeKeysyms(event.keyCode, event.unicodeText);
    if (!keysyms) return;
    if (event.type == platform::EventType::keyDown) keyDown(event, *keysyms);
    if (event.type == platform::EventType::keyUp) keyUp(event, *keysyms);
}

void typeKeyStrokes(const std::vector<platform::KeyStroke>& strokes) {
    auto lock = lockTyping();
    if (!lock) return;
    auto& connection = XTestConnection::shared();
    size_t spareKeys = connection.spareKeyCount();
    std::vector<std::optional<Keysyms>> symbols;
    for (const auto& stroke : strokes) symbols.push_back(strokeKeysyms(stroke.keyCode, stroke.unicodeText));
    // Input before the batch is translated with the mapping it was typed with.
    platform::settleInput();
    bool lent = false;
    for (size_t first = 0; first < strokes.size();) {
        // A chunk: the strokes from here whose symbols without a key fit the spare keys.
        Keysyms toLend;
        size_t end = first;
        for (; end < strokes.size(); ++end) {
            if (!symbols[end]) continue;
            Keysyms missing = withoutKeys(*symbols[end], toLend);
            if (toLend.size() + missing.size() > spareKeys) {
                if (end > first) break;
                platform::systemLog("GTK input: not enough spare key codes to type \"" + strokes[end].unicodeText + "\"");
                symbols[end].reset();
                continue;
            }
            toLend.insert(toLend.end(), missing.begin(), missing.end());
        }
        if (!toLend.empty()) {
            if (lent) platform::settleInput();  // the last chunk's keys first
            lent = true;
            if (!lendKeys(toLend)) break;
        }
        for (size_t i = first; i < end; ++i) {
            if (!symbols[i]) continue;
            pressKeys(*symbols[i], strokes[i].flags, true);
            restoreModifiers();
            platform::settleInput();
        }
        first = end;
    }
    if (lent) giveKeysBack();
}

}  // namespace jtk::gtk
