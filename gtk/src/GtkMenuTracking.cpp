// What GTK does with menus, observed through emission hooks (they see every
// instance, the program's own included, and change nothing):
// - a popover menu that maps has begun tracking;
// - a person's choice: an item's button in an open popover menu clicked
//   (by the mouse or the keyboard), or the shortcut of a menu-bar item's
//   action pressed (a GSimpleAction activated while a key is delivered);
// - a program's modal window that shows runs a modal loop while it shows:
//   GTK 4 has no modal loop of its own, so the backend counts one.
// Main thread only.
#include <map>

#include "GtkInput.h"
#include "GtkMainQueue.h"
#include "GtkMenus.h"
#include "JTK/platform/Notifications.h"

namespace jtk::gtk {

namespace {

// True from a person's choice in an open menu until the main loop turns: the
// item's action runs meanwhile, and must not count a second time as a shortcut.
bool choosingFromMenu = false;

// Where an open popover menu keeps the platform menu it shows.
constexpr const char* openMenuKey = "jtk-open-menu";

void noteChoiceFromMenu() {
    if (choosingFromMenu) return;
    choosingFromMenu = true;
    g_idle_add_full(G_PRIORITY_HIGH, [](gpointer) {
        choosingFromMenu = false;
        return G_SOURCE_REMOVE;
    }, nullptr, nullptr);
}

void postChoice(const MenuChoice& choice) {
    if (!choice.item || !choice.menu) return;
    platform::defaultNotificationCenter().post(platform::menuDidSendActionNotification, choice.menu,
                                               platform::ValueDictionary{{"MenuItem", choice.item}});
}

GtkWidget* widgetParameter(const GValue* parameters) {
    GObject* object = static_cast<GObject*>(g_value_get_object(&parameters[0]));
    return GTK_IS_WIDGET(object) ? GTK_WIDGET(object) : nullptr;
}

// The program's modal windows that show, each counted once.
std::map<GtkWidget*, std::unique_ptr<ModalScope>>& modalWindows() {
    static auto* windows = new std::map<GtkWidget*, std::unique_ptr<ModalScope>>;
    return *windows;
}

gboolean onModelButtonClicked(GSignalInvocationHint*, guint, const GValue* parameters, gpointer) {
    GtkWidget* button = widgetParameter(parameters);
    GtkWidget* popover = button ? gtk_widget_get_ancestor(button, GTK_TYPE_POPOVER_MENU) : nullptr;
    if (!popover || performingMenuItem()) return TRUE;
    gchar* text = nullptr;
    g_object_get(button, "text", &text, nullptr);
    // The button shows its item's label without the mnemonic underscore.
    auto choice = findActionItem(popover, text ? text : "");
    g_free(text);
    if (!choice.item) return TRUE;  // a submenu's button, or a "back" button of a sliding menu
    noteChoiceFromMenu();
    postChoice(choice);
    return TRUE;
}

// GtkModelButton is GTK's own type, registered once the first popover menu
// is made: its hook goes in when a popover menu first maps, before any of
// its buttons can be clicked.
void hookModelButtons() {
    static bool hooked = false;
    GType type = g_type_from_name("GtkModelButton");
    guint clicked = type ? g_signal_lookup("clicked", type) : 0;
    if (hooked || !clicked) return;
    hooked = true;
    g_signal_add_emission_hook(clicked, 0, onModelButtonClicked, nullptr, nullptr);
}

gboolean onMap(GSignalInvocationHint*, guint, const GValue* parameters, gpointer) {
    GtkWidget* widget = widgetParameter(parameters);
    if (GTK_IS_POPOVER_MENU(widget)) {
        hookModelButtons();
        if (auto menu = menuShownBy(widget)) {
            // The framework holds the menu a click opened weakly (its
            // current open menu): the popover keeps it while it shows.
            g_object_set_data_full(G_OBJECT(widget), openMenuKey, new std::shared_ptr<platform::Menu>(menu),
                                   [](gpointer held) { delete static_cast<std::shared_ptr<platform::Menu>*>(held); });
            platform::defaultNotificationCenter().post(platform::menuDidBeginTrackingNotification, menu);
        }
    } else if (GTK_IS_WINDOW(widget) && gtk_window_get_modal(GTK_WINDOW(widget))) {
        auto& windows = modalWindows();
        if (!windows.count(widget)) windows.emplace(widget, std::make_unique<ModalScope>());
    }
    return TRUE;
}

gboolean onUnmap(GSignalInvocationHint*, guint, const GValue* parameters, gpointer) {
    GtkWidget* widget = widgetParameter(parameters);
    if (GTK_IS_WINDOW(widget)) modalWindows().erase(widget);
    if (GTK_IS_POPOVER_MENU(widget)) g_object_set_data(G_OBJECT(widget), openMenuKey, nullptr);
    return TRUE;
}

// A shortcut: an action activated while a key is delivered, which a menu-bar
// item with a shortcut activates. Actions that are no GSimpleAction (a
// widget class's own) are not seen.
gboolean onActionActivated(GSignalInvocationHint*, guint, const GValue* parameters, gpointer) {
    const platform::Event* event = eventBeingDelivered();
    if (performingMenuItem() || choosingFromMenu || !event || event->type != platform::EventType::keyDown) return TRUE;
    auto* action = G_ACTION(g_value_get_object(&parameters[0]));
    GVariant* parameter = static_cast<GVariant*>(g_value_get_variant(&parameters[1]));
    GListModel* toplevels = gtk_window_get_toplevels();
    for (guint index = 0, count = g_list_model_get_n_items(toplevels); index < count; ++index) {
        auto* window = static_cast<GtkWidget*>(g_list_model_get_item(toplevels, index));
        MenuChoice choice;
        if (gtk_widget_get_mapped(window)) choice = findShortcutItem(window, g_action_get_name(action), parameter);
        g_object_unref(window);
        if (choice.item) {
            postChoice(choice);
            break;
        }
    }
    return TRUE;
}

// The signal of a class, its class made first (a signal exists once its class does).
guint signalOf(const char* name, GType type) {
    g_type_class_unref(g_type_class_ref(type));
    return g_signal_lookup(name, type);
}

}  // namespace

void startMenuObservers() {
    static bool started = false;
    if (started) return;
    started = true;
    g_signal_add_emission_hook(signalOf("map", GTK_TYPE_WIDGET), 0, onMap, nullptr, nullptr);
    g_signal_add_emission_hook(signalOf("unmap", GTK_TYPE_WIDGET), 0, onUnmap, nullptr, nullptr);
    g_signal_add_emission_hook(signalOf("activate", G_TYPE_SIMPLE_ACTION), 0, onActionActivated, nullptr, nullptr);
    hookModelButtons();
}

}  // namespace jtk::gtk
