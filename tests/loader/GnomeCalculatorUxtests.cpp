// UI tests of GNOME's calculator (Debian's gnome-calculator 43, GTK 4 and
// libadwaita), a program nobody here wrote: the GTK loader brings JTK in.
// Its keys are GtkButtons with the key's text as title; its display is a
// GtkSourceView (a GtkTextView) named "displayitem" whose text is the
// equation, then the result. The calculator solves on a thread of its own
// and shows the result when a timer of its main loop finds it ready: the
// tests wait for it.
#include <JTK/JTK.h>

#include <chrono>
#include <initializer_list>
#include <string>
#include <thread>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("gnome-calculator"); }
JTK_PROVIDER(jtkTestSettingsPath) { return loaded::testSettingsFolder("gnome-calculator"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("gnome-calculator"); }

namespace {

// Presses the calculator's keys, by their titles, in order.
void press(std::initializer_list<std::string> keys) {
    for (const auto& key : keys) jtk::JTKTestSuite::element(key, jtk::JTKClass{"GtkButton"}).click();
}

// The clear key shows an icon, not a title: its buildable id names it. Each
// test starts from an empty display: a key pressed after a result goes on
// from it.
void clear() { jtk::JTKTestSuite::element("calc_clear_button").click(); }

std::string display() { return jtk::JTKTestSuite::element("GtkSourceView").value(); }

// The display once it shows the expected result, or after 5 s whatever it shows.
std::string result(const std::string& expected) {
    auto shown = display();
    for (int tries = 0; shown != expected && tries < 100; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        shown = display();
    }
    return shown;
}

}  // namespace

JTK_TEST(testMultipliesBeforeItAdds) {
    clear();
    press({"7", "+", "8", "\u00D7", "2"});
    JTK_CHECK_EQ(display(), "7+8\u00D72");
    press({"="});
    JTK_CHECK_EQ(result("23"), "23");
}

JTK_TEST(testGroupsAndTheSquareRootThenClears) {
    clear();
    press({"(", "1", "+", "2", ")", "\u00D7", "\u221A", "9", "="});
    JTK_CHECK_EQ(result("9"), "9");
    clear();
    JTK_CHECK_EQ(display(), "");
}
