// A program that loads GTK 4 only once it runs, as an interpreter with GTK
// bindings does: it needs GLib, not libgtk-4, so before its main it is no
// GTK program, and the GTK loader must refuse a run that its main loop would
// start. Without a run it shows a window and ends a moment later.
#include <dlfcn.h>
#include <glib.h>

#include <cstdio>

int main() {
    void* gtk = dlopen("libgtk-4.so.1", RTLD_NOW | RTLD_GLOBAL);
    auto init = gtk ? reinterpret_cast<void (*)()>(dlsym(gtk, "gtk_init")) : nullptr;
    auto newWindow = gtk ? reinterpret_cast<void* (*)()>(dlsym(gtk, "gtk_window_new")) : nullptr;
    auto present = gtk ? reinterpret_cast<void (*)(void*)>(dlsym(gtk, "gtk_window_present")) : nullptr;
    if (!init || !newWindow || !present) {
        std::fprintf(stderr, "cannot load GTK 4: %s\n", dlerror());
        return 1;
    }
    init();
    present(newWindow());
    GMainLoop* loop = g_main_loop_new(nullptr, false);
    g_timeout_add(500, [](gpointer data) -> gboolean { g_main_loop_quit(static_cast<GMainLoop*>(data)); return false; },
                  loop);
    g_main_loop_run(loop);
    return 0;
}
