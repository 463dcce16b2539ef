// The field editor: the one text object per window that edits whichever text
// field the user is typing into. While a field is being edited the editor is
// the window's first responder and lives, hidden, inside the field (so it is
// in the window but out of hit tests, view walks and drawing; the field draws
// its own text, which the editor keeps up to date after every change).
// It posts textDidBeginEditing, textDidChange (after each change) and
// textDidEndEditing, each with the edited field as object and the editor in
// the user info under "FieldEditor".
#pragma once

#include <algorithm>
#include <memory>
#include <string>

#include "JTK/desktop/View.h"
#include "JTK/platform/Text.h"

namespace jtk::desktop {

class TextField;
class Window;

inline constexpr const char* textDidBeginEditingNotification = "TextDidBeginEditingNotification";
inline constexpr const char* textDidChangeNotification = platform::textDidChangeNotification;
inline constexpr const char* textDidEndEditingNotification = platform::textDidEndEditingNotification;

class FieldEditor : public View {
public:
    // Why editing ended; in the end notification's user info under "TextMovement".
    enum class TextMovement : int { other = 0, returnKey = 1, tab = 2 };

    FieldEditor();
    // The window's field editor, made on first use.
    static std::shared_ptr<FieldEditor> forWindow(const std::shared_ptr<Window>& window);

    // Ends any editing in the field's window and starts editing the field,
    // with the insertion point at the end of its text. False when the field is
    // in no window or does not take the keys.
    bool beginEditing(const std::shared_ptr<TextField>& field);
    bool isEditing() const { return editing_; }
    std::shared_ptr<TextField> editedField() const;

    const std::string& string() const { return text_; }
    // Byte offset of the insertion point in string().
    size_t insertionPoint() const { return caret_; }
    // The selected bytes of string(): from selectionStart(), selectionLength()
    // long; empty (at the insertion point) unless something selects.
    size_t selectionStart() const { return std::min(anchor_, caret_); }
    size_t selectionLength() const { return anchor_ > caret_ ? anchor_ - caret_ : caret_ - anchor_; }
    // Selects the bytes (clamped to the text, widened to whole characters);
    // the insertion point goes to the selection's end.
    void setSelectedRange(size_t start, size_t length);
    void selectAll() { setSelectedRange(0, text_.size()); }
    // Replaces the selection (or inserts at the insertion point).
    void insertText(const std::string& text);
    // Removes the selection, or else the character before the insertion point.
    void deleteBackward();
    void moveLeft();
    void moveRight();

    // Return ends editing and gives the keys back to the window; Tab ends it
    // and moves on to the field's next key view; Delete deletes backward; the
    // arrows move (collapsing a selection); command-A selects all; other keys
    // insert what they type (see charactersOfEvent).
    void keyDown(const platform::Event& event) override;
    bool acceptsFirstResponder() const override { return true; }
    // Giving up the keys ends editing.
    bool resignFirstResponder() override;

private:
    void finishEditing();
    void syncWithField(const TextField& field);
    void textDidChange();
    void moveToNextKeyView();
    std::shared_ptr<FieldEditor> sharedEditor() { return std::static_pointer_cast<FieldEditor>(shared_from_this()); }

    std::weak_ptr<TextField> field_;
    std::string text_;
    size_t caret_ = 0;
    size_t anchor_ = 0;  // the other end of the selection; equal to caret_ when none
    bool editing_ = false;
    TextMovement movement_ = TextMovement::other;
};

}  // namespace jtk::desktop
