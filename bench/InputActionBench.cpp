// The input actions' own cost beyond the pauses they are told to make. Each
// action runs on a serial queue, as a test does, while the main thread runs
// the run loop and the application handles the events. Reported per action:
// wall time (manual time) and "ratio", the wall time over the sum of the
// pauses the action makes by design (common/ActionBenchmarks). When the Qt
// or GTK backend is built, the run then starts the same actions on the same
// scene of Qt widgets (InputActionBenchQt) and of GTK widgets
// (InputActionBenchGtk, on an X server of its own unless DISPLAY names one)
// and ends with their figures as multiples of the ones here, side by side.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "common/ActionBenchmarks.h"
#include "common/PeerBenchmark.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/Menu.h"
#include "JTK/desktop/MenuItem.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/PopUpButton.h"
#include "JTK/platform/RunLoop.h"

using namespace jtk;

namespace {

void nameView(desktop::View& view, std::string name) {
    view.addMethod("hbViewName", [name](platform::Object&, const platform::Value&) { return platform::Value(name); });
}

struct Scene {
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::Menu> menu;
};

}  // namespace

void bench::buildActionScene() {
    static Scene built = [] {
        Scene made;
        made.window = desktop::Window::make(platform::Rect{100, 100, 600, 400}, "Bench");
        auto plain = std::make_shared<desktop::View>(platform::Rect{20, 20, 300, 200});
        nameView(*plain, "BenchPlain");
        made.window->desktopContentView()->addSubview(plain);
        made.menu = desktop::Menu::make("Choices");
        for (const char* title : {"One", "Two", "Three"}) made.menu->addItem(desktop::MenuItem::make(title));
        auto popUp = std::make_shared<desktop::PopUpButton>(platform::Rect{350, 300, 120, 24}, made.menu);
        nameView(*popUp, "BenchPopUp");
        made.window->desktopContentView()->addSubview(popUp);
        made.window->makeKeyAndOrderFront();
        return made;
    }();
    (void)built;
}

void bench::runMainLoopUntil(const std::function<bool()>& finished) {
    desktop::RunLoop::main().runMode(platform::RunLoopMode::defaultMode, std::nullopt, finished);
}

namespace {

// The other backends' variants that the build made.
const std::vector<bench::PeerProgram> peers = {
#ifdef JTK_QT_ACTION_BENCH
    {"Qt Widgets", JTK_QT_ACTION_BENCH},
#endif
#ifdef JTK_GTK_ACTION_BENCH
    {"GTK 4", JTK_GTK_ACTION_BENCH, true},
#endif
};

}  // namespace

int main(int argc, char** argv) {
    desktop::RunLoop::main().adoptCurrentThreadAsMain();
    desktop::Application::shared();
    std::vector<char*> arguments(argv, argv + argc);  // before the benchmark flags are taken out
    benchmark::Initialize(&argc, argv);
    bench::ActionReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    std::vector<bench::BackendActionReport> others;
    for (auto& report : bench::runPeerBenchmarks(peers, "actions", static_cast<int>(arguments.size()), arguments.data()))
        others.push_back({report.backend, bench::readActionTimes(report.json)});
    bench::printActionRatios(reporter.report(), others);
    return 0;
}
