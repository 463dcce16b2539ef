// The Consumer's UI test. It includes the public header only.
#include <JTK/JTK.h>

#include <string>

JTK_PROVIDER(jtkTestDataPath) { return std::string(CONSUMER_SOURCE_DIR) + "/TestData"; }
JTK_PROVIDER(jtkScreenshotsPath) { return std::string(CONSUMER_SCREENSHOTS_DIR); }
JTK_PROVIDER(jtkTestOptions) { return jtk::testOptions({{"testGreetsTheTestUser", {.skipScreenshots = true}}}); }

JTK_TEST(testGreetsTheTestUser) {
    JTK_CHECK_EQ(element("Greeting").value(), "Not greeted yet");
    element("Greet").click();
    JTK_CHECK_EQ(element("Greeting").value(), "Hello, Tester");
}
