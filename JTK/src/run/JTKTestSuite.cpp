// JTKTestSuite's entry: whether this launch is a test launch, the trust poll,
// the configuration read from the test extension, and the hand-over of the
// run to "GUITestQueue".
#include "JTK/JTKTestSuite.h"

#include <atomic>
#include <filesystem>
#include <mutex>

#include "run/JTKConsole.h"
#include "run/JTKMainThread.h"
#include "run/JTKProcessEnd.h"
#include "recorder/JTKRecorderController.h"
#include "run/JTKRecordingSession.h"
#include "run/JTKRunConfiguration.h"
#include "run/JTKRunEnd.h"
#include "run/JTKShell.h"
#include "run/JTKRunOptions.h"
#include "run/JTKTestResults.h"
#include "run/JTKTestRun.h"
#include "run/JTKTestSelection.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Process.h"
#include "JTK/platform/RunLoop.h"

namespace jtk {

namespace fs = std::filesystem;

namespace {

// Written on the main thread before the test queue starts, but test code may
// set and read the URLs and the recorder from any thread: one lock for all.
struct SuiteState {
    std::mutex mutex;
    JTKTestSuite::URL testData, userDefaults, screenshots;
    std::shared_ptr<JTKTestRecorder> recorder;
};

SuiteState& suiteState() {
    static SuiteState instance;
    return instance;
}

JTKTestSuite::URL readURL(JTKTestSuite::URL SuiteState::*member) {
    std::lock_guard lock(suiteState().mutex);
    return suiteState().*member;
}

void writeURL(JTKTestSuite::URL SuiteState::*member, JTKTestSuite::URL url) {
    std::lock_guard lock(suiteState().mutex);
    suiteState().*member = std::move(url);
}

// A file URL of a path: absolute, as the path is read from the working directory.
fs::path fileURL(const std::string& path) {
    std::error_code error;
    auto absolute = fs::absolute(path, error);
    return error ? fs::path(path) : absolute;
}

// Main-thread state of the trust poll and the run.
std::shared_ptr<platform::Timer> trustTimer;
std::shared_ptr<platform::SerialQueue> testQueue;
std::atomic<bool> runStarted{false};

// Steps from the method list on: read the configuration, prepare the
// environment and hand the run to the test queue.
void startRun() {
    JTKMethodList methods = JTKRegistry::methods();
    auto options = jtkMergeTestOptions(methods);
    auto chosen = jtkChooseTests(methods, options);
    if (auto refusal = jtkRecordingLaunchRefusal(jtkTextProvider(methods, "jtkThisFilePath").has_value()); !refusal.empty()) {
        jtkPrintLine(refusal);
        jtkExitProcess(2);
    }

    if (auto path = jtkTextProvider(methods, "jtkUserDefaultsPath")) {
        JTKTestSuite::setJtkTestUserDefaultsURL(fileURL(*path));
    }
    auto testDataPath = jtkTextProvider(methods, "jtkTestDataPath");
    if (!testDataPath) {
        jtkPrintLine("No test data path specified in JTKTestSuite extension! - Testing cancelled");
        return;
    }
    JTKTestSuite::setJtkTestDataURL(fileURL(*testDataPath));
    auto screenshotsPath = jtkTextProvider(methods, "jtkScreenshotsPath");
    if (!screenshotsPath) {
        jtkFatalStop("No screenshot storage path specified in JTKTestSuite extension!", "JTK/JTKTestSuite");
    }
    auto screenshots = fileURL(*screenshotsPath);
    JTKTestSuite::setJtkScreenshotsURL(screenshots);

    // The screenshot root's parent must exist: a root that points nowhere
    // means the paths were made on another machine.
    auto root = screenshots.lexically_normal();
    if (!root.has_filename()) root = root.parent_path();
    std::error_code error;
    if (!fs::exists(root.parent_path(), error)) {
        jtkPrintLine("This app wasn't compiled on this machine. Crashing now so we don't copy files to weird places");
        jtkPrintLine("JTK: the screenshot folder " + screenshots.string() + " has no parent folder; no test ran");
        jtkExitProcess(1);
    }

    auto launchCommands = jtkTextListProvider(methods, "jtkLaunchShellCommands");
    auto teardownCommands = jtkTextListProvider(methods, "jtkTeardownShellCommands");

    runStarted = true;
    jtkGuardProcessExits();
    JTKTestSuite::copyTestDataToApplicationSupport();
    jtkRunShellCommandList(launchCommands);

    if (auto filePath = jtkTextProvider(methods, "jtkThisFilePath")) {
        auto file = fileURL(*filePath);
        jtkOnMainThread([&] { JTKRecorderController::shared().configure(file); });
    }

    JTKTestResults::shared().begin(platform::sharedApplication()->name(), chosen.tests, jtkRunOptions());
    if (const auto* setup = jtkMethodNamed(methods, "jtkSetup"); setup && setup->invoke) setup->invoke();

    testQueue = platform::makeSerialQueue("GUITestQueue");
    jtkGuardProcessExits();  // again: before the statics made since the first guard
    testQueue->async([tests = std::move(chosen.tests), methods = std::move(methods), options = std::move(options),
                      teardownCommands = std::move(teardownCommands)] {
        jtkRunTestLoop(tests, options, methods, teardownCommands);
    });
}

}  // namespace

// Nothing of the user's has been touched when this ends the process.
JTKTestSelection jtkChooseTests(const JTKMethodList& methods, const JTKTestOptions& options) {
    auto refuse = [](const std::vector<std::string>& lines) {
        for (const auto& line : lines) jtkPrintLine(line);
        jtkPrintLine("JTK: no test ran; nothing was changed");
        jtkExitProcess(2);
    };
    if (!jtkRunOptionErrors().empty()) refuse(jtkRunOptionErrors());
    if (auto duplicates = jtkDuplicateTestNames(methods); !duplicates.empty()) refuse(duplicates);
    const auto& runOptions = jtkRunOptions();
    // A recording session starts from the program's first state: only the tests a filter names run first.
    if (runOptions.record && runOptions.filter.empty()) return {};
    auto chosen = jtkSelectTests(jtkOrderedTests(methods, options), runOptions.filter, runOptions.shardIndex,
                                 runOptions.shardCount);
    if (chosen.refusal) refuse({*chosen.refusal});
    if (runOptions.list) {
        for (const auto& test : chosen.tests) jtkPrintLine(test.name);
        jtkExitProcess(0);
    }
    if (chosen.emptyNote) {
        jtkPrintLine(*chosen.emptyNote);
        jtkExitProcess(0);
    }
    return chosen;
}

bool JTKTestSuite::isTesting() { return platform::argumentsRequestTesting(platform::processArguments()); }

void JTKTestSuite::runTests() {
    if (!isTesting()) return;
    // One run per process: a second call while a run is under way does nothing.
    if (runStarted) return;

    typeText("");  // brings the application to the front
    if (!platform::isProcessTrusted()) {
        platform::isProcessTrustedWithOptions(true);
        if (!trustTimer || !trustTimer->isValid()) {
            trustTimer = platform::scheduleTimer(0.5, true, [](platform::Timer&) { requestTimer(); }, true);
        }
        return;
    }
    startRun();
}

void JTKTestSuite::requestTimer() {
    if (!platform::isProcessTrustedWithOptions(false)) return;
    if (trustTimer) trustTimer->invalidate();
    trustTimer.reset();
    runTests();
}

JTKTestSuite::URL JTKTestSuite::jtkTestDataURL() { return readURL(&SuiteState::testData); }
void JTKTestSuite::setJtkTestDataURL(URL url) { writeURL(&SuiteState::testData, std::move(url)); }
JTKTestSuite::URL JTKTestSuite::jtkTestUserDefaultsURL() { return readURL(&SuiteState::userDefaults); }
void JTKTestSuite::setJtkTestUserDefaultsURL(URL url) { writeURL(&SuiteState::userDefaults, std::move(url)); }
JTKTestSuite::URL JTKTestSuite::jtkScreenshotsURL() { return readURL(&SuiteState::screenshots); }
void JTKTestSuite::setJtkScreenshotsURL(URL url) { writeURL(&SuiteState::screenshots, std::move(url)); }

std::shared_ptr<JTKTestRecorder> JTKTestSuite::recorder() {
    std::lock_guard lock(suiteState().mutex);
    return suiteState().recorder;
}

void JTKTestSuite::setRecorder(std::shared_ptr<JTKTestRecorder> recorder) {
    std::shared_ptr<JTKTestRecorder> previous;
    {
        std::lock_guard lock(suiteState().mutex);
        previous = std::exchange(suiteState().recorder, std::move(recorder));
    }
    // previous is released outside the lock: its destructor may read the suite's state.
}

bool JTKTestSuite::recording() { return recorder() != nullptr; }

std::string JTKTestSuite::jtkTestVersion() { return jtkVersionTag(platform::operatingSystemVersionString()); }

}  // namespace jtk
