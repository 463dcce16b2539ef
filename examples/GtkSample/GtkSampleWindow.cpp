#include "GtkSampleWindow.h"

#include <filesystem>
#include <fstream>

#include "GtkSampleSettings.h"
#include "GtkSampleWidgets.h"

namespace gtksample {

namespace {

namespace fs = std::filesystem;

// The volume scale and the settings frame come from an interface
// description, as most GTK programs build their windows: their builder ids
// are the names tests find them by. The other widgets are named in code.
constexpr const char* choicesInterface = R"(<interface>
  <object class="GtkAdjustment" id="volumeRange">
    <property name="upper">100</property>
    <property name="step-increment">1</property>
    <property name="page-increment">10</property>
  </object>
  <object class="GtkScale" id="Volume">
    <property name="orientation">horizontal</property>
    <property name="adjustment">volumeRange</property>
    <property name="digits">0</property>
    <property name="round-digits">0</property>
    <property name="draw-value">false</property>
  </object>
  <object class="GtkFrame" id="SettingsFrame">
    <property name="label">Settings</property>
    <child>
      <object class="GtkBox" id="SettingsBox">
        <property name="orientation">vertical</property>
        <property name="spacing">4</property>
        <property name="margin-start">10</property>
        <property name="margin-top">4</property>
        <child>
          <object class="GtkCheckButton" id="DarkMode">
            <property name="label">Dark mode</property>
          </object>
        </child>
        <child>
          <object class="GtkLabel" id="Theme">
            <property name="label">Theme: light</property>
            <property name="xalign">0</property>
          </object>
        </child>
      </object>
    </child>
  </object>
</interface>)";

// The scale's length: its range of 100 steps plus what the theme takes for
// the knob and the trough's ends, so that a drag moves it one step per pixel.
constexpr int volumeLength = 100 + 26;

std::string readFirstLine(const fs::path& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ')) line.pop_back();
    return line;
}

std::string numbered(const char* label, int number) { return std::string(label) + std::to_string(number); }

void setLabel(GtkLabel* label, const std::string& text) { gtk_label_set_text(label, text.c_str()); }

void place(GtkFixed* content, GtkWidget* widget, int x, int y, int width, int height) {
    gtk_widget_set_size_request(widget, width, height);
    gtk_fixed_put(content, widget, x, y);
}

// A C callback that calls a member function of the window.
template <void (GtkSampleWindow::*method)()>
void call(gpointer window) {
    (static_cast<GtkSampleWindow*>(window)->*method)();
}

}  // namespace

std::string dataFolder() { return (fs::path(g_get_user_data_dir()) / g_get_application_name()).string(); }

GtkSampleWindow::GtkSampleWindow() {
    window_ = GTK_WINDOW(gtk_window_new());
    gtk_window_set_title(window_, "GTK Sample");
    gtk_window_set_resizable(window_, false);
    GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_window_set_child(window_, column);
    buildMenu(column);
    content_ = GTK_FIXED(gtk_fixed_new());
    gtk_widget_set_size_request(GTK_WIDGET(content_), 600, 420);
    gtk_box_append(GTK_BOX(column), GTK_WIDGET(content_));
    buildCounters();
    buildNameFields();
    buildChoices();
}

GtkLabel* GtkSampleWindow::addLabel(int x, int y, int width, const char* text, const char* name) {
    GtkWidget* label = gtk_label_new(text);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    if (name) gtk_widget_set_name(label, name);
    place(content_, label, x, y, width, 24);
    return GTK_LABEL(label);
}

void GtkSampleWindow::buildMenu(GtkWidget* column) {
    // The command is an action of the window, which both the menu item and
    // the shortcut name.
    GSimpleActionGroup* actions = g_simple_action_group_new();
    GSimpleAction* newAction = g_simple_action_new("new-document", nullptr);
    g_signal_connect_swapped(newAction, "activate", G_CALLBACK(call<&GtkSampleWindow::newDocument>), this);
    g_action_map_add_action(G_ACTION_MAP(actions), G_ACTION(newAction));
    g_object_unref(newAction);
    gtk_widget_insert_action_group(GTK_WIDGET(window_), "win", G_ACTION_GROUP(actions));
    g_object_unref(actions);  // the window holds it
    actions_ = G_ACTION_MAP(actions);

    GMenu* file = g_menu_new();
    GMenuItem* item = g_menu_item_new("_New Document", "win.new-document");
    g_menu_item_set_attribute(item, "accel", "s", "<Control>n");  // shown beside the item
    g_menu_append_item(file, item);
    g_object_unref(item);
    GMenu* bar = g_menu_new();
    g_menu_append_submenu(bar, "_File", G_MENU_MODEL(file));
    g_object_unref(file);
    gtk_box_append(GTK_BOX(column), gtk_popover_menu_bar_new_from_model(G_MENU_MODEL(bar)));
    g_object_unref(bar);

    GtkEventController* shortcuts = gtk_shortcut_controller_new();
    gtk_shortcut_controller_set_scope(GTK_SHORTCUT_CONTROLLER(shortcuts), GTK_SHORTCUT_SCOPE_GLOBAL);
    gtk_shortcut_controller_add_shortcut(
        GTK_SHORTCUT_CONTROLLER(shortcuts),
        gtk_shortcut_new(gtk_keyval_trigger_new(GDK_KEY_n, GDK_CONTROL_MASK), gtk_named_action_new("win.new-document")));
    gtk_widget_add_controller(GTK_WIDGET(window_), shortcuts);
}

