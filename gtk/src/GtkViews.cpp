#include "GtkViews.h"

#include <cmath>

#include "GtkObjectRuntime.h"
#include "GtkWrappers.h"

namespace jtk::gtk {

namespace {

// A scroll view scrolls a view inside it into sight when the framework asks.
constexpr const char* scrollToViewSelector = "hbScrollToViewAnimated:";

platform::Rect toRect(const graphene_rect_t& r) { return {r.origin.x, r.origin.y, r.size.width, r.size.height}; }

// The widget's bounds in target's coordinates (y down); none when GTK cannot
// relate the two (not in the same tree, not laid out).
std::optional<platform::Rect> boundsIn(GtkWidget* widget, GtkWidget* target) {
    graphene_rect_t r;
    if (!widget || !target || !gtk_widget_compute_bounds(widget, target, &r)) return std::nullopt;
    return toRect(r);
}

// A rectangle y down in a box of the given height, as the platform's y up.
platform::Rect flipped(const platform::Rect& r, double height) {
    return {r.minX(), height - r.maxY(), r.width(), r.height()};
}

// The ancestor of widget that is a direct child of native, or null.
GtkWidget* childOfNativeHolding(GtkWidget* native, GtkWidget* widget) {
    for (GtkWidget* w = widget; w; w = gtk_widget_get_parent(w))
        if (gtk_widget_get_parent(w) == native) return w;
    return nullptr;
}

// A button or check button GTK labelled from its own label property: the
// label (and a check button's indicator) inside are the control itself, as a
// person sees it and as GTK's accessibility presents it, not views of their
// own. A child the program set is a view.
bool isSelfLabelled(GtkWidget* widget) {
    if (GTK_IS_CHECK_BUTTON(widget)) return gtk_check_button_get_label(GTK_CHECK_BUTTON(widget)) != nullptr;
    return GTK_IS_BUTTON(widget) && gtk_button_get_label(GTK_BUTTON(widget)) != nullptr;
}

platform::Value numberValue(double value) {
    if (std::nearbyint(value) == value && std::fabs(value) < 1e15) return static_cast<int64_t>(value);
    return value;
}

std::string textViewText(GtkTextView* view) {
    GtkTextBuffer* buffer = gtk_text_view_get_buffer(view);
    GtkTextIter start, end;
    gtk_text_buffer_get_bounds(buffer, &start, &end);
    char* text = gtk_text_buffer_get_text(buffer, &start, &end, FALSE);
    std::string result = text ? text : "";
    g_free(text);
    return result;
}

// Brings the view's rectangle into the scrolled window's sight, moving each
// adjustment as little as it takes.
void scrollIntoSight(GtkScrolledWindow* scrolled, GtkWidget* inside) {
    GtkWidget* child = gtk_scrolled_window_get_child(scrolled);
    auto target = boundsIn(inside, child);
    if (!target) return;
    auto reveal = [](GtkAdjustment* adjustment, double start, double length) {
        double value = gtk_adjustment_get_value(adjustment);
        double page = gtk_adjustment_get_page_size(adjustment);
        if (start < value) gtk_adjustment_set_value(adjustment, start);
        else if (start + length > value + page) gtk_adjustment_set_value(adjustment, start + length - page);
    };
    reveal(gtk_scrolled_window_get_hadjustment(scrolled), target->minX(), target->width());
    reveal(gtk_scrolled_window_get_vadjustment(scrolled), target->minY(), target->height());
}

}  // namespace

GtkWidget* contentWidgetOf(GtkWidget* native) {
    GtkWidget* child = nullptr;
    if (GTK_IS_WINDOW(native)) child = gtk_window_get_child(GTK_WINDOW(native));
    else if (GTK_IS_POPOVER(native)) child = gtk_popover_get_child(GTK_POPOVER(native));
    return child ? child : native;
}

GtkWidget* nativeWidgetOf(GtkWidget* widget) {
    if (!widget) return nullptr;
    GtkNative* native = gtk_widget_get_native(widget);
    return native ? GTK_WIDGET(native) : nullptr;
}

platform::Size surfaceSize(GtkWidget* native) {
    if (!native) return {};
    if (GdkSurface* surface = gtk_native_get_surface(GTK_NATIVE(native)))
        return {double(gdk_surface_get_width(surface)), double(gdk_surface_get_height(surface))};
    return {double(gtk_widget_get_width(native)), double(gtk_widget_get_height(native))};
}

platform::Rect rectOnSurface(GtkWidget* widget) {
    GtkWidget* native = nativeWidgetOf(widget);
    auto inNative = boundsIn(widget, native);
    if (!inNative) return {};
    double dx = 0, dy = 0;
    gtk_native_get_surface_transform(GTK_NATIVE(native), &dx, &dy);
    return offsetRect(*inNative, dx, dy);
}

std::string WidgetView::className() const {
    GtkWidget* w = widget();
    return w ? gtkClassName(G_OBJECT(w)) : "GtkWidget";
}

bool WidgetView::respondsToSelector(const std::string& selector) const {
    if (selector == scrollToViewSelector) return GTK_IS_SCROLLED_WINDOW(widget());
    return View::respondsToSelector(selector) || gtkRespondsToSelector(widget(), selector);
}

platform::Value WidgetView::performSelector(const std::string& selector, const platform::Value& argument) {
    if (View::respondsToSelector(selector)) return View::performSelector(selector, argument);
    if (selector == scrollToViewSelector) {
        auto view = std::dynamic_pointer_cast<platform::View>(argument.object());
        if (GtkWidget* inside = view ? widgetOf(*view) : nullptr; inside && GTK_IS_SCROLLED_WINDOW(widget()))
            scrollIntoSight(GTK_SCROLLED_WINDOW(widget()), inside);
        return {};
    }
    return gtkPerformSelector(widget(), selector);
}

std::shared_ptr<platform::View> WidgetView::superview() const {
    GtkWidget* w = widget();
    if (!w) return nullptr;
    GtkWidget* native = nativeWidgetOf(w);
    GtkWidget* parent = gtk_widget_get_parent(w);
    if (w == native || w == contentWidgetOf(native) || (parent && parent == native)) {
        auto window = windowFor(native);
        return window ? window->frameView() : nullptr;
    }
    return viewFor(parent);
}

std::vector<std::shared_ptr<platform::View>> WidgetView::subviews() const {
    std::vector<std::shared_ptr<platform::View>> views;
    GtkWidget* w = widget();
    if (!w || isSelfLabelled(w)) return views;
    for (GtkWidget* child = gtk_widget_get_first_child(w); child; child = gtk_widget_get_next_sibling(child))
        if (!GTK_IS_NATIVE(child)) views.push_back(viewFor(child));
    return views;
}

std::shared_ptr<platform::Window> WidgetView::window() const { return windowFor(nativeWidgetOf(widget())); }

bool WidgetView::isHidden() const {
    GtkWidget* w = widget();
    // Mapped, not visible: a closed popover's children still report visible.
    return !w || !gtk_widget_get_mapped(w);
}

platform::Rect WidgetView::frame() const {
    GtkWidget* w = widget();
    if (!w) return {};
    auto super = superview();
    if (super && !widgetOf(*super)) {
        GtkWidget* native = nativeWidgetOf(w);
        return flipped(rectOnSurface(w), surfaceSize(native).height);
    }
    GtkWidget* parent = gtk_widget_get_parent(w);
    auto inParent = boundsIn(w, parent);
    auto parentBox = boundsIn(parent, parent);
    if (!inParent || !parentBox) return {};
    return flipped(offsetRect(*inParent, -parentBox->minX(), -parentBox->minY()), parentBox->height());
}

platform::Rect WidgetView::bounds() const {
    GtkWidget* w = widget();
    if (!w) return {};
    auto box = boundsIn(w, w);
    if (!box) return {0, 0, double(gtk_widget_get_width(w)), double(gtk_widget_get_height(w))};
    return {0, 0, box->width(), box->height()};
}

platform::Rect WidgetView::visibleRect() const {
    GtkWidget* w = widget();
    auto box = boundsIn(w, w);
    if (!box) return {};
    // Each ancestor up to the native clips; y down while walking, then flipped.
    platform::Rect visible = *box;
    GtkWidget* native = nativeWidgetOf(w);
    for (GtkWidget* a = gtk_widget_get_parent(w); a; a = gtk_widget_get_parent(a)) {
        if (auto clip = boundsIn(a, w)) visible = intersection(visible, *clip);
        if (a == native) break;
    }
    if (visible.isEmpty()) return {};
    return flipped(offsetRect(visible, -box->minX(), -box->minY()), box->height());
}

platform::Rect WidgetView::convertRectToWindow(const platform::Rect& rect) const {
    GtkWidget* w = widget();
    auto box = boundsIn(w, w);
    GtkWidget* native = nativeWidgetOf(w);
    if (!box || !native) return rect;
    // The rectangle's top left corner in the widget's own coordinates, then in the surface's.
    double x = box->minX() + rect.minX(), y = box->minY() + box->height() - rect.maxY();
    double nx = 0, ny = 0;
    if (!gtk_widget_translate_coordinates(w, native, x, y, &nx, &ny)) return rect;
    double dx = 0, dy = 0;
    gtk_native_get_surface_transform(GTK_NATIVE(native), &dx, &dy);
    platform::Rect onSurface{nx + dx, ny + dy, rect.width(), rect.height()};
    return flipped(onSurface, surfaceSize(native).height);
}

platform::Value WidgetView::accessibilityValue() const {
    GtkWidget* w = widget();
    if (!w) return {};
    if (GTK_IS_LABEL(w)) return std::string(gtk_label_get_text(GTK_LABEL(w)));
    if (GTK_IS_SPIN_BUTTON(w)) return numberValue(gtk_spin_button_get_value(GTK_SPIN_BUTTON(w)));
    if (GTK_IS_EDITABLE(w)) return std::string(gtk_editable_get_text(GTK_EDITABLE(w)));
    if (GTK_IS_TEXT_VIEW(w)) return textViewText(GTK_TEXT_VIEW(w));
    if (GTK_IS_RANGE(w)) return numberValue(gtk_range_get_value(GTK_RANGE(w)));
    if (GTK_IS_CHECK_BUTTON(w) || GTK_IS_TOGGLE_BUTTON(w) || GTK_IS_SWITCH(w))
        return gtkPerformSelector(w, "isChecked").boolean().value_or(false) ? "1" : "0";
    return {};
}

bool WidgetView::isScrollView() const { return GTK_IS_SCROLLED_WINDOW(widget()); }

std::vector<std::shared_ptr<platform::View>> FrameView::subviews() const {
    GtkWidget* native = native_->widget();
    if (!native) return {};
    GtkWidget* content = contentWidgetOf(native);
    std::vector<std::shared_ptr<platform::View>> views{viewFor(content)};
    if (content == native) return views;
    GtkWidget* holder = childOfNativeHolding(native, content);
    for (GtkWidget* child = gtk_widget_get_first_child(native); child; child = gtk_widget_get_next_sibling(child))
        if (child != holder && !GTK_IS_NATIVE(child)) views.push_back(viewFor(child));
    return views;
}

std::shared_ptr<platform::Window> FrameView::window() const { return windowFor(native_->widget()); }

platform::Rect FrameView::bounds() const {
    auto size = surfaceSize(native_->widget());
    return {0, 0, size.width, size.height};
}

}  // namespace jtk::gtk
