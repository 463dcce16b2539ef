// The GTK notes program's tests for the recording check
// (LoadedProgramRecordingReplays): the check copies this file into the build
// tree, where the program is built with it; a person's session is recorded
// into the copy as a new test method after the jtkThisFilePath provider, and
// the program is built again and replayed. The two tests below only report:
// where the entry line, the Count button, the menu-bar titles and the Edit
// menu's item are, and what the state line showed when the person stopped
// recording; what it shows after the replay.
#include <JTK/JTK.h>
#include <JTK/platform/Screen.h>

#include <chrono>
#include <string>

#include "LoadedProgramPaths.h"
#include "RecordingReport.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("notes"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("gtk-notes-recording"); }
JTK_PROVIDER(jtkThisFilePath) { return __FILE__; }

namespace {

using loaded::report;
using loaded::waitForRecording;

std::string display() { return jtk::JTKTestSuite::element("state").value(); }

void reportPlace(jtk::JTKElement element, const std::string& title) {
    auto centre = element.frameCenterOnScreen();
    report("at " + std::to_string(centre.x) + " " + std::to_string(centre.y) + " " + title);
}

}  // namespace

// Run before the person's session: the places to click (centres on screen,
// points, y up from the bottom of the screen). The Edit menu's item is found
// in the open menu, which a second click on its title closes again. Then the
// state line once the person has recorded and stopped.
JTK_TEST(testShowsWhereToClickAndWhatThePersonSaw) {
    auto screens = jtk::platform::screens();
    JTK_CHECK(!screens.empty());
    report("screen height " + std::to_string(screens.front().frame.height()));
    reportPlace(element("entry"), "entry");
    reportPlace(element("Count"), "Count");
    for (auto& title : elements("GtkPopoverMenuBarItem")) reportPlace(title, title.title());
    auto edit = element("Edit", jtk::JTKClass{"GtkPopoverMenuBarItem"});
    edit.click();
    reportPlace(waitForExistence("Upper Case"), "Upper Case");
    edit.click();
    report("keys shown");
    JTK_CHECK(waitForRecording(true, std::chrono::seconds(60)));
    report("recording");
    JTK_CHECK(waitForRecording(false, std::chrono::seconds(120)));
    report("the display shows " + display());
}

// Run after the replayed recording.
JTK_TEST(testReportsTheDisplay) { report("the display shows " + display()); }
