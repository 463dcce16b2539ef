// What a GTK benchmark program does before and around GTK: the X11 backend
// (GTK 4 runs on X11 here; ElementSearchBench and InputActionBench start an
// Xvfb for it when no display is given) with no accessibility or settings
// bus to look for, a private runtime folder, which a headless machine may
// not have, and GTK's main context as the main loop.
#pragma once

#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include "JTK/gtk/GtkBackend.h"
#include "JTK/services/ProcessInfo.h"

namespace jtk::bench {

// Starts GTK and the backend; false, with a message, when there is no display.
inline bool startGtk(int argc, char** argv) {
    setenv("GDK_BACKEND", "x11", 0);
    // No accessibility bus nor settings daemon to reach on a bare X server.
    setenv("GTK_A11Y", "none", 0);
    setenv("NO_AT_BRIDGE", "1", 0);
    setenv("GSETTINGS_BACKEND", "memory", 0);
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); !runtime || !*runtime) {
        std::filesystem::path folder = std::filesystem::temp_directory_path() / "jtk-bench-runtime";
        std::error_code error;
        std::filesystem::create_directories(folder, error);
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all, error);
        setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    }
    services::setProcessArguments(argc, argv);
    if (!gtk_init_check()) {
        std::fprintf(stderr, "%s: cannot open the X display \"%s\" (GTK 4 runs on X11 here)\n", argv[0],
                     std::getenv("DISPLAY") ? std::getenv("DISPLAY") : "");
        return false;
    }
    gtk::installBackend();
    return true;
}

// Runs GTK's main context until finished() turns true; work queued for the
// main thread wakes it.
inline void runGtkUntil(const std::function<bool()>& finished) {
    while (!finished()) g_main_context_iteration(nullptr, true);
}

}  // namespace jtk::bench
