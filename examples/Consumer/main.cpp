// A tiny application on the embedded desktop: a window with a "Greet" button
// and a label. A click greets the person named in the application's data
// folder (name.txt) and notes the greeting there (greetings.txt), so a test
// run shows whether it works on its test data and leaves the user's alone.
// Launched with "uxtest" it runs its UI test (ConsumerTests.cpp); otherwise
// it ends after a moment, as nobody can quit a headless application.
#include <JTK/JTK.h>
#include <JTK/desktop/Application.h>
#include <JTK/services/ProcessInfo.h>
#include <JTK/desktop/Window.h>
#include <JTK/desktop/controls/Button.h>
#include <JTK/desktop/controls/Label.h>
#include <JTK/platform/Dispatch.h>
#include <JTK/platform/Process.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace {

std::filesystem::path dataFolder() {
    auto base = jtk::platform::applicationSupportDirectory();
    return base ? *base / jtk::desktop::Application::shared()->name() : std::filesystem::path();
}

std::string personToGreet() {
    std::string name;
    std::ifstream in(dataFolder() / "name.txt");
    if (!std::getline(in, name) || name.empty()) return "stranger";
    return name;
}

std::string greet() {
    std::string greeting = "Hello, " + personToGreet();
    std::ofstream(dataFolder() / "greetings.txt", std::ios::app) << greeting << '\n';
    return greeting;
}

}  // namespace

int main(int argc, char** argv) {
    using jtk::platform::Rect;
    jtk::services::setProcessArguments(argc, argv);
    auto application = jtk::desktop::Application::shared();

    auto window = jtk::desktop::Window::make(Rect{100, 200, 300, 120}, "Consumer");
    auto label = std::make_shared<jtk::desktop::Label>(Rect{20, 20, 260, 24}, "Not greeted yet");
    label->addMethod("hbViewName", [](jtk::platform::Object&, const jtk::platform::Value&) {
        return jtk::platform::Value("Greeting");
    });
    auto button = std::make_shared<jtk::desktop::Button>(Rect{20, 70, 100, 30}, "Greet");
    button->setAction([label = std::weak_ptr(label)](jtk::desktop::Button&) {
        if (auto shown = label.lock()) shown->setStringValue(greet());
    });
    window->desktopContentView()->addSubview(label);
    window->desktopContentView()->addSubview(button);
    window->makeKeyAndOrderFront();

    jtk::JTKTestSuite::runTests();
    if (!jtk::JTKTestSuite::isTesting()) {
        jtk::platform::dispatchAfterMain(1, [application] { application->terminate(0); });
    }
    return application->run();
}
