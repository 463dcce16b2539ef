// An alert's modal loop answers by the button a person clicks (or 1000 when
// the window is closed), with the main loop's timers running inside it; and
// a program's own modal window counts as a modal loop while it shows.
#include <gtest/gtest.h>

#include "GtkMainQueue.h"
#include "GtkMenusFixture.h"
#include "GtkWrappers.h"
#include "JTK/platform/Alert.h"
#include "JTK/platform/RunLoop.h"

namespace {

using namespace gtkmenus;

// The shown modal window of the backend's alert.
GtkWidget* shownAlert() {
    GListModel* toplevels = gtk_window_get_toplevels();
    for (guint index = 0; index < g_list_model_get_n_items(toplevels); ++index) {
        auto* window = static_cast<GtkWidget*>(g_list_model_get_item(toplevels, index));
        g_object_unref(window);
        if (gtk_widget_get_mapped(window) && gtk_window_get_modal(GTK_WINDOW(window))) return window;
    }
    return nullptr;
}

GtkWidget* buttonTitled(GtkWidget* widget, const std::string& title) {
    if (GTK_IS_BUTTON(widget) && gtk_button_get_label(GTK_BUTTON(widget)) == title) return widget;
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
        if (GtkWidget* found = buttonTitled(child, title)) return found;
    return nullptr;
}

// -1: the window is closed instead.
class GtkAlertTest : public ::testing::TestWithParam<int> {};

TEST_P(GtkAlertTest, runModalAnswersByButtonWhileATimerFires) {
    const int buttonIndex = GetParam();
    auto alert = jtk::platform::makeAlert();
    alert->setMessageText("Message");
    alert->setInformativeText("What the message means.");
    for (const char* title : {"First", "Second", "Third"}) alert->addButtonWithTitle(title);
    int fired = 0;
    bool modalInside = false;
    auto timer = jtk::platform::scheduleTimer(0.05, true, [&](jtk::platform::Timer& self) {
        GtkWidget* window = shownAlert();
        if (!window || ++fired < 3) return;
        modalInside = jtk::gtk::modalRunning();
        self.invalidate();
        if (buttonIndex < 0) {
            gtk_window_close(GTK_WINDOW(window));
        } else {
            const char* titles[] = {"First", "Second", "Third"};
            click(eventPointOf(*jtk::gtk::viewFor(buttonTitled(window, titles[buttonIndex]))));
        }
    }, true);
    EXPECT_EQ(alert->runModal(), 1000 + std::max(buttonIndex, 0));
    EXPECT_GE(fired, 3);
    EXPECT_TRUE(modalInside);
    EXPECT_FALSE(jtk::gtk::modalRunning());
}

INSTANTIATE_TEST_SUITE_P(Buttons, GtkAlertTest, ::testing::Values(0, 1, 2, -1));

TEST(GtkModalWindowTest, aProgramsModalWindowIsAModalLoopWhileItShows) {
    GtkWidget* dialog = gtk_window_new();
    gtk_window_set_modal(GTK_WINDOW(dialog), TRUE);
    EXPECT_FALSE(jtk::gtk::modalRunning());
    gtk_window_present(GTK_WINDOW(dialog));
    EXPECT_TRUE(turnUntil([] { return jtk::gtk::modalRunning(); }));
    gtk_widget_set_visible(dialog, FALSE);
    EXPECT_TRUE(turnUntil([] { return !jtk::gtk::modalRunning(); }));
    gtk_window_destroy(GTK_WINDOW(dialog));
}

}  // namespace
