// UI tests of Qt's application example, a program built without JTK that
// parses its command line (it refuses options it does not know) and keeps
// its window's geometry in its settings. Launched with nothing added to its
// arguments, it reads the run's test settings instead of the user's; a
// typed document is saved through File ▸ Save As...'s file dialog, whose
// history lands in the run's own settings folder; File ▸ New asks about a
// modified document in a modal box.
#include <JTK/JTK.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("application"); }
JTK_PROVIDER(jtkTestSettingsPath) { return loaded::testSettingsFolder("application"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("application"); }

namespace {

std::string contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string editorText() { return jtk::JTKTestSuite::element("QPlainTextEdit").value(); }

std::string windowTitle() { return jtk::JTKTestSuite::keyWindow().title(); }

}  // namespace

JTK_TEST(testATypedDocumentIsSavedUnderTheNameTypedInTheFileDialog) {
    // settings/application/QtProject/Application Example.conf holds a window
    // of 520 × 380 points; without it the window would take a third of the
    // screen's width and half its height.
    auto frame = keyWindow().frame();
    JTK_CHECK_EQ(frame.size.width, 520.0);
    JTK_CHECK_EQ(frame.size.height, 380.0);
    const std::string folder = appSupportURL()->string();
    element("QPlainTextEdit").click();
    typeText("First line\rSecond line");
    element("File").clickMenuItem("Save As...");
    // The dialog's file name field has the focus: a whole path goes there.
    typeText(folder + "/saved.txt");
    element("Save", jtk::JTKClass{"QPushButton"}).click();
    JTK_CHECK_EQ(contentOf(folder + "/saved.txt"), "First line\nSecond line");
    JTK_CHECK_EQ(windowTitle(), "saved.txt");
    // The dialog wrote its history into Qt's settings file as it closed: the
    // run's own, which the run removes (the user's is left as it was).
    const char* runSettings = std::getenv("XDG_CONFIG_HOME");
    JTK_CHECK(runSettings && contentOf(std::string(runSettings) + "/QtProject.conf").starts_with("[FileDialog]"));
}

JTK_TEST(testNewAsksAboutAModifiedDocument) {
    element("QPlainTextEdit").click();
    typeKey("a", jtk::command);
    typeText("Draft");
    element("File").clickMenuItem("New");
    element("Cancel", jtk::JTKClass{"QPushButton"}).click();
    JTK_CHECK_EQ(editorText(), "Draft");
    element("File").clickMenuItem("New");
    element("Discard", jtk::JTKClass{"QPushButton"}).click();
    JTK_CHECK_EQ(editorText(), "");
    JTK_CHECK_EQ(windowTitle(), "untitled.txt");
}
