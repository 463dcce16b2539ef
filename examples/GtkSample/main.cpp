// The GTK sample application. Launched with an argument containing "uxtest"
// it runs its UI tests; otherwise it shows its data and, as nobody may be at
// a bare X server to close it, ends after a few seconds
// (GTKSAMPLE_RUN_SECONDS overrides how many; 0 keeps it running until its
// window is closed). GTK 4 runs here on X11 (GDK_BACKEND=x11).
#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>

#include <JTK/JTKTestSuite.h>
#include <JTK/gtk/GtkBackend.h>

#include "GtkSampleWindow.h"

namespace {

struct Program {
    GMainLoop* loop = nullptr;
    gtksample::GtkSampleWindow* window = nullptr;
};

}  // namespace

int main(int, char**) {
    // Under a test run, the fonts are pinned before GTK starts fontconfig.
    jtk::gtk::prepareFontConfiguration();
    // The program's name (GLib's application name unless one is set)
    // places the data folder and the settings.
    g_set_prgname("GtkSample");
    if (!gtk_init_check()) {
        std::fprintf(stderr, "GtkSample: cannot open a display (set DISPLAY, and GDK_BACKEND=x11)\n");
        return 1;
    }
    jtk::gtk::installBackend();

    Program program{g_main_loop_new(nullptr, false), new gtksample::GtkSampleWindow};
    // No GtkApplication here: closing the main window ends the loop.
    g_signal_connect_swapped(program.window->window(), "destroy", G_CALLBACK(g_main_loop_quit), program.loop);
    gtk_window_present(program.window->window());

    jtk::JTKTestSuite::runTests();
    // Load once the loop turns, after a test run has put its data in place.
    g_idle_add_once([](gpointer data) { static_cast<Program*>(data)->window->loadData(); }, &program);

    if (!jtk::JTKTestSuite::isTesting()) {
        double seconds = 3;
        if (const char* text = std::getenv("GTKSAMPLE_RUN_SECONDS")) seconds = std::atof(text);
        g_idle_add_once(
            [](gpointer data) {
                std::printf("GtkSample: %s\n", gtk_window_get_title(static_cast<Program*>(data)->window->window()));
                std::fflush(stdout);
            },
            &program);
        if (seconds > 0)
            g_timeout_add_once(static_cast<guint>(seconds * 1000),
                               [](gpointer data) { g_main_loop_quit(static_cast<Program*>(data)->loop); }, &program);
    }
    g_main_loop_run(program.loop);
    return 0;
}
