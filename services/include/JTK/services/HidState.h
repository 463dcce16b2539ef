// The HID system state every backend keeps: where the cursor is and which
// modifier keys are down. The event factories start new events from it; a
// backend's postEvent updates it as its events are posted. Any thread.
#pragma once

#include <cstdint>
#include <mutex>

#include "JTK/platform/Events.h"

namespace jtk::services {

class HidState {
public:
    static HidState& shared();

    // In event coordinates (y down from the top of the main screen).
    platform::Point cursor() const;
    void setCursor(platform::Point eventPoint);
    // Device-independent bits only, as the flags of a flags-changed event set them.
    uint64_t modifierFlags() const;
    void setModifierFlags(uint64_t flags);
    // Back to the cursor at the origin and no modifiers (tests).
    void reset();

private:
    HidState() = default;
    mutable std::mutex mutex_;
    platform::Point cursor_;
    uint64_t modifierFlags_ = 0;
};

}  // namespace jtk::services
