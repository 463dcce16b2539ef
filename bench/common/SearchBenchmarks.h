// The search benchmarks that every backend runs on the same tree of views:
// windows of 100 views each (a content view and nine boxes of ten named
// leaves, in a grid so that the reading order has real rows to sort; the
// last leaf is named "target"). Each backend's benchmark program builds the
// tree with its own views (makeSearchTree) and runs its own main loop; the
// benchmarks, the report and the ratios are shared.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace jtk::bench {

constexpr int groupsPerWindow = 9;
constexpr int leavesPerGroup = 10;

// The views of one benchmark, alive while it runs; torn down on the main thread.
class SearchTree {
public:
    virtual ~SearchTree() = default;
};

// Defined by each backend's benchmark program: the tree of viewCount views,
// built in one step on the main thread (called from the benchmark thread).
std::unique_ptr<SearchTree> makeSearchTree(int viewCount);

// Seconds per benchmark family and size.
using SearchTimes = std::map<std::string, std::map<long long, double>>;

// The console report, collecting each search's time per size (the median
// when repetitions are asked for) for the ratio tables.
class SearchReporter : public benchmark::ConsoleReporter {
public:
    SearchReporter() : ConsoleReporter(OO_Tabular) {}
    void ReportRuns(const std::vector<Run>& runs) override;
    const SearchTimes& times() const { return times_; }

private:
    SearchTimes times_;
    std::map<std::string, std::map<long long, bool>> fromMedian_;
};

// Each search's time as a multiple of the bare walk's time for the same size.
void printWalkRatios(const SearchTimes& times);
// The times of another backend, under its name.
struct BackendSearchTimes {
    std::string backend;
    SearchTimes times;
};
// Each benchmark's time on each other backend over its time on this one, a
// row per size and backend, so that the backends stand side by side.
void printBackendRatios(const SearchTimes& here, const std::vector<BackendSearchTimes>& others);

// The times of a Google Benchmark JSON report (iterations, or the medians
// where there are any); empty for text that is not such a report.
SearchTimes readSearchTimes(const std::string& json);

// Runs the registered benchmarks on a serial queue, as a test runs, while
// runMainLoop services the main thread until its argument turns true.
void runOnBenchQueue(benchmark::BenchmarkReporter& reporter,
                     const std::function<void(const std::function<bool()>& finished)>& runMainLoop);

}  // namespace jtk::bench
