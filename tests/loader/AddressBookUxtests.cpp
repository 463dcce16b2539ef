// UI tests of Qt's address book example, a program built without JTK: an
// entry added through a menu command's modal dialog, found as a cell of the
// table on its tab, selected and edited there.
#include <JTK/JTK.h>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("addressbook"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("addressbook"); }

JTK_TEST(testAnEntryAddedThroughTheMenuIsACellOnItsTab) {
    element("Tools").clickMenuItem("Add Entry...");
    element("QLineEdit").click();
    typeText("Ada Lovelace");
    element("QTextEdit").click();
    typeText("London");
    element("OK").click();
    element("ABC").click();
    JTK_CHECK_EQ(element("Ada Lovelace").typeName(), "QModelIndex");
    JTK_CHECK_EQ(element("London").typeName(), "QModelIndex");
}

JTK_TEST(testTheSelectedEntryIsEdited) {
    element("Ada Lovelace").click();
    element("Tools").clickMenuItem("Edit Entry...");
    element("QTextEdit").click();
    typeKey("a", jtk::command);
    typeText("Paris");
    element("OK").click();
    JTK_CHECK_EQ(element("Paris").typeName(), "QModelIndex");
}
