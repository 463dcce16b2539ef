// A small application for the run driver's process tests. It runs a test
// launch on the embedded desktop; DRIVER_MODE (comma-separated flags) picks
// how the run behaves and ends. "untrusted" starts without accessibility trust
// and grants it 1.25 s later; "nodata"/"noshots" drop the test data/screenshot
// path; "showalert" prints the final alert's texts once it is up. In testEnd:
// "end" calls endTests, "fatal" makes a fatal stop, "check" fails a check,
// "exit" calls exit(3), "quit" quits with status 4,
// "throw" throws past everyone, "abort" aborts, "crash" takes SIGSEGV, "rebuilt" replaces the
// executable as a rebuild does, and "wait" writes the process id to the file
// "ready" and waits for a file "go". DRIVER_TEST_DATA and DRIVER_SCREENSHOTS
// name the folders. Every line the parent checks goes to standard output.
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>

#include "run/JTKConsole.h"
#include "run/JTKProcessEnd.h"
#include "recorder/JTKRecorderController.h"
#include "JTK/JTKOptions.h"
#include "JTK/JTKCheck.h"
#include "JTK/JTKRegistry.h"
#include "JTK/JTKTestSuite.h"
#include "elements/JTKViewTexts.h"
#include "JTK/desktop/Accessibility.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/Window.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/services/ProcessInfo.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Notifications.h"

using namespace jtk;

namespace {

std::atomic<bool> setupRan{false};

bool hasFlag(const std::string& flag) {
    const char* mode = std::getenv("DRIVER_MODE");
    std::string flags = "," + std::string(mode ? mode : "") + ",";
    return flags.find("," + flag + ",") != std::string::npos;
}

platform::Value environmentText(const char* name) {
    const char* value = std::getenv(name);
    return value ? platform::Value(std::string(value)) : platform::Value();
}

void printAlertTexts() {
    std::string texts;
    for (const auto& view : JTKTestSuite::appViews())
        for (const auto& text : {viewTitle(view), viewValue(view)})
            if (!text.empty()) texts += "[" + text + "]";
    jtkPrintLine("alert shows " + texts);
}

}  // namespace

JTK_PROVIDER(jtkTestDataPath) { return hasFlag("nodata") ? platform::Value() : environmentText("DRIVER_TEST_DATA"); }
JTK_PROVIDER(jtkTestDataPathBackup) { return platform::Value("/nonexistent/backup"); }
JTK_PROVIDER(jtkScreenshotsPath) { return hasFlag("noshots") ? platform::Value() : environmentText("DRIVER_SCREENSHOTS"); }
JTK_PROVIDER(jtkThisFilePath) { return platform::Value(__FILE__); }

JTK_PROVIDER(jtkLaunchShellCommands) {
    // The second command shows that the test data is in place before launch commands run.
    auto list = "ls \"$XDG_DATA_HOME/" + platform::sharedApplication()->name() + "\"";
    return platform::Value(platform::ValueList{"echo launched", list, "true"});
}
JTK_PROVIDER(jtkTeardownShellCommands) { return platform::Value(platform::ValueList{"echo 'teardown \"done\"'"}); }

// Built entry by entry: braced lists of values trip a false uninitialised-use warning of GCC 12.
static platform::Value optionEntry(int64_t option, platform::Value value) {
    platform::ValueDictionary options;
    options.emplace_back(platform::Value(option), std::move(value));
    return platform::Value(std::move(options));
}

JTK_PROVIDER(jtkTestOptions) {
    platform::ValueDictionary tests;  // testD's entry is replaced whole by the later provider below
    for (auto [test, value] : {std::pair<const char*, int64_t>{"testB", -1}, {"testC", 5}, {"testD", 9}})
        tests.emplace_back(platform::Value(test), optionEntry(1, platform::Value(value)));
    return platform::Value(std::move(tests));
}
// testA and testB are quick, but a loaded or instrumented machine can stretch
// them past the millisecond after which captures follow: they skip
// screenshots, so that the lines of a run stay the same everywhere.
JTK_PROVIDER(jtkTestOptionsQuick) {
    return jtk::testOptions({{"testA", {.skipScreenshots = true}}, {"testB", {.order = -1, .skipScreenshots = true}}});
}
JTK_PROVIDER(jtkTestOptionsMore) {
    platform::ValueDictionary tests;
    tests.emplace_back(platform::Value("testD"), optionEntry(0, platform::Value(true)));
    return platform::Value(std::move(tests));
}

