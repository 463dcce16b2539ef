// Status items over GTK 4. GTK 4 has no status icon, and a bare X server no
// tray, so each item is a small window of the backend's own, as on Qt: an
// undecorated window at the top right of the main screen, 22 points high,
// items right to left in the order made, each as wide as the embedded
// desktop makes it (its title's length, not its font). Its only child is a
// button of the type StatusBarButton (a GtkButton) that takes no focus. The
// window belongs to no GtkApplication, so it never keeps a program running;
// it is listed among the application's windows like any other, and is
// placed and raised without ever taking the keyboard focus.
// Main thread only.
#include <algorithm>
#include <cmath>
#include <vector>

#include "GtkMainQueue.h"
#include "GtkWindowOrder.h"
#include "GtkWrappers.h"
#include "GtkX11.h"
#include "JTK/platform/StatusBar.h"

namespace jtk::gtk {

namespace {

constexpr int stripHeight = 22;
constexpr int rightMargin = 8;
constexpr double titlePadding = 10;
constexpr double pointsPerCharacter = 7.5;

// The button's type: a GtkButton under the name the framework looks for.
GType statusBarButtonType() {
    static GType type = g_type_register_static_simple(GTK_TYPE_BUTTON, platform::statusBarButtonClassName,
                                                      sizeof(GtkButtonClass), nullptr, sizeof(GtkButton), nullptr,
                                                      GTypeFlags{});
    return type;
}

// Compact: the strip is 22 points high whatever the theme's button padding.
void styleCompact(GtkWidget* button) {
    static GtkCssProvider* provider = [] {
        GtkCssProvider* css = gtk_css_provider_new();
        gtk_css_provider_load_from_data(css, "button { min-height: 0; padding: 0 4px; margin: 0; border-radius: 0; }", -1);
        return css;
    }();
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    gtk_style_context_add_provider(gtk_widget_get_style_context(button), GTK_STYLE_PROVIDER(provider),
                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    G_GNUC_END_IGNORE_DEPRECATIONS
}

size_t characterCount(const std::string& text) {
    size_t count = 0;
    for (unsigned char c : text) count += (c & 0xC0) != 0x80;
    return count;
}

int screenWidth() {
    GListModel* monitors = gdk_display_get_monitors(gdk_display_get_default());
    auto* monitor = monitors ? static_cast<GdkMonitor*>(g_list_model_get_item(monitors, 0)) : nullptr;
    if (!monitor) return 1440;
    GdkRectangle geometry;
    gdk_monitor_get_geometry(monitor, &geometry);
    g_object_unref(monitor);
    return geometry.x + geometry.width;
}

class GtkStatusItem : public platform::StatusItem {
public:
    explicit GtkStatusItem(double length) : length_(length) {
        window_ = gtk_window_new();
        g_object_ref_sink(window_);
        gtk_window_set_decorated(GTK_WINDOW(window_), FALSE);
        gtk_window_set_resizable(GTK_WINDOW(window_), FALSE);
        keepFromFocus(window_);
        button_ = GTK_WIDGET(g_object_new(statusBarButtonType(), nullptr));
        gtk_widget_set_focusable(button_, FALSE);
        gtk_widget_set_focus_on_click(button_, FALSE);
        styleCompact(button_);
        gtk_window_set_child(GTK_WINDOW(window_), button_);
        g_signal_connect(button_, "clicked", G_CALLBACK(+[](GtkButton*, GtkStatusItem* item) {
            if (auto action = item->action_) action();
        }), this);
        items().push_back(this);
    }
    ~GtkStatusItem() override {
        std::erase(items(), this);
        g_signal_handlers_disconnect_by_data(button_, this);
        GtkWidget* window = window_;
        enqueueOnMain([window] {
            gtk_window_destroy(GTK_WINDOW(window));
            g_object_unref(window);
            layOut();
        });
    }

    std::string title() const override {
        const char* label = gtk_button_get_label(GTK_BUTTON(button_));
        return label ? label : "";
    }
    void setTitle(const std::string& title) override {
        gtk_button_set_label(GTK_BUTTON(button_), title.c_str());
        gtk_widget_set_visible(window_, TRUE);
        layOut();
    }
    void setAction(std::function<void()> action) override { action_ = std::move(action); }
    std::shared_ptr<platform::View> button() const override { return viewFor(button_); }

    void show() { gtk_widget_set_visible(window_, TRUE); }

    // Items are laid out right to left from the screen's right edge.
    static void layOut() {
        int right = screenWidth() - rightMargin;
        for (GtkStatusItem* item : items()) {
            int width = item->width();
            right -= width;
            gtk_widget_set_size_request(item->button_, width, stripHeight);
            gtk_window_set_default_size(GTK_WINDOW(item->window_), width, stripHeight);
            placeWindow(item->window_, {static_cast<double>(right), 0});
            if (gtk_widget_get_mapped(item->window_)) raiseSurface(item->window_, false);
        }
    }

private:
    static std::vector<GtkStatusItem*>& items() {
        static auto* list = new std::vector<GtkStatusItem*>;
        return *list;
    }
    int width() const {
        if (length_ >= 0) return static_cast<int>(length_);
        return static_cast<int>(std::ceil(2 * titlePadding + pointsPerCharacter * static_cast<double>(characterCount(title()))));
    }

    double length_;
    GtkWidget* window_;
    GtkWidget* button_;
    std::function<void()> action_;
};

}  // namespace

}  // namespace jtk::gtk

namespace jtk::platform {

std::shared_ptr<StatusItem> statusItemWithLength(double length) {
    auto item = std::make_shared<gtk::GtkStatusItem>(length);
    gtk::GtkStatusItem::layOut();
    item->show();
    return item;
}

}  // namespace jtk::platform
