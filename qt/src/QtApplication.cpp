#include "QtApplication.h"

#include <QApplication>
#include <QFileInfo>
#include <QKeyEvent>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QStandardPaths>
#include <QTimer>
#include <QWindow>

#include "QtInputDelivery.h"
#include "QtKeyMapping.h"
#include "QtText.h"
#include "QtWindowOrder.h"
#include "QtWindows.h"
#include "QtWrappers.h"

namespace jtk::qt {

namespace {

using platform::EventType;

std::optional<EventType> mouseEventType(const QMouseEvent& mouse) {
    bool right = mouse.button() == Qt::RightButton;
    switch (mouse.type()) {
        case QEvent::MouseButtonPress:
            return right ? EventType::rightMouseDown : EventType::leftMouseDown;
        case QEvent::MouseButtonRelease:
            return right ? EventType::rightMouseUp : EventType::leftMouseUp;
        case QEvent::MouseMove:
            return (mouse.buttons() & Qt::LeftButton) ? EventType::leftMouseDragged : EventType::mouseMoved;
        default:
            return std::nullopt;  // a double click is the second press, seen already
    }
}

// The platform event a person's (or the backend's) input event stands for.
std::optional<platform::Event> platformEventOf(QWindow* window, QEvent* event) {
    platform::Event converted;
    const platform::Event* delivered = eventBeingDelivered();
    if (auto* mouse = dynamic_cast<QMouseEvent*>(event)) {
        auto type = mouseEventType(*mouse);
        if (!type) return std::nullopt;
        converted.type = *type;
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
        QPointF global = mouse->globalPosition();
#else
        QPointF global = mouse->screenPos();
#endif
        converted.location = {global.x(), global.y()};
        converted.button = mouse->button() == Qt::RightButton ? platform::MouseButton::right : platform::MouseButton::left;
        converted.clickState = delivered ? delivered->clickState : (mouse->type() == QEvent::MouseMove ? 0 : 1);
        converted.flags = platformFlags(mouse->modifiers());
    } else if (auto* key = dynamic_cast<QKeyEvent*>(event)) {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease) return std::nullopt;
        converted.type = event->type() == QEvent::KeyPress ? EventType::keyDown : EventType::keyUp;
        converted.flags = platformFlags(key->modifiers());
        converted.keyCode = delivered ? delivered->keyCode : platformKeyCode(key->key());
        converted.unicodeText = delivered ? delivered->unicodeText : key->text().toStdString();
    } else {
        return std::nullopt;
    }
    QWidget* top = topLevelWidgetOf(window);
    converted.windowNumber = top ? windowNumberOf(top) : 0;
    return converted;
}

// When the active window hides (a dialog answered), the front visible window
// becomes active, as a window manager makes it; a headless screen leaves no
// window active, and keys would have nowhere to go. Once Qt has finished
// hiding: it may still change the active window on the way.
void activateFrontWindowLater() {
    QTimer::singleShot(0, qApp, [] {
        QWidget* active = QApplication::activeWindow();
        if (active && active->isVisible()) return;
        if (QWidget* front = frontVisibleWindow()) activateTopLevel(front);
    });
}

// Input a menu takes: everything an open QMenu receives, and the mouse on a
// menu bar. Monitors do not see it, as a menu's own tracking is invisible to
// them on other platforms: a choice reaches them as the menu's action.
bool isMenuInput(QWindow* window, QEvent* event) {
    QWidget* top = topLevelWidgetOf(window);
    if (!top) return false;
    if (qobject_cast<QMenu*>(top)) return true;
    auto* mouse = dynamic_cast<QMouseEvent*>(event);
    if (!mouse) return false;
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    QPoint global = mouse->globalPosition().toPoint();
#else
    QPoint global = mouse->globalPos();
#endif
    for (QWidget* under = top->childAt(top->mapFromGlobal(global)); under && under != top; under = under->parentWidget())
        if (qobject_cast<QMenuBar*>(under)) return true;
    return false;
}

bool isTopLevel(QObject* object, QWidget*& widget) {
    widget = qobject_cast<QWidget*>(object);
    return widget && widget->isWindow();
}

// Keeps the window order and the closed windows, and shows the monitors
// every spontaneous mouse and key event as its window receives it.
class BackendEventFilter : public QObject {
public:
    bool eventFilter(QObject* receiver, QEvent* event) override {
        QWidget* widget = nullptr;
        switch (event->type()) {
            case QEvent::Show:
            case QEvent::WindowActivate:
                if (isTopLevel(receiver, widget)) {
                    setClosed(widget, false);
                    bringToFront(widget);
                }
                break;
            case QEvent::Close:
                if (isTopLevel(receiver, widget)) setClosed(widget, true);
                break;
            case QEvent::Hide:
                if (isTopLevel(receiver, widget) && isListedWindow(widget) &&
                    (QApplication::activeWindow() == widget || !QApplication::activeWindow()))
                    activateFrontWindowLater();
                break;
            case QEvent::FocusIn:
                watchTextEditing(qobject_cast<QWidget*>(receiver));
                break;
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::MouseMove:
            case QEvent::KeyPress:
            case QEvent::KeyRelease:
                if (auto* window = qobject_cast<QWindow*>(receiver); window && event->spontaneous())
                    return !passesMonitors(window, event);
                break;
            default:
                break;
        }
        return false;
    }

private:
    static bool passesMonitors(QWindow* window, QEvent* event) {
        auto application = qtApplication();
        if (!application->hasMonitors() || isMenuInput(window, event)) return true;
        auto converted = platformEventOf(window, event);
        return !converted || application->runMonitors(*converted);
    }
};

}  // namespace

