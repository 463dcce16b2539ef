// Placeholders for the input half of the backend until the XTest input and
// the event observer land (their owner deletes this file): posted events
// only move the shared cursor and modifier state, nothing reaches GTK.
#include "GtkInput.h"
#include "GtkScreens.h"
#include "JTK/platform/Events.h"
#include "JTK/services/HidState.h"

namespace jtk::gtk {

void startInput() {}
void observeEvents(EventObserver) {}
const platform::Event* eventBeingDelivered() { return nullptr; }

}  // namespace jtk::gtk

namespace jtk::platform {

void postEvent(EventTap, const Event& event) {
    auto& hid = services::HidState::shared();
    if (isMouseEvent(event.type) || event.type == EventType::scrollWheel) hid.setCursor(event.location);
    if (event.type == EventType::flagsChanged) hid.setModifierFlags(event.flags);
}

void postEventToPid(int, const Event&) {}
bool postKeyStrokesToPid(int, const std::vector<KeyStroke>&) { return false; }
void settleInput() {}
Point mouseLocation() { return gtk::screenPointFromGlobal(services::HidState::shared().cursor()); }

}  // namespace jtk::platform
