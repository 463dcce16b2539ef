// The runner around whole test launches of tests/programs/driverTestApp: a
// strict run goes on after a failure and says so in its status and its
// JUnit file; a time limit, an outside stop and SIGKILL each leave a JUnit
// file that names the test that was running; a listing touches nothing.
// (In run order the app's tests are testB, testA, testEnd, testD, testC.)
#include <gtest/gtest.h>

#include "tests/support/DriverRunFixture.h"

using namespace testsupport;

namespace {

class RunnerRun : public DriverRun {
protected:
    ChildRun launch(const std::string& mode, const std::string& arguments) {
        return shell(environment(mode) + "timeout -s KILL 120 " + application() + " -uxtest " + arguments +
                     "; echo status=$?");
    }

    std::string junit() { return readFile(root / "results.xml"); }

    // The <testcase> element of the test in the JUnit file, up to its end.
    std::string testCase(const std::string& name) {
        auto text = junit();
        auto start = text.find("<testcase name=\"" + name + "\"");
        if (start == std::string::npos) return {};
        auto tagEnd = text.find('>', start);
        if (tagEnd == std::string::npos || text[tagEnd - 1] == '/') return text.substr(start, tagEnd - start);
        return text.substr(start, text.find("</testcase>", start) - start);
    }

    void expectLine(const ChildRun& child, const std::string& line) {
        EXPECT_NE(std::find(child.output.begin(), child.output.end(), line), child.output.end())
            << line << "\n" << testing::PrintToString(child.output);
    }

