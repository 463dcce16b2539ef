// UI tests of Qt's standard dialogs example, a program built without JTK:
// an input dialog's spin box, of a class private to Qt, found by its public
// class, an entry clicked in the open list of an input dialog's combo box,
// and a message box answered.
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

JTK_TEST(testASeasonIsClickedInTheOpenList) {
    element("QInputDialog::getItem()", jtk::JTKClass{"QPushButton"}).click();
    element("Spring", jtk::JTKClass{"QComboBox"}).click();
    element("Fall", jtk::JTKClass{"QComboBoxItem"}).click();
    JTK_CHECK_EQ(element("Fall", jtk::JTKClass{"QComboBox"}).value(), "Fall");
    element("OK").click();
    JTK_CHECK_EQ(element("Fall").typeName(), "QLabel");
}

JTK_TEST(testAQuestionIsAnsweredNo) {
    element("Message Boxes").click();
    element("QMessageBox::question()").click();
    element("No", jtk::JTKClass{"QPushButton"}).click();
    JTK_CHECK_EQ(element("No").typeName(), "QLabel");
}
