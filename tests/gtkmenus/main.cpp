// The GTK backend's menus, alerts, status item, text and interface files,
// tested on GTK's main thread on a private X server (scripts/run-on-xvfb.sh
// runs this program): GTK starts, the backend is installed, the tests run.
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "JTK/gtk/GtkBackend.h"
#include "JTK/services/ProcessInfo.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    jtk::gtk::prepareFontConfiguration();
    gtk_init();
    jtk::services::setProcessArguments(argc, argv);
    jtk::gtk::installBackend();
    return RUN_ALL_TESTS();
}
