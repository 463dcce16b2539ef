// The GTK 4 loader: JTK and its GTK backend in one shared library that
// LD_PRELOAD brings into a GTK 4 program built without JTK.
//
//     LD_PRELOAD=libjtk-gtk4-loader.so JTK_UXTEST=1 JTK_TESTS_LIBRARY=libmytests.so program
//     LD_PRELOAD=libjtk-gtk4-loader.so program uxtest --jtk-tests=libmytests.so
//
// The launch before main is every loader's (JTKLoaderLaunch.cpp); what it
// needs of GTK is here. Before main the display is chosen and checked (the
// backend drives GTK on X11 only), the fonts are pinned, and GSettings is
// pointed at the run's settings folder. Once the program has initialised GTK
// and mapped its first window, the run starts as in an application built
// with JTK.
#include <dlfcn.h>

#include <X11/Xlib.h>
#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include <JTK/JTKTestSuite.h>
#include <JTK/gtk/GtkBackend.h>

#include "JTKLoaderLaunch.h"

namespace jtk::loader {

namespace {

// How often the start looks for the program's first window, and how long it
// waits for one: a program that shows none has nothing to test.
constexpr guint firstWindowPollMilliseconds = 20;
constexpr gint64 firstWindowLimitSeconds = 60;

std::string environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// GDK_BACKEND, when set, is a list of the backends GDK may try in order;
// "*" allows any.
bool allowsX11(std::string_view backends) {
    while (!backends.empty()) {
        auto end = backends.find(',');
        auto backend = backends.substr(0, end);
        if (backend == "x11" || backend == "*") return true;
        if (end == std::string_view::npos) break;
        backends.remove_prefix(end + 1);
    }
    return false;
}

// GDK opens the first display its allowed backends can reach; the backend
// needs an X11 one (its input goes through XTest, its windows are placed
// through Xlib). A launch that would give the program any other display, or
// none, is refused before the program starts, rather than met as GTK's
// "cannot open display" or a run that cannot type.
void chooseTheX11Display() {
    const std::string backends = environmentValue("GDK_BACKEND");
    if (!backends.empty() && !allowsX11(backends))
        refuseLaunch("GDK_BACKEND=" + backends + " gives the program a display other than X11, and JTK drives GTK "
                     "programs on X11 only: set GDK_BACKEND=x11, or leave it unset, and DISPLAY");
    // Inside a Wayland session with Xwayland too, the program opens the X11 display.
    gdk_set_allowed_backends("x11");
    const std::string display = environmentValue("DISPLAY");
    if (display.empty()) {
        if (const std::string wayland = environmentValue("WAYLAND_DISPLAY"); !wayland.empty())
            refuseLaunch("the program would open the Wayland display " + wayland + ", and JTK drives GTK programs on "
                         "X11 only: set DISPLAY to an X server (Xwayland's, or a private Xvfb)");
        refuseLaunch("no display: DISPLAY is not set, and JTK drives GTK programs on an X11 display (start one, "
                     "e.g. Xvfb -displayfd 1, and set DISPLAY)");
    }
    // The probe stays open: a bare X server (Xvfb without -noreset) resets
    // when its last client leaves, and would refuse GTK's connection while it does.
    static Display* probe = XOpenDisplay(display.c_str());
    if (!probe) refuseLaunch("cannot open the X display " + display);
}

// GTK writes every file a program opens or saves into a recently-used list
// of the user's data folder ($XDG_DATA_HOME/recently-used.xbel, shared by
// every GTK program; some programs keep one of their own), from the class
// handler of GtkRecentManager's "changed" signal. Under a run that handler
// writes nothing: the lists change in memory only, for the program to read,
// and the user's files stay as they were. (Turning the lists off through
// gtk-recent-files-enabled would not do: GTK then writes them empty.)
void keepRecentFilesInMemory() {
    // The class makes its signals when it is first referenced; kept for the process.
    g_type_class_ref(GTK_TYPE_RECENT_MANAGER);
    g_signal_override_class_handler("changed", GTK_TYPE_RECENT_MANAGER, G_CALLBACK(+[](GtkRecentManager*) {}));
}

// A caret that blinks fades in and out: a picture would catch it at any
// strength. The backend turns blinking off once the run starts, but a text
// view that already blinks goes on fading; so the display's settings say it
// from the moment GTK opens the display, before the program makes a widget.
void stillCaretsFromTheStart() {
    g_signal_connect(gdk_display_manager_get(), "display-opened", G_CALLBACK(+[](GdkDisplayManager*, GdkDisplay* display) {
                         g_object_set(gtk_settings_get_for_display(display), "gtk-cursor-blink", FALSE, nullptr);
                     }),
                     nullptr);
}

// Before main: what GTK and its libraries read once, as they start.
void prepareGtk() {
    chooseTheX11Display();
    jtk::gtk::prepareFontConfiguration();
    // The program draws with cairo, and GDK does not even try GL: no GL
    // context on the X server, no shader cache written into the user's
    // cache folder.
    setenv("GSK_RENDERER", "cairo", 0);
    setenv("GDK_DEBUG", "gl-disable", 0);
    // libadwaita takes the light or dark style from the desktop's settings
    // portal, when a session bus has one: the pictures must not depend on it.
    setenv("ADW_DISABLE_PORTAL", "1", 1);
    keepRecentFilesInMemory();
    stillCaretsFromTheStart();
}

// GSettings keeps a GTK program's settings in dconf, a database of the
// user's that a service writes for the whole session. Under a run the
// program uses GLib's keyfile backend instead, which reads and writes
// $XDG_CONFIG_HOME/glib-2.0/settings/keyfile: a file of the run's settings
// folder, filled from the test settings like every other item there. GLib
// takes the configuration folder once, when it is first asked for it: it
// must be the run's.
void useKeyfileSettings(const std::filesystem::path& folder) {
    setenv("GSETTINGS_BACKEND", "keyfile", 1);
    if (std::filesystem::path(g_get_user_config_dir()) != folder)
        refuseLaunch(std::string("GLib took the configuration folder ") + g_get_user_config_dir() +
                     " before the program's main, so its settings would not be the run's own");
}

bool hasMappedWindow() {
    GListModel* toplevels = gtk_window_get_toplevels();
    bool mapped = false;
    for (guint index = 0; !mapped && index < g_list_model_get_n_items(toplevels); ++index) {
        auto* window = static_cast<GtkWidget*>(g_list_model_get_item(toplevels, index));
        mapped = gtk_widget_get_mapped(window);
        g_object_unref(window);
    }
    return mapped;
}

// The run moves aside $XDG_DATA_HOME/<the application's name> and puts the
// test data there. A GApplication keeps its data under its id
// ($XDG_DATA_HOME/org.gnome.TextEditor): when the program has named itself
// nothing else (GLib then answers its file name), its id is its name.
void nameTheDataFolderAfterTheApplication() {
    GApplication* application = g_application_get_default();
    const char* id = application ? g_application_get_application_id(application) : nullptr;
    const char* name = g_get_application_name();
    const char* fileName = g_get_prgname();
    if (id && *id && (!name || (fileName && std::strcmp(name, fileName) == 0))) g_set_application_name(id);
}

void startTheRun() {
    GdkDisplay* display = gdk_display_get_default();
    if (!GDK_IS_X11_DISPLAY(display))
        refuseLaunch(std::string("the program opened a ") + G_OBJECT_TYPE_NAME(display) +
                     ", and JTK drives GTK programs on X11 only (does the program choose its own GDK backends?)");
    nameTheDataFolderAfterTheApplication();
    jtk::gtk::installBackend();
    jtk::JTKTestSuite::runTests();
}

// Queued before main; runs once the program's main loop turns. GTK is
// initialised by the program (gtk_init, or a GtkApplication's start-up) and
// its first window is shown but mapped a moment later: the run waits for it.
gboolean startOnceAWindowIsMapped(gpointer) {
    static const gint64 since = g_get_monotonic_time();
    if (gtk_is_initialized() && gdk_display_get_default() && hasMappedWindow()) {
        startTheRun();
        return G_SOURCE_REMOVE;
    }
    if (g_get_monotonic_time() - since > firstWindowLimitSeconds * G_USEC_PER_SEC)
        refuseLaunch("the program showed no window within " + std::to_string(firstWindowLimitSeconds) +
                     " seconds of its start");
    return G_SOURCE_CONTINUE;
}

void prepareGtkAndWaitForAWindow() {
    prepareGtk();
    g_timeout_add(firstWindowPollMilliseconds, startOnceAWindowIsMapped, nullptr);
}

// A program that loads GTK only once it runs (an interpreter with GTK
// bindings) was no GTK program before main. If GTK is running when its main
// loop first turns, its run is refused; any other program is left alone.
void refuseALateGtk() {
    g_idle_add_full(
        G_PRIORITY_DEFAULT_IDLE,
        [](gpointer) -> gboolean {
            if (gtk_is_initialized()) refuseUnpreparedLaunch();
            return G_SOURCE_REMOVE;
        },
        nullptr, nullptr);
}

}  // namespace

const LoaderToolkit& loaderToolkit() {
    static const LoaderToolkit toolkit{
        .name = "GTK 4",
        .programLibrary = "libgtk-4.so.1",
        .ownLibraryPrefix = "libgtk-4",
        .prepare = prepareGtkAndWaitForAWindow,
        .useRunSettings = useKeyfileSettings,
        .watchForLateToolkit = refuseALateGtk,
    };
    return toolkit;
}

}  // namespace jtk::loader

// A GApplication is unique by default: launched while another instance of
// the program runs in the session (the user's own), it hands its launch to
// that one over D-Bus and ends, and an instance under test would take the
// launches of the user's later ones. Under a run the program is its own
// instance. The program calls this in place of GIO's (the preloaded library
// comes first in the symbol search).
extern "C" int g_application_run(GApplication* application, int argc, char** argv) {
    using Run = int (*)(GApplication*, int, char**);
    static const auto run = reinterpret_cast<Run>(dlsym(RTLD_NEXT, "g_application_run"));
    if (!run) {
        std::fprintf(stderr, "JTK: GIO's g_application_run is not there: %s\n", dlerror());
        std::_Exit(127);
    }
    if (jtk::loader::launchPrepared() && G_IS_APPLICATION(application) &&
        !g_application_get_is_registered(application))
        g_application_set_flags(application,
                                GApplicationFlags(g_application_get_flags(application) | G_APPLICATION_NON_UNIQUE));
    return run(application, argc, argv);
}
