// UI tests of GNOME's calculator (Debian's gnome-calculator 43, GTK 4 and
// libadwaita), a program nobody here wrote: the GTK loader brings JTK in.
// Its keys are GtkButtons with the key's text as title; its display is a
// GtkSourceView (a GtkTextView) whose text is the equation, then the result.
#include <JTK/JTK.h>

#include <initializer_list>
#include <string>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("gnome-calculator"); }
JTK_PROVIDER(jtkTestSettingsPath) { return loaded::testSettingsFolder("gnome-calculator"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("gnome-calculator"); }

namespace {

// Presses the calculator's keys, by their titles, in order.
void press(std::initializer_list<std::string> keys) {
    for (const auto& key : keys) jtk::JTKTestSuite::element(key, jtk::JTKClass{"GtkButton"}).click();
}

std::string display() { return jtk::JTKTestSuite::element("GtkSourceView").value(); }

}  // namespace

JTK_TEST(testMultipliesBeforeItAdds) {
    press({"7", "+", "8", "\u00D7", "2"});
    JTK_CHECK_EQ(display(), "7+8\u00D72");
    press({"="});
    JTK_CHECK_EQ(display(), "23");
}

JTK_TEST(testGroupsAndTheSquareRootThenClears) {
    press({"(", "1", "+", "2", ")", "\u00D7", "\u221A", "9", "="});
    JTK_CHECK_EQ(display(), "9");
    // The clear key shows an icon, not a title: its buildable id names it.
    element("calc_clear_button").click();
    JTK_CHECK_EQ(display(), "");
}
