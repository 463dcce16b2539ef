// The framework's own cost on a backend: the searches over an application of
// 100 and 1,000 views, and the overhead of a click, a drag and typing beyond
// the pauses they make by design. The same source is built for each backend
// (bench_backend_desktop, bench_backend_qt); compare-backends.sh runs both in
// one invocation and prints each figure on Qt as a multiple of the embedded
// desktop's, since absolute times depend on the machine.
#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>

#include "JTK/JTKElement.h"
#include "JTK/JTKTestSuite.h"
#include "input/JTKEventPosting.h"
#include "run/JTKMainThread.h"
#include "tests/neutral/NeutralUi.h"

using namespace jtk;
using neutral::Kind;

namespace {

// Windows of 100 views: the content view and 99 labels in a grid, named
// "item0" to "item6" in turn; the very last label is named "target".
void buildApplication(int viewCount) {
    jtkOnMainThread([&] {
        neutral::closeAllWindows();
        neutral::ViewPtr last;
        for (int made = 0, window = 0; made < viewCount; ++window) {
            auto content = neutral::makeWindow({40.0 + window, 40.0 + window, 700, 500}, "Bench " + std::to_string(window))
                               ->contentView();
            ++made;
            for (int leaf = 0; leaf < 99 && made < viewCount; ++leaf, ++made) {
                last = neutral::add(Kind::label, content, {5.0 + 70 * (leaf % 9), 5.0 + 44 * (leaf / 9), 65, 20}, "l");
                neutral::setName(last, "item" + std::to_string(made % 7));
            }
        }
        if (last) neutral::setName(last, "target");
    });
}

// Runs the benchmark's loop on a queue, as a test runs, while the main
// thread runs the toolkit's loop.
void onQueue(benchmark::State& state, const std::function<void()>& step) {
    neutral::onQueue([&] {
        for (auto _ : state) step();
    });
}

void searchElement(benchmark::State& state) {
    buildApplication(static_cast<int>(state.range(0)));
    onQueue(state, [] { benchmark::DoNotOptimize(JTKTestSuite::element("target")); });
}

void searchElements(benchmark::State& state) {
    buildApplication(static_cast<int>(state.range(0)));
    onQueue(state, [] { benchmark::DoNotOptimize(JTKTestSuite::elements("item3")); });
}

constexpr double seconds(uint32_t microseconds) { return microseconds / 1e6; }

// One window with a press recorder, a slider and a text field.
struct ActionScene {
    neutral::ViewPtr pad, slider, field;
};

ActionScene buildActionScene() {
    return jtkOnMainThread([] {
        neutral::closeAllWindows();
        auto content = neutral::makeWindow({100, 100, 500, 300}, "Actions")->contentView();
        ActionScene scene{neutral::add(Kind::pressRecorder, content, {20, 20, 200, 100}),
                          neutral::add(Kind::slider, content, {20, 200, 202, 24}),
                          neutral::add(Kind::textField, content, {260, 200, 200, 24})};
        return scene;
    });
}

// Reports the wall time per action and its ratio to the designed pauses.
void runAction(benchmark::State& state, double pauses, const std::function<void()>& action) {
    double total = 0;
    onQueue(state, [&] {
        auto start = std::chrono::steady_clock::now();
        action();
        double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        state.SetIterationTime(elapsed);
        total += elapsed;
    });
    double perAction = total / static_cast<double>(state.iterations());
    state.counters["overhead_ms"] = (perAction - pauses) * 1000;
    state.counters["ratio"] = perAction / pauses;
}

void clickAction(benchmark::State& state) {
    auto scene = buildActionScene();
    runAction(state, seconds(JTKPacing::afterClick), [&] { JTKElement(scene.pad).click(); });
}

void typeTextAction(benchmark::State& state) {
    auto scene = buildActionScene();
    neutral::onQueue([&] { JTKElement(scene.field).click(); });
    const std::string text = "Hello World abc xyzQ";  // 20 characters
    double pauses = 20 * seconds(JTKPacing::betweenKeyPressAndRelease + JTKPacing::afterKeyRelease) +
                    seconds(JTKPacing::afterText);
    runAction(state, pauses, [&] { JTKTestSuite::typeText(text); });
}

}  // namespace

BENCHMARK(searchElement)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(searchElements)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(clickAction)->UseManualTime()->Iterations(8)->Unit(benchmark::kMillisecond);
BENCHMARK(typeTextAction)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    return neutral::runOnToolkit(argc, argv, [&] {
        benchmark::Initialize(&argc, argv);
        benchmark::RunSpecifiedBenchmarks();
        benchmark::Shutdown();
        return 0;
    });
}
