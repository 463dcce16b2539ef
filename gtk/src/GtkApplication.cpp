#include "GtkApplication.h"

#include <filesystem>

#include "GtkInput.h"
#include "GtkMenus.h"
#include "GtkScreens.h"
#include "GtkWindowOrder.h"
#include "GtkWrappers.h"
#include "GtkX11.h"
#include "JTK/platform/Process.h"

namespace jtk::gtk {

namespace {

bool isPress(platform::EventType type) {
    return type == platform::EventType::leftMouseDown || type == platform::EventType::rightMouseDown;
}

// Input a menu takes: everything an open popover menu receives, and the
// mouse on a menu bar. Monitors do not see it; a choice reaches them as the
// menu's action.
bool isMenuInput(const platform::Event& event, GtkWidget* native) {
    if (GTK_IS_POPOVER_MENU(native)) return true;
    if (!platform::isMouseEvent(event.type)) return false;
    for (GtkWidget* w = widgetAtGlobalPoint(native, event.location); w; w = gtk_widget_get_parent(w))
        if (GTK_IS_POPOVER_MENU_BAR(w)) return true;
    return false;
}

}  // namespace

GtkWidget* widgetAtGlobalPoint(GtkWidget* native, platform::Point global) {
    auto origin = native ? rootPositionOf(native) : std::nullopt;
    if (!origin) return nullptr;
    double dx = 0, dy = 0;
    gtk_native_get_surface_transform(GTK_NATIVE(native), &dx, &dy);
    return gtk_widget_pick(native, global.x - origin->x - dx, global.y - origin->y - dy, GTK_PICK_DEFAULT);
}

std::shared_ptr<NativeApplication> nativeApplication() {
    static auto* application = new std::shared_ptr<NativeApplication>(std::make_shared<NativeApplication>());
    return *application;
}

void startEventMonitoring() {
    static bool started = false;
    if (started) return;
    started = true;
    observeEvents([](const platform::Event& event, GtkWidget* native) {
        nativeApplication()->eventDelivered(event, native);
    });
}

std::vector<std::shared_ptr<platform::Window>> NativeApplication::windows() const {
    std::vector<std::shared_ptr<platform::Window>> windows;
    for (GtkWidget* native : listedNatives())
        if (auto window = windowFor(native)) windows.push_back(std::move(window));
    return windows;
}

std::shared_ptr<platform::Window> NativeApplication::keyWindow() const {
    for (GtkWidget* window : orderedWindows())
        if (gtk_window_is_active(GTK_WINDOW(window))) return windowFor(window);
    return nullptr;
}

std::shared_ptr<platform::Menu> NativeApplication::mainMenu() const {
    // The key window's menu bar, else the front window's.
    auto key = keyWindow();
    GtkWidget* window = key ? nativeOf(*key) : frontVisibleWindow();
    return mainMenuOf(window);
}

bool NativeApplication::isActive() const { return keyWindow() != nullptr; }

void NativeApplication::activateIgnoringOtherApps(bool) {
    if (keyWindow()) return;
    if (GtkWidget* front = frontVisibleWindow()) activateWindow(front);
}

std::string NativeApplication::name() const {
    if (const char* name = g_get_application_name(); name && *name) return name;
    auto arguments = platform::processArguments();
    return arguments.empty() ? std::string() : std::filesystem::path(arguments.front()).filename().string();
}

uint64_t NativeApplication::addLocalMonitorForEvents(uint64_t eventMask, platform::EventMonitorHandler handler) {
    startEventMonitoring();
    uint64_t token = nextToken_++;
    monitors_.emplace(token, Monitor{eventMask, std::move(handler)});
    return token;
}

void NativeApplication::removeMonitor(uint64_t token) { monitors_.erase(token); }

void NativeApplication::eventDelivered(const platform::Event& event, GtkWidget* native) {
    if (isPress(event.type)) pressWindow_ = windowFor(native);
    if (monitors_.empty() || isMenuInput(event, native)) return;
    auto delivered = std::make_shared<platform::Event>(event);
    if (!delivered->windowNumber) delivered->windowNumber = windowNumberOf(native);
    // A monitor may add or remove monitors: run the ones present now, if still present.
    std::vector<uint64_t> tokens;
    for (const auto& [token, monitor] : monitors_)
        if (monitor.mask & platform::eventMaskBit(event.type)) tokens.push_back(token);
    for (uint64_t token : tokens) {
        auto found = monitors_.find(token);
        if (found == monitors_.end()) continue;
        auto handler = found->second.handler;  // the monitor may remove itself
        // GTK delivers the event whatever a monitor returns; each sees it as delivered.
        handler(delivered);
    }
}

}  // namespace jtk::gtk

namespace jtk::platform {

std::shared_ptr<Application> sharedApplication() { return gtk::nativeApplication(); }

Point locationInWindow(const Event& event) {
    bool grabbed = event.type == EventType::leftMouseDragged || event.type == EventType::leftMouseUp ||
                   event.type == EventType::rightMouseUp;
    std::shared_ptr<Window> window = grabbed ? gtk::nativeApplication()->pressWindow() : nullptr;
    if (!window) {
        for (auto& candidate : gtk::nativeApplication()->windows()) {
            Rect frame = candidate->frame();
            Point onScreen = gtk::screenPointFromGlobal(event.location);
            if (pointInRect(onScreen, frame)) {
                window = candidate;
                break;
            }
        }
    }
    Point onScreen = gtk::screenPointFromGlobal(event.location);
    if (!window) return onScreen;
    Rect frame = window->frame();
    return {onScreen.x - frame.minX(), onScreen.y - frame.minY()};
}

}  // namespace jtk::platform
