#include "QtText.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

#include "JTK/platform/Notifications.h"
#include "JTK/platform/Text.h"
#include "QtWrappers.h"

namespace jtk::qt {

namespace {

constexpr const char* watchedProperty = "jtkTextWatched";

void post(const char* name, QWidget* widget) {
    auto view = viewFor(widget);
    platform::defaultNotificationCenter().post(name, view, platform::ValueDictionary{{platform::textObjectKey, view}});
}

}  // namespace

void watchTextEditing(QWidget* widget) {
    if (!widget || widget->property(watchedProperty).toBool()) return;
    auto changed = [widget] { post(platform::textDidChangeNotification, widget); };
    auto ended = [widget] { post(platform::textDidEndEditingNotification, widget); };
    // Only a person's edits are changes: a program that shows results in a
    // field (a calculator's display, a field cleared after Return) changes
    // its text too, and that is nothing a person typed. A line edit tells
    // them apart (textEdited); a text edit's text can only be typed while it
    // is not read-only.
    if (auto* field = qobject_cast<QLineEdit*>(widget)) {
        QObject::connect(field, &QLineEdit::textEdited, field, changed);
        QObject::connect(field, &QLineEdit::editingFinished, field, ended);
    } else if (auto* edit = qobject_cast<QTextEdit*>(widget)) {
        QObject::connect(edit, &QTextEdit::textChanged, edit, [edit, changed] {
            if (!edit->isReadOnly()) changed();
        });
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(widget)) {
        QObject::connect(plain, &QPlainTextEdit::textChanged, plain, [plain, changed] {
            if (!plain->isReadOnly()) changed();
        });
    } else {
        return;
    }
    widget->setProperty(watchedProperty, true);
}

}  // namespace jtk::qt

namespace jtk::platform {

std::optional<std::string> textObjectString(const Object& object) {
    const auto* view = dynamic_cast<const View*>(&object);
    QWidget* widget = view ? qt::widgetOf(*view) : nullptr;
    if (auto* field = qobject_cast<QLineEdit*>(widget)) return field->text().toStdString();
    if (auto* edit = qobject_cast<QTextEdit*>(widget)) return edit->toPlainText().toStdString();
    if (auto* plain = qobject_cast<QPlainTextEdit*>(widget)) return plain->toPlainText().toStdString();
    return std::nullopt;
}

}  // namespace jtk::platform
