// Text objects over Qt: a QLineEdit, QTextEdit or QPlainTextEdit is its own
// text object. Once such a widget has had the keyboard focus, its edits post
// "TextDidChangeNotification" and the end of its editing (Return, or the
// focus leaving it) "TextDidEndEditingNotification", each naming the widget's
// view as object and as text object. Main thread only.
#pragma once

class QWidget;

namespace jtk::qt {

// Called for every widget that gets the focus: connects a text widget's
// signals to the notifications, once per widget.
void watchTextEditing(QWidget* widget);

}  // namespace jtk::qt
