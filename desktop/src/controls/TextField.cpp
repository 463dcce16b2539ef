#include "JTK/desktop/controls/TextField.h"

#include "JTK/desktop/FieldEditor.h"
#include "JTK/desktop/Window.h"

namespace jtk::desktop {

TextField::TextField(const platform::Rect& frame, std::string stringValue)
    : View(frame), stringValue_(std::move(stringValue)) {}

void TextField::didChange() {
    auto protector = weak_from_this().lock();  // the callback may remove the field
    if (auto handler = onChange_) handler(*this);
}

bool TextField::beginEditing() {
    auto editor = FieldEditor::forWindow(desktopWindow());
    return editor && editor->beginEditing(std::static_pointer_cast<TextField>(sharedView()));
}

void TextField::mouseDown(const platform::Event&, platform::Point) { beginEditing(); }

void TextField::keyDown(const platform::Event& event) {
    auto window = desktopWindow();
    if (!window || !beginEditing()) return;
    if (auto editor = window->firstResponder(); editor && editor.get() != this) editor->keyDown(event);
}

}  // namespace jtk::desktop
