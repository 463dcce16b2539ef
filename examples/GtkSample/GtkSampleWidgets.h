// The GTK sample's own widget classes: a button that reports double clicks
// and the modifier keys of a click, and a status badge that names itself and
// tells its value the way a widget class of an application does.
#pragma once

#include <gtk/gtk.h>

G_BEGIN_DECLS

// A GtkButton that also answers double clicks (the "double-clicked" signal,
// on the second press within GTK's double-click time and distance) and
// remembers the modifier keys held when a click ended: the release is what
// clicks it, so a "clicked" handler reads the release's modifiers.
#define GTKSAMPLE_TYPE_CLICK_TARGET_BUTTON (click_target_button_get_type())
G_DECLARE_FINAL_TYPE(ClickTargetButton, click_target_button, GTKSAMPLE, CLICK_TARGET_BUTTON, GtkButton)

GtkWidget* click_target_button_new(const char* label);
GdkModifierType click_target_button_get_last_click_modifiers(ClickTargetButton* button);

// A green badge showing the application's state. Its class gives it the
// name tests find it by and the value they read: the read-only properties
// "hbViewName" ("Status") and "hbViewValue" (the state).
#define GTKSAMPLE_TYPE_STATUS_BADGE (status_badge_get_type())
G_DECLARE_FINAL_TYPE(StatusBadge, status_badge, GTKSAMPLE, STATUS_BADGE, GtkWidget)

GtkWidget* status_badge_new(void);
const char* status_badge_get_state(StatusBadge* badge);

G_END_DECLS
