#include "GtkXTest.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

#include <algorithm>

#include "GtkKeyMapping.h"
#include "JTK/platform/Process.h"

namespace jtk::gtk {

XTestConnection& XTestConnection::shared() {
    static auto* connection = new XTestConnection;  // never destroyed: any thread may post while the process ends
    return *connection;
}

bool XTestConnection::open(const std::string& displayName) {
    std::lock_guard lock(mutex_);
    if (display_) return true;
    Display* display = XOpenDisplay(displayName.c_str());
    if (!display) {
        platform::systemLog("GTK input: cannot open the X display \"" + displayName + "\"; input is not posted");
        return false;
    }
    int eventBase = 0, errorBase = 0, major = 0, minor = 0;
    if (!XTestQueryExtension(display, &eventBase, &errorBase, &major, &minor)) {
        platform::systemLog("GTK input: the X server of \"" + displayName + "\" has no XTest; input is not posted");
        XCloseDisplay(display);
        return false;
    }
    // Posted input must not wait behind a grab another client holds.
    XTestGrabControl(display, True);
    display_ = display;
    int maxKeycode = 0;
    XDisplayKeycodes(display_, &minKeycode_, &maxKeycode);
    readMapping();
    for (int keycode = minKeycode_; keycode <= maxKeycode; ++keycode) {
        bool empty = true;
        for (int level = 0; level < symbolsPerKey_; ++level)
            if (mapping_[(keycode - minKeycode_) * symbolsPerKey_ + level] != NoSymbol) empty = false;
        if (empty) spareKeycodes_.push_back(static_cast<unsigned>(keycode));
    }
    lent_.assign(spareKeycodes_.size(), false);
    return true;
}

bool XTestConnection::isOpen() const {
    std::lock_guard lock(mutex_);
    return display_ != nullptr;
}

void XTestConnection::readMapping() {
    int maxKeycode = 0;
    XDisplayKeycodes(display_, &minKeycode_, &maxKeycode);
    int count = maxKeycode - minKeycode_ + 1;
    KeySym* symbols = XGetKeyboardMapping(display_, static_cast<KeyCode>(minKeycode_), count, &symbolsPerKey_);
    mapping_.assign(symbols, symbols + (symbols ? count * symbolsPerKey_ : 0));
    if (symbols) XFree(symbols);
    if (!symbols) symbolsPerKey_ = 0;
}

void XTestConnection::movePointer(int x, int y) {
    std::lock_guard lock(mutex_);
    if (!display_) return;
    // With a button held, a move to where the pointer is would still reach
    // GTK as a motion (a drag between a press and its release). Without one
    // the move is made anyway: a window that opened under a resting pointer
    // picked its widget under it before it was laid out, and only a motion
    // makes GTK pick again.
    Window root = 0, child = 0;
    int rootX = 0, rootY = 0, windowX = 0, windowY = 0;
    unsigned mask = 0;
    if (XQueryPointer(display_, DefaultRootWindow(display_), &root, &child, &rootX, &rootY, &windowX, &windowY, &mask) &&
        rootX == x && rootY == y && (mask & (Button1Mask | Button2Mask | Button3Mask)))
        return;
    XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
    XFlush(display_);
}

void XTestConnection::button(unsigned button, bool press) {
    std::lock_guard lock(mutex_);
    if (!display_) return;
    XTestFakeButtonEvent(display_, button, press, CurrentTime);
    XFlush(display_);
}

void XTestConnection::key(unsigned keycode, bool press) {
    std::lock_guard lock(mutex_);
    if (!display_) return;
    XTestFakeKeyEvent(display_, keycode, press, CurrentTime);
    XFlush(display_);
}

void XTestConnection::holdModifiers(uint64_t flags) {
    std::lock_guard lock(mutex_);
    if (!display_) return;
    for (const auto& modifier : modifierKeys()) {
        bool wanted = flags & modifier.flag, held = heldModifiers_ & modifier.flag;
        if (wanted == held) continue;
        // The modifier keys' own codes: found without the lock's re-entry.
        for (int index = 0; index < static_cast<int>(mapping_.size()); index += symbolsPerKey_) {
            if (mapping_[index] != modifier.keysym) continue;
            XTestFakeKeyEvent(display_, static_cast<unsigned>(minKeycode_ + index / symbolsPerKey_), wanted, CurrentTime);
            heldModifiers_ = wanted ? heldModifiers_ | modifier.flag : heldModifiers_ & ~modifier.flag;
            break;
        }
    }
    XFlush(display_);
}

uint64_t XTestConnection::heldModifiers() const {
    std::lock_guard lock(mutex_);
    return heldModifiers_;
}

std::optional<SymbolKey> XTestConnection::keyFor(unsigned long keysym, bool lentKeys) const {
    std::lock_guard lock(mutex_);
    if (!display_ || keysym == NoSymbol) return std::nullopt;
    // The plain level of every key first: a symbol on two keys is typed
    // without Shift where it can be.
    for (int level = 0; level < 2 && level < symbolsPerKey_; ++level) {
        for (size_t index = level; index < mapping_.size(); index += symbolsPerKey_) {
            if (mapping_[index] != keysym) continue;
            auto keycode = static_cast<unsigned>(minKeycode_ + static_cast<int>(index) / symbolsPerKey_);
            bool spare = std::find(spareKeycodes_.begin(), spareKeycodes_.end(), keycode) != spareKeycodes_.end();
            if (lentKeys || !spare) return SymbolKey{keycode, level == 1};
        }
    }
    return std::nullopt;
}

size_t XTestConnection::spareKeyCount() const {
    std::lock_guard lock(mutex_);
    return spareKeycodes_.size();
}

std::vector<unsigned> XTestConnection::lendSpareKeys(const std::vector<unsigned long>& keysyms) {
    std::vector<std::pair<unsigned, unsigned long>> assignments;
    std::vector<unsigned> keycodes;
    {
        std::lock_guard lock(mutex_);
        for (size_t i = 0; i < spareKeycodes_.size(); ++i) {
            unsigned long keysym = i < keysyms.size() ? keysyms[i] : NoSymbol;
            assignments.emplace_back(spareKeycodes_[i], keysym);
            if (i < keysyms.size()) keycodes.push_back(spareKeycodes_[i]);
        }
    }
    setSpareMapping(assignments);
    return keycodes;
}

void XTestConnection::returnSpareKeys() {
    std::vector<std::pair<unsigned, unsigned long>> assignments;
    {
        std::lock_guard lock(mutex_);
        for (unsigned keycode : spareKeycodes_) assignments.emplace_back(keycode, NoSymbol);
    }
    setSpareMapping(assignments);
}

void XTestConnection::setSpareMapping(const std::vector<std::pair<unsigned, unsigned long>>& assignments) {
    std::lock_guard lock(mutex_);
    if (!display_) return;
    // Only keys whose lending changes, in runs of consecutive key codes: one
    // request (and one mapping notification) per run.
    std::vector<KeySym> run;
    unsigned first = 0;
    auto flush = [&] {
        if (!run.empty())
            XChangeKeyboardMapping(display_, static_cast<int>(first), 2, run.data(), static_cast<int>(run.size() / 2));
        run.clear();
    };
    for (size_t i = 0; i < assignments.size(); ++i) {
        auto [keycode, keysym] = assignments[i];
        bool lend = keysym != NoSymbol;
        size_t index = static_cast<size_t>(keycode - static_cast<unsigned>(minKeycode_)) * symbolsPerKey_;
        bool unchanged = index < mapping_.size() && mapping_[index] == keysym && lent_[i] == lend;
        if (unchanged || (!lend && !lent_[i])) {
            flush();
            continue;
        }
        if (run.empty() || keycode != first + run.size() / 2) {
            flush();
            first = keycode;
        }
        run.push_back(keysym);
        run.push_back(keysym);
        lent_[i] = lend;
    }
    flush();
    readMapping();
    XFlush(display_);
}

void XTestConnection::sync() {
    std::lock_guard lock(mutex_);
    if (!display_) return;
    XSync(display_, False);
    // Mapping notifications reach every client: read them so they do not pile up.
    while (XPending(display_) > 0) {
        XEvent event;
        XNextEvent(display_, &event);
        if (event.type == MappingNotify) XRefreshKeyboardMapping(&event.xmapping);
    }
}

}  // namespace jtk::gtk
