// jtk-review: reviews the screenshots of a run made elsewhere. The comparison
// window (in the viewer) for a person at a display; from the command line,
// without one: list, accept, discard, prune and an HTML report (the usage
// text in Arguments.cpp lists them). Lines a build script reads go to
// standard output, tab-separated, one per file; bad use or input exits 2
// with one line on standard error.
#include <cstdio>
#include <filesystem>
#include <string>

#include "Arguments.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/Application.h"
#include "JTK/desktop/Viewer.h"
#include "JTK/imaging/FileDifference.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Notifications.h"
#include "JTK/platform/Window.h"
#include "JTK/review/AtomicFile.h"
#include "JTK/review/HtmlReport.h"
#include "JTK/review/StoreChanges.h"
#include "JTK/services/ProcessInfo.h"
#include "screenshots/JTKComparisonWindow.h"

namespace fs = std::filesystem;
using jtk::JTKComparisonWindow;
using namespace jtk::review;

namespace {

int fail(const std::string& message) {
    std::fprintf(stderr, "jtk-review: %s\n", message.c_str());
    return 2;
}

void say(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

int list(const fs::path& versionFolder) {
    int pending = 0;
    for (const auto& test : JTKComparisonWindow::scanComparisons(versionFolder)) {
        for (const auto& [accepted, newCapture] : test.pairs) {
            auto result = jtk::imaging::compareImageFiles(accepted, newCapture);
            std::string count = result.outcome == jtk::imaging::FileDifference::Outcome::badInput
                                    ? "unreadable"
                                    : std::to_string(result.differingPixels);
            say(test.testTag + "\t" + accepted.filename().string() + "\t" + count);
            ++pending;
        }
    }
    return pending ? 1 : 0;
}

// Opens the window in the viewer and runs until the person closes it (or it
// closes itself after the last accept).
int review(const fs::path& versionFolder, int argc, char** argv) {
    jtk::services::setProcessArguments(argc, argv);
    auto application = jtk::desktop::Application::shared();
    if (!jtk::desktop::attachViewer()) return fail("cannot open the viewer window (is DISPLAY set?)");
    auto controller = JTKComparisonWindow::shared();
    jtk::platform::dispatchAsyncMain([=] {
        controller->showComparisons(versionFolder);
        auto window = controller->window();
        if (!window || !window->isVisible()) {
            application->terminate(window ? 0 : 2);
            return;
        }
        jtk::platform::defaultNotificationCenter().addObserver(
            jtk::platform::windowWillCloseNotification, jtk::platform::Value(window),
            jtk::platform::DeliveryQueue::postingThread,
            [application](const jtk::platform::Notification&) { application->terminate(0); });
    });
    return application->run();
}

int window(const fs::path& versionFolder, int argc, char** argv) {
    bool pending = false;
    for (const auto& test : JTKComparisonWindow::scanComparisons(versionFolder)) pending |= !test.pairs.empty();
    if (!pending) {
        say("jtk-review: no differences to review in " + versionFolder.string());
        return 0;
    }
    return review(versionFolder, argc, argv);
}

// accept, discard, prune: one line per file; 2 when a file could not be changed.
int change(const Arguments& arguments, const fs::path& versionFolder) {
    std::string error;
    auto tests = selectTests(versionFolder, arguments.selection, &error);
    if (!tests) return fail(error);
    ChangeCounts counts;
    const char* nothing = "nothing pending";
    if (arguments.command == Command::accept) {
        counts = acceptPending(*tests, say);
    } else if (arguments.command == Command::discard) {
        counts = discardPending(*tests, say);
    } else {
        counts = prune(*tests, arguments.listOnly ? PruneMode::list : PruneMode::remove, say);
        nothing = "no stale images";
    }
    for (const auto& line : counts.errors) std::fprintf(stderr, "jtk-review: %s\n", line.c_str());
    if (!counts.errors.empty()) return 2;
    if (counts.done == 0) say(std::string("jtk-review: ") + nothing + " in " + versionFolder.string());
    return arguments.command == Command::prune && arguments.listOnly && counts.done ? 1 : 0;
}

int report(const Arguments& arguments, const std::string& version) {
    std::optional<JUnitResults> junit;
    std::string error;
    if (arguments.junit && !(junit = readJUnitFile(*arguments.junit, &error))) return fail(error);
    std::optional<fs::path> junitFile;
    if (arguments.junit) junitFile = fs::absolute(*arguments.junit);
    auto contents = gatherReport(fs::absolute(arguments.root), version, std::move(junit), junitFile);
    if (!writeFileAtomically(arguments.output, renderReport(contents), &error)) return fail(error);
    auto summary = summarize(contents);
    say("jtk-review: wrote " + arguments.output.string() + " (" + std::to_string(contents.tests.size()) + " tests, " +
        std::to_string(summary.pending) + " pending captures, " + std::to_string(summary.failed + summary.errors) +
        " failed tests)");
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    std::string error;
    auto arguments = parseArguments(argc, argv, error);
    if (!arguments) return fail(error);
    if (arguments->command == Command::help) return std::fputs(usageText, stdout), 0;
    std::error_code ignored;
    if (!fs::is_directory(arguments->root, ignored)) return fail(arguments->root.string() + ": no such folder");
    std::string version = arguments->version.value_or(jtk::JTKTestSuite::jtkTestVersion());
    fs::path versionFolder = arguments->root / version;
    bool needsVersion = arguments->command != Command::report || !arguments->junit;
    if (needsVersion && !fs::is_directory(versionFolder, ignored))
        return fail("no screenshots of version \"" + version + "\" in " + arguments->root.string() +
                    " (versions there: " + versionsIn(arguments->root) + ")");
    switch (arguments->command) {
        case Command::list: return list(versionFolder);
        case Command::accept:
        case Command::discard:
        case Command::prune: return change(*arguments, versionFolder);
        case Command::report: return report(*arguments, version);
        default: return window(versionFolder, argc, argv);
    }
}
