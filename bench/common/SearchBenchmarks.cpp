#include "SearchBenchmarks.h"

#include <nlohmann/json.hpp>

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Window.h"
#include "run/JTKMainThread.h"

namespace jtk::bench {

namespace {

// The floor any search stands on: one hop to the main thread, the visible
// views of every window in walk order, and each view's name read by name.
size_t walkReadingNames(const std::shared_ptr<platform::View>& view) {
    if (!view || view->isHidden()) return 0;
    size_t named = 0;
    if (view->respondsToSelector("hbViewName") && view->performSelector("hbViewName").text()) ++named;
    for (const auto& subview : view->subviews()) named += walkReadingNames(subview);
    return named;
}

void benchWalkNames(benchmark::State& state) {
    auto tree = makeSearchTree(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        size_t named = jtkOnMainThread([] {
            size_t count = 0;
            for (const auto& window : platform::sharedApplication()->windows())
                if (auto content = window ? window->contentView() : nullptr) count += walkReadingNames(content);
            return count;
        });
        benchmark::DoNotOptimize(named);
    }
    state.SetComplexityN(state.range(0));
}

void benchElement(benchmark::State& state) {
    auto tree = makeSearchTree(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(JTKTestSuite::element("target"));
    state.SetComplexityN(state.range(0));
}

void benchElements(benchmark::State& state) {
    auto tree = makeSearchTree(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(JTKTestSuite::elements("item3"));
    state.SetComplexityN(state.range(0));
}

void benchAppViews(benchmark::State& state) {
    auto tree = makeSearchTree(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(JTKTestSuite::appViews());
    state.SetComplexityN(state.range(0));
}

void sizes(benchmark::internal::Benchmark* bench) {
    bench->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(benchWalkNames)->Apply(sizes);
BENCHMARK(benchElement)->Apply(sizes);
BENCHMARK(benchElements)->Apply(sizes);
BENCHMARK(benchAppViews)->Apply(sizes);

const char* const searches[] = {"benchElement", "benchElements", "benchAppViews"};

const double* find(const SearchTimes& times, const std::string& function, long long views) {
    auto family = times.find(function);
    if (family == times.end()) return nullptr;
    auto size = family->second.find(views);
    return size == family->second.end() ? nullptr : &size->second;
}

double secondsPer(const std::string& unit) {
    if (unit == "ns") return 1e-9;
    if (unit == "us") return 1e-6;
    if (unit == "ms") return 1e-3;
    return 1;
}

}  // namespace

void SearchReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const auto& run : runs) {
        if (run.error_occurred) continue;
        bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
        if ((run.run_type == Run::RT_Aggregate && !median) || run.run_name.args.empty()) continue;
        long long views = std::strtoll(run.run_name.args.c_str(), nullptr, 10);
        bool& medianSeen = fromMedian_[run.run_name.function_name][views];
        // A median replaces the single repetitions it summarises.
        if (median || !medianSeen) {
            times_[run.run_name.function_name][views] =
                run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
            medianSeen = median;
        }
    }
}

void printWalkRatios(const SearchTimes& times) {
    auto walk = times.find("benchWalkNames");
    if (walk == times.end()) return;
    std::printf("\nTime as a multiple of the bare walk that reads names (same run):\n");
    std::printf("%8s %10s %10s %10s %10s\n", "views", "walk ms", "element", "elements", "appViews");
    for (const auto& [views, walkTime] : walk->second) {
        std::printf("%8lld %10.3f", views, walkTime * 1e3);
        for (const char* search : searches) {
            const double* time = find(times, search, views);
            if (time && walkTime > 0)
                std::printf(" %9.1fx", *time / walkTime);
            else
                std::printf(" %10s", "-");
        }
        std::printf("\n");
    }
    std::fflush(stdout);
}

void printBackendRatios(const SearchTimes& here, const std::vector<BackendSearchTimes>& others) {
    if (others.empty()) return;
    std::printf("\nTime on the other backends over embedded desktop time (same run):\n");
    std::printf("%8s  %-12s %10s %10s %10s %10s\n", "views", "backend", "walk", "element", "elements", "appViews");
    std::map<long long, bool> sizes;
    for (const auto& [function, bySize] : here)
        for (const auto& entry : bySize) sizes[entry.first] = true;
    for (const auto& entry : sizes) {
        long long views = entry.first;
        for (const auto& other : others) {
            std::printf("%8lld  %-12s", views, other.backend.c_str());
            for (const char* function : {"benchWalkNames", "benchElement", "benchElements", "benchAppViews"}) {
                const double* mine = find(here, function, views);
                const double* theirs = find(other.times, function, views);
                if (mine && theirs && *mine > 0)
                    std::printf(" %9.2fx", *theirs / *mine);
                else
                    std::printf(" %10s", "-");
            }
            std::printf("\n");
        }
    }
    std::fflush(stdout);
}

SearchTimes readSearchTimes(const std::string& json) {
    SearchTimes times;
    auto report = nlohmann::json::parse(json, nullptr, false);
    if (report.is_discarded() || !report.contains("benchmarks")) return times;
    std::map<std::string, std::map<long long, bool>> fromMedian;
    for (const auto& run : report["benchmarks"]) {
        std::string type = run.value("run_type", "iteration");
        bool median = type == "aggregate" && run.value("aggregate_name", "") == "median";
        if ((type == "aggregate" && !median) || run.contains("error_occurred")) continue;
        // "benchElement/1000/real_time": the family, then the size.
        std::string name = run.value("run_name", run.value("name", ""));
        auto slash = name.find('/');
        if (slash == std::string::npos) continue;
        std::string function = name.substr(0, slash);
        long long views = std::strtoll(name.c_str() + slash + 1, nullptr, 10);
        bool& medianSeen = fromMedian[function][views];
        if (median || !medianSeen) {
            times[function][views] = run.value("real_time", 0.0) * secondsPer(run.value("time_unit", "ns"));
            medianSeen = median;
        }
    }
    return times;
}

void runOnBenchQueue(benchmark::BenchmarkReporter& reporter,
                     const std::function<void(const std::function<bool()>& finished)>& runMainLoop) {
    std::atomic<bool> finished{false};
    auto queue = platform::makeSerialQueue("BenchQueue");
    queue->async([&] {
        benchmark::RunSpecifiedBenchmarks(&reporter);
        finished = true;
        platform::dispatchAsyncMain([] {});  // wakes the main loop to see it
    });
    runMainLoop([&] { return finished.load(); });
}

}  // namespace jtk::bench
