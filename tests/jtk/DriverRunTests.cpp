// Whole test launches of a small application (tests/programs/driverTestApp)
// in a child process: the order of a run and its lines, the final alert and
// its timer, every other end of a run (all with the user's data put back),
// the trust poll, a folder left by an interrupted run, and launches that
// never start a run.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "run/JTKShell.h"
#include "tests/support/TestFiles.h"

using namespace jtk;
using namespace testsupport;
using Lines = std::vector<std::string>;

namespace {

struct ChildRun {
    int status = -1;
    Lines output, errors;
    std::chrono::steady_clock::time_point ended;
};

class DriverRun : public testing::Test {
protected:
    void SetUp() override {
        writeFile(appSupport / "user.txt", "mine");
        writeFile(root / "testdata" / "a.txt", "A");
    }

    ChildRun run(const std::string& mode, const std::string& argument = "-uxtest", const std::string& screenshots = "") {
        auto result = runShellCommand(
            "cd " + quoted(root) + " && XDG_DATA_HOME=" + quoted(root / "data") + " XDG_CONFIG_HOME=" +
            quoted(root / "config") + " DRIVER_MODE=" + quoted(mode) + " DRIVER_TEST_DATA=" + quoted(root / "testdata") +
            " DRIVER_SCREENSHOTS=" + quoted(screenshots.empty() ? (root / "shots").string() : screenshots) +
            " timeout -s KILL 120 " + quoted(binDirectory() / "driverTestApp") + " " + quoted(argument));
        ChildRun child{result.status, result.outputLines, result.errorLines, std::chrono::steady_clock::now()};
        for (const auto& line : child.errors)
            EXPECT_TRUE(line.find("Sanitizer") == line.npos && line.find("runtime error") == line.npos) << line;
        // The idle wait's own lines depend on the machine's load.
        std::erase_if(child.output, [](const std::string& line) {
            return line.starts_with("wait duration = ") || line == "Couldn't determine idle state - timing out";
        });
        return child;
    }

    void expectUserDataBack() {
        EXPECT_EQ(readFile(appSupport / "user.txt"), "mine");
        EXPECT_EQ(std::distance(fs::directory_iterator(appSupport), fs::directory_iterator()), 1);
        EXPECT_FALSE(fs::exists(temp));
    }

