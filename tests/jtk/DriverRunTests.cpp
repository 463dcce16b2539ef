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
#include "run/JTKShell.h"
#include "JTK/platform/Process.h"
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
        char pattern[] = "/tmp/jtk-driver-run-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        root = pattern;
        appSupport = root / "data" / "driverTestApp";
        temp = root / "data" / "driverTestApp_Temp";
        writeFile(appSupport / "user.txt", "mine");
        writeFile(root / "testdata" / "a.txt", "A");
    }

    void TearDown() override {
        // A run left waiting by a failed test: only if it is still the one this test started.
        std::error_code error;
        if (waiting > 0 && fs::read_symlink("/proc/" + std::to_string(waiting) + "/exe", error).filename() ==
                               "driverTestApp")
            kill(waiting, SIGKILL);
        fs::remove_all(root, error);
    }

    // The environment and the working folder of a launch, as a shell command prefix.
    std::string environment(const std::string& mode, const std::string& screenshots = "") {
        return "cd " + quoted(root.string()) + " && export XDG_DATA_HOME=" + quoted((root / "data").string()) +
               " XDG_CONFIG_HOME=" + quoted((root / "config").string()) + " DRIVER_MODE=" + quoted(mode) +
               " DRIVER_TEST_DATA=" + quoted((root / "testdata").string()) + " DRIVER_SCREENSHOTS=" +
               quoted(screenshots.empty() ? (root / "shots").string() : screenshots) + "; ";
    }

    static std::string application() { return quoted((binDirectory() / "driverTestApp").string()); }

    ChildRun run(const std::string& mode, const std::string& argument = "-uxtest",
                 const std::string& screenshots = "") {
        return shell(environment(mode, screenshots) + "timeout -s KILL 120 " + application() + " " +
                     quoted(argument));
    }

    // Runs a shell script; the last line of a script that ends with
    // `echo status=$?` is taken as the status.
    ChildRun shell(const std::string& script) {
        auto result = runShellCommand(script);
        ChildRun child{result.status, result.outputLines, result.errorLines, std::chrono::steady_clock::now()};
        if (!child.output.empty() && child.output.back().starts_with("status=")) {
            child.status = std::stoi(child.output.back().substr(7));
            child.output.pop_back();
        }
        for (const auto& line : child.errors)
            for (const char* fault : {"Sanitizer", "runtime error"})
                EXPECT_EQ(line.find(fault), std::string::npos) << testing::PrintToString(child.errors);
        // The idle wait's own lines depend on the machine's load.
        std::erase_if(child.output, [](const std::string& line) {
            return line.starts_with("wait duration = ") || line == "Couldn't determine idle state - timing out";
        });
        return child;
    }

    // The process id a run in "wait" mode wrote once it reached testEnd.
    pid_t waitUntilReady() {
        for (int i = 0; i < 1200; ++i) {
            std::ifstream in(root / "ready");
            pid_t pid = 0;
            if (in >> pid) return waiting = pid;
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
        ADD_FAILURE() << "the run never reached testEnd";
        return 0;
    }

    // Beside the user's data after a run: nothing at all (no aside folder,
    // no record of one, no test data waiting to be deleted, no lock).
    void expectUserDataBack() {
        EXPECT_EQ(filesBelow(appSupport, true), Lines{"user.txt=mine"});
        EXPECT_EQ(namesIn(root / "data"), Lines{appSupport.filename()});
    }

    fs::path root, appSupport, temp;
    pid_t waiting = 0;
};

const Lines startOfRun = {
    "[\"launched\"]", "[\"a.txt\"]",  // the test data is in place before the launch commands run
    "setup prompts=0 recorder=driverTestApp.cpp", "waiting for idle",
    "notification JTKTestSuiteStatusUpdate Running testB...", "JTK: Running test testB", "testB",
    "notification JTKTestSuiteStatusUpdate Running testA...", "JTK: Running test testA", "testA sees A",
    "notification JTKTestSuiteStatusUpdate Running testEnd...", "JTK: Running test testEnd"};

