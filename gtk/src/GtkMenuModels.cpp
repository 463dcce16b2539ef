// platform::Menu and platform::MenuItem over a GMenuModel seen through its
// owner (GtkMenus.h). Sections are shown inline, as GTK shows them, so a
// menu's items are its sections' items in order; a submenu link is an item's
// submenu. Wrappers are kept per owner, model and place, so that the same
// item is the same object however it was reached (the recorder compares
// them); each holds its model and, weakly, its owner. Main thread only.
#include <map>
#include <tuple>
#include <vector>

#include "GtkMenus.h"
#include "GtkObjectRuntime.h"
#include "GtkWrappers.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Notifications.h"

namespace jtk::gtk {

namespace {

// Menus nest a few levels; the bound keeps a model that holds itself from being walked for ever.
constexpr int deepestMenu = 8;

bool performing = false;

std::string stringAttribute(GMenuModel* model, int index, const char* name) {
    GVariant* value = g_menu_model_get_item_attribute_value(model, index, name, G_VARIANT_TYPE_STRING);
    if (!value) return {};
    std::string text = g_variant_get_string(value, nullptr);
    g_variant_unref(value);
    return text;
}

// An owned reference to a GObject.
template <class T>
struct Ref {
    T* object = nullptr;
    explicit Ref(T* o) : object(o) { if (object) g_object_ref(object); }
    ~Ref() { if (object) g_object_unref(object); }
    Ref(const Ref&) = delete;
    Ref& operator=(const Ref&) = delete;
};

// A weak reference to the owner widget: the owner may go while a test holds a menu.
struct WeakWidget {
    GWeakRef ref;
    explicit WeakWidget(GtkWidget* widget) { g_weak_ref_init(&ref, widget); }
    ~WeakWidget() { g_weak_ref_clear(&ref); }
    WeakWidget(const WeakWidget&) = delete;
    WeakWidget& operator=(const WeakWidget&) = delete;
    // The widget, or null once it is gone (borrowed: the owner's parent keeps it).
    GtkWidget* get() const {
        auto* widget = static_cast<GtkWidget*>(g_weak_ref_get(const_cast<GWeakRef*>(&ref)));
        if (widget) g_object_unref(widget);
        return widget;
    }
};

GMenuModel* rootModelOf(GtkWidget* owner) {
    if (GTK_IS_POPOVER_MENU_BAR(owner)) return gtk_popover_menu_bar_get_menu_model(GTK_POPOVER_MENU_BAR(owner));
    if (GTK_IS_POPOVER_MENU(owner)) return gtk_popover_menu_get_menu_model(GTK_POPOVER_MENU(owner));
    return nullptr;
}

// Each item a menu shows: its sections' items in place of the sections.
struct Place {
    GMenuModel* section;
    int index;
};

void collectPlaces(GMenuModel* model, int depth, std::vector<Place>& places) {
    for (int index = 0, count = g_menu_model_get_n_items(model); index < count; ++index) {
        if (GMenuModel* section = g_menu_model_get_item_link(model, index, G_MENU_LINK_SECTION)) {
            if (depth < deepestMenu) collectPlaces(section, depth + 1, places);
            g_object_unref(section);
        } else {
            places.push_back({model, index});
        }
    }
}

std::vector<Place> placesOf(GMenuModel* model) {
    std::vector<Place> places;
    if (model) collectPlaces(model, 0, places);
    return places;
}

// The title of the item whose submenu is this model, searched from the root.
std::string submenuTitle(GMenuModel* root, GMenuModel* model, int depth) {
    if (!root || depth > deepestMenu) return {};
    for (const auto& place : placesOf(root)) {
        GMenuModel* submenu = g_menu_model_get_item_link(place.section, place.index, G_MENU_LINK_SUBMENU);
        if (!submenu) continue;
        std::string title = submenu == model ? withoutMnemonics(stringAttribute(place.section, place.index, G_MENU_ATTRIBUTE_LABEL))
                                             : submenuTitle(submenu, model, depth + 1);
        g_object_unref(submenu);
        if (!title.empty()) return title;
    }
    return {};
}

std::shared_ptr<platform::Menu> menuFor(GtkWidget* owner, GMenuModel* model);

class ModelMenuItem : public platform::MenuItem {
public:
    ModelMenuItem(GtkWidget* owner, GMenuModel* menuModel, Place place)
        : owner_(owner), menuModel_(menuModel), section_(place.section), index_(place.index) {}

