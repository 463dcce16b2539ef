// What a Qt object can be asked by name through the platform's object
// runtime: its class name, the hb* methods an application gives it (as a
// Q_INVOKABLE, a property or a dynamic property, and an objectName as the
// last resort for a name) and its title. Every wrapper (views, windows,
// menus, menu items) answers through these. Main thread only.
#pragma once

#include <QString>
#include <QVariant>
#include <optional>
#include <string>

#include "JTK/platform/Value.h"

class QObject;

namespace jtk::qt {

// The Qt class name without namespace ("SaveButton", "QPushButton"); a
// class private to Qt's libraries gives its nearest public Qt base class
// (an input dialog's QInputDialogSpinBox is a "QSpinBox").
std::string qtClassName(const QObject* object);
bool qtRespondsToSelector(const QObject* object, const std::string& selector);
// None when the object does not respond.
platform::Value qtPerformSelector(QObject* object, const std::string& selector);
// The text a person reads as the object's title, without '&' mnemonic
// markers; none when the object has no title.
std::optional<std::string> qtTitle(const QObject* object);

// Conversions between Qt's and the platform's dynamic values.
platform::Value valueFromVariant(const QVariant& variant);
QVariant variantFromValue(const platform::Value& value);
std::string toStdString(const QString& text);
QString toQString(const std::string& text);
// "&Save" → "Save", "Fish && Chips" → "Fish & Chips".
QString withoutMnemonics(const QString& text);

}  // namespace jtk::qt
