// The input-action benchmarks of InputActionBench on the same scene built
// with GTK 4 widgets: a plain widget and a menu button in a window, on an X
// server; input goes through it (XTest), as a person's does.
// InputActionBench runs this program in its own run (on an Xvfb of its own
// unless DISPLAY names a display) and divides its figures by its own.
#include "common/ActionBenchmarks.h"
#include "gtk/GtkBenchApplication.h"

using namespace jtk;

void bench::buildActionScene() {
    static GtkWindow* window = [] {
        auto* made = GTK_WINDOW(gtk_window_new());
        gtk_window_set_title(made, "Bench");
        GtkWidget* content = gtk_fixed_new();
        gtk_widget_set_size_request(content, 600, 400);
        gtk_window_set_child(made, content);
        GtkWidget* plain = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
        gtk_widget_set_size_request(plain, 300, 200);
        gtk_widget_set_name(plain, "BenchPlain");
        gtk_fixed_put(GTK_FIXED(content), plain, 20, 180);
        // GTK's pop-up choice: a menu button whose menu offers the choices
        // as a radio group over a stateful action of the window.
        GSimpleActionGroup* actions = g_simple_action_group_new();
        GSimpleAction* choice = g_simple_action_new_stateful("choice", G_VARIANT_TYPE_STRING, g_variant_new_string("One"));
        g_action_map_add_action(G_ACTION_MAP(actions), G_ACTION(choice));
        g_object_unref(choice);
        gtk_widget_insert_action_group(GTK_WIDGET(made), "bench", G_ACTION_GROUP(actions));
        g_object_unref(actions);
        GMenu* choices = g_menu_new();
        for (const char* title : {"One", "Two", "Three"}) {
            GMenuItem* item = g_menu_item_new(title, nullptr);
            g_menu_item_set_action_and_target_value(item, "bench.choice", g_variant_new_string(title));
            g_menu_append_item(choices, item);
            g_object_unref(item);
        }
        GtkWidget* popUp = gtk_menu_button_new();
        gtk_menu_button_set_label(GTK_MENU_BUTTON(popUp), "One");
        gtk_menu_button_set_menu_model(GTK_MENU_BUTTON(popUp), G_MENU_MODEL(choices));
        g_object_unref(choices);
        gtk_widget_set_size_request(popUp, 120, 24);
        gtk_widget_set_name(popUp, "BenchPopUp");
        // As the embedded desktop's pop-up button, it takes no keyboard
        // focus: the typing benchmark's space would otherwise open its menu.
        gtk_widget_set_can_focus(popUp, false);
        gtk_fixed_put(GTK_FIXED(content), popUp, 350, 76);
        gtk_window_present(made);
        return made;
    }();
    (void)window;
}

void bench::runMainLoopUntil(const std::function<bool()>& finished) { bench::runGtkUntil(finished); }

int main(int argc, char** argv) {
    if (!bench::startGtk(argc, argv)) return 1;
    benchmark::Initialize(&argc, argv);
    bench::ActionReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return 0;
}
