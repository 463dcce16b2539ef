// A small desktop application for the viewer's tests under a real X server:
// one window with a button ("Press me", prints "pressed" when its action
// runs), a text field and a button that runs a modal alert ("Alert"). It
// prints "ready viewer=<0|1>" once its run loop turns, and reads commands on
// standard input: "text" prints "text: " and the field's text, "render PATH"
// writes the desktop's own rendering of the screen as PNG and prints
// "rendered". When its run ends it prints "ended text: " and the text.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

#include "JTK/desktop/Alert.h"
#include "JTK/desktop/Application.h"
#include "JTK/services/ProcessInfo.h"
#include "JTK/desktop/Viewer.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/TextField.h"
#include "JTK/desktop/render/Rendering.h"
#include "JTK/imaging/PNG.h"
#include "JTK/platform/Dispatch.h"

using namespace jtk;

namespace {

void say(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

void writeRendering(const std::string& path) {
    auto bytes = imaging::encodePNG(desktop::renderScreen());
    std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
    say("rendered");
}

}  // namespace

int main(int argc, char** argv) {
    services::setProcessArguments(argc, argv);
    auto application = desktop::Application::shared();
    application->setName("viewerTestApp");

    auto window = desktop::Window::make(platform::Rect{200, 300, 420, 200}, "Viewer test");
    auto content = window->desktopContentView();
    auto press = std::make_shared<desktop::Button>(platform::Rect{20, 140, 120, 30}, "Press me");
    press->setAction([](desktop::Button&) { say("pressed"); });
    auto field = std::make_shared<desktop::TextField>(platform::Rect{20, 90, 380, 26});
    auto alert = std::make_shared<desktop::Button>(platform::Rect{160, 140, 120, 30}, "Alert");
    alert->setAction([](desktop::Button&) {
        desktop::Alert modal;
        modal.setMessageText("A modal alert");
        modal.addButtonWithTitle("OK");
        say("alert answered " + std::to_string(modal.runModal()));
    });
    for (const auto& view : std::initializer_list<std::shared_ptr<desktop::View>>{press, field, alert})
        content->addSubview(view);
    window->makeKeyAndOrderFront();

    // Commands come on their own thread; their work runs on the main queue,
    // which turns in every mode (also while the alert is up).
    std::thread([field] {
        std::string line;
        while (std::getline(std::cin, line)) {
            if (line == "text")
                platform::dispatchAsyncMain([field] { say("text: " + field->stringValue()); });
            else if (line.starts_with("render "))
                platform::dispatchAsyncMain([path = line.substr(7)] { writeRendering(path); });
        }
    }).detach();
    platform::dispatchAsyncMain([] { say(std::string("ready viewer=") + (desktop::isViewerAttached() ? "1" : "0")); });

    int status = application->run();
    say("ended text: " + field->stringValue());
    // The command thread may still be reading: end without static destructors.
    std::_Exit(status);
}