std::shared_ptr<QtApplication> qtApplication() {
    static auto* application = new std::shared_ptr<QtApplication>(std::make_shared<QtApplication>());
    return *application;
}

void installApplicationEventFilter() {
    static bool installed = false;
    if (installed || !qApp) return;
    installed = true;
    auto* filter = new BackendEventFilter;
    filter->setParent(qApp);  // goes with the application
    qApp->installEventFilter(filter);
}

std::vector<std::shared_ptr<platform::Window>> QtApplication::windows() const {
    std::vector<std::shared_ptr<platform::Window>> windows;
    // Shown pop-ups lie above every window.
    for (QWidget* widget : shownPopupWindows()) windows.push_back(windowFor(widget));
    for (QWidget* widget : orderedWindows()) windows.push_back(windowFor(widget));
    return windows;
}

std::shared_ptr<platform::Window> QtApplication::keyWindow() const {
    QWidget* active = QApplication::activeWindow();
    return isListedWindow(active) ? windowFor(active) : nullptr;
}

std::shared_ptr<platform::Menu> QtApplication::mainMenu() const {
    // Menu bars belong to main windows: the key window's, else the front one's.
    auto* keyMain = qobject_cast<QMainWindow*>(QApplication::activeWindow());
    if (!keyMain) {
        for (QWidget* widget : orderedWindows())
            if ((keyMain = qobject_cast<QMainWindow*>(widget))) break;
    }
    // menuWidget(), not menuBar(): asking for the bar would give a window without one an empty bar.
    return keyMain ? menuBarFor(qobject_cast<QMenuBar*>(keyMain->menuWidget())) : nullptr;
}

bool QtApplication::isActive() const { return QApplication::activeWindow() != nullptr; }

void QtApplication::activateIgnoringOtherApps(bool) {
    if (QApplication::activeWindow()) return;
    for (QWidget* widget : orderedWindows()) {
        if (widget->isVisible()) {
            activateTopLevel(widget);
            return;
        }
    }
}

std::string QtApplication::name() const {
    // The last component of Qt's application data location, so that the
    // framework's data folder (support/name) is that location.
    QString location = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    QString name = QFileInfo(location).fileName();
    if (name.isEmpty()) name = QCoreApplication::applicationName();
    return name.toStdString();
}

uint64_t QtApplication::addLocalMonitorForEvents(uint64_t eventMask, platform::EventMonitorHandler handler) {
    installApplicationEventFilter();
    uint64_t token = nextToken_++;
    monitors_.emplace(token, Monitor{eventMask, std::move(handler)});
    return token;
}

void QtApplication::removeMonitor(uint64_t token) { monitors_.erase(token); }

bool QtApplication::runMonitors(const platform::Event& event) {
    // A monitor may add or remove monitors: run the ones present now, if still present.
    std::vector<uint64_t> tokens;
    for (const auto& [token, monitor] : monitors_)
        if (monitor.mask & platform::eventMaskBit(event.type)) tokens.push_back(token);
    auto passed = std::make_shared<platform::Event>(event);
    for (uint64_t token : tokens) {
        auto found = monitors_.find(token);
        if (found == monitors_.end()) continue;
        auto handler = found->second.handler;  // the monitor may remove itself
        passed = handler(passed);
        if (!passed) return false;
    }
    return true;
}

}  // namespace jtk::qt

namespace jtk::platform {

std::shared_ptr<Application> sharedApplication() { return qt::qtApplication(); }

}  // namespace jtk::platform
