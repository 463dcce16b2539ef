// UI tests of Qt's menus example, a program built without JTK: menu-bar
// commands chosen by their titles (one in a submenu), a command that opens a
// modal box answered by the test, and a shortcut typed once the box has
// closed. Each command writes what it did into the window's label.
#include <JTK/JTK.h>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("menus"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("menus"); }

namespace {

std::string invoked() { return jtk::JTKTestSuite::element("QLabel").value(); }

}  // namespace

JTK_TEST(testMenuBarCommandsAreChosenByTheirTitles) {
    element("File").clickMenuItem("Open...");
    JTK_CHECK_EQ(invoked(), "Invoked <b>File|Open</b>");
    // The File menu closed with the choice: this opens the Edit menu.
    element("Edit").clickMenuItem("Bold");
    JTK_CHECK_EQ(invoked(), "Invoked <b>Edit|Format|Bold</b>");
}

JTK_TEST(testAboutOpensAModalBoxThatIsAnsweredThenAShortcutWorks) {
    element("Help").clickMenuItem("About");
    element("OK").click();
    JTK_CHECK_EQ(invoked(), "Invoked <b>Help|About</b>");
    typeKey("n", jtk::command);  // File ▸ New
    JTK_CHECK_EQ(invoked(), "Invoked <b>File|New</b>");
}
