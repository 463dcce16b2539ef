// JTKTestSuite's data environment: the application's Application Support
// folder is moved aside to a "_Temp" sibling for the run, filled with the
// test data, and put back at every end of the run. The user's data is never
// deleted: it is renamed, not copied, so it cannot be left half-saved.
#include <filesystem>
#include <mutex>
#include <system_error>

#include "run/JTKConsole.h"
#include "run/JTKProcessEnd.h"
#include "run/JTKRunEnd.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Process.h"
#include "JTK/platform/UserDefaults.h"

namespace jtk {

namespace fs = std::filesystem;

namespace {

struct EnvironmentState {
    // Recursive: a restore may be asked for by a fatal stop raised while the
    // same thread prepares the environment.
    std::recursive_mutex mutex;
    bool movedAside = false;
};

EnvironmentState& state() {
    static EnvironmentState instance;
    return instance;
}

bool existsAt(const fs::path& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

// Puts a folder left aside by an interrupted run back in place of the test
// data that run left. Returns an error text when it could not.
std::string recoverInterruptedRun(const fs::path& appSupport, const fs::path& temp) {
    std::error_code error;
    fs::remove_all(appSupport, error);
    fs::rename(temp, appSupport, error);
    if (error) {
        return "Could not recover the Application Support data left by an interrupted run at " + temp.string() +
               ": " + error.message() + " - Testing cancelled";
    }
    jtkPrintLine("Recovered Application Support data left by an interrupted run");
    return {};
}

// Moves the user's data aside and installs the test data. Returns an error
// text when the run cannot go on.
std::string prepare(const fs::path& testData, const fs::path& appSupport, const fs::path& temp) {
    if (existsAt(temp)) {
        if (auto failure = recoverInterruptedRun(appSupport, temp); !failure.empty()) return failure;
    }
    std::error_code error;
    if (existsAt(appSupport)) {
        fs::rename(appSupport, temp, error);
        if (error) {
            return "Could not move the Application Support data aside to " + temp.string() + ": " +
                   error.message() + " - Testing cancelled";
        }
    }
    state().movedAside = true;
    fs::create_directories(appSupport, error);

    if (!existsAt(testData)) {
        jtkPrintLine("Test data folder path was supplied, but no folder exists");
        return {};
    }
    std::vector<fs::path> items;
    for (fs::directory_iterator it(testData, error), end; !error && it != end; it.increment(error)) {
        items.push_back(it->path());
    }
    for (const auto& item : items) {
        fs::copy(item, appSupport / item.filename(), fs::copy_options::recursive | fs::copy_options::copy_symlinks,
                 error);
        if (error) {
            // A pipe, socket or device below the test data is refused by the copy with a bare EINVAL.
            std::string reason = error == std::errc::invalid_argument
                                     ? "it holds something that is neither a file, a folder nor a link"
                                     : error.message();
            return "Could not copy the test data item " + item.string() + ": " + reason + " - Testing cancelled";
        }
    }
    return {};
}

}  // namespace

JTKTestSuite::URL JTKTestSuite::appSupportURL() {
    auto directory = platform::applicationSupportDirectory();
    auto application = platform::sharedApplication();
    if (!directory || !application || application->name().empty()) return std::nullopt;
    return *directory / application->name();
}

JTKTestSuite::URL JTKTestSuite::tempAppSupportURL() {
    auto appSupport = appSupportURL();
    if (!appSupport) return std::nullopt;
    auto temp = *appSupport;
    temp += "_Temp";
    return temp;
}

void JTKTestSuite::copyTestDataToApplicationSupport() {
    auto testData = jtkTestDataURL();
    auto appSupport = appSupportURL();
    if (!testData || !appSupport) return;
    jtkWatchTerminationSignals();
    std::string failure;
    {
        std::lock_guard lock(state().mutex);
        failure = prepare(*testData, *appSupport, *tempAppSupportURL());
    }
    if (!failure.empty()) jtkFatalStop(failure, "JTK/JTKTestEnvironment");
}

void JTKTestSuite::restoreApplicationSupportData() {
    auto appSupport = appSupportURL();
    if (!appSupport) return;
    auto temp = *tempAppSupportURL();
    std::lock_guard lock(state().mutex);
    jtkPrintLine("Restoring Application Support Data");
    if (!existsAt(temp)) {
        state().movedAside = false;
        return;
    }
    std::error_code error;
    fs::remove_all(*appSupport, error);
    fs::rename(temp, *appSupport, error);
    if (error) {
        // The data stays whole in the _Temp folder; the next run puts it back.
        jtkPrintLine("Could not put the Application Support data back: " + error.message() + "; it is kept at " +
                     temp.string());
    }
    state().movedAside = false;
}

bool jtkDataMovedAside() {
    std::lock_guard lock(state().mutex);
    return state().movedAside;
}

void jtkRestoreIfMovedAside() {
    std::lock_guard lock(state().mutex);
    if (state().movedAside) JTKTestSuite::restoreApplicationSupportData();
}

void JTKTestSuite::copyTestUserDefaultsToPrefs() {
    auto url = jtkTestUserDefaultsURL();
    if (!url) return;
    // Read first: a file that is not a property-list dictionary stores nothing.
    auto dictionary = platform::readPropertyListDictionary(*url);
    if (!dictionary) {
        jtkPrintLine("Test user defaults could not be read as a property list from " + url->string() +
                     " - no defaults were changed");
        return;
    }
    platform::resetStandardUserDefaults();
    auto& defaults = platform::standardUserDefaults();
    for (const auto& [key, value] : *dictionary) {
        if (const auto* name = key.text()) defaults.setObject(value, *name);
    }
    defaults.synchronize();
}

}  // namespace jtk
