// Typing into text fields: a click starts editing through the window's field
// editor, keys edit the field's text, Return and Tab end editing, and every
// step posts its notification with the field as object.
#include "JTK/desktop/FieldEditor.h"
#include "JTK/platform/Notifications.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using desktop::FieldEditor;
using desktop::TextField;

class FieldEditorTest : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        window = makeWindow({100, 100, 400, 300});
        first = add<TextField>(window->desktopContentView(), Rect{20, 200, 200, 24}, "x");
        second = add<TextField>(window->desktopContentView(), Rect{20, 150, 200, 24});
        first->setNextKeyView(second);
        first->setOnChange([this](TextField&) { ++changeCallbacks; });
        auto& center = platform::defaultNotificationCenter();
        for (const char* name : {desktop::textDidBeginEditingNotification, desktop::textDidChangeNotification,
                                 desktop::textDidEndEditingNotification})
            tokens.push_back(center.addObserver(name, {}, platform::DeliveryQueue::postingThread,
                                                [this](const platform::Notification& n) { record(n); }));
    }
    void TearDown() override {
        for (auto token : tokens) platform::defaultNotificationCenter().removeObserver(token);
        DesktopTest::TearDown();
    }

    // "DidChange first Hi": the name without "Text…Notification", the field, its
    // text (posted on the main thread, read there after the test body).
    void record(const platform::Notification& n) {
        auto field = std::dynamic_pointer_cast<TextField>(n.object.object());
        std::string name = n.name.substr(4, n.name.size() - 4 - std::string("Notification").size());
        std::string entry = name + " " + (field == first ? "first" : field == second ? "second" : "?");
        if (field) entry += " " + field->stringValue();
        if (auto movement = n.userInfo.find("TextMovement")) entry += " movement " + std::to_string(*movement->integer());
        auto editor = n.userInfo.find("FieldEditor");
        if (!editor || !std::dynamic_pointer_cast<FieldEditor>(editor->object())) entry += " without editor";
        log.push_back(entry);
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<TextField> first, second;
    int changeCallbacks = 0;
    std::vector<uint64_t> tokens;
    std::vector<std::string> log;
};

// Keys edit the field, Tab moves past views that take no keys, Return ends
// editing; a field that takes no keys is not edited by a click, and Return
// then presses the default button.
TEST_F(FieldEditorTest, KeysEditTheFieldTabMovesPastViewsThatTakeNoKeysAndReturnEndsEditingOrPressesTheDefaultButton) {
    auto label = add<TextField>(window->desktopContentView(), Rect{20, 100, 200, 24}, "label");
    label->setEditable(false);
    first->setNextKeyView(label);
    label->setNextKeyView(second);
    int pressed = 0;
    auto okButton = add<desktop::Button>(window->desktopContentView(), Rect{250, 20, 80, 30}, "OK");
    okButton->setKeyEquivalent("\r");
    okButton->setAction([&](desktop::Button&) { ++pressed; });
    std::shared_ptr<desktop::View> responderWhileEditing;
    onQueue([&] {
        pressAt(onMain([&] { return centerOnScreen(*first); }));
        pressKey(4, shift);     // H
        pressKey(34);           // i
        pressKey(51);           // Delete
        pressKey(0, 0, "ö");    // a character without a key of its own
        drainEvents();
        responderWhileEditing = onMain([&] { return window->firstResponder(); });
        pressKey(48);  // Tab
        pressKey(11);  // b
        pressKey(36);  // Return
        drainEvents();
        EXPECT_EQ(onMain([&] { return pressed; }), 0) << "the Return that ends editing presses nothing";
        pressAt(onMain([&] { return centerOnScreen(*label); }));
        pressKey(0);
        pressKey(36);
        drainEvents();
    });
    EXPECT_EQ(label->stringValue(), "label");
    EXPECT_EQ(pressed, 1);
    auto editor = std::dynamic_pointer_cast<FieldEditor>(responderWhileEditing);
    ASSERT_TRUE(editor) << "the field editor has the keys while a field is edited";
    EXPECT_FALSE(editor->isEditing());
    EXPECT_EQ(window->firstResponder(), nullptr);
    EXPECT_TRUE(first->desktopSubviews().empty()) << "the editor leaves the field when editing ends";
    EXPECT_EQ(changeCallbacks, 4);
    EXPECT_EQ(log, (std::vector<std::string>{"DidBeginEditing first x", "DidChange first xH", "DidChange first xHi",
                                             "DidChange first xH", "DidChange first xHö",
                                             "DidEndEditing first xHö movement 2", "DidBeginEditing second ",
                                             "DidChange second b", "DidEndEditing second b movement 1"}));
}

}  // namespace

TEST_F(FieldEditorTest, ASelectionIsReplacedByTypingRemovedByDeleteAndCollapsedByArrows) {
    first->setStringValue("h\xC3\xA9llo world");  // a two-byte character at 1
    ASSERT_TRUE(first->beginEditing());
    auto editor = FieldEditor::forWindow(window);
    editor->setSelectedRange(2, 3);  // starts inside the two-byte character: widened to it
    EXPECT_EQ(editor->selectionStart(), 1u);
    EXPECT_EQ(editor->selectionLength(), 4u);
    editor->insertText("E");
    EXPECT_EQ(first->stringValue(), "hEo world");
    EXPECT_EQ(editor->insertionPoint(), 2u);
    EXPECT_EQ(editor->selectionLength(), 0u);

    editor->setSelectedRange(3, 100);  // clamped to the text
    editor->deleteBackward();
    EXPECT_EQ(first->stringValue(), "hEo");
    editor->setSelectedRange(0, 2);
    editor->moveRight();
    EXPECT_EQ(editor->insertionPoint(), 2u);
    EXPECT_EQ(editor->selectionLength(), 0u);
    editor->selectAll();
    editor->moveLeft();
    EXPECT_EQ(editor->insertionPoint(), 0u);
    EXPECT_EQ(first->stringValue(), "hEo");
}
