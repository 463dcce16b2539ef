// The application object: window list, key window, main menu, activation,
// and local event monitors.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "JTK/platform/Object.h"

namespace jtk::platform {

class Window;
class Menu;
struct Event;

using EventMonitorHandler = std::function<std::shared_ptr<Event>(std::shared_ptr<Event>)>;

class Application : public Object {
public:
    // Every window, visible or not, in the platform's order.
    virtual std::vector<std::shared_ptr<Window>> windows() const = 0;
    virtual std::shared_ptr<Window> keyWindow() const = 0;
    virtual std::shared_ptr<Menu> mainMenu() const = 0;
    virtual bool isActive() const = 0;
    virtual void activateIgnoringOtherApps(bool flag) = 0;
    // The executable's file name unless the application sets another.
    virtual std::string name() const = 0;
    // A monitor sees every event of the mask before it is dispatched; returning
    // null swallows the event. Returns a token for removeMonitor.
    virtual uint64_t addLocalMonitorForEvents(uint64_t eventMask, EventMonitorHandler handler) = 0;
    virtual void removeMonitor(uint64_t token) = 0;
};

// The shared application object (created by the platform on first use).
std::shared_ptr<Application> sharedApplication();

}  // namespace jtk::platform
