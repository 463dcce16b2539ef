// The application object over GTK: the windows in the backend's order (open
// pop-ups first), the key window, the main menu of the key window, activation,
// and the local event monitors, fed by the event observer (GtkInput.h).
// GTK 4 lets no one swallow or change an event: a monitor sees every event,
// and what it returns is not used. Main thread only.
#pragma once

#include <gtk/gtk.h>

#include <map>

#include "JTK/platform/Application.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Window.h"

namespace jtk::gtk {

class NativeApplication : public platform::Application {
public:
    std::string className() const override { return "GtkApplication"; }
    std::vector<std::shared_ptr<platform::Window>> windows() const override;
    std::shared_ptr<platform::Window> keyWindow() const override;
    std::shared_ptr<platform::Menu> mainMenu() const override;
    bool isActive() const override;
    void activateIgnoringOtherApps(bool flag) override;
    std::string name() const override;
    uint64_t addLocalMonitorForEvents(uint64_t eventMask, platform::EventMonitorHandler handler) override;
    void removeMonitor(uint64_t token) override;

    // Shows the monitors an event GTK delivers to the native.
    void eventDelivered(const platform::Event& event, GtkWidget* native);
    // The window of the last mouse press, while it exists.
    std::shared_ptr<platform::Window> pressWindow() const { return pressWindow_.lock(); }

private:
    struct Monitor {
        uint64_t mask;
        platform::EventMonitorHandler handler;
    };
    uint64_t nextToken_ = 1;
    std::map<uint64_t, Monitor> monitors_;
    std::weak_ptr<platform::Window> pressWindow_;
};

std::shared_ptr<NativeApplication> nativeApplication();

// Starts feeding the monitors from the event observer (once, main thread).
void startEventMonitoring();

// The deepest widget of a native at a global point (y down); null outside it.
GtkWidget* widgetAtGlobalPoint(GtkWidget* native, platform::Point global);

}  // namespace jtk::gtk
