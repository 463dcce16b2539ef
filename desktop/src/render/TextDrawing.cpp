// Text fields and labels: the field's box, its text or placeholder, and
// while it is edited in the key window its selection, caret and focus ring.
#include <cmath>

#include "JTK/desktop/FieldEditor.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/TextField.h"
#include "JTK/desktop/render/DrawContext.h"

namespace jtk::desktop {

using platform::Rect;

namespace {

constexpr double textInset = 5;

// The field editor that edits the field with the keys of the key window, if any.
const FieldEditor* activeEditor(const TextField& field) {
    auto window = field.desktopWindow();
    if (!window || !window->isKeyWindow()) return nullptr;
    auto responder = window->firstResponder();
    auto* editor = dynamic_cast<const FieldEditor*>(responder.get());
    if (!editor || !editor->isEditing() || editor->editedField().get() != &field) return nullptr;
    return editor;
}

void drawEditing(DrawContext& context, const FieldEditor& editor, const Rect& textRect, const Font& font) {
    const std::string& text = editor.string();
    double lineHeight = context.measureText("Xg", font).height;
    double bottom = std::round(textRect.midY() - lineHeight / 2);
    if (size_t length = editor.selectionLength()) {
        double start = context.textOffset(text, font, editor.selectionStart());
        double end = context.textOffset(text, font, editor.selectionStart() + length);
        context.fillRect({textRect.minX() + start, bottom, end - start, lineHeight}, palette::selection);
    } else {
        double x = std::round(textRect.minX() + context.textOffset(text, font, editor.insertionPoint())) + 0.5;
        context.strokeLine({x, bottom + 1}, {x, bottom + lineHeight - 1}, palette::text);
    }
}

}  // namespace

void TextField::draw(DrawContext& context) const {
    Rect all = bounds();
    Color textColor = enabled_ ? palette::text : palette::disabledText;
    if (!editable_) {
        // A label: text only, wrapped from the top when it has room for lines.
        double lineHeight = context.measureText("Xg", font_).height;
        bool wraps = all.height() >= 1.8 * lineHeight;
        context.drawText(stringValue_, {all.minX() + 2, all.minY(), all.width() - 4, all.height()},
                         {font_, textColor, TextAlignment::left, wraps});
        return;
    }

    Rect box{all.minX() + 0.5, all.minY() + 0.5, all.width() - 1, all.height() - 1};
    context.fillRect(box, enabled_ ? palette::textBackground : Color::grey(0.96));
    context.strokeRoundedRect(box, 0, palette::controlBorder);
    // A slightly darker top edge gives the box its inset look.
    context.strokeLine({box.minX(), box.maxY()}, {box.maxX(), box.maxY()}, Color::grey(0, 0.32));

    Rect textRect{all.minX() + textInset, all.minY(), all.width() - 2 * textInset, all.height()};
    const FieldEditor* editor = activeEditor(*this);
    if (editor) {
        drawEditing(context, *editor, textRect, font_);
        context.drawText(editor->string(), textRect, {font_, textColor});
        context.strokeRoundedRect({all.minX() + 1.5, all.minY() + 1.5, all.width() - 3, all.height() - 3}, 2,
                                  palette::focusRing, 3);
    } else if (stringValue_.empty()) {
        context.drawText(placeholder_, textRect, {font_, palette::placeholderText});
    } else {
        context.drawText(stringValue_, textRect, {font_, textColor});
    }
}

}  // namespace jtk::desktop
