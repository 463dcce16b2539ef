// A text field: one line of text, editable unless it serves as a label. Its
// accessibility value is the text. The change callback reports edits made
// through the field editor, not values set by the program. A click starts
// editing through the window's field editor; so does a key that reaches the
// field while it has the keys without being edited.
#pragma once

#include <functional>
#include <string>

#include "JTK/desktop/View.h"
#include "JTK/desktop/render/Font.h"

namespace jtk::desktop {

class TextField : public View {
public:
    using ChangeHandler = std::function<void(TextField&)>;

    explicit TextField(const platform::Rect& frame = {}, std::string stringValue = {});

    const std::string& stringValue() const { return stringValue_; }
    void setStringValue(std::string value) { stringValue_ = std::move(value); }
    const std::string& placeholderString() const { return placeholder_; }
    void setPlaceholderString(std::string placeholder) { placeholder_ = std::move(placeholder); }
    bool isEditable() const { return editable_; }
    void setEditable(bool editable) { editable_ = editable; }
    bool isEnabled() const { return enabled_; }
    void setEnabled(bool enabled) { enabled_ = enabled; }
    const Font& font() const { return font_; }
    void setFont(Font font) { font_ = std::move(font); }

    void setOnChange(ChangeHandler handler) { onChange_ = std::move(handler); }
    // Runs the change callback; the field editor calls it after each edit.
    void didChange();

    // An editable, enabled field takes the keyboard focus.
    bool acceptsFirstResponder() const override { return editable_ && enabled_; }
    platform::Value accessibilityValue() const override { return stringValue_; }

    void mouseDown(const platform::Event& event, platform::Point pointInWindow) override;
    void keyDown(const platform::Event& event) override;
    // Starts editing with the window's field editor; false when the field
    // does not take the keys or is in no window.
    bool beginEditing();

    // An editable field: a white, bordered box with its text (or the
    // placeholder) and, while it is edited in the key window, the selection,
    // the caret and a focus ring. A label: its text only, wrapped when the
    // label is tall enough for more than one line.
    void draw(DrawContext& context) const override;

private:
    std::string stringValue_;
    std::string placeholder_;
    bool editable_ = true;
    bool enabled_ = true;
    Font font_;
    ChangeHandler onChange_;
};

}  // namespace jtk::desktop
