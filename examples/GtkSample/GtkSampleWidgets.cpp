#include "GtkSampleWidgets.h"

#include <cmath>
#include <numbers>

// ClickTargetButton ----------------------------------------------------------

struct _ClickTargetButton {
    GtkButton parent_instance;
    GdkModifierType lastClickModifiers;
    // The presses so far in a row of quick presses near one another.
    int pressesInRow;
    guint32 lastPressTime;
    double lastPressX;
    double lastPressY;
};

G_DEFINE_FINAL_TYPE(ClickTargetButton, click_target_button, GTK_TYPE_BUTTON)

namespace {

guint doubleClickedSignal = 0;

// Counts a press into the row of presses when it comes within GTK's
// double-click time and distance of the previous one; the second of a row is
// a double click.
void notePress(ClickTargetButton* self, GdkEvent* event) {
    int doubleClickTime = 400, doubleClickDistance = 5;
    g_object_get(gtk_widget_get_settings(GTK_WIDGET(self)), "gtk-double-click-time", &doubleClickTime,
                 "gtk-double-click-distance", &doubleClickDistance, nullptr);
    guint32 time = gdk_event_get_time(event);
    double x = 0, y = 0;
    gdk_event_get_position(event, &x, &y);
    bool continuesRow = self->pressesInRow > 0 && time - self->lastPressTime <= static_cast<guint32>(doubleClickTime) &&
                        std::fabs(x - self->lastPressX) <= doubleClickDistance &&
                        std::fabs(y - self->lastPressY) <= doubleClickDistance;
    self->pressesInRow = continuesRow ? self->pressesInRow + 1 : 1;
    self->lastPressTime = time;
    self->lastPressX = x;
    self->lastPressY = y;
    if (self->pressesInRow == 2) g_signal_emit(self, doubleClickedSignal, 0);
}

// Sees the button's events before its own click gesture does (capture
// phase), without taking them: a gesture of ours would lose its count when
// the button's gesture claims the press.
gboolean onButtonEvent(GtkEventControllerLegacy*, GdkEvent* event, gpointer data) {
    auto* self = GTKSAMPLE_CLICK_TARGET_BUTTON(data);
    GdkEventType type = gdk_event_get_event_type(event);
    if ((type != GDK_BUTTON_PRESS && type != GDK_BUTTON_RELEASE) ||
        gdk_button_event_get_button(event) != GDK_BUTTON_PRIMARY)
        return GDK_EVENT_PROPAGATE;
    if (type == GDK_BUTTON_PRESS)
        notePress(self, event);
    else  // before the button's gesture emits "clicked", whose handlers read this
        self->lastClickModifiers =
            static_cast<GdkModifierType>(gdk_event_get_modifier_state(event) & gtk_accelerator_get_default_mod_mask());
    return GDK_EVENT_PROPAGATE;
}

}  // namespace

static void click_target_button_init(ClickTargetButton* self) {
    GtkEventController* events = gtk_event_controller_legacy_new();
    gtk_event_controller_set_propagation_phase(events, GTK_PHASE_CAPTURE);
    g_signal_connect(events, "event", G_CALLBACK(onButtonEvent), self);
    gtk_widget_add_controller(GTK_WIDGET(self), events);
}

static void click_target_button_class_init(ClickTargetButtonClass* klass) {
    doubleClickedSignal = g_signal_new("double-clicked", G_TYPE_FROM_CLASS(klass), G_SIGNAL_RUN_LAST, 0, nullptr,
                                       nullptr, nullptr, G_TYPE_NONE, 0);
}

GtkWidget* click_target_button_new(const char* label) {
    return GTK_WIDGET(g_object_new(GTKSAMPLE_TYPE_CLICK_TARGET_BUTTON, "label", label, nullptr));
}

GdkModifierType click_target_button_get_last_click_modifiers(ClickTargetButton* button) {
    return button->lastClickModifiers;
}

// StatusBadge ----------------------------------------------------------------

struct _StatusBadge {
    GtkWidget parent_instance;
};

