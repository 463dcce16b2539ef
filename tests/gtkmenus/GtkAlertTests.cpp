// An alert's modal loop answers by the button a person clicks (1000 when the
// window is closed), with the main loop's timers running inside it; a
// program's own modal window counts as a modal loop while it shows.
#include <gtest/gtest.h>

#include <ostream>

#include "GtkMainQueue.h"
#include "GtkMenusFixture.h"
#include "JTK/platform/Alert.h"
#include "JTK/platform/RunLoop.h"

namespace {

using namespace gtkmenus;

GtkWidget* shownModalWindow() {
    GListModel* toplevels = gtk_window_get_toplevels();
    for (guint index = 0; index < g_list_model_get_n_items(toplevels); ++index) {
        auto* window = static_cast<GtkWidget*>(g_list_model_get_item(toplevels, index));
        g_object_unref(window);  // the list keeps it
        if (gtk_widget_get_mapped(window) && gtk_window_get_modal(GTK_WINDOW(window))) return window;
    }
    return nullptr;
}

GtkWidget* buttonTitled(GtkWidget* widget, const char* title) {
    if (GTK_IS_BUTTON(widget) && g_strcmp0(gtk_button_get_label(GTK_BUTTON(widget)), title) == 0) return widget;
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
        if (GtkWidget* found = buttonTitled(child, title)) return found;
    return nullptr;
}

struct Answer {
    const char* button;  // none: the window is closed
    int expected;
    friend void PrintTo(const Answer& a, std::ostream* out) { *out << (a.button ? a.button : "closed"); }
};

class GtkAlertTest : public ::testing::TestWithParam<Answer> {};

TEST_P(GtkAlertTest, runModalAnswersByButtonWhileATimerFires) {
    auto alert = platform::makeAlert();
    alert->setMessageText("Message");
    alert->setInformativeText("What the message means.");
    for (const char* title : {"First", "Second", "Third"}) alert->addButtonWithTitle(title);
    int fired = 0;
    bool modalInside = false;
    auto timer = platform::scheduleTimer(0.05, true, [&](platform::Timer& self) {
        GtkWidget* window = shownModalWindow();
        if (!window || ++fired < 3) return;
        modalInside = jtk::gtk::modalRunning();
        self.invalidate();
        if (GetParam().button) click(buttonTitled(window, GetParam().button));
        else gtk_window_close(GTK_WINDOW(window));
    }, true);
    EXPECT_EQ(alert->runModal(), GetParam().expected);
    EXPECT_GE(fired, 3);
    EXPECT_TRUE(modalInside);
    EXPECT_FALSE(jtk::gtk::modalRunning());
}

INSTANTIATE_TEST_SUITE_P(Buttons, GtkAlertTest,
                         ::testing::Values(Answer{"First", 1000}, Answer{"Second", 1001}, Answer{"Third", 1002}, Answer{nullptr, 1000}),
                         [](const auto& info) { return std::string(info.param.button ? info.param.button : "closed"); });

TEST(GtkModalWindowTest, aProgramsModalWindowIsAModalLoopWhileItShows) {
    GtkWidget* dialog = gtk_window_new();
    gtk_window_set_modal(GTK_WINDOW(dialog), TRUE);
    EXPECT_FALSE(jtk::gtk::modalRunning());
    gtk_window_present(GTK_WINDOW(dialog));
    EXPECT_TRUE(turnUntil([] { return jtk::gtk::modalRunning(); }));
    gtk_window_destroy(GTK_WINDOW(dialog));
    EXPECT_TRUE(turnUntil([] { return !jtk::gtk::modalRunning(); }));
}

}  // namespace