void GtkSampleWindow::buildCounters() {
    greetingLabel_ = addLabel(20, 10, 560, "No greeting yet", "Greeting");
    userLabel_ = addLabel(20, 38, 360, "User: nobody", "User");
    notesLabel_ = addLabel(400, 38, 180, "Notes: 0", "Notes");

    GtkWidget* add = gtk_button_new_with_label("Add");
    place(content_, add, 20, 76, 100, 30);
    countLabel_ = addLabel(130, 79, 200, "Count: 0", "Count");
    g_signal_connect_swapped(add, "clicked", G_CALLBACK(+[](GtkSampleWindow* self) {
                                 setLabel(self->countLabel_, numbered("Count: ", ++self->count_));
                             }),
                             this);

    GtkWidget* open = click_target_button_new("Open");
    place(content_, open, 20, 116, 100, 30);
    doubleClickLabel_ = addLabel(130, 119, 200, "Double clicks: 0", "DoubleClicks");
    g_signal_connect_swapped(open, "double-clicked", G_CALLBACK(+[](GtkSampleWindow* self) {
                                 setLabel(self->doubleClickLabel_, numbered("Double clicks: ", ++self->doubleClicks_));
                             }),
                             this);

    GtkWidget* select = click_target_button_new("Select");
    place(content_, select, 20, 156, 100, 30);
    selectionLabel_ = addLabel(130, 159, 200, "Selection: none", "Selection");
    g_signal_connect(select, "clicked", G_CALLBACK(+[](ClickTargetButton* button, GtkSampleWindow* self) {
                         bool extended = click_target_button_get_last_click_modifiers(button) & GDK_SHIFT_MASK;
                         gtk_label_set_text(self->selectionLabel_,
                                            extended ? "Selection: extended" : "Selection: single");
                     }),
                     this);
}

void GtkSampleWindow::buildNameFields() {
    GtkWidget* first = gtk_entry_new();
    gtk_widget_set_name(first, "FirstName");
    place(content_, first, 20, 200, 150, 24);
    GtkWidget* last = gtk_entry_new();
    gtk_widget_set_name(last, "LastName");
    place(content_, last, 180, 200, 150, 24);
    firstName_ = GTK_EDITABLE(first);
    lastName_ = GTK_EDITABLE(last);
    fullNameLabel_ = addLabel(340, 200, 240, "Full name:", "FullName");
    // The full name follows when an edit ends: Return in a field, or the
    // focus leaving it (Tab moves it on to the next field, to the right).
    for (GtkWidget* field : {first, last}) {
        g_signal_connect_swapped(field, "activate", G_CALLBACK(call<&GtkSampleWindow::updateFullName>), this);
        GtkEventController* focus = gtk_event_controller_focus_new();
        g_signal_connect_swapped(focus, "leave", G_CALLBACK(call<&GtkSampleWindow::updateFullName>), this);
        gtk_widget_add_controller(field, focus);
    }
}

void GtkSampleWindow::updateFullName() {
    setLabel(fullNameLabel_, std::string("Full name: ") + gtk_editable_get_text(firstName_) + " " +
                                 gtk_editable_get_text(lastName_));
}

void GtkSampleWindow::buildChoices() {
    GtkBuilder* builder = gtk_builder_new_from_string(choicesInterface, -1);
    GtkWidget* volume = GTK_WIDGET(gtk_builder_get_object(builder, "Volume"));
    place(content_, volume, 20, 240, volumeLength, 20);
    // A scale's value is a number, which tests read as text only from the
    // widget's own hbViewValue: a text in its data, kept up to date.
    auto showVolume = +[](GtkRange* range) {
        g_object_set_data_full(G_OBJECT(range), "hbViewValue",
                               g_strdup_printf("%d", static_cast<int>(gtk_range_get_value(range))), g_free);
    };
    showVolume(GTK_RANGE(volume));
    g_signal_connect(volume, "value-changed", G_CALLBACK(showVolume), nullptr);
    GtkWidget* settings = GTK_WIDGET(gtk_builder_get_object(builder, "SettingsFrame"));
    place(content_, settings, 340, 240, 240, 90);
    GtkLabel* theme = GTK_LABEL(gtk_builder_get_object(builder, "Theme"));
    g_signal_connect(gtk_builder_get_object(builder, "DarkMode"), "toggled",
                     G_CALLBACK(+[](GtkCheckButton* darkMode, GtkLabel* label) {
                         gtk_label_set_text(label, gtk_check_button_get_active(darkMode) ? "Theme: dark" : "Theme: light");
                     }),
                     theme);
    g_object_unref(builder);  // the window holds the widgets now

    buildColourChoice();

    place(content_, status_badge_new(), 20, 320, 260, 40);

    GtkWidget* showDetails = gtk_button_new_with_label("Show Details");
    place(content_, showDetails, 20, 380, 120, 30);
    g_signal_connect_swapped(showDetails, "clicked", G_CALLBACK(call<&GtkSampleWindow::showDetailsWindowSoon>), this);
    documentsLabel_ = addLabel(150, 383, 200, "Documents: 0", "Documents");
}

