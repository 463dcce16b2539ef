#include "GtkObjectRuntime.h"

#include <dlfcn.h>

#include <cctype>
#include <map>

namespace jtk::gtk {

namespace {

// "GtkModelButton" → "gtk_model_button_get_type", GObject's naming rule for
// the function that registers a type ("GtkGLArea" → "gtk_gl_area_get_type").
std::string getTypeFunctionName(const std::string& typeName) {
    std::string snake;
    for (size_t i = 0; i < typeName.size(); ++i) {
        char c = typeName[i];
        bool upper = std::isupper(static_cast<unsigned char>(c));
        if (upper && i > 0) {
            bool previousLower = std::islower(static_cast<unsigned char>(typeName[i - 1]));
            bool nextLower = i + 1 < typeName.size() && std::islower(static_cast<unsigned char>(typeName[i + 1]));
            bool previousUpper = std::isupper(static_cast<unsigned char>(typeName[i - 1]));
            if (previousLower || (previousUpper && nextLower)) snake += '_';
        }
        snake += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return snake + "_get_type";
}

// Only the toolkit's own libraries hide types: an application's type is
// public to its tests whether or not its get_type function is exported.
bool isToolkitTypeName(const std::string& name) {
    return name.rfind("Gtk", 0) == 0 || name.rfind("Gdk", 0) == 0 || name.rfind("Adw", 0) == 0;
}

// A menu bar's title (the widget a person clicks to open one of its menus)
// keeps its own name, as Qt's menu-bar titles are QMenuBarItem parts: the
// recorder names it so (element("Edit", JTKClass{"GtkPopoverMenuBarItem"})).
constexpr const char* menuBarTitleType = "GtkPopoverMenuBarItem";

bool isMenuBarTitle(GtkWidget* widget) { return widget && std::string(G_OBJECT_TYPE_NAME(widget)) == menuBarTitleType; }

bool isPublicType(GType type) {
    static auto* known = new std::map<GType, bool>;  // main thread; never destroyed
    auto [found, added] = known->emplace(type, true);
    if (added) {
        std::string name = g_type_name(type);
        found->second = !isToolkitTypeName(name) || name == menuBarTitleType ||
                        dlsym(RTLD_DEFAULT, getTypeFunctionName(name).c_str()) != nullptr;
    }
    return found->second;
}

bool isCheckable(GtkWidget* widget) {
    return GTK_IS_CHECK_BUTTON(widget) || GTK_IS_TOGGLE_BUTTON(widget) || GTK_IS_SWITCH(widget);
}

bool isChecked(GtkWidget* widget) {
    if (GTK_IS_CHECK_BUTTON(widget)) return gtk_check_button_get_active(GTK_CHECK_BUTTON(widget));
    if (GTK_IS_TOGGLE_BUTTON(widget)) return gtk_toggle_button_get_active(GTK_TOGGLE_BUTTON(widget));
    return GTK_IS_SWITCH(widget) && gtk_switch_get_active(GTK_SWITCH(widget));
}

std::optional<std::string> labelOf(const char* text, bool underline) {
    if (!text) return std::nullopt;
    return underline ? withoutMnemonics(text) : std::string(text);
}

}  // namespace

std::string withoutMnemonics(const std::string& text) {
    std::string plain;
    plain.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '_' && i + 1 < text.size()) ++i;  // "__" is a literal '_'
        else if (text[i] == '_') continue;
        plain += text[i];
    }
    return plain;
}

std::string gtkClassName(GObject* object) {
    if (!object) return {};
    GType type = G_OBJECT_TYPE(object);
    while (!isPublicType(type) && g_type_parent(type)) type = g_type_parent(type);
    return g_type_name(type);
}

