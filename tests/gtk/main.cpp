// The GTK backend's tests run on the main thread, GTK initialised on the X
// display scripts/run-on-xvfb.sh gives them and the backend installed.
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <cstdio>
#include <cstring>

#include "JTK/gtk/GtkBackend.h"

int main(int argc, char** argv) {
    // Before InitGoogleTest, which takes its own flags out of argv.
    bool listing = false;
    for (int i = 1; i < argc; ++i) listing = listing || std::strcmp(argv[i], "--gtest_list_tests") == 0;
    testing::InitGoogleTest(&argc, argv);
    if (!listing) {
        if (!gtk_init_check()) {
            std::fprintf(stderr, "no X display: run the tests through scripts/run-on-xvfb.sh\n");
            return 2;
        }
        jtk::gtk::installBackend();
    }
    return RUN_ALL_TESTS();
}
