// GNOME's calculator's tests library for the recording check
// (LoadedProgramRecordingReplays): the check copies this file into the
// build tree, a person's session is recorded into the copy as a new test
// method after the jtkThisFilePath provider, and the copy is built again and
// replayed. The two tests below only report: where the keys are and what
// the display showed when the person stopped recording; what it shows after
// the replay. The calculator solves on a thread of its own, so the display
// is read once it has stopped changing.
#include <JTK/JTK.h>
#include <JTK/platform/Screen.h>

#include <chrono>
#include <string>
#include <thread>

#include "LoadedProgramPaths.h"
#include "RecordingReport.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("gnome-calculator"); }
JTK_PROVIDER(jtkTestSettingsPath) { return loaded::testSettingsFolder("gnome-calculator"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("gnome-calculator-recording"); }
JTK_PROVIDER(jtkThisFilePath) { return __FILE__; }

namespace {

using loaded::report;
using loaded::waitForRecording;

// The display once it has shown the same for half a second (at most 5 s).
std::string display() {
    auto read = [] { return jtk::JTKTestSuite::element("GtkSourceView").value(); };
    std::string shown = read();
    for (int steady = 0, tries = 0; steady < 10 && tries < 100; ++tries) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        std::string now = read();
        steady = now == shown ? steady + 1 : 0;
        shown = now;
    }
    return shown;
}

}  // namespace

// Run before the person's session: each key's title and centre on screen
// (points, y up from the bottom of the screen), then the display once the
// person has recorded and stopped.
JTK_TEST(testShowsWhereToClickAndWhatThePersonSaw) {
    auto screens = jtk::platform::screens();
    JTK_CHECK(!screens.empty());
    report("screen height " + std::to_string(screens.front().frame.height()));
    for (auto& key : elements("GtkButton")) {
        auto centre = key.frameCenterOnScreen();
        report("at " + std::to_string(centre.x) + " " + std::to_string(centre.y) + " " + key.title());
    }
    report("keys shown");
    JTK_CHECK(waitForRecording(true, std::chrono::seconds(60)));
    report("recording");
    JTK_CHECK(waitForRecording(false, std::chrono::seconds(120)));
    report("the display shows " + display());
}

// Run after the replayed recording.
JTK_TEST(testReportsTheDisplay) { report("the display shows " + display()); }
