// The GTK sample's main window: counters, two name fields, a volume scale, a
// colour menu button, a settings frame, a status badge, a details window that
// appears a moment after it is asked for, and a File menu in a menu bar with
// a shortcut. Its state shows in labels, so both a person and a UI test can
// read it. GTK owns the widgets; this object only keeps pointers to them and
// lives as long as the program.
#pragma once

#include <gtk/gtk.h>

#include <string>

namespace gtksample {

class GtkSampleWindow {
public:
    GtkSampleWindow();
    GtkSampleWindow(const GtkSampleWindow&) = delete;
    GtkSampleWindow& operator=(const GtkSampleWindow&) = delete;

    GtkWindow* window() const { return window_; }

    // Reads the greeting and the note count from the application's data
    // folder and the user name from its settings.
    void loadData();
    // The File menu's command: writes a note into the data folder.
    void newDocument();

private:
    void buildMenu(GtkWidget* column);
    void buildCounters();
    void buildNameFields();
    void buildChoices();
    void buildColourChoice();
    void showColour(const char* colour);
    void showDetailsWindowSoon();
    void buildDetailsWindow();
    void updateFullName();
    GtkLabel* addLabel(int x, int y, int width, const char* text, const char* name);

    GtkWindow* window_ = nullptr;
    GtkFixed* content_ = nullptr;
    GActionMap* actions_ = nullptr;  // the window's "win" actions
    GtkMenuButton* colourButton_ = nullptr;
    GtkWindow* details_ = nullptr;
    GtkLabel* greetingLabel_ = nullptr;
    GtkLabel* userLabel_ = nullptr;
    GtkLabel* notesLabel_ = nullptr;
    GtkLabel* countLabel_ = nullptr;
    GtkLabel* doubleClickLabel_ = nullptr;
    GtkLabel* selectionLabel_ = nullptr;
    GtkLabel* fullNameLabel_ = nullptr;
    GtkLabel* colourLabel_ = nullptr;
    GtkLabel* documentsLabel_ = nullptr;
    GtkEditable* firstName_ = nullptr;
    GtkEditable* lastName_ = nullptr;
    int count_ = 0;
    int doubleClicks_ = 0;
    int documents_ = 0;
};

// The folder the application keeps its data in: GLib's user data folder
// and the application's name, where a UI test run installs its test data.
std::string dataFolder();

}  // namespace gtksample
