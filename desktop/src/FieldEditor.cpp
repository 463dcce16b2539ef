#include "JTK/desktop/FieldEditor.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "JTK/desktop/KeyboardLayout.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/TextField.h"
#include "JTK/platform/Notifications.h"

namespace jtk::desktop {

namespace {

// One editor per window, made on first use (main thread only). The editor
// holds its field weakly, so the entries keep nothing else alive.
std::vector<std::pair<std::weak_ptr<Window>, std::shared_ptr<FieldEditor>>>& editors() {
    static std::vector<std::pair<std::weak_ptr<Window>, std::shared_ptr<FieldEditor>>> all;
    return all;
}

bool isUtf8Continuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

// Control characters (other than the ones the editor handles) type nothing.
bool isPrintable(const std::string& text) {
    return !text.empty() && std::none_of(text.begin(), text.end(), [](char c) {
        auto u = static_cast<unsigned char>(c);
        return u < 0x20 || u == 0x7f;
    });
}

}  // namespace

FieldEditor::FieldEditor() {
    setHidden(true);
    // Text objects answer "string" with their whole text.
    addMethod("string", [](platform::Object& self, const platform::Value&) -> platform::Value {
        return static_cast<FieldEditor&>(self).string();
    });
}

std::shared_ptr<FieldEditor> FieldEditor::forWindow(const std::shared_ptr<Window>& window) {
    if (!window) return nullptr;
    auto& all = editors();
    std::erase_if(all, [](const auto& entry) { return entry.first.expired(); });
    for (const auto& [owner, editor] : all)
        if (owner.lock() == window) return editor;
    auto editor = std::make_shared<FieldEditor>();
    all.emplace_back(window, editor);
    return editor;
}

std::shared_ptr<TextField> FieldEditor::editedField() const { return editing_ ? field_.lock() : nullptr; }

bool FieldEditor::beginEditing(const std::shared_ptr<TextField>& field) {
    if (!field || !field->acceptsFirstResponder()) return false;
    auto window = field->desktopWindow();
    if (!window) return false;
    auto self = sharedEditor();
    if (editing_ && field_.lock() == field && window->firstResponder() == self) return true;
    // Whoever has the keys lets go first; that ends editing elsewhere.
    if (!window->makeFirstResponder(nullptr)) return false;
    field->addSubview(self);
    setFrame(field->bounds());
    field_ = field;
    text_ = field->stringValue();
    caret_ = anchor_ = text_.size();
    movement_ = TextMovement::other;
    editing_ = true;
    if (!window->makeFirstResponder(self)) {
        editing_ = false;
        removeFromSuperview();
        return false;
    }
    platform::defaultNotificationCenter().post(textDidBeginEditingNotification, field,
                                               platform::ValueDictionary{{"FieldEditor", self}});
    return true;
}

bool FieldEditor::resignFirstResponder() {
    finishEditing();
    return true;
}

void FieldEditor::finishEditing() {
    if (!editing_) return;
    editing_ = false;
    auto self = sharedEditor();
    auto field = field_.lock();
    removeFromSuperview();
    platform::defaultNotificationCenter().post(
        textDidEndEditingNotification, field,
        platform::ValueDictionary{{"FieldEditor", self}, {"TextMovement", static_cast<int>(movement_)}});
}

void FieldEditor::textDidChange() {
    auto field = field_.lock();
    if (!field) return;
    auto self = sharedEditor();
    field->setStringValue(text_);
    field->didChange();
    platform::defaultNotificationCenter().post(textDidChangeNotification, field,
                                               platform::ValueDictionary{{"FieldEditor", self}});
}

void FieldEditor::syncWithField(const TextField& field) {
    // The program may have set the field's text meanwhile: edit what it
    // shows, from its end, as after any replacement of the whole text.
    if (field.stringValue() == text_) return;
    text_ = field.stringValue();
    caret_ = anchor_ = text_.size();
}

void FieldEditor::setSelectedRange(size_t start, size_t length) {
    start = std::min(start, text_.size());
    size_t end = start + std::min(length, text_.size() - start);
    while (start > 0 && isUtf8Continuation(text_[start])) --start;
    while (end < text_.size() && isUtf8Continuation(text_[end])) ++end;
    anchor_ = start;
    caret_ = end;
}

void FieldEditor::insertText(const std::string& text) {
    auto field = editedField();
    if (!field || text.empty()) return;
    syncWithField(*field);
    size_t start = selectionStart();
    text_.replace(start, selectionLength(), text);
    caret_ = anchor_ = start + text.size();
    textDidChange();
}

void FieldEditor::deleteBackward() {
    auto field = editedField();
    if (!field) return;
    syncWithField(*field);
    size_t start = selectionStart(), end = start + selectionLength();
    if (start == end) {
        if (start == 0) return;
        --start;
        while (start > 0 && isUtf8Continuation(text_[start])) --start;
    }
    text_.erase(start, end - start);
    caret_ = anchor_ = start;
    textDidChange();
}

void FieldEditor::moveLeft() {
    if (selectionLength() > 0) {
        caret_ = anchor_ = selectionStart();
        return;
    }
    if (caret_ == 0) return;
    --caret_;
    while (caret_ > 0 && isUtf8Continuation(text_[caret_])) --caret_;
    anchor_ = caret_;
}

void FieldEditor::moveRight() {
    if (selectionLength() > 0) {
        caret_ = anchor_ = selectionStart() + selectionLength();
        return;
    }
    if (caret_ >= text_.size()) return;
    ++caret_;
    while (caret_ < text_.size() && isUtf8Continuation(text_[caret_])) ++caret_;
    anchor_ = caret_;
}

void FieldEditor::moveToNextKeyView() {
    auto field = field_.lock();
    auto window = desktopWindow();
    if (!field || !window) return;
    movement_ = TextMovement::tab;
    std::set<View*> seen{field.get()};
    for (auto candidate = field->nextKeyView(); candidate && seen.insert(candidate.get()).second;
         candidate = candidate->nextKeyView()) {
        if (candidate->desktopWindow() != window || candidate->isHiddenOrHasHiddenAncestor() ||
            !candidate->acceptsFirstResponder())
            continue;
        if (auto textField = std::dynamic_pointer_cast<TextField>(candidate)) {
            if (beginEditing(textField)) return;
        } else if (window->makeFirstResponder(candidate)) {
            return;
        }
    }
    window->makeFirstResponder(nullptr);
}

void FieldEditor::keyDown(const platform::Event& event) {
    if (!editing_) return;
    auto self = sharedEditor();  // ending editing takes the editor out of its field
    std::string characters = charactersOfEvent(event);
    if (characters == "\r" || characters == "\n") {
        movement_ = TextMovement::returnKey;
        if (auto window = desktopWindow()) window->makeFirstResponder(nullptr);
    } else if (characters == "\t") {
        moveToNextKeyView();
    } else if (characters == "\x7f") {
        deleteBackward();
    } else if ((event.flags & platform::eventFlags::command) && charactersForKey(event.keyCode, 0) == "a") {
        selectAll();  // command-A, as the standard key bindings of text views have it
    } else if (event.keyCode == keyCodes::leftArrow) {
        moveLeft();
    } else if (event.keyCode == keyCodes::rightArrow) {
        moveRight();
    } else if (!(event.flags & (platform::eventFlags::command | platform::eventFlags::control)) &&
               isPrintable(characters)) {
        insertText(characters);
    }
}

}  // namespace jtk::desktop

namespace jtk::platform {

std::optional<std::string> textObjectString(const Object& object) {
    if (const auto* editor = dynamic_cast<const desktop::FieldEditor*>(&object)) return editor->string();
    return std::nullopt;
}

}  // namespace jtk::platform