    GtkWidget* owner() const { return owner_.get(); }
    bool stillAt(GtkWidget* owner, GMenuModel* menuModel) const {
        return owner_.get() == owner && menuModel_.object == menuModel && index_ < g_menu_model_get_n_items(section_.object);
    }

    std::string className() const override { return "GMenuItem"; }
    std::string title() const override { return withoutMnemonics(attribute(G_MENU_ATTRIBUTE_LABEL)); }
    std::string action() const { return attribute(G_MENU_ATTRIBUTE_ACTION); }
    // The item's action parameter (owned by the caller), null without one.
    GVariant* target() const {
        return g_menu_model_get_item_attribute_value(section_.object, index_, G_MENU_ATTRIBUTE_TARGET, nullptr);
    }
    std::shared_ptr<platform::Menu> submenu() const override {
        GMenuModel* model = g_menu_model_get_item_link(section_.object, index_, G_MENU_LINK_SUBMENU);
        if (!model) return nullptr;
        auto menu = menuFor(owner(), model);
        g_object_unref(model);
        return menu;
    }
    std::shared_ptr<platform::Menu> menu() const override { return menuFor(owner(), menuModel_.object); }
    std::string keyEquivalent() const override {
        auto [key, modifiers] = shortcut();
        if (key == 0) return {};
        gunichar character = gdk_keyval_to_unicode(gdk_keyval_to_lower(key));
        if (character >= 0x20 && character != 0x7f) {
            char utf8[8] = {};
            g_unichar_to_utf8(character, utf8);
            return utf8;
        }
        const char* name = gdk_keyval_name(key);
        return name ? name : "";
    }
    uint64_t keyEquivalentModifierMask() const override {
        auto modifiers = shortcut().second;
        uint64_t flags = 0;
        // The input's mapping the other way: command is Control, control is Super or Meta.
        if (modifiers & GDK_CONTROL_MASK) flags |= platform::eventFlags::command;
        if (modifiers & (GDK_SUPER_MASK | GDK_META_MASK)) flags |= platform::eventFlags::control;
        if (modifiers & GDK_ALT_MASK) flags |= platform::eventFlags::alternate;
        if (modifiers & GDK_SHIFT_MASK) flags |= platform::eventFlags::shift;
        return flags;
    }
    std::shared_ptr<platform::View> titleView() const override {
        // A menu-bar title is one of the bar's item widgets, each showing its title in a label.
        GtkWidget* bar = owner();
        if (!GTK_IS_POPOVER_MENU_BAR(bar) || menuModel_.object != rootModelOf(bar)) return nullptr;
        std::string wanted = title();
        for (GtkWidget* item = gtk_widget_get_first_child(bar); item; item = gtk_widget_get_next_sibling(item))
            for (GtkWidget* child = gtk_widget_get_first_child(item); child; child = gtk_widget_get_next_sibling(child))
                if (GTK_IS_LABEL(child) && gtk_label_get_text(GTK_LABEL(child)) == wanted) return viewFor(item);
        return nullptr;
    }

private:
    std::string attribute(const char* name) const {
        return index_ < g_menu_model_get_n_items(section_.object) ? stringAttribute(section_.object, index_, name) : "";
    }
    // The item's own accelerator, else the first one the application gives its action.
    std::pair<guint, GdkModifierType> shortcut() const {
        std::string accel = attribute("accel");
        if (accel.empty()) accel = applicationAccel();
        guint key = 0;
        GdkModifierType modifiers{};
        if (accel.empty() || !gtk_accelerator_parse(accel.c_str(), &key, &modifiers)) return {0, {}};
        return {key, modifiers};
    }
    std::string applicationAccel() const {
        std::string name = action();
        GtkWidget* widget = owner();
        GtkRoot* root = widget ? gtk_widget_get_root(widget) : nullptr;
        GtkApplication* application = GTK_IS_WINDOW(root) ? gtk_window_get_application(GTK_WINDOW(root)) : nullptr;
        if (name.empty() || !application) return {};
        GVariant* parameter = target();
        gchar* detailed = g_action_print_detailed_name(name.c_str(), parameter);
        if (parameter) g_variant_unref(parameter);
        gchar** accels = gtk_application_get_accels_for_action(application, detailed);
        std::string first = accels && accels[0] ? accels[0] : "";
        g_strfreev(accels);
        g_free(detailed);
        return first;
    }

