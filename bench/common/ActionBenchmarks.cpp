#include "ActionBenchmarks.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>

#include "JTK/JTKElement.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Dispatch.h"
#include "input/JTKEventPosting.h"

namespace jtk::bench {

namespace {

// The scene's elements, found once on the benchmark queue so that no search
// is timed with an action.
struct SceneElements {
    JTKElement plain;
    JTKElement popUp;
};

const SceneElements& sceneElements() {
    static const SceneElements found{JTKTestSuite::element("BenchPlain"), JTKTestSuite::element("BenchPopUp")};
    return found;
}

// Runs the action on a queue while this (main) thread runs the loop; returns
// the action's wall time in seconds.
double timeOnQueue(const std::shared_ptr<platform::SerialQueue>& queue, const std::function<void()>& action) {
    std::atomic<bool> finished{false};
    double seconds = 0;
    queue->async([&] {
        sceneElements();
        auto start = std::chrono::steady_clock::now();
        action();
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        finished = true;
        platform::dispatchAsyncMain([] {});  // wakes the main loop to see it
    });
    runMainLoopUntil([&] { return finished.load(); });
    return seconds;
}

void runAction(benchmark::State& state, double pausesSeconds, const std::function<void()>& action) {
    buildActionScene();
    static auto queue = platform::makeSerialQueue("GUITestQueue");
    double total = 0;
    for (auto _ : state) {
        double seconds = timeOnQueue(queue, action);
        state.SetIterationTime(seconds);
        total += seconds;
    }
    double perAction = total / static_cast<double>(state.iterations());
    state.counters["pauses_ms"] = pausesSeconds * 1000;
    state.counters["overhead_ms"] = (perAction - pausesSeconds) * 1000;
    state.counters["ratio"] = perAction / pausesSeconds;
}

constexpr double seconds(uint32_t microseconds) { return microseconds / 1e6; }

// The designed pauses of a drag by distance points along one axis: one step
// per point and one more at the target, near pauses within dragNearDistance.
double dragPauses(int distance) {
    double sum = 0;
    for (int step = 1; step <= distance + 1; ++step) {
        double remaining = std::max(0, distance - step);
        sum += seconds(remaining < JTKPacing::dragNearDistance ? JTKPacing::dragStepNear : JTKPacing::dragStepFar);
    }
    return sum + seconds(JTKPacing::afterDragMovement) + seconds(JTKPacing::afterDrag);
}

void clickAction(benchmark::State& state) {
    runAction(state, seconds(JTKPacing::afterClick), [] { JTKElement(sceneElements().plain).click(); });
}

void dragAction(benchmark::State& state) {
    runAction(state, seconds(JTKPacing::afterClick) + dragPauses(100), [] {
        JTKElement element(sceneElements().plain);
        element.click({-100, 0}, 0, false, false);
        element.drag({100, 0});
    });
}

void typeTextAction(benchmark::State& state) {
    const std::string text = "Hello World abc xyzQ";  // 20 characters
    runAction(state,
              20 * seconds(JTKPacing::betweenKeyPressAndRelease + JTKPacing::afterKeyRelease) +
                  seconds(JTKPacing::afterText),
              [&] { JTKTestSuite::typeText(text); });
}

void clickMenuItemAction(benchmark::State& state) {
    // Opens the pop-up with a click (its pause), chooses, then waits for idle.
    runAction(state, seconds(JTKPacing::afterClick), [] {
        JTKElement::setCurrentOpenMenu(nullptr);
        JTKElement(sceneElements().popUp).clickMenuItem("Two");
    });
}

// "clickAction/iterations:8/manual_time": the action's name.
std::string actionName(const std::string& runName) { return runName.substr(0, runName.find('/')); }

}  // namespace

BENCHMARK(clickAction)->UseManualTime()->Iterations(8)->Unit(benchmark::kMillisecond);
BENCHMARK(dragAction)->UseManualTime()->Iterations(6)->Unit(benchmark::kMillisecond);
BENCHMARK(typeTextAction)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(clickMenuItemAction)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

void ActionReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const auto& run : runs) {
        if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
        ActionTimes& times = report_[actionName(run.benchmark_name())];
        times.wall = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
        auto overhead = run.counters.find("overhead_ms");
        if (overhead != run.counters.end()) times.overhead = overhead->second.value / 1000;
    }
}

ActionReport readActionTimes(const std::string& json) {
    ActionReport report;
    auto parsed = nlohmann::json::parse(json, nullptr, false);
    if (parsed.is_discarded() || !parsed.contains("benchmarks")) return report;
    for (const auto& run : parsed["benchmarks"]) {
        if (run.value("run_type", "iteration") != "iteration" || run.contains("error_occurred")) continue;
        std::string unit = run.value("time_unit", "ns");
        double perUnit = unit == "ms" ? 1e-3 : unit == "us" ? 1e-6 : unit == "ns" ? 1e-9 : 1;
        ActionTimes& times = report[actionName(run.value("name", ""))];
        times.wall = run.value("real_time", 0.0) * perUnit;
        times.overhead = run.value("overhead_ms", 0.0) / 1000;
    }
    return report;
}

void printActionRatios(const ActionReport& here, const std::vector<BackendActionReport>& others) {
    if (others.empty()) return;
    std::printf("\nOther backends over embedded desktop, per action (same run):\n");
    std::printf("%-22s", "");
    for (const auto& other : others) std::printf(" %29s", other.backend.c_str());
    std::printf("\n%-22s", "action");
    for (size_t i = 0; i < others.size(); ++i) std::printf(" %14s %14s", "wall time", "overhead");
    std::printf("\n");
    for (const auto& [action, mine] : here) {
        std::printf("%-22s", action.c_str());
        for (const auto& other : others) {
            auto theirs = other.report.find(action);
            for (auto [a, b] : {std::pair{mine.wall, theirs == other.report.end() ? 0.0 : theirs->second.wall},
                                std::pair{mine.overhead, theirs == other.report.end() ? 0.0 : theirs->second.overhead}}) {
                // A ratio of an overhead below zero (typing that makes fewer
                // pauses than designed) would mean nothing.
                if (a > 0 && b > 0 && theirs != other.report.end())
                    std::printf(" %13.2fx", b / a);
                else
                    std::printf(" %14s", "-");
            }
        }
        std::printf("\n");
    }
    std::fflush(stdout);
}

}  // namespace jtk::bench
