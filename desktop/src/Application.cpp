#include "JTK/desktop/Application.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "JTK/desktop/EventRouting.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/Viewer.h"
#include "JTK/desktop/Window.h"

namespace jtk::desktop {

Application::Application() { installEventRouting(); }

std::shared_ptr<Application> Application::shared() {
    static const std::shared_ptr<Application> application = std::make_shared<Application>();
    return application;
}

std::vector<std::shared_ptr<platform::Window>> Application::windows() const { return {windows_.begin(), windows_.end()}; }

std::shared_ptr<platform::Window> Application::keyWindow() const { return desktopKeyWindow(); }

std::shared_ptr<Window> Application::desktopKeyWindow() const {
    auto key = keyWindow_.lock();
    return key && key->isVisible() ? key : nullptr;
}

std::vector<std::shared_ptr<Window>> Application::orderedWindows() const {
    std::vector<std::shared_ptr<Window>> visible;
    std::copy_if(windows_.begin(), windows_.end(), std::back_inserter(visible), [](const auto& w) { return w->isVisible(); });
    std::stable_sort(visible.begin(), visible.end(), [](const auto& a, const auto& b) {
        if (a->level() != b->level()) return a->level() > b->level();
        return a->orderStamp() > b->orderStamp();
    });
    return visible;
}

std::shared_ptr<Window> Application::windowWithNumber(int windowNumber) const {
    for (const auto& window : windows_)
        if (window->windowNumber() == windowNumber) return window;
    return nullptr;
}

void Application::activateIgnoringOtherApps(bool) {
    active_ = true;
    if (!desktopKeyWindow())
        if (auto candidate = frontmostKeyCandidate()) keyWindow_ = candidate;
}

std::string Application::name() const {
    {
        std::lock_guard lock(mutex_);
        if (name_) return *name_;
    }
    std::error_code error;
    auto name = std::filesystem::read_symlink("/proc/self/exe", error).filename().string();
    // The kernel marks the link of an executable replaced while it runs (a rebuild).
    const std::string deleted = " (deleted)";
    if (name.size() > deleted.size() && name.ends_with(deleted)) name.resize(name.size() - deleted.size());
    return error ? std::string{} : name;
}

void Application::setName(std::string name) {
    std::lock_guard lock(mutex_);
    name_ = std::move(name);
}

uint64_t Application::addLocalMonitorForEvents(uint64_t eventMask, platform::EventMonitorHandler handler) {
    std::lock_guard lock(mutex_);
    uint64_t token = nextMonitorToken_++;
    monitors_.push_back({token, eventMask, std::move(handler)});
    return token;
}

void Application::removeMonitor(uint64_t token) {
    std::lock_guard lock(mutex_);
    std::erase_if(monitors_, [&](const Monitor& m) { return m.token == token; });
}

std::shared_ptr<platform::Event> Application::runMonitors(std::shared_ptr<platform::Event> event) {
    std::vector<Monitor> monitors;
    {
        // A handler may add or remove monitors: run a copy, without the lock.
        std::lock_guard lock(mutex_);
        monitors = monitors_;
    }
    for (const auto& monitor : monitors) {
        if (!event) break;
        if ((monitor.mask & platform::eventMaskBit(event->type)) && monitor.handler) event = monitor.handler(std::move(event));
    }
    return event;
}

int Application::run() {
    activateIgnoringOtherApps(true);
    // A viewer asked for by the launch lives as long as this run (none for a
    // run that ends at once).
    bool viewerAttachedHere = !terminating_ && !isViewerAttached() && attachViewerIfRequested();
    auto& loop = RunLoop::main();
    loop.runMode(RunLoopMode::defaultMode, std::nullopt, [this] { return terminating_.load(); });
    if (viewerAttachedHere) detachViewer();
    terminating_ = false;
    return exitStatus_;
}

void Application::terminate(int status) {
    exitStatus_ = status;
    terminating_ = true;
    RunLoop::main().wakeUp();
}

void Application::addWindow(const std::shared_ptr<Window>& window) {
    if (std::find(windows_.begin(), windows_.end(), window) == windows_.end()) windows_.push_back(window);
}

void Application::removeWindow(const Window& window) {
    std::erase_if(windows_, [&](const auto& w) { return w.get() == &window; });
}

void Application::setKeyWindow(const std::shared_ptr<Window>& window) { keyWindow_ = window; }

void Application::bringToFront(Window& window) { window.orderStamp_ = nextOrderStamp_++; }

void Application::windowDidHide(const Window& window) {
    if (keyWindow_.lock().get() != &window) return;
    keyWindow_.reset();
    if (auto candidate = frontmostKeyCandidate()) keyWindow_ = candidate;
}

std::shared_ptr<Window> Application::frontmostKeyCandidate() const {
    for (const auto& window : orderedWindows())
        if (window->canBecomeKeyWindow()) return window;
    return nullptr;
}

}  // namespace jtk::desktop

namespace jtk::platform {

std::shared_ptr<Application> sharedApplication() { return desktop::Application::shared(); }

}  // namespace jtk::platform
