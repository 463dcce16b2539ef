// The backend's entry: the checks and hooks installBackend makes, and the
// settings that make a test run's pictures the same on every run.
#include "JTK/gtk/GtkBackend.h"

#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "GtkApplication.h"
#include "GtkInput.h"
#include "GtkMainQueue.h"
#include "GtkMainThread.h"
#include "GtkMenus.h"
#include "GtkScreens.h"
#include "GtkWindowOrder.h"
#include "JTK/platform/Process.h"
#include "JTK/platform/UserDefaults.h"
#include "JTK/services/BackendHooks.h"
#include "JTK/services/Resources.h"
#include "JTK/services/UserDefaults.h"

namespace jtk::gtk {

namespace {

bool runsUnderTest() { return platform::argumentsRequestTesting(platform::processArguments()); }

std::optional<std::filesystem::path> fontConfigurationFile() {
    const std::filesystem::path file = "fonts/fonts.conf";
    auto folder = services::resourceFolderHolding(file);
    return folder ? std::optional(*folder / file) : std::nullopt;
}

// GTK on another display (Wayland, broadway) has no X server to send input
// through nor windows to place: the program is refused before anything of it
// is touched.
void refuseUnlessX11() {
    GdkDisplay* display = gdk_display_get_default();
    if (display && GDK_IS_X11_DISPLAY(display)) return;
    std::fprintf(stderr,
                 "JTK: GDK's display is %s, not X11 (run the program with GDK_BACKEND=x11 on an X server); "
                 "no test ran\n",
                 display ? G_OBJECT_TYPE_NAME(display) : "not open");
    std::fflush(stderr);
    std::exit(2);
}

// The same pixels on every run: one font at one resolution, fixed
// antialiasing and hinting, GTK's default theme in its light variant, no
// animations (a picture taken mid-transition) and no blinking caret.
void makePicturesDeterministic() {
    GtkSettings* settings = gtk_settings_get_default();
    if (!settings) return;
    g_object_set(settings,
                 "gtk-font-name", "DejaVu Sans 10",
                 "gtk-xft-dpi", 96 * 1024,
                 "gtk-xft-antialias", 1,
                 "gtk-xft-hinting", 1,
                 "gtk-xft-hintstyle", "hintslight",
                 "gtk-xft-rgba", "none",
                 "gtk-enable-animations", FALSE,
                 "gtk-cursor-blink", FALSE,
                 "gtk-theme-name", "Default",
                 nullptr);
    // The light variant. A libadwaita program takes its colour scheme from
    // its style manager instead (and warns when this setting is used).
    if (!g_type_from_name("AdwStyleManager"))
        g_object_set(settings, "gtk-application-prefer-dark-theme", FALSE, nullptr);
}

}  // namespace

const char* prepareFontConfiguration() {
    static std::string chosen;
    if (!chosen.empty() || !runsUnderTest()) return chosen.c_str();
    if (const char* existing = std::getenv("FONTCONFIG_FILE"); existing && *existing) return existing;
    auto file = fontConfigurationFile();
    if (!file) {
        platform::systemLog("JTK GTK: no fonts/fonts.conf found (set JTK_RESOURCES_DIR); pictures use the system's fonts");
        return chosen.c_str();
    }
    chosen = file->string();
    setenv("FONTCONFIG_FILE", chosen.c_str(), 0);
    return chosen.c_str();
}

void installBackend() {
    static bool installed = false;
    if (installed) return;
    refuseUnlessX11();
    installed = true;
    setMainThread();
    services::installBackendHooks({
        .dispatchAsyncMain = enqueueOnMain,
        .resetStandardUserDefaults = platform::resetStandardUserDefaults,
    });
    // The defaults live under the name the application answers with.
    if (std::string name = nativeApplication()->name(); !name.empty() && name != services::userDefaultsApplicationName())
        services::setUserDefaultsApplicationName(name);
    refreshScreens();
    startWindowTracking();
    startInput();
    startEventMonitoring();
    startMenuObservers();
    startTextObservers();
    if (runsUnderTest()) makePicturesDeterministic();
}

}  // namespace jtk::gtk
