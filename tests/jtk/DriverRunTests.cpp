// Whole test launches of a small application (tests/programs/driverTestApp)
// in a child process: the order of a run and its lines, the final alert and
// its timer, every way a run ends (all with the user's data put back), a
// folder left by an interrupted run, and launches that never start a run.
#include <gtest/gtest.h>

#include <regex>
#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "run/JTKRunConfiguration.h"
#include "JTK/platform/Process.h"
#include "tests/support/DriverRunFixture.h"

using namespace jtk;
using namespace testsupport;

namespace {

const Lines startOfRun = {
    "[\"launched\"]", "[\"a.txt\"]",  // the test data is in place before the launch commands run
    "setup prompts=0 recorder=driverTestApp.cpp", "waiting for idle",
    "notification JTKTestSuiteStatusUpdate Running testB...", "JTK: Running test testB", "testB",
    "[1/5] testB … passed (T)", "notification JTKTestSuiteStatusUpdate Running testA...", "JTK: Running test testA",
    "testA sees A", "[2/5] testA … passed (T)", "notification JTKTestSuiteStatusUpdate Running testEnd...",
    "JTK: Running test testEnd"};

const std::string restoring = "Restoring Application Support Data";

std::string screenshotsLine(const fs::path& root, int underThreshold = 0) {
    return "JTK: Screenshots: 0 stored as new, 0 matched, 0 differed, " + std::to_string(underThreshold) +
           " under the size threshold; look in " +
           (root / "shots" / jtkVersionTag(platform::operatingSystemVersionString())).string();
}

// The last lines of a run that ends in testEnd: its progress line, the
// summary and the restore.
Lines endedInTestEnd(const fs::path& root, const std::string& failure = "") {
    if (failure.empty())
        return {"[3/5] testEnd … passed (T)", "JTK: 3 passed, 0 failed, 2 not run, of 5 tests in T",
                screenshotsLine(root), restoring};
    return {"[3/5] testEnd … failed (T): " + failure, "JTK: 2 passed, 1 failed, 2 not run, of 5 tests in T",
            "JTK: Failed: testEnd (driverTestApp.cpp): " + failure, screenshotsLine(root), restoring};
}

Lines concat(Lines a, const Lines& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace

TEST_F(DriverRun, fullRunInOrderEndsByTheAlertTimerWithTheDataBack) {
    auto child = run("showalert");
    ASSERT_EQ(child.status, 0) << testing::PrintToString(child.output) << testing::PrintToString(child.errors);

    // The alert is up from the completion on; its timer ends the process 4 s later.
    auto startsWith = [&](const std::string& start) {
        return std::find_if(child.output.begin(), child.output.end(), [&](const auto& line) { return line.starts_with(start); });
    };
    auto completed = startsWith("completed at ");
    ASSERT_NE(completed, child.output.end());
    auto completedAt = std::chrono::steady_clock::time_point(std::chrono::steady_clock::duration(std::stoll(completed->substr(13))));
    EXPECT_GE(child.ended - completedAt, std::chrono::milliseconds(3900));
    child.output.erase(completed);
    auto alert = startsWith("alert shows ");
    ASSERT_NE(alert, child.output.end());
    for (const char* text : {"[All Tests Completed Succesfully!]", "[Quit]",
                             "[Application data has been restored and driverTestApp will now terminate.]"})
        EXPECT_NE(alert->find(text), std::string::npos) << *alert;
    child.output.erase(alert);

    // The app's one window is the status item's, too small to be stored.
    EXPECT_EQ(child.output, concat(startOfRun, {"[3/5] testEnd … passed (T)",
                                                "notification JTKTestSuiteStatusUpdate Running testD...",
                                                "JTK: Running test testD", "testD", "[4/5] testD … passed (T)",
                                                "notification JTKTestSuiteStatusUpdate Running testC...",
                                                "JTK: Running test testC", "testC",
                                                "notification JTKTestSuiteStatusUpdate Capturing screenshots...",
                                                "[5/5] testC … passed (T)",
                                                "notification JTKTestSuiteStatusUpdate Processing...", "tearDownAll",
                                                "[\"teardown \\\"done\\\"\"]",
                                                "JTK: 5 passed, 0 failed, 0 not run, of 5 tests in T",
                                                screenshotsLine(root, 1),
                                                "notification JTKTestSuiteAllTestsCompleted", restoring}));
    expectUserDataBack();
}

// Every way test code or the application can end the process in the middle
// of a test: the data is put back, one line says why, and nothing hangs. Also
// a fatal stop (its place on standard error), a run that waits for the trust
// (asked once, nothing before it), one whose executable is rebuilt meanwhile,
// a failed check (test name, file, expression and both values) and output into
// a reader that went away. The stop signals come from outside, sent to a run
// started in the background by a shell that ignores them (a background job
// starts with SIGINT and SIGQUIT ignored).
struct ProcessEnd {
    std::string mode;
    int status;
    Lines lines;          // the lines before the end of the run's lines
    std::string failure;  // of testEnd; empty: it passed
    std::string after = "";  // the rest of the command line
    int signal = 0;          // sent from outside once the run waits in testEnd
    friend void PrintTo(const ProcessEnd& end, std::ostream* out) { *out << end.mode; }
};

ProcessEnd stoppedBy(int signal) {
    return {"wait", 128 + signal, {"Run interrupted by signal " + std::to_string(signal)},
            "the run was interrupted by signal " + std::to_string(signal), "", signal};
}

class DriverRunEnd : public DriverRun, public testing::WithParamInterface<ProcessEnd> {};

TEST_P(DriverRunEnd, restoresTheDataAndEnds) {
    const auto& mode = GetParam().mode;
    auto app = application();
    if (mode.starts_with("rebuilt")) {
        // Also the longest name its data folder allows: with "_Temp", exactly the longest file name.
        const std::string name(250, 'n');
        fs::copy_file(binDirectory() / "driverTestApp", root / name);
        fs::rename(appSupport, root / "data" / name);
        appSupport = root / "data" / name;
        app = quoted((root / name).string());
    }
    auto launch = environment(mode) + "timeout -s KILL 120 " + app + " -uxtest" + GetParam().after;
    if (int signal = GetParam().signal)
        launch = environment(mode) + "trap '' INT TERM HUP QUIT; " + app + " -uxtest & pid=$!; " +
                 "for i in $(seq 1200); do [ -s ready ] && break; sleep 0.05; done; kill -s " + std::to_string(signal) +
                 " $pid; for i in $(seq 600); do kill -0 $pid 2>/dev/null || break; sleep 0.05; done; " +
                 "kill -s KILL $pid 2>/dev/null; wait $pid; echo status=$?";
    auto child = shell(launch);
    EXPECT_EQ(child.status, GetParam().status) << testing::PrintToString(child.errors);
    for (auto& line : child.output) line = std::regex_replace(line, std::regex("/.*/(driverTestApp\\.cpp):[0-9]+"), "$1");
    // Into a closed pipe nothing is read, but the run still ends well.
    auto expected = GetParam().after.empty()
                        ? concat(concat(startOfRun, GetParam().lines), endedInTestEnd(root, GetParam().failure))
                        : Lines{};
    if (mode.starts_with("untrusted")) expected.insert(expected.begin(), "trust granted");
    if (mode.starts_with("untrusted")) expected[3] = "setup prompts=1 recorder=driverTestApp.cpp";
    EXPECT_EQ(child.output, expected);
    expectUserDataBack();
}

INSTANTIATE_TEST_SUITE_P(
    Ends, DriverRunEnd,
    testing::Values(
        ProcessEnd{"untrusted,end", 0, {}, ""}, ProcessEnd{"rebuilt,end", 0, {}, ""},
        ProcessEnd{"end", 0, {}, "", " | true; echo status=${PIPESTATUS[0]}"},
        ProcessEnd{"check", 1,
                   {"JTK: testEnd failed at driverTestApp.cpp: check failed: JTK_CHECK_EQ(shown, \"Count: 2\")",
                    "  left:  \"Count: 1\"", "  right: \"Count: 2\""},
                   "check failed: JTK_CHECK_EQ(shown, \"Count: 2\")"},
        ProcessEnd{"fatal", 1, {"JTK: testEnd failed at driverTestApp:testEnd: driver app stopped on purpose"},
                   "driver app stopped on purpose"},
        ProcessEnd{"exit", 3, {"Run ended early: the process exited with status 3"},
                   "the process exited with status 3 during this test"},
        ProcessEnd{"quit", 4, {"Run ended early: the process exited with status 4"},
                   "the process exited with status 4 during this test"},
        ProcessEnd{"throw", 134,
                   {"JTK: testEnd failed: an uncaught exception: thrown on purpose",
                    "Run ended by an uncaught exception: thrown on purpose"},
                   "an uncaught exception: thrown on purpose"},
        ProcessEnd{"abort", 134, {"Run interrupted by signal 6"}, "the run was interrupted by signal 6"},
        ProcessEnd{"crash", 139, {"Run ended by a crash: signal 11"},
                   "the process crashed (signal 11, Segmentation fault)"},
        stoppedBy(SIGINT), stoppedBy(SIGTERM),
        stoppedBy(SIGHUP), stoppedBy(SIGQUIT)),
    [](const testing::TestParamInfo<ProcessEnd>& info) {
        auto name = info.param.mode + (info.param.after.empty() ? "" : "_intoAClosedPipe") +
                    (info.param.signal ? std::string("_") + sigabbrev_np(info.param.signal) : "");
        std::replace(name.begin(), name.end(), ',', '_');
        return name;
    });

// Something with the aside name that no run put aside: the user's own
// folder, a file, a link to the data itself. Recovering it would lose data.
class DriverRunForeignAside : public DriverRun, public testing::WithParamInterface<std::string> {};

TEST_P(DriverRunForeignAside, stopsTheRunAndTouchesNeither) {
    if (GetParam() == "folder") writeFile(temp / "mine-too.txt", "also mine");
    if (GetParam() == "file") writeFile(temp, "a file of mine");
    if (GetParam() == "link") fs::create_directory_symlink(appSupport, temp);
    auto child = run("end");
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.output, Lines{temp.string() + " was not put aside by a test run, so it may hold data of yours: "
                                  "nothing was changed. Your Application Support data is at " + appSupport.string() +
                                  "; move or rename " + temp.string() + " and start again - Testing cancelled"});
    EXPECT_EQ(filesBelow(appSupport), Lines{"user.txt"});
    if (GetParam() == "folder") { EXPECT_EQ(readFile(temp / "mine-too.txt"), "also mine"); }
    if (GetParam() == "file") { EXPECT_EQ(readFile(temp), "a file of mine"); }
    if (GetParam() == "link") { EXPECT_EQ(fs::read_symlink(temp), appSupport); }
    EXPECT_EQ(namesIn(root / "data"), (Lines{"driverTestApp", "driverTestApp_Temp"}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, DriverRunForeignAside, testing::Values("folder", "file", "link"),
                         [](const testing::TestParamInfo<std::string>& info) { return info.param; });

// Two runs at once, then the first one killed: the second run stops without
// touching anything; the lock the killed run held does not block the third,
// which recovers the data and keeps what the user saved after the crash.
TEST_F(DriverRun, concurrentRunStopsAndAKilledRunIsRecoveredKeepingLaterWork) {
    shell("(" + environment("wait") + application() + " -uxtest) > " + quoted((root / "first.txt").string()) +
          " 2>&1 &");
    pid_t first = waitUntilReady();
    ASSERT_GT(first, 0);

    auto second = run("end");
    EXPECT_EQ(second.status, 1);
    EXPECT_EQ(second.output, Lines{"Another test run (process " + std::to_string(first) + ") is using " +
                                   appSupport.string() + "; this run changed nothing - Testing cancelled"});
    EXPECT_EQ(filesBelow(appSupport), Lines{"a.txt"}) << "the first run's test data";
    EXPECT_EQ(filesBelow(temp), Lines{"user.txt"});

    ASSERT_EQ(kill(first, SIGKILL), 0);
    for (int i = 0; i < 200 && kill(first, 0) == 0; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(50));
    // The application started normally after the crash, and the user saved work into it.
    writeFile(appSupport / "saved-after-the-crash.txt", "work");

    auto third = run("end");
    EXPECT_EQ(third.status, 0);
    ASSERT_GE(third.output.size(), 2u);
    EXPECT_EQ(third.output[0], "Recovered Application Support data left by an interrupted run");
    const std::string keptAt = "What was in its place (that run's test data and anything saved there since) is kept at ";
    ASSERT_TRUE(third.output[1].starts_with(keptAt)) << third.output[1];
    fs::path kept = third.output[1].substr(keptAt.size());
    EXPECT_EQ(kept.parent_path(), root / "data");
    EXPECT_EQ(filesBelow(kept, true), (Lines{"a.txt=A", "saved-after-the-crash.txt=work"}));
    third.output.erase(third.output.begin(), third.output.begin() + 2);
    EXPECT_EQ(third.output, concat(startOfRun, endedInTestEnd(root)));

    fs::remove_all(kept);
    expectUserDataBack();
}

// Launches that start no run change nothing: without "uxtest" nothing happens;
// the test data message comes first and the process keeps running.
struct NoRun {
    std::string name, mode, argument, screenshots;
    int status;
    Lines lines;
};

class DriverRunNone : public DriverRun, public testing::WithParamInterface<NoRun> {};

TEST_P(DriverRunNone, changesNothing) {
    auto child = run(GetParam().mode, GetParam().argument, GetParam().screenshots);
    EXPECT_EQ(child.status, GetParam().status);
    EXPECT_EQ(child.output, GetParam().lines);
    expectUserDataBack();
}

INSTANTIATE_TEST_SUITE_P(
    Launches, DriverRunNone,
    testing::Values(
        NoRun{"plain", "", "-UXTEST", "", 5, {""}},
        NoRun{"noData", "nodata,noshots", "-uxtest", "", 5,
              {"No test data path specified in JTKTestSuite extension! - Testing cancelled"}},
        NoRun{"noShots", "noshots", "-uxtest", "", 1, {"No screenshot storage path specified in JTKTestSuite extension!"}},
        NoRun{"elsewhere", "", "--run-uxtest=1", "/nonexistent/folder/shots", 1,
              {"This app wasn't compiled on this machine. Crashing now so we don't copy files to weird places",
               "JTK: the screenshot folder /nonexistent/folder/shots has no parent folder; no test ran"}}),
    [](const testing::TestParamInfo<NoRun>& info) { return info.param.name; });
