// The Qt sample's own widget classes: a push button that reports double
// clicks and the modifier keys of a click, and a status badge that names
// itself and tells its value the way a view class of an application does,
// through a Qt property and an invokable method.
#pragma once

#include <QPushButton>
#include <QString>
#include <QWidget>
#include <functional>

namespace qtsample {

// A push button that also answers double clicks, and remembers the
// modifier keys held when a click ended (the release is what clicks it).
class ClickTargetButton : public QPushButton {
public:
    explicit ClickTargetButton(const QString& text, QWidget* parent = nullptr);

    void onDoubleClick(std::function<void()> action) { doubleClickAction_ = std::move(action); }
    Qt::KeyboardModifiers lastClickModifiers() const { return lastClickModifiers_; }

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    std::function<void()> doubleClickAction_;
    Qt::KeyboardModifiers lastClickModifiers_;
};

// A green badge showing the application's state.
class StatusBadge : public QWidget {
    Q_OBJECT
    // The name tests find the badge by, as a static property of the class.
    Q_PROPERTY(QString hbViewName READ hbViewName CONSTANT)

public:
    explicit StatusBadge(QWidget* parent = nullptr);

    QString hbViewName() const { return QStringLiteral("Status"); }
    // The value a test reads, as a method the framework can call by name.
    Q_INVOKABLE QString hbViewValue() const { return state_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString state_ = QStringLiteral("Ready");
};

}  // namespace qtsample
