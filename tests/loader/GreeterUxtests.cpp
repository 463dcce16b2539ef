// UI tests of the Qt 6 greeter, a program built without JTK, through the
// Qt 6 loader.
#include <JTK/JTK.h>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("greeter"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("greeter"); }

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
