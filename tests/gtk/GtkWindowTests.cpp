// Windows on an X server without a window manager: the backend places new
// windows (cascaded, dialogs centred over their parent) and activates them,
// lists open popovers in front of the windows, judges hidden by mapped, and
// cuts a view's picture out of its window.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <algorithm>
#include <vector>

#include "GtkWindowOrder.h"
#include "GtkWrappers.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Images.h"
#include "JTK/platform/Screen.h"
#include "tests/gtk/GtkTestLoop.h"

namespace {

using namespace jtk;
using namespace std::chrono_literals;

class GtkWindows : public testing::Test {
protected:
    void TearDown() override {
        for (GtkWidget* window : made_) gtk_window_destroy(GTK_WINDOW(window));
        gtktest::drainEvents();
    }

    // A shown window of that size with a box as its child; placed when a
    // top left corner (y down) is given, else left to the backend.
    GtkWidget* showWindow(int width, int height, std::optional<platform::Point> topLeft = std::nullopt,
                          GtkWidget* parent = nullptr) {
        GtkWidget* window = gtk_window_new();
        gtk_window_set_default_size(GTK_WINDOW(window), width, height);
        gtk_window_set_child(GTK_WINDOW(window), gtk_box_new(GTK_ORIENTATION_VERTICAL, 0));
        if (parent) gtk_window_set_transient_for(GTK_WINDOW(window), GTK_WINDOW(parent));
        if (topLeft) gtk::placeWindow(window, *topLeft);
        made_.push_back(window);
        gtk_window_present(GTK_WINDOW(window));
        gtktest::waitForLayout(window);
        gtktest::runFor(50ms);  // the backend places and focuses on idle, GTK learns it from the server
        return window;
    }

    static platform::Rect frameOf(GtkWidget* native) { return gtk::windowFor(native)->frame(); }

    std::vector<GtkWidget*> made_;
};

TEST_F(GtkWindows, newWindowsCascadeFromTheFrontOneTheNewestIsKeyAndTheFrontOneFollowsIt) {
    GtkWidget* first = showWindow(200, 100, platform::Point{100, 100});
    GtkWidget* second = showWindow(200, 100);
    platform::Rect one = frameOf(first), two = frameOf(second);
    EXPECT_EQ(two.minX(), one.minX() + 24);
    EXPECT_EQ(two.maxY(), one.maxY() - 24);  // y up: lower on screen
    auto application = platform::sharedApplication();
    ASSERT_GE(application->windows().size(), 2u);
    EXPECT_EQ(application->windows()[0], gtk::windowFor(second));
    EXPECT_EQ(application->windows()[1], gtk::windowFor(first));
    EXPECT_EQ(application->keyWindow(), gtk::windowFor(second));
    gtk::windowFor(first)->makeKeyAndOrderFront();
    gtktest::runFor(50ms);
    EXPECT_EQ(application->windows()[0], gtk::windowFor(first));
    EXPECT_EQ(application->keyWindow(), gtk::windowFor(first));
    // The key window closes: the one left becomes key, as a window manager makes it.
    gtk::windowFor(first)->close();
    gtktest::runFor(50ms);
    EXPECT_EQ(application->windows().front(), gtk::windowFor(second));
    EXPECT_EQ(application->keyWindow(), gtk::windowFor(second));
}

TEST_F(GtkWindows, aDialogOpensCentredOverItsParent) {
    GtkWidget* parent = showWindow(400, 300, platform::Point{50, 80});
    GtkWidget* dialog = showWindow(200, 100, std::nullopt, parent);
    EXPECT_EQ(frameOf(dialog).midX(), frameOf(parent).midX());
    EXPECT_EQ(frameOf(dialog).midY(), frameOf(parent).midY());
}

TEST_F(GtkWindows, anOpenPopoverIsAWindowInFrontAndItsChildrenHideWhenItCloses) {
    GtkWidget* window = showWindow(300, 200, platform::Point{0, 0});
    GtkWidget* box = gtk_window_get_child(GTK_WINDOW(window));
    GtkWidget* button = gtk_button_new_with_label("Options");
    gtk_box_append(GTK_BOX(box), button);
    GtkWidget* popover = gtk_popover_new();
    GtkWidget* inside = gtk_label_new("Inside");
    gtk_popover_set_child(GTK_POPOVER(popover), inside);
    gtk_widget_set_parent(popover, button);
    gtk_widget_grab_focus(button);  // GTK 4.8 complains of a popover opening in a window without focus
    gtk_popover_popup(GTK_POPOVER(popover));
    gtktest::waitForLayout(popover);

    auto popoverWindow = gtk::windowFor(popover);
    EXPECT_EQ(platform::sharedApplication()->windows().front(), popoverWindow);
    EXPECT_EQ(popoverWindow->contentView(), gtk::viewFor(inside));
    EXPECT_EQ(gtk::viewFor(inside)->superview(), popoverWindow->frameView());
    EXPECT_TRUE(gtk::viewFor(button)->subviews().empty()) << "a popover is a window, not a subview";
    EXPECT_FALSE(gtk::viewFor(inside)->isHidden());

    gtk_popover_popdown(GTK_POPOVER(popover));
    gtktest::drainEvents();
    auto windows = platform::sharedApplication()->windows();
    EXPECT_EQ(std::find(windows.begin(), windows.end(), popoverWindow), windows.end());
    EXPECT_TRUE(gtk_widget_get_visible(inside));
    EXPECT_TRUE(gtk::viewFor(inside)->isHidden());
    gtk_widget_unparent(popover);
}

TEST_F(GtkWindows, aViewsPictureHasTheBackgroundItsWindowPaintsBehindIt) {
    GtkWidget* window = showWindow(300, 200, platform::Point{0, 0});
    GtkWidget* label = gtk_label_new("Count: 0");
    gtk_box_append(GTK_BOX(gtk_window_get_child(GTK_WINDOW(window))), label);
    gtktest::waitForLayout(window);
    auto view = gtk::viewFor(label);
    auto bitmap = platform::bitmapForCachingDisplay(*view);
    ASSERT_TRUE(bitmap && platform::cacheDisplayInBitmap(*view, *bitmap));
    EXPECT_EQ(bitmap->width, uint32_t(view->bounds().width()));
    std::vector<uint8_t> alphas;
    for (size_t i = 3; i < bitmap->pixels.size(); i += 4) alphas.push_back(bitmap->pixels[i]);
    EXPECT_THAT(alphas, testing::Each(255));
    // The text is drawn over it: not every pixel is the background's.
    EXPECT_NE(std::adjacent_find(bitmap->pixels.begin(), bitmap->pixels.end(), std::not_equal_to<>()),
              bitmap->pixels.end());
}

}  // namespace
