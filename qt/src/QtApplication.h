// The application object over QApplication: the windows in the backend's
// order, the key window, the menu bar of the key window, activation, and
// the local event monitors fed by the backend's application event filter.
// Main thread only.
#pragma once

#include <map>

#include "JTK/platform/Application.h"
#include "JTK/platform/Events.h"

class QEvent;
class QObject;

namespace jtk::qt {

class QtApplication : public platform::Application {
public:
    std::string className() const override { return "QApplication"; }
    std::vector<std::shared_ptr<platform::Window>> windows() const override;
    std::shared_ptr<platform::Window> keyWindow() const override;
    std::shared_ptr<platform::Menu> mainMenu() const override;
    bool isActive() const override;
    void activateIgnoringOtherApps(bool flag) override;
    std::string name() const override;
    uint64_t addLocalMonitorForEvents(uint64_t eventMask, platform::EventMonitorHandler handler) override;
    void removeMonitor(uint64_t token) override;

    // Runs the monitors on an event; false when one of them swallowed it.
    bool runMonitors(const platform::Event& event);
    bool hasMonitors() const { return !monitors_.empty(); }

private:
    struct Monitor {
        uint64_t mask;
        platform::EventMonitorHandler handler;
    };
    uint64_t nextToken_ = 1;
    std::map<uint64_t, Monitor> monitors_;
};

std::shared_ptr<QtApplication> qtApplication();

// Installs the filter that keeps the window order and feeds the monitors
// (once; GUI thread with a QApplication).
void installApplicationEventFilter();

}  // namespace jtk::qt
