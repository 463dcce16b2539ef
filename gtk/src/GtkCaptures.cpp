// Pictures of views. A view is drawn as a person sees it in its window: the
// window's native widget is drawn through its paintable into a snapshot, the
// snapshot rendered by a cairo renderer made for the capture (software, the
// same bytes on every run with the same fonts), and the view's rectangle cut
// out of it. So a view gets the background its window paints behind it
// rather than a transparent one; the frame view is the whole surface, the
// shadow area of client-side decorations transparent.
#include <gtk/gtk.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "GtkViews.h"
#include "GtkWrappers.h"
#include "JTK/platform/Images.h"
#include "JTK/platform/Process.h"

namespace jtk::gtk {

namespace {

constexpr double largestSide = 16384;

// The native the view is drawn in, and the view's rectangle in the picture
// of the native (y down). The native's paintable draws its bounds with their
// top left corner at (0, 0); none when GTK cannot draw the view.
struct DrawnRegion {
    GtkWidget* native = nullptr;
    platform::Rect rect;
};

std::optional<DrawnRegion> drawnRegionOf(const platform::View& view) {
    GtkWidget* widget = widgetOf(view);
    GtkWidget* native = widget ? nativeWidgetOf(widget) : nullptr;
    if (!widget) {
        auto window = view.window();
        native = window ? nativeOf(*window) : nullptr;
    }
    graphene_rect_t nativeBox, widgetBox;
    if (!native || !gtk_widget_get_mapped(native) || !gtk_widget_compute_bounds(native, native, &nativeBox))
        return std::nullopt;
    if (!widget) {
        // The frame view: the whole surface, whose origin is the native's
        // origin less the surface transform.
        double dx = 0, dy = 0;
        gtk_native_get_surface_transform(GTK_NATIVE(native), &dx, &dy);
        auto size = surfaceSize(native);
        return DrawnRegion{native, {-dx - nativeBox.origin.x, -dy - nativeBox.origin.y, size.width, size.height}};
    }
    if (!gtk_widget_compute_bounds(widget, native, &widgetBox)) return std::nullopt;
    return DrawnRegion{native, {widgetBox.origin.x - nativeBox.origin.x, widgetBox.origin.y - nativeBox.origin.y,
                                widgetBox.size.width, widgetBox.size.height}};
}

// The native drawn as a render node, in its own coordinates.
GskRenderNode* renderNativeNode(GtkWidget* native) {
    GdkPaintable* paintable = gtk_widget_paintable_new(native);
    GtkSnapshot* snapshot = gtk_snapshot_new();
    gdk_paintable_snapshot(paintable, snapshot, gdk_paintable_get_intrinsic_width(paintable),
                           gdk_paintable_get_intrinsic_height(paintable));
    GskRenderNode* node = gtk_snapshot_free_to_node(snapshot);
    g_object_unref(paintable);
    return node;
}

// Cairo's premultiplied ARGB in native byte order as straight RGBA.
void copyStraightRGBA(const guchar* data, gsize stride, imaging::Image& bitmap) {
    for (uint32_t y = 0; y < bitmap.height; ++y) {
        const auto* row = reinterpret_cast<const uint32_t*>(data + y * stride);
        uint8_t* out = bitmap.pixel(0, y);
        for (uint32_t x = 0; x < bitmap.width; ++x, out += 4) {
            uint32_t pixel = row[x];
            uint32_t a = pixel >> 24;
            uint32_t channels[3] = {(pixel >> 16) & 0xff, (pixel >> 8) & 0xff, pixel & 0xff};
            for (int c = 0; c < 3; ++c)
                out[c] = a ? uint8_t(std::min<uint32_t>(255, (channels[c] * 255 + a / 2) / a)) : 0;
            out[3] = uint8_t(a);
        }
    }
}

}  // namespace

}  // namespace jtk::gtk

namespace jtk::platform {

std::optional<imaging::Image> bitmapForCachingDisplay(const View& view) {
    Rect bounds = view.bounds();
    if (!gtk::drawnRegionOf(view) || bounds.isEmpty() || bounds.width() > gtk::largestSide ||
        bounds.height() > gtk::largestSide)
        return std::nullopt;
    return imaging::Image(static_cast<uint32_t>(bounds.width()), static_cast<uint32_t>(bounds.height()));
}

bool cacheDisplayInBitmap(const View& view, imaging::Image& bitmap) {
    auto region = gtk::drawnRegionOf(view);
    if (!region || bitmap.width == 0 || bitmap.height == 0) return false;
    GskRenderNode* node = gtk::renderNativeNode(region->native);
    if (!node) return false;
    GskRenderer* renderer = gsk_cairo_renderer_new();
    GError* error = nullptr;
    bool drawn = false;
    if (gsk_renderer_realize(renderer, nullptr, &error)) {
        graphene_rect_t viewport;
        graphene_rect_init(&viewport, float(std::floor(region->rect.minX())), float(std::floor(region->rect.minY())),
                           float(bitmap.width), float(bitmap.height));
        GdkTexture* texture = gsk_renderer_render_texture(renderer, node, &viewport);
        gsize stride = size_t{bitmap.width} * 4;
        std::vector<guchar> data(stride * bitmap.height);
        if (texture && gdk_texture_get_width(texture) == int(bitmap.width) &&
            gdk_texture_get_height(texture) == int(bitmap.height)) {
            gdk_texture_download(texture, data.data(), stride);
            gtk::copyStraightRGBA(data.data(), stride, bitmap);
            drawn = true;
        }
        if (texture) g_object_unref(texture);
        gsk_renderer_unrealize(renderer);
    } else {
        systemLog(std::string("JTK GTK: no renderer for a capture: ") + (error ? error->message : "unknown error"));
        g_clear_error(&error);
    }
    g_object_unref(renderer);
    gsk_render_node_unref(node);
    return drawn;
}

}  // namespace jtk::platform
