#include "QtViews.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QSpinBox>
#include <QStatusBar>
#include <QTextDocument>
#include <QTextEdit>

#include "QtObjectRuntime.h"
#include "QtParts.h"
#include "QtWrappers.h"

namespace jtk::qt {

namespace {

// A child widget that is a window of its own (a dialog, a popup) belongs to
// the window list, not to its parent's subviews.
bool isSubviewWidget(const QObject* child) {
    auto* widget = qobject_cast<const QWidget*>(child);
    return widget && !widget->isWindow();
}

// A tool tip reads as the text a person sees: its markup, if any, left out.
QString shownText(const QLabel* label) {
    QString text = label->text();
    if (label->windowType() != Qt::ToolTip || !Qt::mightBeRichText(text)) return text;
    QTextDocument document;
    document.setHtml(text);
    return document.toPlainText();
}

}  // namespace

QPoint widgetOriginInFrame(const QWidget* widget) {
    const QWidget* top = widget->window();
    QPoint inTop = widget->mapTo(top, QPoint(0, 0));
    // The frame's decorations (none on a headless screen) lie before the content.
    return inTop + (top->geometry().topLeft() - top->frameGeometry().topLeft());
}

std::string QtView::className() const { return widget_ ? qtClassName(widget_) : "QWidget"; }

// A scroll area scrolls a view inside it into sight when the framework asks.
constexpr const char* scrollToViewSelector = "hbScrollToViewAnimated:";

namespace {

// State a test reads by name: isEnabled and toolTip of every widget,
// isChecked of a checkable button or group box.
bool isCheckable(const QWidget* widget) {
    if (auto* button = qobject_cast<const QAbstractButton*>(widget)) return button->isCheckable();
    auto* group = qobject_cast<const QGroupBox*>(widget);
    return group && group->isCheckable();
}

bool isStateSelector(const QWidget* widget, const std::string& selector) {
    if (!widget) return false;
    if (selector == "isEnabled" || selector == "toolTip") return true;
    return selector == "isChecked" && isCheckable(widget);
}

platform::Value stateOf(const QWidget* widget, const std::string& selector) {
    if (selector == "isEnabled") return widget->isEnabled();
    if (selector == "toolTip") return toStdString(widget->toolTip());
    if (auto* group = qobject_cast<const QGroupBox*>(widget)) return group->isChecked();
    return static_cast<const QAbstractButton*>(widget)->isChecked();
}

// Scrolls a view inside the scroll area into sight: a widget, or a part (an
// item scrolls within its item view, which then comes into sight).
void scrollIntoSight(QAbstractScrollArea* scrollArea, platform::View& view) {
    QWidget* inside = widgetOf(view);
    if (!inside) {
        scrollPartIntoView(view);
        inside = ownerOfPart(view);
    }
    auto* area = qobject_cast<QScrollArea*>(scrollArea);
    if (inside && area && area->widget() && area->widget()->isAncestorOf(inside)) area->ensureWidgetVisible(inside);
}

}  // namespace

bool QtView::respondsToSelector(const std::string& selector) const {
    if (selector == scrollToViewSelector && (qobject_cast<QScrollArea*>(widget_.data()) ||
                                             qobject_cast<QAbstractItemView*>(widget_.data())))
        return true;
    return View::respondsToSelector(selector) || isStateSelector(widget_, selector) ||
           qtRespondsToSelector(widget_, selector);
}

platform::Value QtView::performSelector(const std::string& selector, const platform::Value& argument) {
    if (View::respondsToSelector(selector)) return View::performSelector(selector, argument);
    if (selector == scrollToViewSelector && respondsToSelector(selector)) {
        if (auto view = std::dynamic_pointer_cast<platform::View>(argument.object()))
            scrollIntoSight(static_cast<QAbstractScrollArea*>(widget_.data()), *view);
        return {};
    }
    if (isStateSelector(widget_, selector)) return stateOf(widget_, selector);
    return qtPerformSelector(widget_, selector);
}

std::shared_ptr<platform::View> QtView::superview() const {
    if (!widget_) return nullptr;
    if (widget_->isWindow()) {
        auto window = windowFor(widget_);
        return window ? window->frameView() : nullptr;
    }
    return viewFor(widget_->parentWidget());
}

std::vector<std::shared_ptr<platform::View>> QtView::subviews() const {
    std::vector<std::shared_ptr<platform::View>> views;
    if (!widget_) return views;
    for (QObject* child : widget_->children())
        if (isSubviewWidget(child)) views.push_back(viewFor(static_cast<QWidget*>(child)));
    for (auto& part : partsOf(widget_)) views.push_back(std::move(part));
    return views;
}

std::shared_ptr<platform::Window> QtView::window() const { return widget_ ? windowFor(widget_->window()) : nullptr; }

bool QtView::isHidden() const {
    if (!widget_) return true;
    // A window's content view is hidden with its window: in Qt hiding is how
    // a window (a dialog kept for later) goes away, and what a person cannot
    // see must not match a lookup.
    if (widget_->isWindow()) return widget_->isHidden();
    return !widget_->isVisibleTo(widget_->parentWidget());
}

platform::Rect QtView::frame() const {
    if (!widget_) return {};
    if (widget_->isWindow()) {
        QPoint origin = widgetOriginInFrame(widget_);
        double frameHeight = widget_->frameGeometry().height();
        return {double(origin.x()), frameHeight - (origin.y() + widget_->height()), double(widget_->width()),
                double(widget_->height())};
    }
    QRect geometry = widget_->geometry();
    double parentHeight = widget_->parentWidget() ? widget_->parentWidget()->height() : 0;
    return {double(geometry.x()), parentHeight - (geometry.y() + geometry.height()), double(geometry.width()),
            double(geometry.height())};
}

platform::Rect QtView::bounds() const {
    return widget_ ? platform::Rect(0, 0, widget_->width(), widget_->height()) : platform::Rect{};
}

platform::Rect QtView::visibleRect() const {
    if (!widget_) return {};
    // Each ancestor clips its children; y down while walking, then flipped.
    QRect visible = widget_->rect();
    QPoint offset(0, 0);  // the widget's origin in the current ancestor
    for (const QWidget* w = widget_; !w->isWindow() && w->parentWidget(); w = w->parentWidget()) {
        offset += w->pos();
        visible &= w->parentWidget()->rect().translated(-offset);
    }
    if (visible.isEmpty()) return {};
    return {double(visible.x()), double(widget_->height() - (visible.y() + visible.height())), double(visible.width()),
            double(visible.height())};
}

platform::Rect QtView::convertRectToWindow(const platform::Rect& rect) const {
    if (!widget_) return rect;
    QPoint origin = widgetOriginInFrame(widget_);
    double topInFrame = origin.y() + (widget_->height() - rect.maxY());
    double frameHeight = widget_->window()->frameGeometry().height();
    return {origin.x() + rect.minX(), frameHeight - (topInFrame + rect.height()), rect.width(), rect.height()};
}

platform::Value QtView::accessibilityValue() const {
    QWidget* w = widget_;
    if (auto* line = qobject_cast<QLineEdit*>(w)) return toStdString(line->text());
    if (auto* label = qobject_cast<QLabel*>(w)) return toStdString(shownText(label));
    if (auto* text = qobject_cast<QTextEdit*>(w)) return toStdString(text->toPlainText());
    if (auto* plain = qobject_cast<QPlainTextEdit*>(w)) return toStdString(plain->toPlainText());
    if (auto* slider = qobject_cast<QAbstractSlider*>(w)) return int64_t{slider->value()};
    if (auto* spin = qobject_cast<QSpinBox*>(w)) return int64_t{spin->value()};
    if (auto* spin = qobject_cast<QDoubleSpinBox*>(w)) return spin->value();
    if (auto* combo = qobject_cast<QComboBox*>(w)) return toStdString(combo->currentText());
    if (auto* checkbox = qobject_cast<QCheckBox*>(w)) return checkbox->isChecked() ? "1" : "0";
    if (auto* status = qobject_cast<QStatusBar*>(w)) return toStdString(status->currentMessage());
    return {};
}

bool QtView::isScrollView() const { return qobject_cast<QAbstractScrollArea*>(widget_.data()) != nullptr; }

std::vector<std::shared_ptr<platform::View>> QtFrameView::subviews() const {
    if (!topLevel_) return {};
    return {viewFor(topLevel_)};
}

std::shared_ptr<platform::Window> QtFrameView::window() const { return windowFor(topLevel_); }

platform::Rect QtFrameView::bounds() const {
    if (!topLevel_) return {};
    QRect frame = topLevel_->frameGeometry();
    return {0, 0, double(frame.width()), double(frame.height())};
}

}  // namespace jtk::qt
