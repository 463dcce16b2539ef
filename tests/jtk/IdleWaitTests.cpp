// The idle wait's counting, with scripted CPU readings and a scripted clock.
#include <gtest/gtest.h>

#include <deque>

#include "input/JTKIdleWait.h"

using namespace jtk;

namespace {

struct ScriptedIdle {
    explicit ScriptedIdle(std::initializer_list<double> script = {}) : readings(script) {}
    std::deque<double> readings;
    double now = 0.0;
    double secondsPerReading = 0.0;  // wall-clock cost of a reading
    int readCount = 0, sleepCount = 0;
    std::vector<std::string> lines;

    void run() {
        jtkWaitUntilIdle({
            .readCPUPercent =
                [this] {
                    ++readCount;
                    now += secondsPerReading;
                    double value = readings.size() > 1 ? readings.front() : readings.back();
                    if (readings.size() > 1) readings.pop_front();
                    return value;
                },
            .secondsSinceStart = [this] { return now; },
            .sleep =
                [this](int microseconds) {
                    ++sleepCount;
                    now += microseconds / 1e6;
                },
            .printLine = [this](const std::string& line) { lines.push_back(line); },
        });
    }
};

}  // namespace

TEST(IdleWait, firstReadingBelowThresholdEndsAtOnce) {
    ScriptedIdle idle({4.9});
    idle.run();
    EXPECT_EQ(idle.readCount, 1);
    EXPECT_EQ(idle.sleepCount, 0);
    EXPECT_EQ(idle.lines, (std::vector<std::string>{"waiting for idle", "wait duration = 0.0 idle = ok "}));
}

TEST(IdleWait, threeSteadyReadingsEndTheWait) {
    ScriptedIdle idle({30.0, 30.2, 29.9, 30.1, 30.0, 30.0});
    idle.run();
    EXPECT_EQ(idle.sleepCount, 3);
    EXPECT_EQ(idle.readCount, 4);
}

TEST(IdleWait, steadyCountIsNeverReset) {
    // Steady, jump, steady, jump, steady: the third steady reading ends it.
    ScriptedIdle idle({30.0, 30.1, 40.0, 40.2, 60.0, 60.3, 90.0});
    idle.run();
    EXPECT_EQ(idle.readCount, 6);
    EXPECT_EQ(idle.lines.size(), 2u);
}

TEST(IdleWait, bandIsExclusiveAtHalfAPoint) {
    // Each step is exactly 0.5 points: never steady; ends when a reading falls below 5.
    ScriptedIdle idle({8.0, 7.5, 7.0, 6.5, 6.0, 5.5, 5.0, 4.5});
    idle.run();
    EXPECT_EQ(idle.readCount, 8);
    EXPECT_EQ(idle.lines.back(), "wait duration = 0.0 idle = ok ");
}

TEST(IdleWait, jumpingReadingsTimeOutAfterFiveSeconds) {
    ScriptedIdle idle;
    for (int i = 0; i < 1000; ++i) idle.readings.push_back(i % 2 ? 10.0 : 50.0);
    idle.secondsPerReading = 0.1;
    idle.run();
    ASSERT_EQ(idle.lines.size(), 3u);
    EXPECT_EQ(idle.lines[1], "Couldn't determine idle state - timing out");
    EXPECT_EQ(idle.lines[2], "wait duration = 5.0 idle = ok ");
    EXPECT_GT(idle.now, 5.0);
    EXPECT_LT(idle.now, 5.3) << "the limit is checked before every pause";
}

TEST(IdleWait, durationIsRoundedHalfAwayFromZero) {
    ScriptedIdle idle({50.0, 70.0, 4.0});
    idle.secondsPerReading = 1.23;  // three readings, two pauses: 3.73 s
    idle.run();
    EXPECT_EQ(idle.lines.back(), "wait duration = 4.0 idle = ok ");
    ScriptedIdle half({4.0});
    half.secondsPerReading = 0.5;
    half.run();
    EXPECT_EQ(half.lines.back(), "wait duration = 1.0 idle = ok ");
}

TEST(IdleWait, processStatusOutputParsing) {
    EXPECT_DOUBLE_EQ(jtkCPUPercentFromLines({"%CPU", " 12.5"}), 12.5);
    EXPECT_DOUBLE_EQ(jtkCPUPercentFromLines({"%CPU", " 1 2.5 "}), 12.5);
    EXPECT_DOUBLE_EQ(jtkCPUPercentFromLines({"%CPU", "abc"}), 0.0);
    EXPECT_DOUBLE_EQ(jtkCPUPercentFromLines({"%CPU", "3.0x"}), 0.0);
    EXPECT_DOUBLE_EQ(jtkCPUPercentFromLines({"%CPU"}), 0.0);
    EXPECT_DOUBLE_EQ(jtkCPUPercentFromLines({}), 0.0);
    double own = jtkProcessCPUPercent();
    EXPECT_GE(own, 0.0);
}
