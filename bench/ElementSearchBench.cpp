// Cost of the application-wide searches (element, elements, appViews) on
// applications of 100, 1,000 and 10,000 views. The searches run on a
// serial queue, as a test does, while the main thread services the run loop.
#include <benchmark/benchmark.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "run/JTKMainThread.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/platform/Dispatch.h"

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

BENCHMARK(benchElement)->Apply(sizes);
BENCHMARK(benchElements)->Apply(sizes);
BENCHMARK(benchAppViews)->Apply(sizes);

}  // namespace

int main(int argc, char** argv) {
    auto& loop = desktop::RunLoop::main();
    loop.adoptCurrentThreadAsMain();
    desktop::Application::shared();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    std::atomic<bool> finished{false};
    auto queue = platform::makeSerialQueue("BenchQueue");
    queue->async([&] {
        benchmark::RunSpecifiedBenchmarks();
        finished = true;
        loop.wakeUp();
    });
    loop.runMode(platform::RunLoopMode::defaultMode, std::nullopt, [&] { return finished.load(); });
    benchmark::Shutdown();
    return 0;
}
