// A small application whose test body ends the process the way element
// searches and actions do: a wait that runs out, a single-result search that
// finds nothing, an element whose view has gone, a click that opens no menu.
// The scenario is the first argument. Before the body runs, the user's
// Application Support data ("user.txt") is moved aside for test data, as a
// test run does, so the caller can check that every end puts it back.
//
// Output: "search <milliseconds>" each time the window's content view is
// asked for its name (one burst per search), then whatever the end prints.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <map>

#include "JTK/JTKClass.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ImageView.h"
#include "JTK/platform/Dispatch.h"
#include "run/JTKConsole.h"
#include "run/JTKMainThread.h"

using namespace jtk;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

const std::map<std::string, std::function<void()>> scenarios = {
    {"waitTimeout", [] { JTKTestSuite::waitForExistence("Nothing", {.timeout = 0.05}); }},
    {"elementTimeout", [] { JTKTestSuite::element("Nothing"); }},
    {"subElement", [] { JTKTestSuite::keyWindow().subElement("Missing"); }},
    {"subElementType", [] { JTKTestSuite::keyWindow().subElementWithType(jtkClass<desktop::ImageView>()); }},
    {"appWindow", [] { JTKTestSuite::appWindow("Nowhere"); }},
    {"goneView",
     [] {
         auto save = JTKTestSuite::element("Save");
         jtkOnMainThread([&] { std::static_pointer_cast<desktop::View>(save.view())->removeFromSuperview(); });
         save.frameOnScreen();
     }},
    {"noWindow",
     [] {
         jtkOnMainThread([] {
             auto windows = desktop::Application::shared()->desktopWindows();
             for (auto& window : windows) window->close();
         });
         JTKTestSuite::keyWindow();
     }},
    {"openMenu", [] { JTKTestSuite::element("Save").openMenu(0); }},
    {"found", [] { jtkPrintLine("found " + JTKTestSuite::waitForExistence("Save", std::nullopt, 1).elementLookupDescription()); }},
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3 || !scenarios.count(argv[1])) {
        std::fprintf(stderr, "usage: ElementScenarios <scenario> <scratch folder>\n");
        return 2;
    }
    auto& loop = desktop::RunLoop::main();
    loop.adoptCurrentThreadAsMain();
    desktop::Application::shared();
    fs::path support = *JTKTestSuite::appSupportURL(), scratch = argv[2];
    fs::create_directories(support);
    std::ofstream(support / "user.txt") << "user data";
    fs::create_directories(scratch / "testdata");
    std::ofstream(scratch / "testdata" / "test.txt") << "test data";
    JTKTestSuite::setJtkTestDataURL(scratch / "testdata");
    JTKTestSuite::copyTestDataToApplicationSupport();

    auto started = Clock::now();
    auto window = desktop::Window::make(platform::Rect{100, 100, 400, 300}, "Main");
    window->desktopContentView()->addMethod("hbViewName", [started](platform::Object&, const platform::Value&) {
        jtkPrintLine("search " + std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - started).count()));
        return platform::Value("Content");
    });
    window->desktopContentView()->addSubview(std::make_shared<desktop::Button>(platform::Rect{10, 10, 80, 20}, "Save"));
    window->makeKeyAndOrderFront();

    std::atomic<bool> finished{false};
    auto queue = platform::makeSerialQueue("GUITestQueue");
    queue->async([&] {
        scenarios.at(argv[1])();
        jtkPrintLine("scenario returned");
        finished = true;
        loop.wakeUp();
    });
    loop.runMode(platform::RunLoopMode::defaultMode, Clock::now() + std::chrono::seconds(20), [&] { return finished.load(); });
    JTKTestSuite::restoreApplicationSupportData();
    return finished ? 0 : 4;
}
