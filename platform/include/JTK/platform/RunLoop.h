// Timers on the main run loop. A timer scheduled in the common modes keeps
// firing while a modal alert runs or a menu tracks.
#pragma once

#include <functional>
#include <memory>

namespace jtk::platform {

enum class RunLoopMode { defaultMode, modalPanel, eventTracking };

class Timer {
public:
    virtual ~Timer() = default;
    virtual void invalidate() = 0;
    virtual bool isValid() const = 0;
};

// Adds a timer to the main run loop. commonModes false: default mode only.
std::shared_ptr<Timer> scheduleTimer(double interval, bool repeats, std::function<void(Timer&)> fire,
                                     bool commonModes = true);

}  // namespace jtk::platform
