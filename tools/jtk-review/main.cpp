// jtk-review: reviews the screenshots of a run made elsewhere.
//
//   jtk-review [--version TAG] ROOT          opens the comparison window over
//                                            ROOT's version folder in the viewer
//   jtk-review --list [--version TAG] ROOT   prints each pending difference
//
// The version folder is ROOT/TAG, by default this machine's version tag. The
// list prints one line per pair the window would show: test tag, file name
// and how many pixels differ, separated by tabs; it exits 1 when there is any,
// 0 when there is none. Bad use or input exits 2 with one line on stderr.
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/Application.h"
#include "JTK/services/ProcessInfo.h"
#include "JTK/desktop/Viewer.h"
#include "JTK/imaging/FileDifference.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Notifications.h"
#include "JTK/platform/Window.h"
#include "screenshots/JTKComparisonWindow.h"

namespace fs = std::filesystem;
using jtk::JTKComparisonWindow;

namespace {

constexpr const char* usage = "usage: jtk-review [--list] [--version TAG] SCREENSHOT_ROOT";

struct Arguments {
    bool list = false;
    std::optional<std::string> version;
    std::optional<fs::path> root;
};

int fail(const std::string& message) {
    std::fprintf(stderr, "jtk-review: %s\n", message.c_str());
    return 2;
}

std::optional<Arguments> parse(int argc, char** argv, std::string& error) {
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        std::string argument = argv[i];
        if (argument == "--list") {
            arguments.list = true;
        } else if (argument == "--version") {
            if (i + 1 == argc) return error = "--version needs a tag", std::nullopt;
            arguments.version = argv[++i];
        } else if (argument == "--viewer") {
            // The viewer is always on here; the desktop reads this itself.
        } else if (argument.starts_with("-") || arguments.root) {
            return error = usage, std::nullopt;
        } else {
            arguments.root = argument;
        }
    }
    if (!arguments.root) return error = usage, std::nullopt;
    return arguments;
}

std::string versionsIn(const fs::path& root) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator it(root, error), end; !error && it != end; it.increment(error))
        if (it->is_directory() && !it->path().filename().string().starts_with(".")) names.push_back(it->path().filename());
    std::sort(names.begin(), names.end());
    std::string text;
    for (const auto& name : names) text += (text.empty() ? "" : ", ") + ("\"" + name + "\"");
    return text.empty() ? "none" : text;
}

int list(const fs::path& versionFolder) {
    int pending = 0;
    for (const auto& test : JTKComparisonWindow::scanComparisons(versionFolder)) {
        for (const auto& [accepted, newCapture] : test.pairs) {
            auto result = jtk::imaging::compareImageFiles(accepted, newCapture);
            std::string count = result.outcome == jtk::imaging::FileDifference::Outcome::badInput
                                    ? "unreadable"
                                    : std::to_string(result.differingPixels);
            std::printf("%s\t%s\t%s\n", test.testTag.c_str(), accepted.filename().c_str(), count.c_str());
            ++pending;
        }
    }
    std::fflush(stdout);
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

}  // namespace

int main(int argc, char** argv) {
    std::string error;
    auto arguments = parse(argc, argv, error);
    if (!arguments) return fail(error);
    std::error_code ignored;
    if (!fs::is_directory(*arguments->root, ignored)) return fail(arguments->root->string() + ": no such folder");
    std::string version = arguments->version.value_or(jtk::JTKTestSuite::jtkTestVersion());
    fs::path versionFolder = *arguments->root / version;
    if (!fs::is_directory(versionFolder, ignored))
        return fail("no screenshots of version \"" + version + "\" in " + arguments->root->string() +
                    " (versions there: " + versionsIn(*arguments->root) + ")");
    if (arguments->list) return list(versionFolder);
    bool pending = false;
    for (const auto& test : JTKComparisonWindow::scanComparisons(versionFolder)) pending |= !test.pairs.empty();
    if (!pending) {
        std::printf("jtk-review: no differences to review in %s\n", versionFolder.c_str());
        return 0;
    }
    return review(versionFolder, argc, argv);
}
