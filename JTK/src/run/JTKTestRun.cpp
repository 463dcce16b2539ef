// The test loop: runs on "GUITestQueue", one test after another, and hops to
// the main thread for the screenshots, the comparison window and the end.
// Each test's result is recorded as it ends; a strict run goes on after a
// failed test, any other run ends at the first failure, as it always did.
#include "run/JTKTestRun.h"

#include <chrono>
#include <exception>
#include <thread>

#include "JTK/JTKNotifications.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Notifications.h"
#include "run/JTKConsole.h"
#include "run/JTKMainThread.h"
#include "run/JTKRecordingSession.h"
#include "run/JTKRunEnd.h"
#include "run/JTKRunOptions.h"
#include "run/JTKShell.h"
#include "run/JTKTestFailure.h"
#include "run/JTKTestResults.h"
#include "screenshots/JTKComparisonWindow.h"
#include "screenshots/JTKFailurePictures.h"
#include "screenshots/JTKScreenshotCapture.h"

namespace jtk {

namespace {

void postStatus(const std::string& text) {
    platform::defaultNotificationCenter().post(JTKTestSuiteStatusUpdate, platform::Value(text));
}

bool skipsScreenshots(const JTKTestOptions& options, const std::string& testName) {
    auto test = options.find(testName);
    if (test == options.end()) return false;
    auto skip = test->second.find(JTKTestOption::skipScreenshots);
    return skip != test->second.end() && skip->second.kind() == platform::Value::Kind::boolean &&
           skip->second.boolean().value_or(false);
}

void openComparisonWindow() {
    auto root = JTKTestSuite::jtkScreenshotsURL();
    if (!root) return;  // test code cleared the root; there is nothing to compare
    auto versionFolder = *root / JTKTestSuite::jtkTestVersion();
    jtkOnMainThread([&] { JTKComparisonWindow::shared()->showComparisons(versionFolder); });
}

// Runs the test's body. What escapes it fails the test: a failure of a
// strict run (already recorded) or an exception of the test's own, which
// outside a strict run ends the run as an uncaught exception always did.
void invokeTest(const JTKClassMethod& test) {
    JTKFailuresThrowScope failuresThrow(jtkRunOptions().strict);
    std::string escaped;
    try {
        if (test.invoke) test.invoke();
        return;
    } catch (const JTKTestFailure&) {
        return;
    } catch (const std::exception& error) {
        escaped = std::string("an uncaught exception: ") + error.what();
    } catch (...) {
        escaped = "an uncaught exception";
    }
    JTKTestResults::shared().failRunningTest(escaped, {}, {});
    if (!jtkRunOptions().strict) {
        jtkPrintLine("Run ended by " + escaped);
        jtkEndRun(128 + 6, escaped);
    }
}

// The screenshots after a test, filed with the test's results: a view that
// looks different fails the test and its new image goes with the result.
void captureScreenshots(const std::string& testName) {
    postStatus("Capturing screenshots...");
    std::this_thread::sleep_for(std::chrono::seconds(2));
    auto tag = jtkTestTag(testName);
    auto report = jtkOnMainThread([&] { return JTKScreenshotCapture::captureScreenshots(tag); });
    auto& results = JTKTestResults::shared();
    results.addScreenshots({report.storedAsNew, report.matched, report.differed, report.underThreshold,
                            report.notStored});
    for (const auto& file : report.differing) results.attach(file);
    if (report.differed > 0)
        results.failRunningTest(std::to_string(report.differed) + " screenshot" + (report.differed == 1 ? "" : "s") +
                                    " differ from the accepted images",
                                {}, {});
    if (report.notStored > 0)
        results.failRunningTest(std::to_string(report.notStored) + " screenshot" + (report.notStored == 1 ? "" : "s") +
                                    " could not be stored",
                                {}, {});
}

// The time limit of every test: a thread that fails the running test once it
// has run too long, and ends the run (the test cannot be stopped otherwise).
void watchTimeLimit(double limit) {
    std::thread([limit] {
        while (true) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            auto seconds = JTKTestResults::shared().runningSeconds();
            if (!seconds || *seconds <= limit) continue;
            std::string why = "over its time limit of " + jtkDurationText(limit);
            // The test may have ended just now: then there is nothing to stop.
            if (!JTKTestResults::shared().failRunningTest(why, {}, {})) continue;
            jtkEndRun(1, why);
        }
    }).detach();
}

}  // namespace

void jtkRunTestLoop(const JTKMethodList& tests, const JTKTestOptions& options, const JTKMethodList& methods,
                    const std::vector<std::string>& teardownCommands) {
    using Clock = std::chrono::steady_clock;
    auto& results = JTKTestResults::shared();
    if (auto root = JTKTestSuite::jtkScreenshotsURL()) results.setScreenshotFolder(*root / JTKTestSuite::jtkTestVersion());
    if (auto limit = jtkRunOptions().timeLimit) watchTimeLimit(*limit);
    JTKTestSuite::sleepUntilIdle();

    for (size_t index = 0; index < tests.size(); ++index) {
        const auto& test = tests[index];
        postStatus("Running " + test.name + "...");
        auto start = Clock::now();
        jtkPrintLine("JTK: Running test " + test.name);
        results.testStarted(index);
        invokeTest(test);

        bool ranLongEnough = std::chrono::duration<double>(Clock::now() - start).count() > 0.001;
        if (results.runningTestFailed()) {
            for (const auto& picture : jtkTakeFailurePictures(jtkRunOptions().picturesFolder(), test.name))
                results.attach(picture);
        } else if (!skipsScreenshots(options, test.name) && ranLongEnough) {
            captureScreenshots(test.name);
        }
        results.testFinished();
    }

    postStatus("Processing...");
    if (const auto* tearDown = jtkFirstMethodWithPrefix(methods, "tearDown"); tearDown && tearDown->invoke) {
        tearDown->invoke();
    }
    jtkRunShellCommandList(teardownCommands);
    if (jtkRecordingLaunch()) {
        // The results end with the run, when the program quits.
        auto application = platform::sharedApplication();
        jtkKeepRunningForRecording(application ? application->name() : std::string("the program"));
    }
    results.end({});
    if (jtkRunOptions().ci) {
        // Nothing waits for a person: no comparison window, no final alert.
        platform::defaultNotificationCenter().post(JTKTestSuiteAllTestsCompleted);
        jtkEndRun(0, {});
    }
    openComparisonWindow();
    platform::defaultNotificationCenter().post(JTKTestSuiteAllTestsCompleted);
    jtkOnMainThread([] { jtkCompleteRun(); });
    // jtkCompleteRun ends the process; this thread waits for that.
    while (true) std::this_thread::sleep_for(std::chrono::hours(1));
}

}  // namespace jtk
