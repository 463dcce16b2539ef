// A small GTK 4 program built with JTK, standing for a GTK program a person
// records: an entry line that adds its text to the notes on Return and
// empties itself, a button that counts, View ▸ Refresh (F5) and
// Edit ▸ Upper Case without a shortcut in its menu bar. The state line says
// what happened. Its tests are the recording check's (GtkNotesRecordingUxtests.cpp).
#include <JTK/JTK.h>
#include <JTK/gtk/GtkBackend.h>
#include <gtk/gtk.h>

#include <string>
#include <vector>

namespace {

struct Notes {
    GtkWidget* entry = nullptr;
    GtkWidget* state = nullptr;
    std::vector<std::string> lines;
    int refreshed = 0, counted = 0;

    void show() {
        std::string text;
        for (const auto& line : lines) text += (text.empty() ? "" : ", ") + line;
        text += "; refreshed " + std::to_string(refreshed) + "; counted " + std::to_string(counted);
        gtk_label_set_text(GTK_LABEL(state), text.c_str());
    }
};

Notes notes;

void addNote(GtkEntry* entry, gpointer) {
    notes.lines.push_back(gtk_editable_get_text(GTK_EDITABLE(entry)));
    gtk_editable_set_text(GTK_EDITABLE(entry), "");
    notes.show();
}

void refresh(GSimpleAction*, GVariant*, gpointer) {
    ++notes.refreshed;
    notes.show();
}

void upperCase(GSimpleAction*, GVariant*, gpointer) {
    for (auto& line : notes.lines) {
        gchar* upper = g_utf8_strup(line.c_str(), -1);
        line = upper;
        g_free(upper);
    }
    notes.show();
}

GMenuModel* menuBar() {
    GMenu* bar = g_menu_new();
    GMenu* view = g_menu_new();
    g_menu_append(view, "_Refresh", "win.refresh");
    GMenu* edit = g_menu_new();
    g_menu_append(edit, "_Upper Case", "win.upper");
    g_menu_append_submenu(bar, "_View", G_MENU_MODEL(view));
    g_menu_append_submenu(bar, "_Edit", G_MENU_MODEL(edit));
    g_object_unref(view);
    g_object_unref(edit);
    return G_MENU_MODEL(bar);
}

void activate(GtkApplication* application, gpointer) {
    GtkWidget* window = gtk_application_window_new(application);
    gtk_window_set_title(GTK_WINDOW(window), "Notes");
    static const GActionEntry actions[] = {{"refresh", refresh, nullptr, nullptr, nullptr, {}},
                                           {"upper", upperCase, nullptr, nullptr, nullptr, {}}};
    g_action_map_add_action_entries(G_ACTION_MAP(window), actions, G_N_ELEMENTS(actions), nullptr);
    const char* refreshKeys[] = {"F5", nullptr};
    gtk_application_set_accels_for_action(application, "win.refresh", refreshKeys);

    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 6);
    GMenuModel* model = menuBar();
    gtk_box_append(GTK_BOX(box), gtk_popover_menu_bar_new_from_model(model));
    g_object_unref(model);
    notes.entry = gtk_entry_new();
    gtk_widget_set_name(notes.entry, "entry");
    g_signal_connect(notes.entry, "activate", G_CALLBACK(addNote), nullptr);
    gtk_box_append(GTK_BOX(box), notes.entry);
    GtkWidget* count = gtk_button_new_with_label("Count");
    g_signal_connect(count, "clicked", G_CALLBACK(+[](GtkButton*, gpointer) {
        ++notes.counted;
        notes.show();
    }), nullptr);
    gtk_box_append(GTK_BOX(box), count);
    notes.state = gtk_label_new("");
    gtk_widget_set_name(notes.state, "state");
    gtk_box_append(GTK_BOX(box), notes.state);
    notes.show();
    gtk_window_set_child(GTK_WINDOW(window), box);
    gtk_window_set_default_size(GTK_WINDOW(window), 360, 160);
    gtk_window_present(GTK_WINDOW(window));
    jtk::JTKTestSuite::runTests();
}

}  // namespace

int main(int, char** argv) {
    jtk::gtk::prepareFontConfiguration();
    GtkApplication* application = gtk_application_new("org.jtk.GtkNotes", G_APPLICATION_NON_UNIQUE);
    g_signal_connect(application, "startup", G_CALLBACK(+[](GApplication*, gpointer) { jtk::gtk::installBackend(); }), nullptr);
    g_signal_connect(application, "activate", G_CALLBACK(activate), nullptr);
    // GApplication would take the framework's arguments for files to open.
    int status = g_application_run(G_APPLICATION(application), 1, argv);
    g_object_unref(application);
    return status;
}