    static bool has(const std::string& text, const std::string& piece) { return text.find(piece) != std::string::npos; }
};

TEST_F(RunnerRun, strictRunGoesOnAfterAFailureAndEndsWithStatusOne) {
    auto child = launch("check,window", "--jtk-strict --jtk-junit=results.xml");
    EXPECT_EQ(child.status, 1);
    // One line names the test, the file and line of the check, and the check.
    const std::regex failureLine(
        R"(JTK: testEnd failed at .*/driverTestApp\.cpp:[0-9]+: check failed: JTK_CHECK_EQ\(shown, "Count: 2"\))");
    EXPECT_EQ(std::count_if(child.output.begin(), child.output.end(),
                            [&](const auto& line) { return std::regex_match(line, failureLine); }),
              1)
        << testing::PrintToString(child.output);
    expectLine(child, "  left:  \"Count: 1\"");
    expectLine(child, "[3/5] testEnd … failed (T)");
    expectLine(child, "[5/5] testC … passed (T)");  // the tests after the failure ran
    expectLine(child, "JTK: 4 passed, 1 failed, 0 not run, of 5 tests in T");
    EXPECT_EQ(child.output.back(), "Restoring Application Support Data");
    EXPECT_TRUE(has(junit(), "tests=\"5\" failures=\"1\" errors=\"0\" skipped=\"0\"")) << junit();
    EXPECT_TRUE(has(testCase("testEnd"), "<failure message=\"check failed: JTK_CHECK_EQ(shown, &quot;Count: 2&quot;)\">"))
        << testCase("testEnd");
    // The window as it was when the check failed, drawn whole, goes with the result.
    auto picture = root / "testEnd" / "window-1.png";
    EXPECT_TRUE(has(testCase("testEnd"), "[[ATTACHMENT|" + picture.string() + "]]")) << testCase("testEnd");
    EXPECT_EQ(readFile(picture).substr(1, 3), "PNG");
    expectUserDataBack();
}

TEST_F(RunnerRun, ciRunEndsAfterTheTestsWithoutTheFinalAlert) {
    auto child = launch("", "--jtk-ci");
    EXPECT_EQ(child.status, 0) << testing::PrintToString(child.output);
    auto completed = std::find_if(child.output.begin(), child.output.end(),
                                  [](const auto& line) { return line.starts_with("completed at "); });
    ASSERT_NE(completed, child.output.end());
    auto completedAt = std::chrono::steady_clock::time_point(std::chrono::steady_clock::duration(std::stoll(completed->substr(13))));
    EXPECT_LT(child.ended - completedAt, std::chrono::milliseconds(3000)) << "the final alert's 4 seconds";
    expectLine(child, "JTK: 5 passed, 0 failed, 0 not run, of 5 tests in T");
    expectUserDataBack();
}

TEST_F(RunnerRun, testOverItsTimeLimitFailsAndEndsTheRun) {
    auto child = launch("wait", "--jtk-timeout=1 --jtk-junit=results.xml");
    EXPECT_EQ(child.status, 1);
    expectLine(child, "JTK: testEnd failed: over its time limit of T");  // 1 s
    expectLine(child, "JTK: 2 passed, 1 failed, 2 not run, of 5 tests in T");
    EXPECT_TRUE(has(testCase("testEnd"), "<failure message=\"over its time limit of 1 s\">")) << junit();
    EXPECT_TRUE(has(testCase("testC"), "<skipped message=\"not run\"/>")) << junit();
    expectUserDataBack();
}

// A run stopped from outside: SIGTERM ends it the ordinary way, naming the
// running test; SIGKILL ends it at once, and the file written when the test
// started already says that the test was running.
struct OutsideStop {
    int signal;
    std::string runningTest;  // what the JUnit file says of testEnd
};

class RunnerStop : public RunnerRun, public testing::WithParamInterface<OutsideStop> {};

TEST_P(RunnerStop, leavesAJUnitFileThatNamesTheRunningTest) {
    shell("(" + environment("wait") + application() + " -uxtest --jtk-junit=results.xml) > " +
          quoted((root / "out.txt").string()) + " 2>&1 &");
    pid_t pid = waitUntilReady();
    ASSERT_GT(pid, 0);
    ASSERT_EQ(kill(pid, GetParam().signal), 0);
    for (int i = 0; i < 600 && kill(pid, 0) == 0; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(50));
    ASSERT_NE(kill(pid, 0), 0) << "the run did not end";

    EXPECT_TRUE(has(junit(), "tests=\"5\"")) << junit();
    EXPECT_TRUE(has(junit(), "</testsuites>")) << "a whole file";
    EXPECT_TRUE(has(testCase("testEnd"), GetParam().runningTest)) << junit();
    EXPECT_EQ(testCase("testA").find("<failure"), std::string::npos) << "testA passed";
    EXPECT_TRUE(has(testCase("testD"), "<skipped message=\"not run\"/>")) << junit();
    // After SIGKILL the data waits aside until the next run recovers it,
    // keeping the killed run's test data beside it.
    if (GetParam().signal == SIGKILL) {
        EXPECT_EQ(launch("end", "").status, 0);
        for (const auto& name : namesIn(root / "data"))
            if (name.starts_with("driverTestApp_Interrupted_")) fs::remove_all(root / "data" / name);
    }
    expectUserDataBack();
}

INSTANTIATE_TEST_SUITE_P(
    Signals, RunnerStop,
    testing::Values(OutsideStop{SIGTERM, "<failure message=\"the run was interrupted by signal 15\">"},
                    OutsideStop{SIGKILL, "<error message=\"the run ended while this test was running\"/>"}),
    [](const testing::TestParamInfo<OutsideStop>& info) { return std::string(sigabbrev_np(info.param.signal)); });

TEST_F(RunnerRun, listingNamesTheChosenTestsAndTouchesNothing) {
    auto child = launch("", "--jtk-list --jtk-filter=-testB --jtk-shard-index=1 --jtk-shard-count=2");
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.output, (Lines{"testEnd", "testC"}));
    expectUserDataBack();

    auto typo = launch("", "--jtk-filter=testZ");
    EXPECT_EQ(typo.status, 2);
    EXPECT_EQ(typo.output, (Lines{"JTK: no test matches the filter \"testZ\" (5 tests; --jtk-list lists them)",
                                  "JTK: no test ran; nothing was changed"}));
    expectUserDataBack();
}

}  // namespace
