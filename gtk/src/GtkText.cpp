// Text objects over GTK 4. A text field (a GtkEntry, GtkSearchEntry,
// GtkSpinButton or GtkPasswordEntry, each editing through an inner GtkText)
// is its own text object, as is a GtkTextView: the view a window names as
// its first responder. Emission hooks see every text widget's edits:
// - a change is a person's edit only while a key is delivered or an input
//   method commits text, never the program's gtk_editable_set_text (a
//   calculator's display), nor what the program does when a field is
//   activated (a field it empties on Return);
// - a field's editing ends when it is activated (Return) or loses the focus;
//   a text view's never ends by itself (Return is a line break): the
//   recorder ends it when the keys go elsewhere, as on Qt.
// Each notification names the field's (or text view's) view as object and
// as text object. Main thread only.
#include "GtkInput.h"
#include "GtkMenus.h"
#include "GtkWrappers.h"
#include "JTK/platform/Notifications.h"
#include "JTK/platform/Text.h"

namespace jtk::gtk {

namespace {

// True from an input method's commit until the main loop turns: the text it
// commits is inserted meanwhile.
bool inputMethodCommitting = false;
// True from a field's activation until the main loop turns: Return inserts
// nothing into a field, so what changes meanwhile is the program's doing.
bool fieldActivating = false;

// Sets the flag until the main loop turns again.
void setUntilIdle(bool& flag) {
    if (flag) return;
    flag = true;
    g_idle_add_full(G_PRIORITY_HIGH, [](gpointer data) {
        *static_cast<bool*>(data) = false;
        return G_SOURCE_REMOVE;
    }, &flag, nullptr);
}

bool personIsEditing() {
    if (inputMethodCommitting) return true;
    const platform::Event* event = eventBeingDelivered();
    bool keyEvent = event && (event->type == platform::EventType::keyDown || event->type == platform::EventType::keyUp);
    return keyEvent && !fieldActivating;
}

// The field an inner GtkText edits for (the editable whose delegate it is),
// else the widget itself.
GtkWidget* controlOf(GtkWidget* editor) {
    GtkWidget* control = editor;
    for (GtkWidget* parent = gtk_widget_get_parent(control);
         parent && GTK_IS_EDITABLE(parent) && gtk_editable_get_delegate(GTK_EDITABLE(parent)) == GTK_EDITABLE(control);
         parent = gtk_widget_get_parent(control))
        control = parent;
    return control;
}

void post(const char* name, GtkWidget* control) {
    auto view = viewFor(control);
    if (!view) return;
    platform::defaultNotificationCenter().post(name, view, platform::ValueDictionary{{platform::textObjectKey, view}});
}

GtkWidget* widgetParameter(const GValue* parameters) {
    GObject* object = static_cast<GObject*>(g_value_get_object(&parameters[0]));
    return GTK_IS_WIDGET(object) ? GTK_WIDGET(object) : nullptr;
}

void onFocusChanged(GtkWidget* text, GParamSpec*, gpointer) {
    if (!gtk_widget_has_focus(text)) post(platform::textDidEndEditingNotification, controlOf(text));
}

// A field's changes: the inner GtkText's (the field repeats them as its own).
// From its first edit on, the field's losing the focus ends its editing
// ("notify" takes no emission hooks, so each GtkText is watched itself).
gboolean onEditableChanged(GSignalInvocationHint*, guint, const GValue* parameters, gpointer) {
    GtkWidget* widget = widgetParameter(parameters);
    if (!GTK_IS_TEXT(widget) || !personIsEditing()) return TRUE;
    if (!g_object_get_data(G_OBJECT(widget), "jtk-text-watched")) {
        g_object_set_data(G_OBJECT(widget), "jtk-text-watched", widget);
        g_signal_connect(widget, "notify::has-focus", G_CALLBACK(onFocusChanged), nullptr);
    }
    post(platform::textDidChangeNotification, controlOf(widget));
    return TRUE;
}

// A text view's changes: its buffer's, for the text view with the focus that shows it.
gboolean onBufferChanged(GSignalInvocationHint*, guint, const GValue* parameters, gpointer) {
    auto* buffer = static_cast<GtkTextBuffer*>(g_value_get_object(&parameters[0]));
    if (!personIsEditing()) return TRUE;
    GListModel* toplevels = gtk_window_get_toplevels();
    for (guint index = 0, count = g_list_model_get_n_items(toplevels); index < count; ++index) {
        auto* window = static_cast<GtkWindow*>(g_list_model_get_item(toplevels, index));
        GtkWidget* focus = gtk_window_get_focus(window);
        g_object_unref(window);
        if (GTK_IS_TEXT_VIEW(focus) && gtk_text_view_get_buffer(GTK_TEXT_VIEW(focus)) == buffer) {
            post(platform::textDidChangeNotification, focus);
            break;
        }
    }
    return TRUE;
}

gboolean onTextActivated(GSignalInvocationHint*, guint, const GValue* parameters, gpointer) {
    setUntilIdle(fieldActivating);
    if (GtkWidget* widget = widgetParameter(parameters)) post(platform::textDidEndEditingNotification, controlOf(widget));
    return TRUE;
}

gboolean onInputMethodCommit(GSignalInvocationHint*, guint, const GValue*, gpointer) {
    setUntilIdle(inputMethodCommitting);
    return TRUE;
}

guint classSignal(const char* name, GType type) {
    g_type_class_unref(g_type_class_ref(type));
    return g_signal_lookup(name, type);
}

}  // namespace

void startTextObservers() {
    static bool started = false;
    if (started) return;
    started = true;
    g_type_default_interface_unref(g_type_default_interface_ref(GTK_TYPE_EDITABLE));
    g_signal_add_emission_hook(g_signal_lookup("changed", GTK_TYPE_EDITABLE), 0, onEditableChanged, nullptr, nullptr);
    g_signal_add_emission_hook(classSignal("changed", GTK_TYPE_TEXT_BUFFER), 0, onBufferChanged, nullptr, nullptr);
    g_signal_add_emission_hook(classSignal("activate", GTK_TYPE_TEXT), 0, onTextActivated, nullptr, nullptr);
    g_signal_add_emission_hook(classSignal("commit", GTK_TYPE_IM_CONTEXT), 0, onInputMethodCommit, nullptr, nullptr);
}

}  // namespace jtk::gtk

namespace jtk::platform {

std::optional<std::string> textObjectString(const Object& object) {
    const auto* view = dynamic_cast<const View*>(&object);
    GtkWidget* widget = view ? gtk::widgetOf(*view) : nullptr;
    if (GTK_IS_EDITABLE(widget)) return std::string(gtk_editable_get_text(GTK_EDITABLE(widget)));
    if (GTK_IS_TEXT_VIEW(widget)) {
        GtkTextBuffer* buffer = gtk_text_view_get_buffer(GTK_TEXT_VIEW(widget));
        GtkTextIter start, end;
        gtk_text_buffer_get_bounds(buffer, &start, &end);
        gchar* text = gtk_text_buffer_get_text(buffer, &start, &end, TRUE);
        std::string whole = text ? text : "";
        g_free(text);
        return whole;
    }
    return std::nullopt;
}

}  // namespace jtk::platform
