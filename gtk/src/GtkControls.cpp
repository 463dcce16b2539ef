// What a program sets on the standard controls: the picture of a GtkPicture
// or GtkImage (as a texture made from the RGBA pixels), and the text of a
// label or of any editable (entry, search entry, spin button). Main thread.
#include <gtk/gtk.h>

#include "GtkViews.h"
#include "GtkWrappers.h"
#include "JTK/platform/Controls.h"

namespace jtk::platform {

bool setImage(View& imageView, std::shared_ptr<const imaging::Image> image) {
    auto* view = dynamic_cast<gtk::WidgetView*>(&imageView);
    GtkWidget* widget = view ? view->widget() : nullptr;
    if (!widget || !(GTK_IS_PICTURE(widget) || GTK_IS_IMAGE(widget))) return false;
    GdkTexture* texture = nullptr;
    if (image && image->width && image->height) {
        GBytes* bytes = g_bytes_new(image->pixels.data(), image->pixels.size());
        texture = gdk_memory_texture_new(int(image->width), int(image->height), GDK_MEMORY_R8G8B8A8, bytes,
                                         size_t{image->width} * 4);
        g_bytes_unref(bytes);
    }
    if (GTK_IS_PICTURE(widget)) gtk_picture_set_paintable(GTK_PICTURE(widget), GDK_PAINTABLE(texture));
    else gtk_image_set_from_paintable(GTK_IMAGE(widget), GDK_PAINTABLE(texture));
    if (texture) g_object_unref(texture);
    view->setShownImage(std::move(image));
    return true;
}

std::shared_ptr<const imaging::Image> image(const View& imageView) {
    auto* view = dynamic_cast<const gtk::WidgetView*>(&imageView);
    return view ? view->shownImage() : nullptr;
}

bool setStringValue(View& textField, const std::string& text) {
    GtkWidget* widget = gtk::widgetOf(textField);
    if (widget && GTK_IS_LABEL(widget)) gtk_label_set_text(GTK_LABEL(widget), text.c_str());
    else if (widget && GTK_IS_EDITABLE(widget)) gtk_editable_set_text(GTK_EDITABLE(widget), text.c_str());
    else return false;
    return true;
}

}  // namespace jtk::platform