void GtkSampleWindow::buildColourChoice() {
    // A menu button offers the colours as a choice: a radio group in its
    // menu, over a stateful action of the window whose state is the colour.
    // The button shows the colour chosen, which is also its value for tests
    // (its hbViewValue); the label says a choice was made.
    GtkWidget* button = gtk_menu_button_new();
    gtk_widget_set_name(button, "Colour");
    place(content_, button, 20, 276, 150, 26);
    colourLabel_ = addLabel(180, 277, 150, "Colour: none", "ColourChoice");
    GMenu* colours = g_menu_new();
    for (const char* colour : {"Red", "Green", "Blue", "Teal", "Navy"}) {
        GMenuItem* item = g_menu_item_new(colour, nullptr);
        g_menu_item_set_action_and_target_value(item, "win.colour", g_variant_new_string(colour));
        g_menu_append_item(colours, item);
        g_object_unref(item);
    }
    gtk_menu_button_set_menu_model(GTK_MENU_BUTTON(button), G_MENU_MODEL(colours));
    g_object_unref(colours);
    colourButton_ = GTK_MENU_BUTTON(button);
    showColour("Red");

    GSimpleAction* choice = g_simple_action_new_stateful("colour", G_VARIANT_TYPE_STRING, g_variant_new_string("Red"));
    g_signal_connect(choice, "change-state", G_CALLBACK(+[](GSimpleAction* action, GVariant* value, gpointer data) {
                         g_simple_action_set_state(action, value);
                         auto* self = static_cast<GtkSampleWindow*>(data);
                         const char* colour = g_variant_get_string(value, nullptr);
                         self->showColour(colour);
                         setLabel(self->colourLabel_, std::string("Colour: ") + colour);
                     }),
                     this);
    g_action_map_add_action(actions_, G_ACTION(choice));
    g_object_unref(choice);
}

void GtkSampleWindow::showColour(const char* colour) {
    gtk_menu_button_set_label(colourButton_, colour);
    g_object_set_data_full(G_OBJECT(colourButton_), "hbViewValue", g_strdup(colour), g_free);
}

void GtkSampleWindow::showDetailsWindowSoon() {
    // The window takes a moment to prepare, as a real one loading its content would.
    g_timeout_add_once(300, +[](gpointer data) {
        auto* self = static_cast<GtkSampleWindow*>(data);
        if (!self->details_) self->buildDetailsWindow();
        gtk_window_present(self->details_);
    }, this);
}

void GtkSampleWindow::buildDetailsWindow() {
    details_ = GTK_WINDOW(gtk_window_new());
    gtk_window_set_title(details_, "Details");
    gtk_window_set_resizable(details_, false);
    gtk_window_set_transient_for(details_, window_);
    gtk_window_set_hide_on_close(details_, true);
    GtkWidget* content = gtk_fixed_new();
    gtk_widget_set_size_request(content, 240, 120);
    GtkWidget* status = gtk_label_new("Details ready");
    gtk_label_set_xalign(GTK_LABEL(status), 0);
    gtk_widget_set_name(status, "DetailsStatus");
    place(GTK_FIXED(content), status, 20, 30, 200, 24);
    // The window opens over the main window, centred on it as a window
    // transient for it is: it has a button to close it.
    GtkWidget* close = gtk_button_new_with_label("Close");
    place(GTK_FIXED(content), close, 150, 74, 70, 30);
    g_signal_connect_swapped(close, "clicked", G_CALLBACK(gtk_window_close), details_);
    gtk_window_set_child(details_, content);
}

void GtkSampleWindow::newDocument() {
    // A new note goes into the data folder, so a test run changes the
    // user's data and must put it back.
    setLabel(documentsLabel_, numbered("Documents: ", ++documents_));
    fs::path notes = fs::path(dataFolder()) / "Documents";
    std::error_code error;
    fs::create_directories(notes, error);
    if (!error) std::ofstream(notes / ("Note " + std::to_string(documents_) + ".txt")) << "A new note\n";
    loadData();
}

void GtkSampleWindow::loadData() {
    const fs::path folder = dataFolder();
    const std::string greeting = readFirstLine(folder / "greeting.txt");
    gtk_label_set_text(greetingLabel_, greeting.empty() ? "No greeting yet" : greeting.c_str());
    int notes = 0;
    std::error_code error;
    for (fs::directory_iterator entry(folder / "Documents", error), end; !error && entry != end; entry.increment(error))
        if (entry->is_regular_file()) ++notes;
    setLabel(notesLabel_, numbered("Notes: ", notes));
    const std::string user = readUserName();
    setLabel(userLabel_, "User: " + (user.empty() ? std::string("nobody") : user));
}

}  // namespace gtksample