const std::string restoring = "Restoring Application Support Data";

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

    // Nothing of the small test app reaches the default size threshold.
    const std::string shots = (root / "shots" / jtkVersionTag(platform::operatingSystemVersionString())).string();
    EXPECT_EQ(child.output, concat(startOfRun, {"notification JTKTestSuiteStatusUpdate Running testD...",
                                                "JTK: Running test testD", "testD",
                                                "notification JTKTestSuiteStatusUpdate Running testC...",
                                                "JTK: Running test testC", "testC",
                                                "notification JTKTestSuiteStatusUpdate Capturing screenshots...",
                                                "JTK: Screenshots: 0 stored as new, 0 matched, 0 differed; look in " + shots,
                                                "notification JTKTestSuiteStatusUpdate Processing...", "tearDownAll",
                                                "[\"teardown \\\"done\\\"\"]",
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
    Lines lastLines;
    std::string error = "", after = "";  // a line on standard error; the rest of the command line
    int signal = 0;                      // sent from outside once the run waits in testEnd
    friend void PrintTo(const ProcessEnd& end, std::ostream* out) { *out << end.mode; }
};

ProcessEnd stoppedBy(int signal) {
    return {"wait", 128 + signal, {"Run interrupted by signal " + std::to_string(signal), restoring}, "", "", signal};
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
    for (auto& line : child.output) line = std::regex_replace(line, std::regex(" at .*/(driverTestApp\\.cpp):[0-9]+$"), " at $1");
    auto expected = GetParam().lastLines.empty() ? Lines{} : concat(startOfRun, GetParam().lastLines);
    if (mode.starts_with("untrusted")) expected.insert(expected.begin(), "trust granted");
    if (mode.starts_with("untrusted")) expected[3] = "setup prompts=1 recorder=driverTestApp.cpp";
    EXPECT_EQ(child.output, expected);
    if (!GetParam().error.empty()) {
        EXPECT_NE(std::find(child.errors.begin(), child.errors.end(), GetParam().error), child.errors.end())
            << testing::PrintToString(child.errors);
    }
    expectUserDataBack();
}

INSTANTIATE_TEST_SUITE_P(
    Ends, DriverRunEnd,
    testing::Values(
        ProcessEnd{"untrusted,end", 0, {restoring}},
        ProcessEnd{"rebuilt,end", 0, {restoring}},
        ProcessEnd{"end", 0, {}, "", " | true; echo status=${PIPESTATUS[0]}"},
        ProcessEnd{"check", 1,
                   {"JTK: Check failed in testEnd at driverTestApp.cpp", "  JTK_CHECK_EQ(shown, \"Count: 2\")",
                    "  left:  \"Count: 1\"", "  right: \"Count: 2\"", restoring}},
        ProcessEnd{"fatal", 1, {"driver app stopped on purpose", restoring}, "driverTestApp:testEnd: fatal stop"},
        ProcessEnd{"exit", 3, {"Run ended early: the process exited with status 3", restoring}},
        ProcessEnd{"quit", 4, {"Run ended early: the process exited with status 4", restoring}},
        ProcessEnd{"throw", 134, {"Run ended by an uncaught exception: thrown on purpose", restoring}},
        ProcessEnd{"abort", 134, {"Run interrupted by signal 6", restoring}}, stoppedBy(SIGINT), stoppedBy(SIGTERM),
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
    EXPECT_EQ(third.output, concat(startOfRun, {restoring}));

    fs::remove_all(kept);
    expectUserDataBack();
}

// Launches that start no run change nothing: without "uxtest" nothing happens;
// the test data message comes first and the process keeps running.
struct NoRun {
    std::string name, mode, argument, screenshots;
    int status;
    std::string line;
};

class DriverRunNone : public DriverRun, public testing::WithParamInterface<NoRun> {};

TEST_P(DriverRunNone, changesNothing) {
    auto child = run(GetParam().mode, GetParam().argument, GetParam().screenshots);
    EXPECT_EQ(child.status, GetParam().status);
    EXPECT_EQ(child.output, Lines{GetParam().line});
    expectUserDataBack();
}

INSTANTIATE_TEST_SUITE_P(
    Launches, DriverRunNone,
    testing::Values(
        NoRun{"plain", "", "-UXTEST", "", 5, ""},
        NoRun{"noData", "nodata,noshots", "-uxtest", "", 5,
              "No test data path specified in JTKTestSuite extension! - Testing cancelled"},
        NoRun{"noShots", "noshots", "-uxtest", "", 1, "No screenshot storage path specified in JTKTestSuite extension!"},
        NoRun{"elsewhere", "", "--run-uxtest=1", "/nonexistent/folder/shots", 5,
              "This app wasn't compiled on this machine. Crashing now so we don't copy files to weird places"}),
    [](const testing::TestParamInfo<NoRun>& info) { return info.param.name; });
