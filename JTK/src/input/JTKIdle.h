// The idle wait with its readings and clock passed in, so that the counting
// of steady readings can be checked without a busy process.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace jtk {

struct JTKIdleWaitHooks {
    std::function<double()> readCPUPercent;
    std::function<double()> secondsSinceStart;  // wall-clock seconds since the wait began
    std::function<void(int microseconds)> sleep;
    std::function<void(const std::string&)> printLine;
};

// Waits until a reading is below 5 %, three readings were each within 0.5
// points of the one before, or 5 seconds have passed; prints as it goes.
void jtkWaitUntilIdle(const JTKIdleWaitHooks& hooks);

// The CPU use in percent from the output lines of "ps -p <pid> -o %cpu":
// the second line without spaces; 0.0 when it is missing or not a number.
double jtkCPUPercentFromLines(const std::vector<std::string>& lines);
double jtkProcessCPUPercent();

}  // namespace jtk
