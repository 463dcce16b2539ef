// The test loop: runs on "GUITestQueue", one test after another, and hops to
// the main thread for the screenshots, the comparison window and the end.
#include "run/JTKTestRun.h"

#include <chrono>
#include <thread>

#include "run/JTKConsole.h"
#include "run/JTKMainThread.h"
#include "JTK/JTKNotifications.h"
#include "run/JTKShell.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Notifications.h"
#include "screenshots/JTKComparisonWindow.h"
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

// One line on how the captures of the run went and where to look.
void printScreenshotSummary() {
    auto root = JTKTestSuite::jtkScreenshotsURL();
    if (!root) return;
    auto counts = jtkOnMainThread([] { return JTKScreenshotCapture::counts(); });
    jtkPrintLine(JTKScreenshotCapture::summaryLine(counts, *root / JTKTestSuite::jtkTestVersion()));
}

void openComparisonWindow() {
    auto root = JTKTestSuite::jtkScreenshotsURL();
    if (!root) return;  // test code cleared the root; there is nothing to compare
    auto versionFolder = *root / JTKTestSuite::jtkTestVersion();
    jtkOnMainThread([&] { JTKComparisonWindow::shared()->showComparisons(versionFolder); });
}

}  // namespace

void jtkRunTestLoop(const JTKMethodList& methods, const JTKTestOptions& options,
                    const std::vector<std::string>& teardownCommands) {
    using Clock = std::chrono::steady_clock;
    JTKTestSuite::sleepUntilIdle();

    for (const auto& test : jtkOrderedTests(methods, options)) {
        postStatus("Running " + test.name + "...");
        auto start = Clock::now();
        jtkPrintLine("JTK: Running test " + test.name);
        jtkSetCurrentTest(test.name);
        if (test.invoke) test.invoke();
        jtkSetCurrentTest({});

        if (skipsScreenshots(options, test.name)) continue;
        if (std::chrono::duration<double>(Clock::now() - start).count() <= 0.001) continue;
        postStatus("Capturing screenshots...");
        std::this_thread::sleep_for(std::chrono::seconds(2));
        auto tag = jtkTestTag(test.name);
        jtkOnMainThread([&] { JTKScreenshotCapture::captureScreenshots(tag); });
    }

    printScreenshotSummary();
    postStatus("Processing...");
    if (const auto* tearDown = jtkFirstMethodWithPrefix(methods, "tearDown"); tearDown && tearDown->invoke) {
        tearDown->invoke();
    }
    jtkRunShellCommandList(teardownCommands);
    openComparisonWindow();
    platform::defaultNotificationCenter().post(JTKTestSuiteAllTestsCompleted);
    jtkOnMainThread([] { jtkCompleteRun(); });
    // jtkCompleteRun ends the process; this thread waits for that.
    while (true) std::this_thread::sleep_for(std::chrono::hours(1));
}

}  // namespace jtk