G_DEFINE_FINAL_TYPE(StatusBadge, status_badge, GTK_TYPE_WIDGET)

namespace {

enum { propName = 1, propValue };
const auto readOnly = static_cast<GParamFlags>(G_PARAM_READABLE | G_PARAM_STATIC_STRINGS);
const char* const badgeState = "Ready";

void roundedRectangle(cairo_t* cairo, double x, double y, double width, double height, double radius) {
    const double quarter = std::numbers::pi / 2;
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, x + width - radius, y + radius, radius, -quarter, 0);
    cairo_arc(cairo, x + width - radius, y + height - radius, radius, 0, quarter);
    cairo_arc(cairo, x + radius, y + height - radius, radius, quarter, 2 * quarter);
    cairo_arc(cairo, x + radius, y + radius, radius, 2 * quarter, 3 * quarter);
    cairo_close_path(cairo);
}

void statusBadgeSnapshot(GtkWidget* widget, GtkSnapshot* snapshot) {
    double width = gtk_widget_get_width(widget), height = gtk_widget_get_height(widget);
    graphene_rect_t bounds = GRAPHENE_RECT_INIT(0, 0, static_cast<float>(width), static_cast<float>(height));
    cairo_t* cairo = gtk_snapshot_append_cairo(snapshot, &bounds);
    roundedRectangle(cairo, 0.5, 0.5, width - 1, height - 1, (height - 1) / 2);
    cairo_set_source_rgb(cairo, 226 / 255.0, 245 / 255.0, 230 / 255.0);
    cairo_fill_preserve(cairo);
    cairo_set_source_rgb(cairo, 76 / 255.0, 175 / 255.0, 96 / 255.0);
    cairo_set_line_width(cairo, 1);
    cairo_stroke(cairo);
    const double dot = 12;
    cairo_arc(cairo, 14 + dot / 2, height / 2, dot / 2, 0, 2 * std::numbers::pi);
    cairo_set_source_rgb(cairo, 52 / 255.0, 168 / 255.0, 83 / 255.0);
    cairo_fill(cairo);

    PangoLayout* layout = gtk_widget_create_pango_layout(widget, badgeState);
    PangoAttrList* bold = pango_attr_list_new();
    pango_attr_list_insert(bold, pango_attr_weight_new(PANGO_WEIGHT_BOLD));
    pango_layout_set_attributes(layout, bold);
    pango_attr_list_unref(bold);
    int textWidth = 0, textHeight = 0;
    pango_layout_get_pixel_size(layout, &textWidth, &textHeight);
    cairo_move_to(cairo, 36, (height - textHeight) / 2);
    cairo_set_source_rgb(cairo, 24 / 255.0, 94 / 255.0, 44 / 255.0);
    pango_cairo_show_layout(cairo, layout);
    g_object_unref(layout);
    cairo_destroy(cairo);
}

void statusBadgeGetProperty(GObject* object, guint id, GValue* value, GParamSpec* paramSpec) {
    if (id == propName)
        g_value_set_string(value, "Status");
    else if (id == propValue)
        g_value_set_string(value, status_badge_get_state(GTKSAMPLE_STATUS_BADGE(object)));
    else
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, paramSpec);
}

}  // namespace

static void status_badge_init(StatusBadge*) {}

static void status_badge_class_init(StatusBadgeClass* klass) {
    GTK_WIDGET_CLASS(klass)->snapshot = statusBadgeSnapshot;
    G_OBJECT_CLASS(klass)->get_property = statusBadgeGetProperty;
    g_object_class_install_property(
        G_OBJECT_CLASS(klass), propName,
        g_param_spec_string("hbViewName", nullptr, nullptr, "Status", readOnly));
    g_object_class_install_property(
        G_OBJECT_CLASS(klass), propValue,
        g_param_spec_string("hbViewValue", nullptr, nullptr, badgeState, readOnly));
}

GtkWidget* status_badge_new(void) { return GTK_WIDGET(g_object_new(GTKSAMPLE_TYPE_STATUS_BADGE, nullptr)); }

const char* status_badge_get_state(StatusBadge*) { return badgeState; }
