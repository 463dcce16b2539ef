// The Sample application on the embedded desktop. Launched with an argument
// containing "uxtest" it runs its UI tests; otherwise it shows its data and,
// with no person at a headless desktop to quit it, ends after a few seconds
// (SAMPLE_RUN_SECONDS overrides how many; 0 keeps it running).
#include <cstdio>
#include <cstdlib>
#include <string>

#include "JTK/JTKTestSuite.h"
#include "SampleApp.h"
#include "desktop/Application.h"
#include "desktop/ProcessInfo.h"
#include "platform/Dispatch.h"

int main(int argc, char** argv) {
    desktop::setProcessArguments(argc, argv);
    auto application = desktop::Application::shared();
    sample::SampleApp app;

    JTKTestSuite::runTests();
    // Load once the run loop turns, after a test run has put its data in place.
    platform::dispatchAsyncMain([&app] { app.loadData(); });

    if (!JTKTestSuite::isTesting()) {
        double seconds = 3;
        if (const char* text = std::getenv("SAMPLE_RUN_SECONDS")) seconds = std::atof(text);
        platform::dispatchAsyncMain([&app] {
            std::printf("Sample: %s\n", app.mainWindow()->title().c_str());
            std::fflush(stdout);
        });
        if (seconds > 0) platform::dispatchAfterMain(seconds, [application] { application->terminate(0); });
    }
    return application->run();
}
