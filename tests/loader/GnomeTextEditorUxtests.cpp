// UI tests of GNOME's text editor (Debian's gnome-text-editor 43, GTK 4 and
// libadwaita), a program nobody here wrote: the GTK loader brings JTK in.
// Its document is an EditorSourceView (a GtkTextView); the header's title
// label names the document. It keeps its settings in GSettings, which under
// a run is a key file of the run's own settings folder.
#include <JTK/JTK.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("gnome-text-editor"); }
JTK_PROVIDER(jtkTestSettingsPath) { return loaded::testSettingsFolder("gnome-text-editor"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("gnome-text-editor"); }

namespace {

std::string contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string runSettings() {
    const char* folder = std::getenv("XDG_CONFIG_HOME");
    return contentOf(std::string(folder ? folder : "") + "/glib-2.0/settings/keyfile");
}

std::string documentText() { return jtk::JTKTestSuite::element("EditorSourceView").value(); }

std::string documentTitle() { return jtk::JTKTestSuite::element("title", jtk::JTKClass{"GtkLabel"}).value(); }

}  // namespace

JTK_TEST(testTypedTextIsTheDocument) {
    JTK_CHECK_EQ(documentTitle(), "New Document");
    element("EditorSourceView").click();
    typeText("Typed by JTK\rinto an editor it never saw built");
    JTK_CHECK_EQ(documentText(), "Typed by JTK\ninto an editor it never saw built");
    typeKey("a", jtk::command);
    typeText("Replaced");
    JTK_CHECK_EQ(documentText(), "Replaced");
}

JTK_TEST(testTheViewMenuShowsLineNumbersAndKeepsTheChoice) {
    JTK_CHECK(runSettings().find("show-line-numbers=true") == std::string::npos);
    element("options_menu").clickMenuItem("Line Numbers");
    // The choice is a GSettings key: written into the run's key file.
    JTK_CHECK(runSettings().find("show-line-numbers=true") != std::string::npos);
    // Chosen again, the numbers go (the tests after this one see no numbers).
    element("options_menu").clickMenuItem("Line Numbers");
    JTK_CHECK(runSettings().find("show-line-numbers=false") != std::string::npos);
}

JTK_TEST(testADocumentIsSavedThroughTheFileDialog) {
    const std::string folder = appSupportURL()->string();
    element("EditorSourceView").click();
    typeKey("a", jtk::command);
    typeText("Saved by JTK");
    typeKey("s", jtk::command);
    // The dialog's name field has the focus: a whole path goes there.
    typeKey("a", jtk::command);
    typeText(folder + "/saved.txt\r");
    waitForExistence("saved.txt", {.timeout = 10});
    JTK_CHECK_EQ(contentOf(folder + "/saved.txt"), "Saved by JTK\n");
    JTK_CHECK_EQ(documentTitle(), "saved.txt");
    // The editor keeps the folder of its last save in GSettings: the run's key file.
    JTK_CHECK(runSettings().find("last-save-directory=") != std::string::npos);
}
