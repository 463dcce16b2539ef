// JTKTestSuite's idle wait: the process's own CPU use as the process-status
// tool reports it, read until it is low or steady.

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <thread>

#include "run/JTKConsole.h"
#include "input/JTKIdle.h"
#include "run/JTKShell.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Process.h"

namespace jtk {

namespace {

constexpr double idleThreshold = 5.0;
constexpr double steadyBand = 0.5;
constexpr int steadyReadingsNeeded = 3;
constexpr int pollPauseMicroseconds = 20000;
constexpr double timeLimitSeconds = 5.0;

std::string durationText(double seconds) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.1f", std::round(seconds));
    return buffer;
}

}  // namespace

void jtkWaitUntilIdle(const JTKIdleWaitHooks& hooks) {
    hooks.printLine("waiting for idle");
    double reading = hooks.readCPUPercent();
    if (reading >= idleThreshold) {
        double previous = reading;
        int steady = 0;  // never reset: three steady readings end the wait, wherever they fall
        do {
            if (hooks.secondsSinceStart() > timeLimitSeconds) {
                hooks.printLine("Couldn't determine idle state - timing out");
                break;
            }
            hooks.sleep(pollPauseMicroseconds);
            reading = hooks.readCPUPercent();
            if (previous < reading + steadyBand && reading - steadyBand < previous) ++steady;
            previous = reading;
        } while (reading >= idleThreshold && steady < steadyReadingsNeeded);
    }
    hooks.printLine("wait duration = " + durationText(hooks.secondsSinceStart()) + " idle = ok ");
}

double jtkCPUPercentFromLines(const std::vector<std::string>& lines) {
    if (lines.size() < 2) return 0.0;
    std::string text;
    for (char c : lines[1]) {
        if (c != ' ') text += c;
    }
    double value = 0.0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) return 0.0;
    return value;
}

double jtkProcessCPUPercent() {
    auto result = runShellCommand("ps -p " + std::to_string(platform::processIdentifier()) + " -o %cpu");
    return jtkCPUPercentFromLines(result.outputLines);
}

void JTKTestSuite::sleepUntilIdle() {
    auto start = std::chrono::steady_clock::now();
    jtkWaitUntilIdle({
        .readCPUPercent = jtkProcessCPUPercent,
        .secondsSinceStart =
            [start] { return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(); },
        .sleep = [](int microseconds) { std::this_thread::sleep_for(std::chrono::microseconds(microseconds)); },
        .printLine = jtkPrintLine,
    });
}

}  // namespace jtk
