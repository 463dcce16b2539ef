// The input actions' own cost beyond the pauses they are told to make. Each
// action runs on a serial queue, as a test does, while the main thread runs
// the run loop and the application handles the events. Reported per action:
// wall time (manual time) and "ratio", the wall time over the sum of the
// pauses the action makes by design.
#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <functional>
#include <memory>

#include "JTK/JTKElement.h"
#include "JTK/JTKTestSuite.h"
#include "input/JTKEventPosting.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/MenuItem.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/PopUpButton.h"
#include "JTK/platform/Dispatch.h"

using namespace jtk;

namespace {

struct Scene {
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::View> plain;
    std::shared_ptr<desktop::PopUpButton> popUp;
    std::shared_ptr<desktop::Menu> menu;
};

Scene& scene() {
    static Scene built = [] {
        Scene made;
        made.window = desktop::Window::make(platform::Rect{100, 100, 600, 400}, "Bench");
        made.plain = std::make_shared<desktop::View>(platform::Rect{20, 20, 300, 200});
        made.window->desktopContentView()->addSubview(made.plain);
        made.menu = desktop::Menu::make("Choices");
        for (const char* title : {"One", "Two", "Three"}) made.menu->addItem(desktop::MenuItem::make(title));
        made.popUp = std::make_shared<desktop::PopUpButton>(platform::Rect{350, 300, 120, 24}, made.menu);
        made.window->desktopContentView()->addSubview(made.popUp);
        made.window->makeKeyAndOrderFront();
        return made;
    }();
    return built;
}

// Runs the action on a queue while this (main) thread runs the loop; returns
// the action's wall time in seconds.
double timeOnQueue(const std::shared_ptr<platform::SerialQueue>& queue, const std::function<void()>& action) {
    auto& loop = desktop::RunLoop::main();
    std::atomic<bool> finished{false};
    double seconds = 0;
    queue->async([&] {
        auto start = std::chrono::steady_clock::now();
        action();
        seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        finished = true;
        loop.wakeUp();
    });
    loop.runMode(platform::RunLoopMode::defaultMode, std::nullopt, [&] { return finished.load(); });
    return seconds;
}

void runAction(benchmark::State& state, double pausesSeconds, const std::function<void()>& action) {
    desktop::RunLoop::main().adoptCurrentThreadAsMain();
    scene();
    auto queue = platform::makeSerialQueue("GUITestQueue");
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
    runAction(state, seconds(JTKPacing::afterClick), [] { JTKElement(scene().plain).click(); });
}

void dragAction(benchmark::State& state) {
    runAction(state, seconds(JTKPacing::afterClick) + dragPauses(100), [] {
        JTKElement element(scene().plain);
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
        JTKElement(scene().popUp).clickMenuItem("Two");
    });
}

}  // namespace

BENCHMARK(clickAction)->UseManualTime()->Iterations(8)->Unit(benchmark::kMillisecond);
BENCHMARK(dragAction)->UseManualTime()->Iterations(6)->Unit(benchmark::kMillisecond);
BENCHMARK(typeTextAction)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(clickMenuItemAction)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv) {
    desktop::RunLoop::main().adoptCurrentThreadAsMain();
    desktop::Application::shared();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
