#include "JTK/desktop/EventRouting.h"

#include <mutex>

#include "JTK/desktop/Application.h"
#include "JTK/desktop/KeyboardLayout.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/MenuBar.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/WindowServer.h"
#include "JTK/desktop/controls/Button.h"

namespace jtk::desktop {

namespace {

using platform::EventType;

// Main-thread state of the dispatch. Handlers may run nested loops (a menu
// tracks inside a mouse-down), so the dispatch re-enters itself.
struct RoutingState {
    // The view that got the press gets the drags and the release.
    std::weak_ptr<View> mouseDownView;
    std::weak_ptr<Window> mouseDownWindow;
    bool leftButtonDown = false;
    std::shared_ptr<const platform::Event> current;
};

RoutingState& state() {
    static RoutingState routing;
    return routing;
}

constexpr uint64_t commandLikeFlags =
    platform::eventFlags::command | platform::eventFlags::control | platform::eventFlags::alternate;

bool isMouseUp(EventType type) { return type == EventType::leftMouseUp || type == EventType::rightMouseUp; }

std::shared_ptr<Window> windowAt(const Application& app, platform::Point screenPoint) {
    for (const auto& window : app.orderedWindows())
        if (platform::pointInRect(screenPoint, window->frame())) return window;
    return nullptr;
}

// A left press on the menu bar, not on a status item over it: the bar's own,
// above every ordinary window.
bool isMenuBarPress(const Application& app, const platform::Event& event) {
    if (event.type != EventType::leftMouseDown) return false;
    auto screenPoint = WindowServer::screenPointFromEventPoint(event.location);
    if (!platform::pointInRect(screenPoint, menuBarFrame())) return false;
    auto window = windowAt(app, screenPoint);
    return !window || window->level() < Window::statusLevel;
}

std::shared_ptr<View> viewAt(Window& window, platform::Point pointInWindow) {
    View* hit = window.desktopFrameView()->hitTest(pointInWindow);
    return hit ? hit->sharedView() : nullptr;
}

void mouseDown(Application& app, platform::Event& event) {
    auto& routing = state();
    routing.mouseDownView.reset();
    routing.mouseDownWindow.reset();
    auto screenPoint = WindowServer::screenPointFromEventPoint(event.location);
    if (isMenuBarPress(app, event)) {
        if (!app.isActive()) app.activateIgnoringOtherApps(true);
        pressMenuBar(screenPoint);
        return;
    }
    auto window = windowAt(app, screenPoint);
    if (!window) return;
    if (!app.isActive()) app.activateIgnoringOtherApps(true);
    // A press on a window in the back brings it forward and makes it key.
    if (!window->isKeyWindow() && window->canBecomeKeyWindow()) window->makeKeyAndOrderFront();
    event.windowNumber = window->windowNumber();
    auto point = window->convertPointFromScreen(screenPoint);
    auto view = viewAt(*window, point);
    if (!view || event.type != EventType::leftMouseDown) return;
    routing.mouseDownView = view;
    routing.mouseDownWindow = window;
    view->mouseDown(event, point);
}

void mouseDraggedOrUp(platform::Event& event) {
    auto& routing = state();
    auto view = routing.mouseDownView.lock();
    auto window = routing.mouseDownWindow.lock();
    if (event.type == EventType::leftMouseUp) {
        routing.mouseDownView.reset();
        routing.mouseDownWindow.reset();
    }
    if (!view || !window) return;
    event.windowNumber = window->windowNumber();
    auto point = window->convertPointFromScreen(WindowServer::screenPointFromEventPoint(event.location));
    if (event.type == EventType::leftMouseUp)
        view->mouseUp(event, point);
    else
        view->mouseDragged(event, point);
}

void scrollWheel(Application& app, platform::Event& event) {
    auto screenPoint = WindowServer::screenPointFromEventPoint(event.location);
    auto window = windowAt(app, screenPoint);
    if (!window) return;
    event.windowNumber = window->windowNumber();
    // The innermost scroll view under the pointer scrolls.
    for (auto view = viewAt(*window, window->convertPointFromScreen(screenPoint)); view; view = view->desktopSuperview()) {
        if (view->isScrollView()) {
            view->scrollWheel(event);
            return;
        }
    }
}

// A push button in the window whose key equivalent the key types (Return for
// a default button) presses when no view has the keys.
bool pressButtonWithKeyEquivalent(const std::shared_ptr<View>& root, const std::string& characters) {
    if (!root || root->isHidden()) return false;
    if (auto* button = dynamic_cast<Button*>(root.get())) {
        if (button->isEnabled() && !button->keyEquivalent().empty() && button->keyEquivalent() == characters) {
            auto protector = root;
            button->performClick();
            return true;
        }
    }
    auto subviews = root->desktopSubviews();
    for (const auto& subview : subviews)
        if (pressButtonWithKeyEquivalent(subview, characters)) return true;
    return false;
}

void keyDown(Application& app, platform::Event& event) {
    if (event.flags & commandLikeFlags) {
        if (auto menu = std::dynamic_pointer_cast<Menu>(app.mainMenu()); menu && menu->performKeyEquivalent(event))
            return;
    }
    auto window = app.desktopKeyWindow();
    if (!window) return;
    event.windowNumber = window->windowNumber();
    if (auto responder = window->firstResponder()) {
        responder->keyDown(event);
        return;
    }
    if (!(event.flags & commandLikeFlags)) pressButtonWithKeyEquivalent(window->desktopContentView(), charactersOfEvent(event));
}

// The window an event belongs to, known before the monitors see it, as the
// window server knows it: the press's window for drags and releases, the
// window under the pointer for other mouse events, the key window for keys.
int windowNumberOfEvent(const Application& app, const platform::Event& event) {
    switch (event.type) {
        case EventType::keyDown:
        case EventType::keyUp:
        case EventType::flagsChanged: {
            auto window = app.desktopKeyWindow();
            return window ? window->windowNumber() : 0;
        }
        case EventType::leftMouseDragged:
        case EventType::leftMouseUp:
            if (auto window = state().mouseDownWindow.lock()) return window->windowNumber();
            [[fallthrough]];
        default: {
            if (isMenuBarPress(app, event)) return 0;
            auto window = windowAt(app, WindowServer::screenPointFromEventPoint(event.location));
            return window ? window->windowNumber() : 0;
        }
    }
}

}  // namespace

void routeEvent(std::shared_ptr<platform::Event> event) {
    if (!event) return;
    auto& routing = state();
    if (event->type == EventType::leftMouseDown) routing.leftButtonDown = true;
    if (event->type == EventType::leftMouseUp) routing.leftButtonDown = false;

    auto app = Application::shared();
    event->windowNumber = windowNumberOfEvent(*app, *event);
    // The mouse events a tracking menu takes are the menu's own: the local
    // monitors never see them, as they never see a menu's private loop. A
    // press on the menu bar is the bar's own in the same way.
    bool menusOwnIt = (Menu::trackingMenu() && platform::isMouseEvent(event->type)) || isMenuBarPress(*app, *event);
    if (!menusOwnIt) event = app->runMonitors(std::move(event));
    if (!event) return;

    struct CurrentEvent {
        std::shared_ptr<const platform::Event> saved;
        explicit CurrentEvent(std::shared_ptr<const platform::Event> now) : saved(std::move(state().current)) {
            state().current = std::move(now);
        }
        ~CurrentEvent() { state().current = std::move(saved); }
    } current(event);

    if (Menu::handleTrackingEvent(*event)) {
        // The menu took the release of the press that went to a view.
        if (isMouseUp(event->type)) {
            routing.mouseDownView.reset();
            routing.mouseDownWindow.reset();
        }
        return;
    }
    switch (event->type) {
        case EventType::leftMouseDown:
        case EventType::rightMouseDown:
            mouseDown(*app, *event);
            break;
        case EventType::leftMouseDragged:
        case EventType::leftMouseUp:
            mouseDraggedOrUp(*event);
            break;
        case EventType::scrollWheel:
            scrollWheel(*app, *event);
            break;
        case EventType::keyDown:
            keyDown(*app, *event);
            break;
        default:
            break;
    }
}

void installEventRouting() {
    static std::once_flag once;
    std::call_once(once, [] { RunLoop::main().setEventHandler([](std::shared_ptr<platform::Event> event) { routeEvent(std::move(event)); }); });
}

bool isLeftButtonDownInApplication() { return state().leftButtonDown; }

std::shared_ptr<const platform::Event> currentEvent() { return state().current; }

}  // namespace jtk::desktop

namespace jtk::platform {

Point locationInWindow(const Event& event) {
    auto screenPoint = desktop::WindowServer::screenPointFromEventPoint(event.location);
    auto window = desktop::Application::shared()->windowWithNumber(static_cast<int>(event.windowNumber));
    return window ? window->convertPointFromScreen(screenPoint) : screenPoint;
}

}  // namespace jtk::platform
