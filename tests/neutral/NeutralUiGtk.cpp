// The neutral tests' toolkit on the GTK 4 backend: GTK's own widgets in a
// GtkFixed that fills each window, placed in platform coordinates (y up) by
// flipping against the content's height. The program runs on an X server
// (ctest starts a private Xvfb through scripts/run-on-xvfb.sh).
#include <gtk/gtk.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <map>
#include <stdexcept>

#include "GtkWindowOrder.h"
#include "GtkWrappers.h"
#include "JTK/gtk/GtkBackend.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Screen.h"
#include "tests/gtk/GtkTestLoop.h"
#include "tests/neutral/NeutralUi.h"

namespace neutral {

namespace {

using namespace jtk;

constexpr const char* contentHeightKey = "neutral-content-height";

std::vector<GtkWidget*>& windowsMade() {
    static std::vector<GtkWidget*> windows;
    return windows;
}

std::map<const GtkWidget*, int>& actionCounts() {
    static std::map<const GtkWidget*, int> counts;
    return counts;
}

std::map<const GtkWidget*, std::vector<Press>>& pressesSeen() {
    static std::map<const GtkWidget*, std::vector<Press>> seen;
    return seen;
}

GtkWidget* widget(const ViewPtr& view) {
    GtkWidget* found = view ? jtk::gtk::widgetOf(*view) : nullptr;
    if (!found) throw std::logic_error("the view is not a widget the test made");
    return found;
}

uint64_t platformFlags(GdkModifierType state) {
    uint64_t flags = 0;
    if (state & GDK_SHIFT_MASK) flags |= platform::eventFlags::shift;
    if (state & GDK_CONTROL_MASK) flags |= platform::eventFlags::command;
    if (state & GDK_SUPER_MASK) flags |= platform::eventFlags::control;
    if (state & GDK_ALT_MASK) flags |= platform::eventFlags::alternate;
    return flags;
}

// A press recorder: a drawing area whose click gesture records each release
// with the click count GTK gave the press (2 for a double click's second).
GtkWidget* makePressRecorder() {
    GtkWidget* area = gtk_drawing_area_new();
    GtkGesture* click = gtk_gesture_click_new();
    g_signal_connect(click, "released", G_CALLBACK(+[](GtkGestureClick* gesture, int count, double, double, gpointer) {
        auto* controller = GTK_EVENT_CONTROLLER(gesture);
        GdkModifierType state = gtk_event_controller_get_current_event_state(controller);
        pressesSeen()[gtk_event_controller_get_widget(controller)].push_back({count, platformFlags(state)});
    }), nullptr);
    gtk_widget_add_controller(area, GTK_EVENT_CONTROLLER(click));
    return area;
}

// The theme's minimum heights (34 points for a button or an entry) would
// outgrow the frames the tests give: controls here are as small as their text.
void letControlsTakeTheirFrames() {
    static bool added = false;
    if (added) return;
    added = true;
    GtkCssProvider* provider = gtk_css_provider_new();
    gtk_css_provider_load_from_data(provider,
                                    "button, entry, scale, checkbutton, label { min-height: 0; min-width: 0;"
                                    " padding-top: 0; padding-bottom: 0; }", -1);
    gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(provider);
}

using gtktest::drainEvents;
using gtktest::waitForLayout;

}  // namespace

void closeAllWindows() {
    for (GtkWidget* window : windowsMade()) gtk_window_destroy(GTK_WINDOW(window));
    windowsMade().clear();
    actionCounts().clear();
    pressesSeen().clear();
    drainEvents();
}

std::shared_ptr<platform::Window> makeWindow(const Rect& content, const std::string& title) {
    letControlsTakeTheirFrames();
    GtkWidget* window = gtk_window_new();
    gtk_window_set_title(GTK_WINDOW(window), title.c_str());
    gtk_window_set_default_size(GTK_WINDOW(window), int(content.width()), int(content.height()));
    gtk_window_set_resizable(GTK_WINDOW(window), FALSE);
    GtkWidget* fixed = gtk_fixed_new();
    gtk_widget_set_size_request(fixed, int(content.width()), int(content.height()));
    g_object_set_data(G_OBJECT(fixed), contentHeightKey, GINT_TO_POINTER(int(content.height())));
    gtk_window_set_child(GTK_WINDOW(window), fixed);
    double screenHeight = platform::screens().front().frame.height();
    jtk::gtk::placeWindow(window, {content.minX(), screenHeight - content.maxY()});
    g_object_ref_sink(window);  // the tests' until closeAllWindows
    windowsMade().push_back(window);
    auto platformWindow = jtk::gtk::windowFor(window);
    platformWindow->makeKeyAndOrderFront();
    waitForLayout(window);
    return platformWindow;
}

ViewPtr add(Kind kind, const ViewPtr& parent, const Rect& frame, const std::string& text) {
    GtkWidget* fixed = widget(parent);
    if (!GTK_IS_FIXED(fixed)) throw std::logic_error("controls go into a window's content view");
    GtkWidget* made = nullptr;
    switch (kind) {
        case Kind::button:
            made = gtk_button_new_with_label(text.c_str());
            g_signal_connect(made, "clicked", G_CALLBACK(+[](GtkButton* button, gpointer) {
                ++actionCounts()[GTK_WIDGET(button)];
            }), nullptr);
            break;
        case Kind::checkbox: made = gtk_check_button_new_with_label(text.c_str()); break;
        case Kind::label: made = gtk_label_new(text.c_str()); break;
        case Kind::textField:
            made = gtk_entry_new();
            gtk_editable_set_text(GTK_EDITABLE(made), text.c_str());
            break;
        case Kind::slider:
            made = gtk_scale_new_with_range(GTK_ORIENTATION_HORIZONTAL, 0, 100, 1);
            gtk_range_set_value(GTK_RANGE(made), 0);
            break;
        case Kind::pressRecorder: made = makePressRecorder(); break;
    }
    int contentHeight = GPOINTER_TO_INT(g_object_get_data(G_OBJECT(fixed), contentHeightKey));
    gtk_widget_set_size_request(made, int(frame.width()), int(frame.height()));
    gtk_fixed_put(GTK_FIXED(fixed), made, frame.minX(), contentHeight - frame.maxY());
    waitForLayout(made);
    return jtk::gtk::viewFor(made);
}

std::string className(Kind kind) {
    switch (kind) {
        case Kind::button: return "GtkButton";
        case Kind::checkbox: return "GtkCheckButton";
        case Kind::label: return "GtkLabel";
        case Kind::textField: return "GtkEntry";
        case Kind::slider: return "GtkScale";
        case Kind::pressRecorder: return "GtkDrawingArea";
    }
    return {};
}

void setName(const ViewPtr& view, const std::string& name) { gtk_widget_set_name(widget(view), name.c_str()); }

void setHidden(const ViewPtr& view, bool hidden) {
    gtk_widget_set_visible(widget(view), !hidden);
}

void destroy(ViewPtr& view) {
    GtkWidget* gone = widget(view);
    gtk_fixed_remove(GTK_FIXED(gtk_widget_get_parent(gone)), gone);
    view.reset();
}

int actionCount(const ViewPtr& button) { return actionCounts()[widget(button)]; }
std::string text(const ViewPtr& textField) { return gtk_editable_get_text(GTK_EDITABLE(widget(textField))); }
double sliderValue(const ViewPtr& slider) { return gtk_range_get_value(GTK_RANGE(widget(slider))); }
std::vector<Press> presses(const ViewPtr& recorder) { return pressesSeen()[widget(recorder)]; }

void onQueue(const std::function<void()>& body) { gtktest::onQueue(body); }

int runOnToolkit(int& argc, char** argv, const std::function<int()>& body) {
    // Listing the tests needs no display.
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--gtest_list_tests") == 0) return body();
    if (!gtk_init_check()) {
        std::fprintf(stderr, "no X display: run the tests through scripts/run-on-xvfb.sh\n");
        return 2;
    }
    jtk::gtk::installBackend();
    int status = body();
    closeAllWindows();
    return status;
}

}  // namespace neutral
