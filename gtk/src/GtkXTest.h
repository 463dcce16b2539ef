// The backend's own X connection for XTest: input posted through it reaches
// the X server as a person's mouse and keyboard would, and GTK receives it
// on its own connection. Any thread may use it; each call holds the
// connection's lock for its own requests only, never while waiting for the
// main thread. It also keeps the keyboard mapping that the typing of
// characters without a key of their own changes: spare key codes (no symbol
// in the mapping found at the start) lent to those characters' symbols.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

typedef struct _XDisplay Display;

namespace jtk::gtk {

// A key to press for a symbol: its key code, and whether Shift selects the
// symbol (the key's second level).
struct SymbolKey {
    unsigned keycode = 0;
    bool shifted = false;
    bool operator==(const SymbolKey&) const = default;
};

class XTestConnection {
public:
    static XTestConnection& shared();

    // Opens the connection on that display; false (with a log line) when the
    // display or its XTest extension is missing. Idempotent.
    bool open(const std::string& displayName);
    bool isOpen() const;

    // Pointer and buttons (1 left, 3 right, 4 and 5 the wheel), in X root coordinates.
    void movePointer(int x, int y);
    void button(unsigned button, bool press);
    void key(unsigned keycode, bool press);
    // Presses and releases modifier keys until exactly the platform flags
    // are held (only the flags this connection holds: a person's own keys
    // are left alone).
    void holdModifiers(uint64_t flags);
    uint64_t heldModifiers() const;

    // The key that types the symbol in the current mapping, at its first or
    // (with Shift) second level; none when no key has it. Spare keys lent
    // to symbols count unless left out.
    std::optional<SymbolKey> keyFor(unsigned long keysym, bool lentKeys = true) const;

    // The spare key codes, their number fixed when the connection opened.
    size_t spareKeyCount() const;
    // Lends the first spare keys to the symbols, in order (at most
    // spareKeyCount()), giving every other spare key back its empty mapping;
    // returns the key code of each symbol.
    std::vector<unsigned> lendSpareKeys(const std::vector<unsigned long>& keysyms);
    // Gives every lent spare key back its empty mapping.
    void returnSpareKeys();

    // Waits until the X server has processed everything sent so far.
    void sync();

private:
    XTestConnection() = default;
    void readMapping();  // with the lock held
    void setSpareMapping(const std::vector<std::pair<unsigned, unsigned long>>& assignments);

    mutable std::mutex mutex_;
    Display* display_ = nullptr;
    int minKeycode_ = 0;
    int symbolsPerKey_ = 0;
    std::vector<unsigned long> mapping_;  // symbolsPerKey_ symbols per key code from minKeycode_
    std::vector<unsigned> spareKeycodes_;
    std::vector<bool> lent_;              // per spare key code
    uint64_t heldModifiers_ = 0;
};

}  // namespace jtk::gtk
