// Alerts as a modal GtkWindow of the backend's own: the message, the
// informative text and the buttons in the order added, the first the
// default. GTK 4 has no modal loop, so runModal runs a GMainLoop of its own
// on GTK's main context, counted as a modal loop (ModalScope) while it runs;
// the backend's main queue and common-modes timers keep running in it.
#include <gtk/gtk.h>

#include <string>
#include <vector>

#include "GtkMainQueue.h"
#include "JTK/platform/Alert.h"

namespace jtk::platform {

namespace {

constexpr int firstButtonReturn = 1000;

// What the alert's loop shares with its buttons' handlers.
struct Answer {
    GMainLoop* loop = nullptr;
    int button = 0;
    bool given = false;

    void give(int index) {
        if (given) return;  // a second click before the window goes changes nothing
        given = true;
        button = index;
        g_main_loop_quit(loop);
    }
};

GtkWidget* textLabel(const std::string& text, const char* cssClass) {
    GtkWidget* label = gtk_label_new(text.c_str());
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_max_width_chars(GTK_LABEL(label), 50);
    gtk_label_set_xalign(GTK_LABEL(label), 0);
    if (cssClass) gtk_widget_add_css_class(label, cssClass);
    return label;
}

class GtkAlert : public Alert {
public:
    void setMessageText(const std::string& text) override { messageText_ = text; }
    void setInformativeText(const std::string& text) override { informativeText_ = text; }
    void addButtonWithTitle(const std::string& title) override { buttonTitles_.push_back(title); }

    int runModal() override {
        if (buttonTitles_.empty()) buttonTitles_.push_back("OK");
        gtk::ModalScope modal;
        Answer answer;
        answer.loop = g_main_loop_new(nullptr, FALSE);
        GtkWidget* window = makeWindow(answer);
        gtk_window_present(GTK_WINDOW(window));
        g_main_loop_run(answer.loop);
        gtk_window_destroy(GTK_WINDOW(window));
        g_main_loop_unref(answer.loop);
        return firstButtonReturn + answer.button;
    }

private:
    GtkWidget* makeWindow(Answer& answer) {
        GtkWidget* window = gtk_window_new();
        gtk_window_set_title(GTK_WINDOW(window), messageText_.c_str());
        gtk_window_set_modal(GTK_WINDOW(window), TRUE);
        gtk_window_set_resizable(GTK_WINDOW(window), FALSE);
        // Closed without a button: the default (first) one.
        g_signal_connect(window, "close-request", G_CALLBACK(+[](GtkWindow*, Answer* answer) {
            answer->give(0);
            return TRUE;
        }), &answer);

        GtkWidget* content = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
        for (auto side : {&gtk_widget_set_margin_top, &gtk_widget_set_margin_bottom, &gtk_widget_set_margin_start,
                          &gtk_widget_set_margin_end})
            side(content, 20);
        gtk_box_append(GTK_BOX(content), textLabel(messageText_, "heading"));
        if (!informativeText_.empty()) gtk_box_append(GTK_BOX(content), textLabel(informativeText_, nullptr));

        GtkWidget* buttons = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 8);
        gtk_widget_set_halign(buttons, GTK_ALIGN_END);
        for (size_t index = 0; index < buttonTitles_.size(); ++index) {
            GtkWidget* button = gtk_button_new_with_label(buttonTitles_[index].c_str());
            g_object_set_data(G_OBJECT(button), "jtk-alert-button", GINT_TO_POINTER(static_cast<int>(index)));
            g_signal_connect(button, "clicked", G_CALLBACK(+[](GtkButton* clicked, Answer* answer) {
                answer->give(GPOINTER_TO_INT(g_object_get_data(G_OBJECT(clicked), "jtk-alert-button")));
            }), &answer);
            gtk_box_append(GTK_BOX(buttons), button);
            if (index == 0) gtk_window_set_default_widget(GTK_WINDOW(window), button);
        }
        gtk_box_append(GTK_BOX(content), buttons);
        gtk_window_set_child(GTK_WINDOW(window), content);
        return window;
    }

    std::string messageText_;
    std::string informativeText_;
    std::vector<std::string> buttonTitles_;
};

}  // namespace

std::unique_ptr<Alert> makeAlert() { return std::make_unique<GtkAlert>(); }

}  // namespace jtk::platform
