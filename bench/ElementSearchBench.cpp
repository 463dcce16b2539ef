// Cost of the application-wide searches (element, elements, appViews) on
// applications of 100, 1,000 and 10,000 views. The searches run on a
// serial queue, as a test does, while the main thread services the run loop.
// The same run measures a bare walk of the same trees that reads each view's
// name in one hop to the main thread, and ends with each search's time as a
// multiple of that walk, so that the figures do not depend on the machine.
// When the Qt or GTK backend is built, the run then starts the same
// benchmarks over the same tree of Qt widgets (ElementSearchBenchQt) and of
// GTK widgets (ElementSearchBenchGtk, on an X server of its own unless
// DISPLAY names one) and ends with each figure on each as a multiple of
// the one here, the backends side by side.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "common/PeerBenchmark.h"
#include "common/SearchBenchmarks.h"
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

using bench::groupsPerWindow;
using bench::leavesPerGroup;

void nameView(desktop::View& view, std::string name) {
    view.addMethod("hbViewName", [name](platform::Object&, const platform::Value&) { return platform::Value(name); });
}

// Windows of 100 views each (the content view and nine boxes of ten named
// leaves), laid out in a grid so that the reading order has real rows to
// sort. The last leaf is named "target".
class BenchApplication : public bench::SearchTree {
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

    ~BenchApplication() override {
        jtkOnMainThread([&] {
            for (auto& window : windows_) window->close();
            windows_.clear();
        });
    }

private:
    std::vector<std::shared_ptr<desktop::Window>> windows_;
};

}  // namespace

std::unique_ptr<bench::SearchTree> bench::makeSearchTree(int viewCount) {
    return std::make_unique<BenchApplication>(viewCount);
}

namespace {

// The other backends' variants that the build made.
const std::vector<bench::PeerProgram> peers = {
#ifdef JTK_QT_SEARCH_BENCH
    {"Qt Widgets", JTK_QT_SEARCH_BENCH},
#endif
#ifdef JTK_GTK_SEARCH_BENCH
    {"GTK 4", JTK_GTK_SEARCH_BENCH, true},
#endif
};

}  // namespace

int main(int argc, char** argv) {
    auto& loop = desktop::RunLoop::main();
    loop.adoptCurrentThreadAsMain();
    desktop::Application::shared();
    std::vector<char*> arguments(argv, argv + argc);  // before the benchmark flags are taken out
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;

    bench::SearchReporter reporter;
    bench::runOnBenchQueue(reporter, [&](const std::function<bool()>& finished) {
        loop.runMode(platform::RunLoopMode::defaultMode, std::nullopt, finished);
    });
    bench::printWalkRatios(reporter.times());
    benchmark::Shutdown();
    // The same searches over the same tree of each other backend's views, in this run.
    std::vector<bench::BackendSearchTimes> others;
    for (auto& report : bench::runPeerBenchmarks(peers, "benchmarks", static_cast<int>(arguments.size()), arguments.data()))
        others.push_back({report.backend, bench::readSearchTimes(report.json)});
    bench::printBackendRatios(reporter.times(), others);
    return 0;
}