JTK_METHOD(jtkSetup) {
    setupRan = true;
    auto file = JTKRecorderController::shared().recordingFile();
    jtkPrintLine("setup prompts=" + std::to_string(desktop::accessibilityPromptCount()) +
                 " recorder=" + (file ? file->filename().string() : "none"));
}

JTK_TEST(testA) {
    std::ifstream in(*JTKTestSuite::appSupportURL() / "a.txt");
    std::string content;
    std::getline(in, content);
    jtkPrintLine("testA sees " + content);
}

static void waitForGo() {
    std::ofstream("ready.partial") << getpid() << "\n";
    std::rename("ready.partial", "ready");
    while (!std::ifstream("go")) std::this_thread::sleep_for(std::chrono::milliseconds(50));
}

[[noreturn]] static void sleepForever() {
    while (true) std::this_thread::sleep_for(std::chrono::seconds(1));
}

JTK_TEST(testEnd) {
    if (hasFlag("wait")) waitForGo();
    if (hasFlag("rebuilt")) {
        auto self = std::filesystem::read_symlink("/proc/self/exe");
        std::filesystem::remove(self);
        std::ofstream(self) << "rebuilt\n";
    }
    if (hasFlag("end")) JTKTestSuite::endTests();
    if (hasFlag("fatal")) jtkFatalStop("driver app stopped on purpose", "driverTestApp:testEnd");
    if (hasFlag("check")) {
        std::string shown = "Count: 1";
        JTK_CHECK_EQ(shown, "Count: 2");
    }
    if (hasFlag("exit")) std::exit(3);
    if (hasFlag("quit")) {
        desktop::Application::shared()->terminate(4);
        sleepForever();
    }
    if (hasFlag("throw")) throw std::runtime_error("thrown on purpose");
    if (hasFlag("abort")) std::abort();
    if (hasFlag("crash")) raise(SIGSEGV);
}

JTK_TEST(testB) { jtkPrintLine("testB"); }

// Both longer than a millisecond: screenshots follow testC; testD's options skip them.
static void slowTest(const char* name) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    jtkPrintLine(name);
}
JTK_TEST(testC) { slowTest("testC"); }
JTK_TEST(testD) { slowTest("testD"); }

JTK_METHOD(tearDownAll) { jtkPrintLine("tearDownAll"); }
JTK_METHOD(tearDown) { jtkPrintLine("tearDown"); }

int main(int argc, char** argv) {
    services::setProcessArguments(argc, argv);
    auto application = desktop::Application::shared();

    platform::defaultNotificationCenter().addObserver(
        "", platform::Value(), platform::DeliveryQueue::postingThread, [](const platform::Notification& note) {
            if (!note.name.starts_with("JTKTestSuite")) return;
            const auto* text = note.object.text();
            jtkPrintLine("notification " + note.name + (text ? " " + *text : std::string()));
            if (note.name == "JTKTestSuiteAllTestsCompleted") {
                // Steady-clock nanoseconds: the same clock in parent and child.
                jtkPrintLine("completed at " + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()));
                if (hasFlag("showalert")) platform::dispatchAfterMain(1.0, printAlertTexts);
            }
        });

    if (hasFlag("window")) {
        static auto window = desktop::Window::make(platform::Rect{100, 100, 300, 200}, "Main");
        window->desktopContentView()->addSubview(std::make_shared<desktop::Button>(platform::Rect{10, 10, 80, 20}, "Save"));
        window->makeKeyAndOrderFront();
    }
    if (hasFlag("untrusted")) desktop::setAccessibilityTrusted(false);
    if (hasFlag("untrusted")) platform::dispatchAfterMain(1.25, [] {
        jtkPrintLine("trust granted");
        desktop::setAccessibilityTrusted(true);
    });

    JTKTestSuite::runTests();
    // A launch that started no run ends itself after a while, with status 5.
    // Without the trust poll a run has started before runTests returns.
    platform::dispatchAfterMain(hasFlag("untrusted") ? 10.0 : 1.0, [application] { if (!setupRan) application->terminate(5); });
    return application->run();
}
