// UI tests of Qt's standard dialogs example, a program built without JTK:
// an input dialog's spin box, of a class private to Qt, found by its public
// class, and a message box answered.
#include <JTK/JTK.h>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("standarddialogs"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("standarddialogs"); }

JTK_TEST(testTheIntegerDialogTakesATypedNumber) {
    element("QInputDialog::getInt()", jtk::JTKClass{"QPushButton"}).click();
    element("QSpinBox").click();
    typeKey("a", jtk::command);
    typeText("42\r");
    JTK_CHECK_EQ(element("42%").typeName(), "QLabel");
}

JTK_TEST(testAQuestionIsAnsweredNo) {
    element("Message Boxes").click();
    element("QMessageBox::question()").click();
    element("No", jtk::JTKClass{"QPushButton"}).click();
    JTK_CHECK_EQ(element("No").typeName(), "QLabel");
}
