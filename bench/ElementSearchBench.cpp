// Cost of the application-wide searches (element, elements, appViews) on
// applications of 100, 1,000 and 10,000 views. The searches run on a
// serial queue, as a test does, while the main thread services the run loop.
// The same run measures a bare walk of the same trees that reads each view's
// name in one hop to the main thread, and ends with each search's time as a
// multiple of that walk, so that the figures do not depend on the machine.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "run/JTKMainThread.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Window.h"

using namespace jtk;

namespace {

constexpr int groupsPerWindow = 9;
constexpr int leavesPerGroup = 10;

void nameView(desktop::View& view, std::string name) {
    view.addMethod("hbViewName", [name](platform::Object&, const platform::Value&) { return platform::Value(name); });
}

// Windows of 100 views each (the content view and nine boxes of ten named
// leaves), laid out in a grid so that the reading order has real rows to
// sort. The last leaf is named "target".
class BenchApplication {
public:
    explicit BenchApplication(int viewCount) {
        jtkOnMainThread([&] {
            std::shared_ptr<desktop::View> lastLeaf;
            for (int made = 0; made < viewCount;) {
                auto index = static_cast<double>(windows_.size());
                auto window = desktop::Window::make(platform::Rect{40 + index, 60 + index, 800, 700},
                                                    "Bench " + std::to_string(windows_.size()));
                auto content = window->desktopContentView();
                ++made;
                for (int group = 0; made < viewCount && group < groupsPerWindow; ++group) {
                    auto box = std::make_shared<desktop::View>(platform::Rect{10.0 + 85 * group, 20, 80, 660});
                    content->addSubview(box);
                    ++made;
                    for (int leaf = 0; made < viewCount && leaf < leavesPerGroup; ++leaf, ++made) {
                        lastLeaf = std::make_shared<desktop::View>(platform::Rect{5, 5.0 + 64 * leaf, 70, 20});
                        nameView(*lastLeaf, "item" + std::to_string(made % 7));
                        box->addSubview(lastLeaf);
                    }
                }
                window->orderFront();
                windows_.push_back(window);
            }
            if (lastLeaf) nameView(*lastLeaf, "target");
        });
    }

    ~BenchApplication() {
        jtkOnMainThread([&] {
            for (auto& window : windows_) window->close();
            windows_.clear();
        });
    }

private:
    std::vector<std::shared_ptr<desktop::Window>> windows_;
};

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
    BenchApplication application(static_cast<int>(state.range(0)));
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
    BenchApplication application(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(JTKTestSuite::element("target"));
    state.SetComplexityN(state.range(0));
}

void benchElements(benchmark::State& state) {
    BenchApplication application(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(JTKTestSuite::elements("item3"));
    state.SetComplexityN(state.range(0));
}

void benchAppViews(benchmark::State& state) {
    BenchApplication application(static_cast<int>(state.range(0)));
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

// The console report, plus each search's time per size divided by the walk's
// time for that size once all benchmarks have run. With repetitions the
// median is used.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    RatioReporter() : ConsoleReporter(OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const auto& run : runs) {
            if (run.error_occurred) continue;
            bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
            if ((run.run_type == Run::RT_Aggregate && !median) || run.run_name.args.empty()) continue;
            auto& measured = times_[run.run_name.function_name][std::strtoll(run.run_name.args.c_str(), nullptr, 10)];
            double seconds = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
            // A median replaces the single repetitions it summarises.
            if (median || !measured.fromMedian) measured = {seconds, median};
        }
    }

    void printRatios() const {
        auto walk = times_.find("benchWalkNames");
        if (walk == times_.end()) return;
        std::printf("\nTime as a multiple of the bare walk that reads names (same run):\n");
        std::printf("%8s %10s %10s %10s %10s\n", "views", "walk ms", "element", "elements", "appViews");
        for (const auto& [views, walkTime] : walk->second) {
            std::printf("%8lld %10.3f", static_cast<long long>(views), walkTime.seconds * 1e3);
            for (const char* search : {"benchElement", "benchElements", "benchAppViews"}) {
                const Measured* time = find(search, views);
                if (time && walkTime.seconds > 0)
                    std::printf(" %9.1fx", time->seconds / walkTime.seconds);
                else
                    std::printf(" %10s", "-");
            }
            std::printf("\n");
        }
        std::fflush(stdout);
    }

private:
    struct Measured {
        double seconds = 0;
        bool fromMedian = false;
    };

    const Measured* find(const std::string& function, long long views) const {
        auto family = times_.find(function);
        if (family == times_.end()) return nullptr;
        auto size = family->second.find(views);
        return size == family->second.end() ? nullptr : &size->second;
    }

    std::map<std::string, std::map<long long, Measured>> times_;
};

}  // namespace

int main(int argc, char** argv) {
    auto& loop = desktop::RunLoop::main();
    loop.adoptCurrentThreadAsMain();
    desktop::Application::shared();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    std::atomic<bool> finished{false};
    RatioReporter reporter;
    auto queue = platform::makeSerialQueue("BenchQueue");
    queue->async([&] {
        benchmark::RunSpecifiedBenchmarks(&reporter);
        finished = true;
        loop.wakeUp();
    });
    loop.runMode(platform::RunLoopMode::defaultMode, std::nullopt, [&] { return finished.load(); });
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
