// Interface files over GTK 4: the window a file describes, made of GTK
// widgets at the places the file gives (a GtkFixed in the window and in
// every view that has subviews), without GtkBuilder: the neutral reader has
// checked the file already. A View is a GtkFixed, a Box a GtkFrame with its
// title, a Label a GtkLabel, a TextField a GtkEntry, an ImageView a
// GtkPicture, a Button a GtkButton whose action goes to the owner. A view's
// name becomes its widget name (found as its name); the key equivalent "\r"
// makes the button the window's default. The window has a fixed size and
// starts hidden. Main thread only.
#include <cmath>
#include <vector>

#include "GtkWrappers.h"
#include "JTK/platform/Interface.h"
#include "JTK/services/InterfaceDescription.h"
#include "JTK/services/Resources.h"

namespace jtk::gtk {

namespace {

int rounded(double value) { return static_cast<int>(std::lround(value)); }

// What holds a view's subviews: the view itself, or the GtkFixed made for them.
GtkWidget* subviewHolder(GtkWidget* widget) {
    if (GTK_IS_FIXED(widget)) return widget;
    GtkWidget* fixed = gtk_fixed_new();
    if (GTK_IS_FRAME(widget)) gtk_frame_set_child(GTK_FRAME(widget), fixed);
    else if (GTK_IS_BUTTON(widget)) gtk_button_set_child(GTK_BUTTON(widget), fixed);
    else return nullptr;  // a label, field or picture holds no views
    return fixed;
}

class Builder {
public:
    Builder(std::shared_ptr<platform::InterfaceOwner> owner, GtkWidget* window) : owner_(std::move(owner)), window_(window) {}

    // Frames are y up in a parent of that height; GtkFixed places y down.
    void addSubviews(GtkWidget* fixed, double parentHeight, const std::vector<services::ViewDescription>& subviews) {
        for (const auto& description : subviews) {
            GtkWidget* widget = makeWidget(description);
            const auto& frame = description.frame;
            gtk_widget_set_size_request(widget, rounded(frame.width()), rounded(frame.height()));
            gtk_fixed_put(GTK_FIXED(fixed), widget, rounded(frame.origin.x), rounded(parentHeight - frame.maxY()));
            if (!description.name.empty()) gtk_widget_set_name(widget, description.name.c_str());
            if (!description.outlet.empty()) outlets_.emplace_back(description.outlet, widget);
            if (description.subviews.empty()) continue;
            if (GtkWidget* holder = subviewHolder(widget)) addSubviews(holder, frame.height(), description.subviews);
        }
    }

    // Outlets are told once the whole window stands.
    void connectOutlets() {
        for (const auto& [outlet, widget] : outlets_) owner_->connectOutlet(outlet, viewFor(widget));
    }

private:
    GtkWidget* makeWidget(const services::ViewDescription& description) {
        const auto& kind = description.kind;
        if (kind == "Box") return gtk_frame_new(description.title.c_str());
        if (kind == "Label") {
            GtkWidget* label = gtk_label_new(description.text.c_str());
            gtk_label_set_xalign(GTK_LABEL(label), 0);
            return label;
        }
        if (kind == "TextField") {
            GtkWidget* field = gtk_entry_new();
            gtk_editable_set_text(GTK_EDITABLE(field), description.text.c_str());
            return field;
        }
        if (kind == "ImageView") {
            GtkWidget* picture = gtk_picture_new();
            gtk_picture_set_can_shrink(GTK_PICTURE(picture), TRUE);
            return picture;
        }
        if (kind == "Button") return makeButton(description);
        return gtk_fixed_new();
    }

    GtkWidget* makeButton(const services::ViewDescription& description) {
        GtkWidget* button = gtk_button_new_with_label(description.title.c_str());
        if (description.keyEquivalent == "\r") gtk_window_set_default_widget(GTK_WINDOW(window_), button);
        if (!description.action.empty()) {
            auto* target = new Target{owner_, description.action};
            g_signal_connect_data(button, "clicked", G_CALLBACK(+[](GtkButton* clicked, Target* target) {
                if (auto owner = target->owner.lock()) owner->performAction(target->action, viewFor(GTK_WIDGET(clicked)));
            }), target, +[](gpointer data, GClosure*) { delete static_cast<Target*>(data); }, GConnectFlags{});
        }
        return button;
    }

    // A button's action, sent to the owner while it lives (the window holds it weakly).
    struct Target {
        std::weak_ptr<platform::InterfaceOwner> owner;
        std::string action;
    };

    std::shared_ptr<platform::InterfaceOwner> owner_;
    GtkWidget* window_;
    std::vector<std::pair<std::string, GtkWidget*>> outlets_;
};

}  // namespace

}  // namespace jtk::gtk

namespace jtk::platform {

LoadedInterface loadInterface(const std::string& name, const std::shared_ptr<InterfaceOwner>& owner) {
    if (!owner) return {nullptr, "interface file " + name + ": no owner to connect it to"};
    auto read = services::readInterfaceFile(name, services::resourceFolders());
    if (!read.window) return {nullptr, read.error};
    const auto& description = *read.window;
    // A faulty file was refused above, before any widget was made.
    GtkWidget* window = gtk_window_new();
    gtk_window_set_title(GTK_WINDOW(window), description.title.c_str());
    gtk_window_set_resizable(GTK_WINDOW(window), FALSE);
    const Rect& content = description.contentRect;
    GtkWidget* fixed = gtk_fixed_new();
    gtk_widget_set_size_request(fixed, gtk::rounded(content.width()), gtk::rounded(content.height()));
    gtk_window_set_child(GTK_WINDOW(window), fixed);
    gtk::Builder builder(owner, window);
    builder.addSubviews(fixed, content.height(), description.subviews);
    builder.connectOutlets();
    return {gtk::windowFor(window), {}};
}

}  // namespace jtk::platform
