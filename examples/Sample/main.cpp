// The Sample application on the embedded desktop. Launched with an argument
// containing "uxtest" it runs its UI tests; otherwise it shows its data and,
// with no person at a headless desktop to quit it, ends after a few seconds
// (SAMPLE_RUN_SECONDS overrides how many; 0 keeps it running).
#include <cstdio>
#include <cstdlib>
#include <string>

#include "JTK/JTKTestSuite.h"
#include "SampleApp.h"
#include "JTK/desktop/Application.h"
#include "JTK/services/ProcessInfo.h"
#include "JTK/platform/Dispatch.h"

int main(int argc, char** argv) {
    jtk::services::setProcessArguments(argc, argv);
    auto application = jtk::desktop::Application::shared();
    sample::SampleApp app;

    jtk::JTKTestSuite::runTests();
    // Load once the run loop turns, after a test run has put its data in place.
    jtk::platform::dispatchAsyncMain([&app] { app.loadData(); });

    if (!jtk::JTKTestSuite::isTesting()) {
        double seconds = 3;
        if (const char* text = std::getenv("SAMPLE_RUN_SECONDS")) seconds = std::atof(text);
        jtk::platform::dispatchAsyncMain([&app] {
            std::printf("Sample: %s\n", app.mainWindow()->title().c_str());
            std::fflush(stdout);
        });
        if (seconds > 0) jtk::platform::dispatchAfterMain(seconds, [application] { application->terminate(0); });
    }
    return application->run();
}
