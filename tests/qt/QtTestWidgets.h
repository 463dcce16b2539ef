// Widgets as applications write them: subclasses with their own class name
// and the methods the framework asks for by name.
#pragma once

#include <QPushButton>
#include <QWidget>

class SaveButton : public QPushButton {
    Q_OBJECT
public:
    using QPushButton::QPushButton;
};

class InvokableNamedWidget : public QWidget {
    Q_OBJECT
public:
    using QWidget::QWidget;
    Q_INVOKABLE QString hbViewName() const { return QStringLiteral("invokable name"); }
    Q_INVOKABLE int hbViewValue() const { return 42; }
};

class PropertyNamedWidget : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString hbViewName READ name CONSTANT)
public:
    using QWidget::QWidget;
    QString name() const { return QStringLiteral("property name"); }
};
