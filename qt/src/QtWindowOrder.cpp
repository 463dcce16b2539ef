#include "QtWindowOrder.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <algorithm>

namespace jtk::qt {

namespace {

struct WindowOrder {
    std::vector<QPointer<QWidget>> frontToBack;
    std::vector<QPointer<QWidget>> closed;
};

WindowOrder& order() {
    static auto* windows = new WindowOrder;  // never destroyed: widgets may outlive static destruction
    return *windows;
}

void prune(std::vector<QPointer<QWidget>>& widgets) {
    std::erase_if(widgets, [](const QPointer<QWidget>& w) { return w.isNull(); });
}

bool contains(const std::vector<QPointer<QWidget>>& widgets, const QWidget* widget) {
    return std::any_of(widgets.begin(), widgets.end(), [&](const QPointer<QWidget>& w) { return w == widget; });
}

bool isPopupLike(const QWidget* widget) {
    Qt::WindowType type = widget->windowType();
    return type == Qt::Popup || type == Qt::ToolTip || type == Qt::Desktop;
}

}  // namespace

bool isListedWindow(const QWidget* widget) {
    if (!widget || !widget->isWindow() || isPopupLike(widget)) return false;
    return widget->isVisible() || !contains(order().closed, widget);
}

std::vector<QWidget*> orderedWindows() {
    auto& windows = order();
    prune(windows.frontToBack);
    std::vector<QWidget*> listed;
    for (const auto& widget : windows.frontToBack)
        if (isListedWindow(widget)) listed.push_back(widget);
    // Windows never shown or activated keep the toolkit's order, behind the others.
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (isListedWindow(widget) && std::find(listed.begin(), listed.end(), widget) == listed.end())
            listed.push_back(widget);
    return listed;
}

std::vector<QWidget*> shownPopupWindows() {
    auto isShownList = [](const QWidget* widget) {
        if (!widget->isVisible() || widget->windowType() != Qt::Popup || qobject_cast<const QMenu*>(widget)) return false;
        return qobject_cast<const QAbstractItemView*>(widget) || widget->findChild<QAbstractItemView*>();
    };
    std::vector<QWidget*> shown;
    if (QWidget* popup = QApplication::activePopupWidget(); popup && isShownList(popup)) shown.push_back(popup);
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        bool isToolTip = widget->windowType() == Qt::ToolTip && widget->isVisible();
        if ((isToolTip || isShownList(widget)) && std::find(shown.begin(), shown.end(), widget) == shown.end())
            shown.push_back(widget);
    }
    return shown;
}

QWidget* frontVisibleWindow(const QWidget* except) {
    for (QWidget* widget : orderedWindows())
        if (widget != except && widget->isVisible() && !widget->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus))
            return widget;
    return nullptr;
}

void bringToFront(QWidget* topLevel) {
    if (!topLevel || !topLevel->isWindow()) return;
    auto& windows = order();
    std::erase_if(windows.frontToBack, [&](const QPointer<QWidget>& w) { return w.isNull() || w == topLevel; });
    windows.frontToBack.insert(windows.frontToBack.begin(), topLevel);
}

void setClosed(QWidget* topLevel, bool closed) {
    auto& windows = order();
    prune(windows.closed);
    std::erase_if(windows.closed, [&](const QPointer<QWidget>& w) { return w == topLevel; });
    if (closed && topLevel) windows.closed.push_back(topLevel);
}

QWidget* topLevelWidgetAt(double globalX, double globalY) {
    QPointF point(globalX, globalY);
    auto holds = [&](const QWidget* w) { return w && w->isVisible() && QRectF(w->frameGeometry()).contains(point); };
    // An open popup is above every window.
    if (QWidget* popup = QApplication::activePopupWidget(); holds(popup)) return popup;
    for (QWidget* widget : orderedWindows())
        if (holds(widget)) return widget;
    return nullptr;
}

QWidget* topLevelWidgetOf(const QWindow* window) {
    if (!window) return nullptr;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->windowHandle() == window) return widget;
    return nullptr;
}

int64_t windowNumberOf(const QWidget* topLevel) {
    return static_cast<int64_t>(reinterpret_cast<uintptr_t>(topLevel) & 0x7fffffffffffffff);
}

}  // namespace jtk::qt
