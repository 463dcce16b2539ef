// The end of a run: the final alert (with a 4-second timer that ends the run
// while the alert is still up), endTests and the alert timer's timeout.
#include <memory>

#include "run/JTKRunEnd.h"
#include "run/JTKTestRun.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Alert.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/RunLoop.h"

namespace jtk {

void jtkCompleteRun() {
    // Common modes: the timer also fires while the alert runs modally.
    static std::shared_ptr<platform::Timer> timer;
    timer = platform::scheduleTimer(4.0, false, [](platform::Timer&) { JTKTestSuite::timeout(); }, true);

    auto application = platform::sharedApplication();
    std::string name = application ? application->name() : std::string();
    auto alert = platform::makeAlert();
    alert->setMessageText("All Tests Completed Succesfully!");
    alert->setInformativeText("Application data has been restored and " + name + " will now terminate.");
    alert->addButtonWithTitle("Quit");
    alert->runModal();
    jtkRestoreAndExit(0);
}

void JTKTestSuite::endTests() { jtkRestoreAndExit(0); }

void JTKTestSuite::timeout() { jtkRestoreAndExit(0); }

}  // namespace jtk
