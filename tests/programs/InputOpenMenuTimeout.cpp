// Child program: installs test data (argument 1) in place of the user's
// Application Support folder, then calls openMenu on a view that opens no
// menu, from a test queue while the main thread runs the application. The
// run is expected to end there; "returned" is printed only if it does not.
#include <cstdio>
#include <memory>

#include "JTK/JTKElement.h"
#include "run/JTKMainThread.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/View.h"
#include "JTK/desktop/Window.h"
#include "JTK/platform/Dispatch.h"

using namespace jtk;

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: InputOpenMenuTimeout <test data folder>\n");
        return 2;
    }
    auto app = desktop::Application::shared();
    JTKTestSuite::setJtkTestDataURL(std::filesystem::path(argv[1]));
    JTKTestSuite::copyTestDataToApplicationSupport();
    std::printf("test data installed\n");
    std::fflush(stdout);

    auto window = desktop::Window::make(platform::Rect{100, 100, 300, 200}, "Plain");
    auto plain = std::make_shared<desktop::View>(platform::Rect{20, 20, 100, 50});
    window->desktopContentView()->addSubview(plain);
    window->makeKeyAndOrderFront();

    auto queue = platform::makeSerialQueue("GUITestQueue");
    queue->async([weakPlain = std::weak_ptr<desktop::View>(plain)] {
        JTKElement element(weakPlain.lock());
        element.setElementLookupDescription("Plain");
        element.openMenu(0);
        std::printf("returned\n");
        std::fflush(stdout);
        desktop::Application::shared()->terminate(0);
    });
    return app->run();
}
