// Text notifications follow a person's typing only: keys typed into a field
// (an entry, a search entry, a spin button) or a text view change it, the
// program's own setting of the text does not; Return ends a field's editing.
// Each names the field (never its inner GtkText) as object and text object.
#include <gtest/gtest.h>

#include <ostream>

#include "GtkMenusFixture.h"
#include "JTK/platform/Notifications.h"
#include "JTK/platform/Text.h"

namespace {

using namespace gtkmenus;
using jtk::platform::Notification;

struct TextCase {
    const char* label;
    GtkWidget* (*make)();
    bool endsOnReturn;
    std::vector<std::string> changes;  // what "2" and "3" typed make, step by step
    friend void PrintTo(const TextCase& c, std::ostream* out) { *out << c.label; }
};

class GtkTextTest : public ::testing::TestWithParam<TextCase> {};

void setText(GtkWidget* widget, const char* text) {
    if (GTK_IS_TEXT_VIEW(widget)) gtk_text_buffer_set_text(gtk_text_view_get_buffer(GTK_TEXT_VIEW(widget)), text, -1);
    else gtk_editable_set_text(GTK_EDITABLE(widget), text);
}

TEST_P(GtkTextTest, aPersonsTypingChangesTheFieldAndReturnEndsIt) {
    GtkWidget* field = GetParam().make();
    GtkWidget* window = showWindow(field);
    gtk_widget_grab_focus(field);
    auto view = jtk::gtk::viewFor(field);
    std::vector<std::string> changes;
    int ends = 0;
    auto& center = jtk::platform::defaultNotificationCenter();
    auto observe = [&](const char* name, std::function<void()> heard) {
        return center.addObserver(name, {}, jtk::platform::DeliveryQueue::postingThread, [&, heard](const Notification& note) {
            auto* textObject = note.userInfo.find(jtk::platform::textObjectKey);
            EXPECT_EQ(note.object.object(), view);
            EXPECT_TRUE(textObject && textObject->object() == view);
            heard();
        });
    };
    uint64_t changed = observe(jtk::platform::textDidChangeNotification,
                               [&] { changes.push_back(*jtk::platform::textObjectString(*view)); });
    uint64_t ended = observe(jtk::platform::textDidEndEditingNotification, [&] { ++ends; });

    constexpr uint16_t two = 19, three = 20, returnKey = 36;
    pressKey(two);
    pressKey(three);
    setText(field, "423");  // the program's
    turnUntil([] { return false; }, 50ms);
    EXPECT_EQ(changes, GetParam().changes);
    EXPECT_EQ(jtk::platform::textObjectString(*view), "423");
    pressKey(returnKey);
    EXPECT_EQ(ends, GetParam().endsOnReturn ? 1 : 0);
    center.removeObserver(changed);
    center.removeObserver(ended);
    gtk_window_destroy(GTK_WINDOW(window));
}

INSTANTIATE_TEST_SUITE_P(
    Fields, GtkTextTest,
    ::testing::Values(TextCase{"Entry", [] { return gtk_entry_new(); }, true, {"2", "23"}},
                      TextCase{"SearchEntry", [] { return gtk_search_entry_new(); }, true, {"2", "23"}},
                      // Its "0" is selected with the focus: typing replaces it, a deletion and an insertion.
                      TextCase{"SpinButton", [] { return gtk_spin_button_new_with_range(0, 1000, 1); }, true, {"", "2", "23"}},
                      TextCase{"TextView", [] { return gtk_text_view_new(); }, false, {"2", "23"}}),
    [](const auto& info) { return std::string(info.param.label); });

}  // namespace
