// The input-action benchmarks that every backend runs on the same scene: a
// window with a plain view named "BenchPlain" (300 x 200) and a pop-up
// control named "BenchPopUp" offering "One", "Two" and "Three". Each action
// runs on a serial queue, as a test does, while the main thread runs the
// backend's loop and the application handles the events. Reported per
// action: wall time (manual time), the pauses it makes by design, the
// overhead beyond them and "ratio", wall time over pauses.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace jtk::bench {

// Defined by each backend's benchmark program.
// Builds the scene on the main thread (once; called on the main thread).
void buildActionScene();
// Runs the main thread's loop until finished() turns true.
void runMainLoopUntil(const std::function<bool()>& finished);

// Per action: the wall time and the overhead beyond the pauses, in seconds.
struct ActionTimes {
    double wall = 0;
    double overhead = 0;
};
using ActionReport = std::map<std::string, ActionTimes>;

// The console report, collecting each action's figures.
class ActionReporter : public benchmark::ConsoleReporter {
public:
    ActionReporter() : ConsoleReporter(OO_Tabular) {}
    void ReportRuns(const std::vector<Run>& runs) override;
    const ActionReport& report() const { return report_; }

private:
    ActionReport report_;
};

// The figures of a Google Benchmark JSON report of the actions.
ActionReport readActionTimes(const std::string& json);
// The figures of another backend, under its name.
struct BackendActionReport {
    std::string backend;
    ActionReport report;
};
// Each action's figures on each other backend over those on this one, the
// backends side by side in one row per action.
void printActionRatios(const ActionReport& here, const std::vector<BackendActionReport>& others);

}  // namespace jtk::bench