std::optional<std::string> gtkApplicationText(GtkWidget* widget, const char* selector) {
    if (!widget) return std::nullopt;
    if (const auto* data = static_cast<const char*>(g_object_get_data(G_OBJECT(widget), selector)))
        return std::string(data);
    GParamSpec* property = g_object_class_find_property(G_OBJECT_GET_CLASS(widget), selector);
    if (!property || !(property->flags & G_PARAM_READABLE) || property->value_type != G_TYPE_STRING)
        return std::nullopt;
    gchar* text = nullptr;
    g_object_get(widget, selector, &text, nullptr);
    if (!text) return std::nullopt;
    std::string result = text;
    g_free(text);
    return result;
}

std::optional<std::string> gtkWidgetName(GtkWidget* widget) {
    if (!widget) return std::nullopt;
    if (auto own = gtkApplicationText(widget, "hbViewName")) return own;
    // A widget built from a class template (GtkDropDown, an application's
    // own templated class) has the template's class name as its id.
    const char* id = gtk_buildable_get_buildable_id(GTK_BUILDABLE(widget));
    GType idType = id && *id ? g_type_from_name(id) : 0;
    if (id && *id && !(idType && g_type_is_a(G_OBJECT_TYPE(widget), idType))) return std::string(id);
    const char* name = gtk_widget_get_name(widget);
    if (!name || !*name || std::string(name) == G_OBJECT_TYPE_NAME(widget)) return std::nullopt;
    return std::string(name);
}

std::optional<std::string> gtkTitle(GtkWidget* widget) {
    if (GTK_IS_CHECK_BUTTON(widget))
        return labelOf(gtk_check_button_get_label(GTK_CHECK_BUTTON(widget)),
                       gtk_check_button_get_use_underline(GTK_CHECK_BUTTON(widget)));
    if (GTK_IS_MENU_BUTTON(widget))
        return labelOf(gtk_menu_button_get_label(GTK_MENU_BUTTON(widget)),
                       gtk_menu_button_get_use_underline(GTK_MENU_BUTTON(widget)));
    if (GTK_IS_BUTTON(widget))
        return labelOf(gtk_button_get_label(GTK_BUTTON(widget)), gtk_button_get_use_underline(GTK_BUTTON(widget)));
    if (GTK_IS_EXPANDER(widget))
        return labelOf(gtk_expander_get_label(GTK_EXPANDER(widget)),
                       gtk_expander_get_use_underline(GTK_EXPANDER(widget)));
    if (GTK_IS_FRAME(widget)) return labelOf(gtk_frame_get_label(GTK_FRAME(widget)), false);
    if (GTK_IS_WINDOW(widget)) return labelOf(gtk_window_get_title(GTK_WINDOW(widget)), false);
    if (isMenuBarTitle(widget))  // the label it shows its menu's title in
        for (GtkWidget* child = gtk_widget_get_first_child(widget); child; child = gtk_widget_get_next_sibling(child))
            if (GTK_IS_LABEL(child)) return std::string(gtk_label_get_text(GTK_LABEL(child)));
    return std::nullopt;
}

bool gtkRespondsToSelector(GtkWidget* widget, const std::string& selector) {
    if (!widget) return false;
    if (selector == "title") return gtkTitle(widget).has_value();
    if (selector == "hbViewName") return gtkWidgetName(widget).has_value();
    if (selector == "hbViewValue") return gtkApplicationText(widget, "hbViewValue").has_value();
    if (selector == "isEnabled" || selector == "toolTip") return true;
    return selector == "isChecked" && isCheckable(widget);
}

platform::Value gtkPerformSelector(GtkWidget* widget, const std::string& selector) {
    if (!gtkRespondsToSelector(widget, selector)) return {};
    if (selector == "title") return *gtkTitle(widget);
    if (selector == "hbViewName") return *gtkWidgetName(widget);
    if (selector == "hbViewValue") return *gtkApplicationText(widget, "hbViewValue");
    if (selector == "isEnabled") return static_cast<bool>(gtk_widget_is_sensitive(widget));
    if (selector == "toolTip") {
        const char* tip = gtk_widget_get_tooltip_text(widget);
        return std::string(tip ? tip : "");
    }
    return isChecked(widget);
}

}  // namespace jtk::gtk
