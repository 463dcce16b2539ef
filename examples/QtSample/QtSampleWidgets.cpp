#include "QtSampleWidgets.h"

#include <QMouseEvent>
#include <QPainter>

namespace qtsample {

ClickTargetButton::ClickTargetButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {}

void ClickTargetButton::mouseDoubleClickEvent(QMouseEvent* event) {
    QPushButton::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && doubleClickAction_) doubleClickAction_();
}

void ClickTargetButton::mouseReleaseEvent(QMouseEvent* event) {
    // Before the base class: it emits clicked(), whose handlers read this.
    lastClickModifiers_ = event->modifiers();
    QPushButton::mouseReleaseEvent(event);
}

StatusBadge::StatusBadge(QWidget* parent) : QWidget(parent) {}

void StatusBadge::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF badge = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    double radius = badge.height() / 2;
    painter.setPen(QColor(76, 175, 96));
    painter.setBrush(QColor(226, 245, 230));
    painter.drawRoundedRect(badge, radius, radius);
    const double dot = 12;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(52, 168, 83));
    painter.drawEllipse(QRectF(14, height() / 2.0 - dot / 2, dot, dot));
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(QColor(24, 94, 44));
    painter.drawText(QRectF(36, 0, width() - 48, height()), Qt::AlignVCenter | Qt::AlignLeft, state_);
}

}  // namespace qtsample