    WeakWidget owner_;
    Ref<GMenuModel> menuModel_;  // the model of the menu that lists the item
    Ref<GMenuModel> section_;    // the model that holds it (that menu's or one of its sections)
    int index_;
};

std::shared_ptr<platform::MenuItem> itemFor(GtkWidget* owner, GMenuModel* menuModel, Place place);

class ModelMenu : public platform::Menu {
public:
    ModelMenu(GtkWidget* owner, GMenuModel* model) : owner_(owner), model_(model) {}

    GtkWidget* owner() const { return owner_.get(); }
    bool shownBy(GtkWidget* owner) const { return owner_.get() == owner; }

    std::string className() const override { return G_OBJECT_TYPE_NAME(model_.object); }
    std::string title() const override { return submenuTitle(rootModelOf(owner()), model_.object, 0); }
    std::vector<std::shared_ptr<platform::MenuItem>> itemArray() const override {
        std::vector<std::shared_ptr<platform::MenuItem>> items;
        GtkWidget* widget = owner();
        for (const auto& place : placesOf(model_.object)) items.push_back(itemFor(widget, model_.object, place));
        return items;
    }
    int indexOfItem(const std::shared_ptr<platform::MenuItem>& item) const override {
        auto items = itemArray();
        for (size_t index = 0; index < items.size(); ++index)
            if (items[index] == item) return static_cast<int>(index);
        return -1;
    }
    void performActionForItemAtIndex(int index) override {
        auto items = itemArray();
        GtkWidget* widget = owner();
        if (!widget || index < 0 || index >= static_cast<int>(items.size())) return;
        auto protector = shared_from_this();
        auto item = std::static_pointer_cast<ModelMenuItem>(items[index]);
        std::string action = item->action();
        if (action.empty()) return;  // a submenu's title or a plain label: nothing to perform
        GVariant* parameter = item->target();
        // Through the owner's action muxer, as the item's button does: the
        // window's, the application's and the widgets' own actions alike.
        performing = true;
        gboolean found = gtk_widget_activate_action_variant(widget, action.c_str(), parameter);
        performing = false;
        if (parameter) g_variant_unref(parameter);
        if (!found) g_warning("JTK: the menu item \"%s\" names the action %s, which nothing provides", item->title().c_str(), action.c_str());
        platform::defaultNotificationCenter().post(platform::menuDidSendActionNotification, protector,
                                                   platform::ValueDictionary{{"MenuItem", item}});
    }
    void cancelTracking() override {
        GtkWidget* widget = owner();
        if (widget) popDownWithin(widget);
    }

private:
    // Every open popover in the owner (a bar's open menu, a submenu) and the owner itself.
    static void popDownWithin(GtkWidget* widget) {
        for (GtkWidget* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
            popDownWithin(child);
        if (GTK_IS_POPOVER(widget) && gtk_widget_get_mapped(widget)) gtk_popover_popdown(GTK_POPOVER(widget));
    }

    WeakWidget owner_;
    Ref<GMenuModel> model_;
};

// The wrappers made so far; an entry whose wrapper has gone, or whose owner
// is no longer the widget it names, is made again.
std::map<std::pair<GtkWidget*, GMenuModel*>, std::weak_ptr<ModelMenu>>& menus() {
    static auto* registry = new std::map<std::pair<GtkWidget*, GMenuModel*>, std::weak_ptr<ModelMenu>>;
    return *registry;
}
std::map<std::tuple<GtkWidget*, GMenuModel*, GMenuModel*, int>, std::weak_ptr<ModelMenuItem>>& items() {
    static auto* registry = new std::map<std::tuple<GtkWidget*, GMenuModel*, GMenuModel*, int>, std::weak_ptr<ModelMenuItem>>;
    return *registry;
}

template <class Map>
void dropExpired(Map& map) {
    // Now and then, so that the registry grows only with live wrappers.
    if (map.size() < 256) return;
    std::erase_if(map, [](const auto& entry) { return entry.second.expired(); });
}

std::shared_ptr<platform::Menu> menuFor(GtkWidget* owner, GMenuModel* model) {
    if (!owner || !model) return nullptr;
    auto& registry = menus();
    auto key = std::make_pair(owner, model);
    if (auto known = registry[key].lock(); known && known->shownBy(owner)) return known;
    dropExpired(registry);
    auto menu = std::make_shared<ModelMenu>(owner, model);
    registry[key] = menu;
    return menu;
}

std::shared_ptr<platform::MenuItem> itemFor(GtkWidget* owner, GMenuModel* menuModel, Place place) {
    auto& registry = items();
    auto key = std::make_tuple(owner, menuModel, place.section, place.index);
    if (auto known = registry[key].lock(); known && known->stillAt(owner, menuModel)) return known;
    dropExpired(registry);
    auto item = std::make_shared<ModelMenuItem>(owner, menuModel, place);
    registry[key] = item;
    return item;
}

GtkWidget* findMenuBar(GtkWidget* widget) {
    if (GTK_IS_POPOVER_MENU_BAR(widget)) return widget;
    if (GTK_IS_POPOVER(widget)) return nullptr;  // a popover's content is no part of the window's bar
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
        if (GtkWidget* bar = findMenuBar(child)) return bar;
    return nullptr;
}

// Depth first through a menu and its submenus: the first item that matches.
template <class Matches>
MenuChoice findItem(const std::shared_ptr<platform::Menu>& menu, const Matches& matches, int depth) {
    if (!menu || depth > deepestMenu) return {};
    for (const auto& item : menu->itemArray()) {
        auto* modelItem = static_cast<ModelMenuItem*>(item.get());
        if (!modelItem->action().empty() && matches(*modelItem)) return {menu, item};
        if (auto found = findItem(item->submenu(), matches, depth + 1); found.item) return found;
    }
    return {};
}

}  // namespace

std::shared_ptr<platform::Menu> mainMenuOf(GtkWidget* window) {
    GtkWidget* bar = GTK_IS_WINDOW(window) ? findMenuBar(window) : nullptr;
    return bar ? menuFor(bar, rootModelOf(bar)) : nullptr;
}

GtkWidget* menuOwnerOf(GtkWidget* menuWidget) {
    GtkWidget* outermost = nullptr;
    for (GtkWidget* widget = menuWidget; widget; widget = gtk_widget_get_parent(widget)) {
        if (GTK_IS_POPOVER_MENU_BAR(widget)) return widget;
        if (GTK_IS_POPOVER_MENU(widget)) outermost = widget;
    }
    return outermost;
}

std::shared_ptr<platform::Menu> menuShownBy(GtkWidget* menuWidget) {
    GMenuModel* model = rootModelOf(menuWidget);
    return model ? menuFor(menuOwnerOf(menuWidget), model) : nullptr;
}

MenuChoice findActionItem(GtkWidget* menuWidget, const std::string& title) {
    return findItem(menuShownBy(menuWidget), [&](const ModelMenuItem& item) { return item.title() == title; }, 0);
}

MenuChoice findShortcutItem(GtkWidget* window, const char* actionName, GVariant* parameter) {
    std::string name = actionName ? actionName : "";
    auto matches = [&](const ModelMenuItem& item) {
        std::string action = item.action();
        auto dot = action.find('.');
        if (dot == std::string::npos || action.substr(dot + 1) != name || item.keyEquivalent().empty()) return false;
        GVariant* target = item.target();
        bool same = (!target && !parameter) || (target && parameter && g_variant_equal(target, parameter));
        if (target) g_variant_unref(target);
        return same;
    };
    return findItem(mainMenuOf(window), matches, 0);
}

bool performingMenuItem() { return performing; }

}  // namespace jtk::gtk
