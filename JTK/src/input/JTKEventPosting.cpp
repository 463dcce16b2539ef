#include "input/JTKEventPosting.h"

#include <chrono>
#include <thread>

#include "run/JTKMainThread.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Screen.h"

namespace jtk {

platform::Point JTKEventPosting::eventPoint(platform::Point screenPoint) {
    // The last containing screen wins; only its height matters, not its origin.
    double height = 0;
    for (const auto& screen : platform::screens()) {
        if (platform::pointInRect(screenPoint, screen.frame)) height = screen.frame.height();
    }
    return {screenPoint.x, height - screenPoint.y - 1};
}

void JTKEventPosting::activateApplicationIfNeeded() {
    // The application object is UI state: read and changed on the main thread.
    jtkOnMainThread([] {
        auto application = platform::sharedApplication();
        if (application && !application->isActive()) application->activateIgnoringOtherApps(true);
    });
}

void JTKEventPosting::moveCursor(platform::Point eventPoint) {
    platform::moveCursorToPoint(platform::mainDisplayID(), eventPoint);
}

void JTKEventPosting::pause(uint32_t microseconds) {
    // Every pause follows posted input: first let it arrive where it goes.
    platform::settleInput();
    std::this_thread::sleep_for(std::chrono::microseconds(microseconds));
}

std::shared_ptr<platform::EventSource> JTKEventPosting::makeEventSource() {
    return platform::createEventSource(platform::EventSourceState::hidSystemState);
}

bool JTKEventPosting::handOverToRecorder(const JTKElement* element, const std::string& signature,
                                         const std::vector<JTKStringConvertable>& arguments, bool chained) {
    auto recorder = JTKTestSuite::recorder();
    if (!recorder) return false;
    recorder->record(element, signature, arguments, chained);
    return true;
}

}  // namespace jtk
