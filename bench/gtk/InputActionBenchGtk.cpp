// The input-action benchmarks of InputActionBench on the same scene built
// with GTK 4 widgets: a plain widget and a drop-down in a window, on an X
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
        const char* choices[] = {"One", "Two", "Three", nullptr};
        GtkWidget* popUp = gtk_drop_down_new_from_strings(choices);
        gtk_widget_set_size_request(popUp, 120, 24);
        gtk_widget_set_name(popUp, "BenchPopUp");
        // As the embedded desktop's pop-up button, it takes no keyboard
        // focus: the typing benchmark's space would otherwise open its list.
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
