// The status item's life: unconfigured it does nothing; its title follows a
// test run's status; configured on a test source file, choosing it inserts a
// recording method and records real events until it is chosen again.
#include "JTK/JTKNotifications.h"
#include "JTK/desktop/StatusBar.h"
#include "JTK/platform/Notifications.h"
#include "recorder/JTKRecorder.h"
#include "recorder/JTKRecorderController.h"
#include "tests/support/DesktopFixtures.h"
#include "tests/support/TestFiles.h"

using namespace testsupport;

namespace {

class RecorderController : public DesktopTest {
protected:
    static JTKRecorderController& controller() { return JTKRecorderController::shared(); }
    static std::string title() { return controller().recordMenuItem()->title(); }
    // Chooses the item as a person does: a press and a release on its button.
    static void chooseItem() {
        auto button = std::dynamic_pointer_cast<desktop::View>(controller().recordMenuItem()->button());
        pressAt(centerOnScreen(*button));
    }
    static void postStatus(const platform::Value& object) {
        platform::defaultNotificationCenter().post(JTKTestSuiteStatusUpdate, object);
        pumpMainLoop(0.05);
    }
    ScratchFolder folder;
};

TEST_F(RecorderController, startsAndStopsARecordingFromItsStatusItem) {
    // Unconfigured: the item shows status texts but choosing it does nothing.
    controller();  // made on first use; from then on it follows the run's status
    postStatus("Running testA...");
    EXPECT_EQ(title(), "Running testA...");
    postStatus(platform::Value(int64_t{3}));
    EXPECT_EQ(title(), "");
    chooseItem();
    pumpMainLoop(0.05);
    EXPECT_FALSE(JTKTestSuite::recording());
    platform::defaultNotificationCenter().post(JTKTestSuiteAllTestsCompleted);
    pumpMainLoop(0.05);
    EXPECT_EQ(title(), "Record UX Test");

    // A file without a jtkThisFilePath line stays as it is.
    auto file = folder.path / "My Tests.cpp";
    writeFile(file, "JTK_TEST(testA) {}\n");
    controller().configure(file);
    chooseItem();
    pumpMainLoop(0.6);
    EXPECT_EQ(readFile(file), "JTK_TEST(testA) {}\n");
    EXPECT_FALSE(JTKTestSuite::recording());

    const std::string head = "JTK_PROVIDER(jtkThisFilePath) { return __FILE__; }\n";
    writeFile(file, head + "JTK_TEST(testA) {}\n");
    auto window = makeWindow({100, 100, 300, 200});
    auto ok = add<desktop::Button>(window->desktopContentView(), Rect{20, 20, 80, 24}, "OK");
    name(ok, "OK");
    chooseItem();
    ASSERT_TRUE(waitFor([] { return JTKTestSuite::recording() && title() == "Stop Recording..."; }));
    std::dynamic_pointer_cast<JTKRecorder>(JTKTestSuite::recorder())->backdateStart(JTKRecorder::startDelay);
    pressAt(centerOnScreen(*ok));
    chooseItem();  // its press is no click on a target
    ASSERT_TRUE(waitFor([] { return !JTKTestSuite::recording() && title() == "Record UX Test"; }));
    EXPECT_EQ(readFile(file), head + "\nJTK_TEST(testRecording) {\n    element(\"OK\").click();\n}\nJTK_TEST(testA) {}\n");
}

TEST_F(RecorderController, aRecordingWhoseFileCannotBeWrittenStopsWithOneLine) {
    auto file = folder.path / "Tests.swift";
    writeFile(file, "class func jtkThisFilePath() {}\n");
    controller().configure(file);
    chooseItem();
    ASSERT_TRUE(waitFor([] { return JTKTestSuite::recording(); }));
    std::string written = readFile(file);
    std::dynamic_pointer_cast<JTKRecorder>(JTKTestSuite::recorder())->backdateStart(JTKRecorder::startDelay);
    // The file's place becomes a folder: no write can replace it.
    fs::remove(file);
    fs::create_directories(file / "inside");
    testing::internal::CaptureStdout();
    pressKey(48);
    ASSERT_TRUE(waitFor([] { return !JTKTestSuite::recording(); }));
    std::string output = testing::internal::GetCapturedStdout();
    EXPECT_NE(output.find("cannot write the test source file " + file.string()), std::string::npos) << output;
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1) << output;
    EXPECT_EQ(title(), "Record UX Test");
    EXPECT_EQ(namesIn(folder.path), std::vector<std::string>{"Tests.swift"}) << "no temporary file is left";
    fs::remove_all(file);
    EXPECT_TRUE(written.find("    \n    class func testRecording()\n    {\n        rec()\n    }") != std::string::npos);
}

}  // namespace