    ScratchFolder scratch;
    fs::path root = scratch.path, appSupport = root / "data" / "driverTestApp", temp = root / "data" / "driverTestApp_Temp";
};

// The lines of a run up to its last test, which may end it.
Lines startOfRun(int prompts = 0, Lines before = {}, Lines after = {}) {
    Lines lines = {
        "[\"launched\"]",
        "[\"a.txt\"]",  // the test data is in place before the launch commands run
        "setup prompts=" + std::to_string(prompts) + " recorder=driverTestApp.cpp",
        "waiting for idle",
    };
    for (const char* test : {"testB", "testA", "testEnd"}) {
        lines.push_back(std::string("notification JTKTestSuiteStatusUpdate Running ") + test + "...");
        lines.push_back(std::string("JTK: Running test ") + test);
        if (test != std::string("testEnd")) lines.push_back(test == std::string("testA") ? "testA sees A" : test);
    }
    before.insert(before.end(), lines.begin(), lines.end());
    before.insert(before.end(), after.begin(), after.end());
    return before;
}

TEST_F(DriverRun, aFullRunGoesInOrderAndEndsByTheAlertTimerWithTheDataBack) {
    auto child = run("showalert");
    ASSERT_EQ(child.status, 0) << testing::PrintToString(child.output) << testing::PrintToString(child.errors);
    auto take = [&](const std::string& prefix) {
        auto line = std::find_if(child.output.begin(), child.output.end(), [&](auto& l) { return l.starts_with(prefix); });
        if (line == child.output.end()) return std::string();
        std::string text = line->substr(prefix.size());
        child.output.erase(line);
        return text;
    };
    // The alert is up from the completion on; its timer ends the process 4 s later.
    auto completedAt = std::chrono::steady_clock::time_point(std::chrono::steady_clock::duration(std::stoll(take("completed at "))));
    EXPECT_GE(child.ended - completedAt, std::chrono::milliseconds(3900));
    auto alert = take("alert shows ");
    for (const char* text : {"[All Tests Completed Succesfully!]",
                             "[Application data has been restored and driverTestApp will now terminate.]", "[Quit]"})
        EXPECT_NE(alert.find(text), std::string::npos) << alert;
    EXPECT_EQ(child.output, startOfRun(0, {},
                                       {"notification JTKTestSuiteStatusUpdate Running testD...", "JTK: Running test testD",
                                        "testD", "notification JTKTestSuiteStatusUpdate Running testC...",
                                        "JTK: Running test testC", "testC",
                                        "notification JTKTestSuiteStatusUpdate Capturing screenshots...",
                                        "notification JTKTestSuiteStatusUpdate Processing...", "tearDownAll",
                                        "[\"teardown \\\"done\\\"\"]", "notification JTKTestSuiteAllTestsCompleted",
                                        "Restoring Application Support Data"}));
    expectUserDataBack();
}

// A launch, the state it starts from, and how it ends: status, lines, a line of standard error.
struct LaunchCase {
    const char* label;
    std::string mode, argument = "-uxtest", screenshots = "";
    bool interruptedBefore = false;
    int status = 0;
    Lines output;
    std::string errorLine = "";
    friend void PrintTo(const LaunchCase& c, std::ostream* out) { *out << c.label; }
};

class DriverRunEnds : public DriverRun, public testing::WithParamInterface<LaunchCase> {};

TEST_P(DriverRunEnds, endsAsExpectedWithTheUsersDataBack) {
    const auto& launch = GetParam();
    if (launch.interruptedBefore) {
        fs::remove_all(appSupport);
        writeFile(appSupport / "old-test-data.txt", "old");
        writeFile(temp / "user.txt", "mine");
    }
    auto child = run(launch.mode, launch.argument, launch.screenshots);
    EXPECT_EQ(child.status, launch.status);
    EXPECT_EQ(child.output, launch.output);
    if (!launch.errorLine.empty()) {
        EXPECT_NE(std::find(child.errors.begin(), child.errors.end(), launch.errorLine), child.errors.end())
            << testing::PrintToString(child.errors);
    }
    expectUserDataBack();
}

const std::string restoring = "Restoring Application Support Data";

INSTANTIATE_TEST_SUITE_P(
    Launches, DriverRunEnds,
    testing::Values(
        LaunchCase{.label = "endTests", .mode = "end", .output = startOfRun(0, {}, {restoring})},
        LaunchCase{.label = "fatalStop", .mode = "fatal", .status = 1,
                   .output = startOfRun(0, {}, {"driver app stopped on purpose", restoring}),
                   .errorLine = "driverTestApp:testEnd: fatal stop"},
        LaunchCase{.label = "sigterm", .mode = "sigterm", .status = 128 + 15,
                   .output = startOfRun(0, {}, {"Run interrupted by signal 15", restoring})},
        // Nothing of the run happens before the trust; asked once, with the prompt.
        LaunchCase{.label = "trustPoll", .mode = "untrusted,end", .output = startOfRun(1, {"trust granted"}, {restoring})},
        LaunchCase{.label = "interruptedRunPutBackFirst", .mode = "end", .interruptedBefore = true,
                   .output = startOfRun(0, {"Recovered Application Support data left by an interrupted run"}, {restoring})},
        // Launches that start no run end by themselves with status 5 after a while.
        LaunchCase{.label = "noUxtest", .mode = "", .argument = "-UXTEST", .status = 5, .output = {""}},
        LaunchCase{.label = "noTestData", .mode = "nodata,noshots", .status = 5,
                   .output = {"No test data path specified in JTKTestSuite extension! - Testing cancelled"}},
        LaunchCase{.label = "noScreenshots", .mode = "noshots", .status = 1,
                   .output = {"No screenshot storage path specified in JTKTestSuite extension!"}},
        LaunchCase{.label = "screenshotsElsewhere", .mode = "", .argument = "--run-uxtest=1",
                   .screenshots = "/nonexistent/folder/shots", .status = 5,
                   .output = {"This app wasn't compiled on this machine. Crashing now so we don't copy files to weird "
                              "places"}}),
    [](const auto& info) { return std::string(info.param.label); });

}  // namespace
