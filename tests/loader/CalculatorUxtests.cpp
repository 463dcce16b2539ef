// UI tests of Qt's calculator example, a program built without JTK: the
// loader brings JTK in, and this library, named on its command line, holds
// the tests. The buttons are instances of the example's Button class with
// the key's text as title; the display is the only line edit.
#include <JTK/JTK.h>

#include <initializer_list>
#include <string>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("calculator"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("calculator"); }

namespace {

// Presses the calculator's keys, by their titles, in order.
void press(std::initializer_list<std::string> keys) {
    for (const auto& key : keys) jtk::JTKTestSuite::element(key, jtk::JTKClass{"Button"}).click();
}

std::string display() { return jtk::JTKTestSuite::element("QLineEdit").value(); }

}  // namespace

JTK_TEST(testAddsThenMultiplies) {
    press({"Clear All", "1", "2", "+", "3", "0", "="});
    JTK_CHECK_EQ(display(), "42");
    press({"\u00D7", "2", "="});
    JTK_CHECK_EQ(display(), "84");
}

JTK_TEST(testDivisionByZeroShowsTheErrorMarks) {
    press({"Clear All", "7", "\u00F7", "0", "="});
    JTK_CHECK_EQ(display(), "####");
}

JTK_TEST(testBackspaceClearAndMemory) {
    press({"Clear All", "1", "2", "3", "Backspace"});
    JTK_CHECK_EQ(display(), "12");
    press({"MS", "Clear All"});
    JTK_CHECK_EQ(display(), "0");
    press({"MR"});
    JTK_CHECK_EQ(display(), "12");
}
