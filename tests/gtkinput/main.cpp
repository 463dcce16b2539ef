// GTK on the X server ctest starts (scripts/run-on-xvfb.sh), with the
// backend installed; the tests run on the main thread and hand their input
// to a serial queue while the main loop turns.
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <cstdio>
#include <cstring>

#include "JTK/gtk/GtkBackend.h"
#include "JTK/services/ProcessInfo.h"

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    jtk::services::setProcessArguments(argc, argv);
    bool listing = false;
    for (int i = 1; i < argc; ++i) listing = listing || std::strcmp(argv[i], "--gtest_list_tests") == 0;
    if (!listing) {
        if (!gtk_init_check()) {
            std::fprintf(stderr, "no X display: run the tests through scripts/run-on-xvfb.sh\n");
            return 2;
        }
        jtk::gtk::installBackend();
    }
    return RUN_ALL_TESTS();
}
