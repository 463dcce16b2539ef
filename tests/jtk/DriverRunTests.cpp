// Whole test launches of a small application (tests/programs/driverTestApp)
// in a child process: the order of a run and its lines, the final alert and
// its timer, endTests, fatal stops and SIGTERM (all with the user's data put
// back), the trust poll, a folder left by an interrupted run, and launches
// that never start a run.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>

#include "run/JTKShell.h"

using namespace jtk;

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

namespace {

fs::path binDirectory() {
    if (const char* dir = std::getenv("JTK_BIN_DIR")) return dir;
    return fs::read_symlink("/proc/self/exe").parent_path();
}

std::string quoted(const std::string& text) {
    std::string result = "'";
    for (char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

void writeFile(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << text;
}

// Every file below folder as "relative/path", sorted.
Lines files(const fs::path& folder) {
    Lines entries;
    if (!fs::exists(folder)) return entries;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) entries.push_back(fs::relative(entry.path(), folder).string());
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

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
        std::error_code error;
        fs::remove_all(root, error);
    }

    ChildRun run(const std::string& mode, const std::string& argument = "-uxtest",
                 const std::string& screenshots = "") {
        std::string command = "cd " + quoted(root.string()) + " && XDG_DATA_HOME=" + quoted((root / "data").string()) +
                              " XDG_CONFIG_HOME=" + quoted((root / "config").string()) +
                              " DRIVER_MODE=" + quoted(mode) +
                              " DRIVER_TEST_DATA=" + quoted((root / "testdata").string()) +
                              " DRIVER_SCREENSHOTS=" +
                              quoted(screenshots.empty() ? (root / "shots").string() : screenshots) +
                              " timeout -s KILL 120 " + quoted((binDirectory() / "driverTestApp").string()) + " " +
                              quoted(argument);
        auto result = runShellCommand(command);
        ChildRun child{result.status, result.outputLines, result.errorLines, std::chrono::steady_clock::now()};
        for (const auto& line : child.errors) {
            EXPECT_EQ(line.find("Sanitizer"), std::string::npos) << testing::PrintToString(child.errors);
            EXPECT_EQ(line.find("runtime error"), std::string::npos) << testing::PrintToString(child.errors);
        }
        // The idle wait's own lines depend on the machine's load.
        std::erase_if(child.output, [](const std::string& line) {
            return line.starts_with("wait duration = ") || line == "Couldn't determine idle state - timing out";
        });
        return child;
    }

    void expectUserDataBack() {
        EXPECT_EQ(files(appSupport), Lines{"user.txt"});
        EXPECT_FALSE(fs::exists(temp));
    }

    fs::path root, appSupport, temp;
};

const Lines startOfRun = {
    "[\"launched\"]",
    "[\"a.txt\"]",  // the test data is in place before the launch commands run
    "setup prompts=0 recorder=driverTestApp.cpp",
    "waiting for idle",
    "notification JTKTestSuiteStatusUpdate Running testB...",
    "JTK: Running test testB",
    "testB",
    "notification JTKTestSuiteStatusUpdate Running testA...",
    "JTK: Running test testA",
    "testA sees A",
    "notification JTKTestSuiteStatusUpdate Running testEnd...",
    "JTK: Running test testEnd",
};

Lines concat(Lines a, const Lines& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace

TEST_F(DriverRun, fullRunInOrderEndsByTheAlertTimerWithTheDataBack) {
    auto child = run("showalert");
    ASSERT_EQ(child.status, 0) << testing::PrintToString(child.output) << testing::PrintToString(child.errors);

    // The alert is up from the completion on; its timer ends the process 4 s later.
    ASSERT_GE(child.output.size(), 3u);
    auto completed = std::find_if(child.output.begin(), child.output.end(),
                                  [](const std::string& line) { return line.starts_with("completed at "); });
    ASSERT_NE(completed, child.output.end());
    auto completedAt = std::chrono::steady_clock::time_point(
        std::chrono::steady_clock::duration(std::stoll(completed->substr(13))));
    EXPECT_GE(child.ended - completedAt, std::chrono::milliseconds(3900));
    child.output.erase(completed);

    auto alert = std::find_if(child.output.begin(), child.output.end(),
                              [](const std::string& line) { return line.starts_with("alert shows "); });
    ASSERT_NE(alert, child.output.end());
    EXPECT_NE(alert->find("[All Tests Completed Succesfully!]"), std::string::npos) << *alert;
    EXPECT_NE(alert->find("[Application data has been restored and driverTestApp will now terminate.]"),
              std::string::npos)
        << *alert;
    EXPECT_NE(alert->find("[Quit]"), std::string::npos) << *alert;
    child.output.erase(alert);

    EXPECT_EQ(child.output, concat(startOfRun, {
                                                   "notification JTKTestSuiteStatusUpdate Running testD...",
                                                   "JTK: Running test testD",
                                                   "testD",
                                                   "notification JTKTestSuiteStatusUpdate Running testC...",
                                                   "JTK: Running test testC",
                                                   "testC",
                                                   "notification JTKTestSuiteStatusUpdate Capturing screenshots...",
                                                   "notification JTKTestSuiteStatusUpdate Processing...",
                                                   "tearDownAll",
                                                   "[\"teardown \\\"done\\\"\"]",
                                                   "notification JTKTestSuiteAllTestsCompleted",
                                                   "Restoring Application Support Data",
                                               }));
    expectUserDataBack();
}

// Ends of a run from inside a test: the lines after the run's start, the
// status, and a line the end writes to standard error.
struct EndCase {
    const char* mode;
    int status;
    Lines lastLines;
    std::string errorLine;
};

class DriverRunEnd : public DriverRun, public testing::WithParamInterface<EndCase> {};

TEST_P(DriverRunEnd, restoresTheDataBeforeTheProcessEnds) {
    auto child = run(GetParam().mode);
    EXPECT_EQ(child.status, GetParam().status);
    EXPECT_EQ(child.output, concat(startOfRun, GetParam().lastLines));
    if (!GetParam().errorLine.empty()) {
        EXPECT_NE(std::find(child.errors.begin(), child.errors.end(), GetParam().errorLine), child.errors.end())
            << testing::PrintToString(child.errors);
    }
    expectUserDataBack();
}

INSTANTIATE_TEST_SUITE_P(
    Ends, DriverRunEnd,
    testing::Values(EndCase{"end", 0, {"Restoring Application Support Data"}, ""},
                    EndCase{"fatal", 1, {"driver app stopped on purpose", "Restoring Application Support Data"},
                            "driverTestApp:testEnd: fatal stop"},
                    EndCase{"sigterm", 128 + 15, {"Run interrupted by signal 15", "Restoring Application Support Data"}, ""}),
    [](const auto& info) { return std::string(info.param.mode); });

TEST_F(DriverRun, trustPollStartsTheRunOnceTrustIsGranted) {
    auto child = run("untrusted,end");
    EXPECT_EQ(child.status, 0);
    ASSERT_FALSE(child.output.empty());
    EXPECT_EQ(child.output.front(), "trust granted") << "nothing of the run happens before the trust";
    child.output.erase(child.output.begin());
    auto expected = concat(startOfRun, {"Restoring Application Support Data"});
    expected[2] = "setup prompts=1 recorder=driverTestApp.cpp";  // asked once, with the prompt
    EXPECT_EQ(child.output, expected);
    expectUserDataBack();
}

TEST_F(DriverRun, dataLeftByAnInterruptedRunIsPutBackFirst) {
    fs::remove_all(appSupport);
    writeFile(appSupport / "old-test-data.txt", "old");
    writeFile(temp / "user.txt", "mine");
    auto child = run("end");
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.output, concat(Lines{"Recovered Application Support data left by an interrupted run"},
                                   concat(startOfRun, {"Restoring Application Support Data"})));
    expectUserDataBack();
}

TEST_F(DriverRun, launchesThatStartNoRunChangeNothing) {
    // Without "uxtest" nothing happens at all.
    auto plain = run("", "-UXTEST");
    EXPECT_EQ(plain.status, 5);
    EXPECT_EQ(plain.output, Lines{""});
    expectUserDataBack();

    // The test data message comes first; the process keeps running.
    auto noData = run("nodata,noshots");
    EXPECT_EQ(noData.status, 5);
    EXPECT_EQ(noData.output, Lines{"No test data path specified in JTKTestSuite extension! - Testing cancelled"});
    expectUserDataBack();

    auto noShots = run("noshots");
    EXPECT_EQ(noShots.status, 1);
    EXPECT_EQ(noShots.output, Lines{"No screenshot storage path specified in JTKTestSuite extension!"});
    expectUserDataBack();

    auto elsewhere = run("", "--run-uxtest=1", "/nonexistent/folder/shots");
    EXPECT_EQ(elsewhere.status, 5);
    EXPECT_EQ(elsewhere.output,
              Lines{"This app wasn't compiled on this machine. Crashing now so we don't copy files to weird places"});
    expectUserDataBack();
}
