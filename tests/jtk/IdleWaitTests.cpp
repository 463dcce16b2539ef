// The idle wait's counting, with scripted CPU readings and a scripted clock.
#include <gtest/gtest.h>

#include <deque>

#include "input/JTKIdle.h"

using namespace jtk;

namespace {

struct IdleCase {
    const char* label;
    std::vector<double> readings;  // the last one repeats
    double secondsPerReading;
    int expectedReadings;
    std::vector<std::string> expectedLines;
    friend void PrintTo(const IdleCase& c, std::ostream* out) { *out << c.label; }
};

class IdleWait : public testing::TestWithParam<IdleCase> {};

TEST_P(IdleWait, endsBelowFivePercentAfterThreeSteadyReadingsOrAfterFiveSeconds) {
    std::deque<double> readings(GetParam().readings.begin(), GetParam().readings.end());
    double now = 0;
    int readCount = 0;
    std::vector<std::string> lines;
    jtkWaitUntilIdle({
        .readCPUPercent =
            [&] {
                ++readCount;
                now += GetParam().secondsPerReading;
                double value = readings.front();
                if (readings.size() > 1) readings.pop_front();
                return value;
            },
        .secondsSinceStart = [&] { return now; },
        .sleep = [&](int microseconds) { now += microseconds / 1e6; },
        .printLine = [&](const std::string& line) { lines.push_back(line); },
    });
    EXPECT_EQ(readCount, GetParam().expectedReadings);
    EXPECT_EQ(lines, GetParam().expectedLines);
}

std::vector<std::string> ok(const char* duration) {
    return {"waiting for idle", std::string("wait duration = ") + duration + " idle = ok "};
}
std::vector<double> jumping() {
    std::vector<double> values;
    for (int i = 0; i < 100; ++i) values.push_back(i % 2 ? 10.0 : 50.0);
    return values;
}

INSTANTIATE_TEST_SUITE_P(
    Readings, IdleWait,
    testing::Values(IdleCase{"belowThresholdAtOnce", {4.9}, 0, 1, ok("0.0")},
                    IdleCase{"threeSteadyReadings", {30.0, 30.2, 29.9, 30.1}, 0, 4, ok("0.0")},
                    // Steady, jump, steady, jump, steady: the count is never reset.
                    IdleCase{"steadyCountNeverReset", {30.0, 30.1, 40.0, 40.2, 60.0, 60.3, 90.0}, 0, 6, ok("0.0")},
                    IdleCase{"halfAPointIsNotSteady", {8.0, 7.5, 7.0, 6.5, 6.0, 5.5, 5.0, 4.5}, 0, 8, ok("0.0")},
                    // Three readings of 1.23 s and two pauses of 0.02 s: 3.73 s.
                    IdleCase{"durationIsRounded", {50.0, 70.0, 4.0}, 1.23, 3, ok("4.0")},
                    IdleCase{"halfRoundsAwayFromZero", {4.0}, 0.5, 1, ok("1.0")},
                    // The limit is checked before every pause: 41 pauses bring it to 5.02 s.
                    IdleCase{"jumpingTimesOut",
                             jumping(),
                             0.1,
                             42,
                             {"waiting for idle", "Couldn't determine idle state - timing out",
                              "wait duration = 5.0 idle = ok "}}),
    [](const auto& info) { return std::string(info.param.label); });

TEST(IdleCPUReading, parsesTheProcessStatusColumnAndDefaultsToZero) {
    EXPECT_DOUBLE_EQ(jtkCPUPercentFromLines({"%CPU", " 12.5"}), 12.5);
    EXPECT_DOUBLE_EQ(jtkCPUPercentFromLines({"%CPU", " 1 2.5 "}), 12.5);
    for (const auto& lines : std::vector<std::vector<std::string>>{{"%CPU", "abc"}, {"%CPU", "3.0x"}, {"%CPU"}, {}})
        EXPECT_DOUBLE_EQ(jtkCPUPercentFromLines(lines), 0.0) << testing::PrintToString(lines);
    EXPECT_GE(jtkProcessCPUPercent(), 0.0);
}

}  // namespace
