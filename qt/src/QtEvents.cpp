// The platform's input events over Qt: posting updates the shared HID state
// (cursor, modifier flags) so that any thread may post, and queues delivery
// on the GUI thread in arrival order, behind the work queued before.
#include <QWidget>

#include "JTK/platform/Events.h"
#include "JTK/platform/Process.h"
#include "JTK/services/HidState.h"
#include "QtInputDelivery.h"
#include "QtMainQueue.h"
#include "QtScreens.h"
#include "QtWindowOrder.h"

namespace jtk::qt {

namespace {

void updateHidState(const platform::Event& event) {
    auto& hid = services::HidState::shared();
    if (platform::isMouseEvent(event.type) || event.type == platform::EventType::scrollWheel)
        hid.setCursor(event.location);
    if (event.type == platform::EventType::flagsChanged) hid.setModifierFlags(event.flags);
}

void queueDelivery(const platform::Event& event) {
    enqueueOnMain([event] { deliverEvent(event); });
}

}  // namespace

}  // namespace jtk::qt

namespace jtk::platform {

void postEvent(EventTap, const Event& event) {
    qt::updateHidState(event);
    qt::queueDelivery(event);
}

void postEventToPid(int pid, const Event& event) {
    if (pid != processIdentifier()) {
        systemLog("postEventToPid: process " + std::to_string(pid) + " is not this one; the event is dropped");
        return;
    }
    qt::queueDelivery(event);
}

// Delivery is the backend's own queue, in order: no faster batch, and
// nothing to wait for outside the process.
bool postKeyStrokesToPid(int, const std::vector<KeyStroke>&) { return false; }
void settleInput() {}

Point mouseLocation() { return qt::screenPointFromGlobal(services::HidState::shared().cursor()); }

Point locationInWindow(const Event& event) {
    bool grabbed = event.type == EventType::leftMouseDragged || event.type == EventType::leftMouseUp ||
                   event.type == EventType::rightMouseUp;
    QWidget* window = grabbed ? qt::pressWindow() : nullptr;
    if (!window) window = qt::topLevelWidgetAt(event.location.x, event.location.y);
    if (!window) return qt::screenPointFromGlobal(event.location);
    QRect frame = window->frameGeometry();
    return {event.location.x - frame.x(), frame.height() - (event.location.y - frame.y())};
}

}  // namespace jtk::platform
