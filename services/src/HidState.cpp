#include "JTK/services/HidState.h"

namespace jtk::services {

HidState& HidState::shared() {
    static auto* state = new HidState;  // never destroyed: any thread may post while the process ends
    return *state;
}

platform::Point HidState::cursor() const {
    std::lock_guard lock(mutex_);
    return cursor_;
}

void HidState::setCursor(platform::Point eventPoint) {
    std::lock_guard lock(mutex_);
    cursor_ = eventPoint;
}

uint64_t HidState::modifierFlags() const {
    std::lock_guard lock(mutex_);
    return modifierFlags_;
}

void HidState::setModifierFlags(uint64_t flags) {
    std::lock_guard lock(mutex_);
    modifierFlags_ = flags & platform::eventFlags::deviceIndependentMask;
}

void HidState::reset() {
    std::lock_guard lock(mutex_);
    cursor_ = {};
    modifierFlags_ = 0;
}

}  // namespace jtk::services

namespace jtk::platform {

uint32_t mainDisplayID() { return 1; }

void moveCursorToPoint(uint32_t, Point eventPoint) { services::HidState::shared().setCursor(eventPoint); }

uint64_t currentModifierFlags() { return services::HidState::shared().modifierFlags(); }

}  // namespace jtk::platform
