// UI tests of a GTK 4 program built without JTK: GNOME's calculator
// (Debian's gnome-calculator). This file is the whole tests library; the
// GTK loader it links brings JTK into the program (see CMakeLists.txt),
// which runs on a private X server.
#include <JTK/JTK.h>

#include <initializer_list>
#include <string>

// The calculator keeps no data: any folder does as its test data.
JTK_PROVIDER(jtkTestDataPath) { return std::string(CALCULATOR_TEST_DATA_DIR); }
JTK_PROVIDER(jtkScreenshotsPath) { return std::string(CALCULATOR_SCREENSHOTS_DIR); }

namespace {

// Presses the calculator's keys by their titles; they are GtkButtons.
void press(std::initializer_list<std::string> keys) {
    for (const auto& key : keys) jtk::JTKTestSuite::element(key, jtk::JTKClass{"GtkButton"}).click();
}

// The display is a GtkSourceView holding the equation, then the result.
std::string display() { return jtk::JTKTestSuite::element("GtkSourceView").value(); }

}  // namespace

JTK_TEST(testMultipliesBeforeItAdds) {
    press({"7", "+", "8", "\u00D7", "2", "="});
    JTK_CHECK_EQ(display(), "23");
}

JTK_TEST(testSubtracts) {
    press({"9", "\u2212", "4", "="});
    JTK_CHECK_EQ(display(), "5");
}
