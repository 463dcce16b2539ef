// Delivery of the platform's input events to Qt on the GUI thread, through
// the window-level entry points a window system uses, so that the
// application's event filters see them as a person's input: mouse events go
// to the topmost window under the pointer in the backend's order, and a
// press grabs the drags and the release; key events go to the active window.
#pragma once

#include "JTK/platform/Events.h"

class QWidget;

namespace jtk::qt {

// GUI thread, in arrival order.
void deliverEvent(const platform::Event& event);
// The event being delivered now (for the monitors, which then see the
// platform's own fields); null outside a delivery.
const platform::Event* eventBeingDelivered();
// The window of the last press: drags and releases belong to it.
QWidget* pressWindow();

// The backend's clock for event timestamps, in milliseconds. A press gets a
// time more than the double-click interval after the previous press, except
// the second press of a double click, which is 1 ms after the first: so Qt
// makes a double click exactly when the platform events ask for one, whatever
// the real pacing. Both presses of a double click carry a click state of 2
// or more; the first such press opens the pair, the next one closes it.
class EventClock {
public:
    explicit EventClock(int doubleClickInterval) : interval_(doubleClickInterval) {}
    unsigned long press(int64_t clickState);
    unsigned long other() const { return now_; }

private:
    int interval_;
    unsigned long now_ = 1000;
    unsigned long lastPress_ = 0;
    bool firstOfDoubleClick_ = false;  // the last press opened a double click
};

}  // namespace jtk::qt
