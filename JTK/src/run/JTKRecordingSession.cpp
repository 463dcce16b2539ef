#include "run/JTKRecordingSession.h"

#include <atomic>
#include <chrono>
#include <thread>

#include "JTK/JTKNotifications.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Notifications.h"
#include "run/JTKConsole.h"
#include "run/JTKRunEnd.h"
#include "run/JTKRunOptions.h"

namespace jtk {

namespace {

std::atomic<bool> sessionOpen{false};

}  // namespace

bool jtkRecordingLaunch() { return jtkRunOptions().record; }

std::string jtkRecordingLaunchRefusal(bool hasRecordingFile) {
    if (!jtkRecordingLaunch() || hasRecordingFile) return {};
    return "JTK: --jtk-record needs the tests' jtkThisFilePath provider (the test source file recordings go into); "
           "no test ran";
}

void jtkKeepRunningForRecording(const std::string& applicationName) {
    sessionOpen = true;
    // The status item's title turns to "Record UX Test".
    platform::defaultNotificationCenter().post(JTKTestSuiteAllTestsCompleted);
    jtkPrintLine("JTK: ready to record: choose \"Record UX Test\" to start a recording and \"Stop Recording...\" to "
                 "end it; quit " + applicationName + " to end the run");
    while (true) std::this_thread::sleep_for(std::chrono::hours(1));
}

bool jtkRecordingSessionOpen() { return sessionOpen; }

void jtkEndRecordingSession(int status) {
    // The program quits on its main thread, where the recorder's stop runs inline.
    if (auto recorder = JTKTestSuite::recorder(); recorder && platform::isMainThread()) {
        recorder->stop();
        JTKTestSuite::setRecorder(nullptr);
    }
    jtkPrintLine("JTK: the recording session ended: the program quit with status " + std::to_string(status));
    jtkEndRun(status, {});
}

}  // namespace jtk
