// UI tests of a program built without JTK: Qt 5's calculator example from
// Debian's qtbase5-examples. This file is the whole tests library; the
// loader it links brings JTK into the program (see CMakeLists.txt).
#include <JTK/JTK.h>

#include <initializer_list>
#include <string>

// The calculator keeps no data: any folder does as its test data.
JTK_PROVIDER(jtkTestDataPath) { return std::string(CALCULATOR_TEST_DATA_DIR); }
JTK_PROVIDER(jtkScreenshotsPath) { return std::string(CALCULATOR_SCREENSHOTS_DIR); }

namespace {

// Presses the calculator's keys by their titles; they are its Button class.
void press(std::initializer_list<std::string> keys) {
    for (const auto& key : keys) jtk::JTKTestSuite::element(key, jtk::JTKClass{"Button"}).click();
}

std::string display() { return jtk::JTKTestSuite::element("QLineEdit").value(); }

}  // namespace

JTK_TEST(testAdds) {
    press({"Clear All", "1", "2", "+", "3", "0", "="});
    JTK_CHECK_EQ(display(), "42");
}

JTK_TEST(testDividesByZero) {
    press({"Clear All", "7", "\u00F7", "0", "="});
    JTK_CHECK_EQ(display(), "####");
}
