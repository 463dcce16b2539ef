// UI tests of the Qt 6 greeter, a program built without JTK, through the
// Qt 6 loader.
#include <JTK/JTK.h>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("greeter"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("greeter"); }

// The program's clock shows the time of day; masked, it never makes a
// picture differ (the program's arguments are not ours to change).
JTK_METHOD(jtkSetup) { jtk::JTKScreenshots::mask("clock"); }

JTK_TEST(testTheButtonGreetsTheTypedName) {
    element("name").click();
    typeText("Ada");
    element("Greet").click();
    JTK_CHECK_EQ(element("greeting").value(), "Hello, Ada!");
}

JTK_TEST(testReturnGreetsAReplacedName) {
    element("name").click();
    typeKey("a", jtk::command);
    typeText("Grace Hopper\n");
    JTK_CHECK_EQ(element("greeting").value(), "Hello, Grace Hopper!");
}
