// The application object of the embedded desktop: the window list (creation
// order), the key window and the front-to-back window order, activation, the
// application name, the main menu, local event monitors, and the main event
// loop. Create it on the main thread (Application::shared() in main()); its
// window state is main-thread only. isActive(), the monitors and terminate()
// may be used from any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "JTK/platform/Application.h"
#include "JTK/platform/Events.h"

namespace jtk::desktop {

class Window;

class Application : public platform::Application {
public:
    static std::shared_ptr<Application> shared();

    // Every window not closed, in creation order.
    std::vector<std::shared_ptr<platform::Window>> windows() const override;
    const std::vector<std::shared_ptr<Window>>& desktopWindows() const { return windows_; }
    std::shared_ptr<platform::Window> keyWindow() const override;
    std::shared_ptr<Window> desktopKeyWindow() const;
    // The visible windows, front to back (higher levels first): the order
    // in which a click looks for its window.
    std::vector<std::shared_ptr<Window>> orderedWindows() const;
    std::shared_ptr<Window> windowWithNumber(int windowNumber) const;

    std::shared_ptr<platform::Menu> mainMenu() const override { return mainMenu_; }
    void setMainMenu(std::shared_ptr<platform::Menu> menu) { mainMenu_ = std::move(menu); }

    bool isActive() const override { return active_; }
    // Activates; when no window is key, the frontmost visible window that can
    // become key does.
    void activateIgnoringOtherApps(bool flag) override;
    void deactivate() { active_ = false; }

    std::string name() const override;
    void setName(std::string name);

    uint64_t addLocalMonitorForEvents(uint64_t eventMask, platform::EventMonitorHandler handler) override;
    void removeMonitor(uint64_t token) override;
    // Passes the event through the monitors whose mask holds its type, in the
    // order they were added; null when one of them swallowed it. The event
    // routing leaves out the mouse events that a tracking menu takes.
    std::shared_ptr<platform::Event> runMonitors(std::shared_ptr<platform::Event> event);

    // Activates and runs the main run loop in the default mode until
    // terminate(); returns the status given to terminate(). Main thread.
    // When the launch asks for the on-screen viewer (Viewer.h), it is shown
    // for the length of the run.
    int run();
    // Ends run() with the status (any thread). Before run() starts, the next
    // run() returns at once.
    void terminate(int status);

    Application();

private:
    friend class Window;
    // Window bookkeeping, called by windows (main thread).
    void addWindow(const std::shared_ptr<Window>& window);
    void removeWindow(const Window& window);
    void setKeyWindow(const std::shared_ptr<Window>& window);
    void bringToFront(Window& window);
    // A window that hid or closed stops being key; the frontmost visible one
    // that can be key takes over.
    void windowDidHide(const Window& window);
    std::shared_ptr<Window> frontmostKeyCandidate() const;

    struct Monitor {
        uint64_t token;
        uint64_t mask;
        platform::EventMonitorHandler handler;
    };

    std::vector<std::shared_ptr<Window>> windows_;
    std::weak_ptr<Window> keyWindow_;
    uint64_t nextOrderStamp_ = 1;
    std::shared_ptr<platform::Menu> mainMenu_;
    std::atomic<bool> active_{false};

    mutable std::mutex mutex_;  // guards the name and the monitors
    std::optional<std::string> name_;
    std::vector<Monitor> monitors_;
    uint64_t nextMonitorToken_ = 1;

    std::atomic<bool> terminating_{false};
    std::atomic<int> exitStatus_{0};
};

}  // namespace jtk::desktop
