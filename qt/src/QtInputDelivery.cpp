#include "QtInputDelivery.h"

#include <QApplication>
#include <QPointer>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>
#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>

#include "QtKeyMapping.h"
#include "QtWindowOrder.h"
#include "QtWindows.h"

namespace jtk::qt {

namespace {

using platform::EventType;

struct DeliveryState {
    QPointer<QWidget> pressWindow;  // grabs drags and the release
    Qt::MouseButtons buttons;
    const platform::Event* current = nullptr;
    EventClock* clock = nullptr;
};

DeliveryState& state() {
    static DeliveryState delivery;
    return delivery;
}

EventClock& clock() {
    auto& delivery = state();
    if (!delivery.clock) delivery.clock = new EventClock(QApplication::doubleClickInterval());
    return *delivery.clock;
}

Qt::MouseButton qtButton(const platform::Event& event) {
    switch (event.type) {
        case EventType::rightMouseDown:
        case EventType::rightMouseUp:
            return Qt::RightButton;
        case EventType::leftMouseDown:
        case EventType::leftMouseUp:
        case EventType::leftMouseDragged:
            return Qt::LeftButton;
        default:
            return Qt::NoButton;
    }
}

void deliverMouse(const platform::Event& event) {
    auto& delivery = state();
    bool press = event.type == EventType::leftMouseDown || event.type == EventType::rightMouseDown;
    bool release = event.type == EventType::leftMouseUp || event.type == EventType::rightMouseUp;
    bool grabbed = release || event.type == EventType::leftMouseDragged;
    QWidget* target = grabbed && delivery.pressWindow ? delivery.pressWindow.data()
                                                      : topLevelWidgetAt(event.location.x, event.location.y);
    Qt::MouseButton button = qtButton(event);
    if (press) {
        delivery.pressWindow = target;
        // A press on a window in the back brings it forward and makes it key,
        // unless a modal dialog blocks it (Qt then drops the press).
        QWidget* modal = QApplication::activeModalWidget();
        if (target && target->windowType() != Qt::Popup && QApplication::activeWindow() != target &&
            (!modal || modal == target))
            activateTopLevel(target);
    }
    unsigned long timestamp = press ? clock().press(event.clickState) : clock().other();
    if (press) delivery.buttons |= button;
    if (release) delivery.buttons &= ~Qt::MouseButtons(button);
    QWindow* window = target ? target->windowHandle() : nullptr;
    if (!window) return;
    QPointF global(event.location.x, event.location.y);
    QPointF local = global - QPointF(window->geometry().topLeft());
    QEvent::Type type = press ? QEvent::MouseButtonPress : release ? QEvent::MouseButtonRelease : QEvent::MouseMove;
    qt_handleMouseEvent(window, local, global, delivery.buttons, press || release ? button : Qt::NoButton, type,
                        qtModifiers(event.flags), static_cast<int>(timestamp));
}

void deliverScroll(const platform::Event& event) {
    QWidget* top = topLevelWidgetAt(event.location.x, event.location.y);
    if (!top) return;
    QPoint global(static_cast<int>(event.location.x), static_cast<int>(event.location.y));
    QWidget* target = top->childAt(top->mapFromGlobal(global));
    if (!target) target = top;
    // One line of the platform's wheel is 120 eighths of a degree, as a mouse wheel's notch.
    QPoint angle(0, static_cast<int>(event.scrollDeltaY * 120));
    QWheelEvent wheel(QPointF(target->mapFromGlobal(global)), QPointF(global), QPoint(), angle, state().buttons,
                      qtModifiers(event.flags), Qt::NoScrollPhase, false);
    QApplication::sendEvent(target, &wheel);
}

void deliverKey(const platform::Event& event) {
    // No active window (a dialog has just hidden): the front visible window,
    // which a window manager would have made active.
    QWidget* target = QApplication::activeWindow();
    if (!target) target = frontVisibleWindow();
    QWindow* window = target ? target->windowHandle() : nullptr;
    if (!window) return;
    QtKeyStroke stroke = qtKeyStroke(event.keyCode, event.flags, event.unicodeText);
    QEvent::Type type = event.type == EventType::keyDown ? QEvent::KeyPress : QEvent::KeyRelease;
    qt_handleKeyEvent(window, type, stroke.key, qtModifiers(event.flags), stroke.text);
}

}  // namespace

unsigned long EventClock::press(int64_t clickState) {
    if (clickState >= 2 && firstOfDoubleClick_) {
        firstOfDoubleClick_ = false;
        now_ = lastPress_ + 1;
        return now_;
    }
    // Both presses of a double click carry its click state: the first of
    // them opens the pair.
    firstOfDoubleClick_ = clickState >= 2;
    now_ += static_cast<unsigned long>(interval_) + 1000;
    lastPress_ = now_;
    return now_;
}

void deliverEvent(const platform::Event& event) {
    auto& delivery = state();
    const platform::Event* outer = delivery.current;
    delivery.current = &event;
    switch (event.type) {
        case EventType::keyDown:
        case EventType::keyUp:
            deliverKey(event);
            break;
        case EventType::scrollWheel:
            deliverScroll(event);
            break;
        case EventType::flagsChanged:
        case EventType::null:
            break;
        default:
            if (platform::isMouseEvent(event.type)) deliverMouse(event);
            break;
    }
    delivery.current = outer;
}

const platform::Event* eventBeingDelivered() { return state().current; }

QWidget* pressWindow() { return state().pressWindow; }

}  // namespace jtk::qt
