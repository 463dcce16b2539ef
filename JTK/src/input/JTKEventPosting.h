// What every input action shares: the conversion from screen points to event
// points, bringing the application to the front, the cursor move, the pauses
// that pace input, and the hand-over to a recorder that is under way.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "JTK/JTKStringConvertable.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Geometry.h"

namespace jtk {

class JTKElement;

// The fixed pauses of the input actions, in microseconds, all in one place.
struct JTKPacing {
    static constexpr uint32_t afterClick = 250'000;
    static constexpr uint32_t afterScroll = 250'000;
    static constexpr uint32_t afterText = 250'000;
    static constexpr uint32_t betweenKeyPressAndRelease = 5'000;
    static constexpr uint32_t afterKeyRelease = 50'000;
    static constexpr uint32_t dragStepFar = 400;
    static constexpr uint32_t dragStepNear = 5'000;
    // The cursor counts as near the drag's target below this many points.
    static constexpr double dragNearDistance = 20;
    static constexpr uint32_t afterDragMovement = 50'000;
    static constexpr uint32_t afterDrag = 50'000;
    // Seconds a click's menu capture stays open (a delayed main-queue task).
    static constexpr double menuCaptureWindow = 0.08;
    // Seconds openMenu waits for the menu its click opens.
    static constexpr double openMenuTimeout = 5.0;
};

class JTKEventPosting {
public:
    JTKEventPosting() = delete;

    // Screen point (y up) to event point (y down), flipped against the height
    // of the last screen that contains the point (0 when none does): (x, H - y - 1).
    static platform::Point eventPoint(platform::Point screenPoint);
    // Activates the application when it is not active; no wait follows.
    static void activateApplicationIfNeeded();
    // Moves the cursor to an event point on the main display.
    static void moveCursor(platform::Point eventPoint);
    // Lets the input posted so far arrive (platform::settleInput), then
    // sleeps the calling thread.
    static void pause(uint32_t microseconds);
    // A fresh event source with the HID system state, as every action makes one.
    static std::shared_ptr<platform::EventSource> makeEventSource();

    // When a recording is under way, gives the action to the recorder and
    // returns true: the caller then posts nothing and returns.
    static bool handOverToRecorder(const JTKElement* element, const std::string& signature,
                                   const std::vector<JTKStringConvertable>& arguments, bool chained);
};

}  // namespace jtk
