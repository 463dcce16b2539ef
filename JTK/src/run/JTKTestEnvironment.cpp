// JTKTestSuite's data environment: the application's Application Support
// folder is moved aside to a "_Temp" sibling for the run, filled with the
// test data, and put back at every end of the run.
//
// The user's data is only ever renamed, never copied or deleted, and never
// renamed over anything. One run per data folder holds its lock; a record
// beside the folder (".<name>.jtk-aside", written before the move) names the
// folder a run put aside, so that a later run recovers that folder and
// nothing else. Every step leaves a state the next run can recover from,
// whenever the process is killed.
#include <chrono>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "run/JTKBesideData.h"
#include "run/JTKConsole.h"
#include "run/JTKDataFolderLock.h"
#include "run/JTKFileTree.h"
#include "run/JTKProcessEnd.h"
#include "run/JTKRunEnd.h"
#include "run/JTKTestEnvironment.h"
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
    // The run's environment is in place (the user's data, if any, is aside)
    // for the data folder named by folder.
    bool movedAside = false;
    fs::path folder;
    // The folder this process put aside.
    std::optional<JTKFileIdentity> aside;
};

EnvironmentState& state() {
    static EnvironmentState instance;
    return instance;
}

std::string notPutAsideByARun(const fs::path& appSupport, const fs::path& temp) {
    return temp.string() + " was not put aside by a test run, so it may hold data of yours: nothing was changed. "
                           "Your Application Support data is at " + appSupport.string() + "; move or rename " +
           temp.string() + " and start again";
}

std::string timestamp() {
    std::time_t now = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    std::tm parts{};
    char buffer[32] = "";
    if (localtime_r(&now, &parts)) std::strftime(buffer, sizeof buffer, "%Y-%m-%d_%H-%M-%S", &parts);
    return buffer;
}

std::string busyMessage(const JTKDataFolderLock& lock, const fs::path& appSupport) {
    return "Another test run (" + lock.detail + ") is using " + appSupport.string();
}

// The message of a lock that could not be taken: where the data is, and what to do.
std::string lockFailedMessage(const JTKDataFolderLock& lock, const fs::path& appSupport, const fs::path& temp) {
    std::string where = "your Application Support data is at " + appSupport.string();
    if (jtkPutAsideByARun(appSupport, temp)) {
        where = "your Application Support data, put aside by a run that did not end, is waiting at " + temp.string();
    } else if (jtkExistsAt(temp)) {
        where += " or at " + temp.string();
    }
    return "Could not make sure that no other test run uses " + appSupport.string() + ": " + lock.detail +
           ". Nothing was changed: " + where + ". If no test run is under way, remove " +
           jtkLockFileFor(appSupport).string() + " and start again";
}

// Puts the folder an earlier run put aside back in place. Whatever is in its
// place now (that run's test data, and anything saved there since) is kept
// in a dated folder beside it. Returns an error text when it could not.
std::string recoverInterruptedRun(const fs::path& appSupport, const fs::path& temp) {
    std::optional<fs::path> kept;
    std::error_code error;
    if (jtkExistsAt(appSupport)) {
        kept = jtkRenameToFreeName(appSupport, jtkSiblingName(appSupport, "", "_Interrupted_" + timestamp()), error);
        if (!kept) {
            return "Could not move " + appSupport.string() + " out of the way to recover the data at " +
                   temp.string() + ": " + error.message() + " - Testing cancelled";
        }
    }
    if ((error = jtkRenameNoReplace(temp, appSupport))) {
        if (kept) jtkRenameNoReplace(*kept, appSupport);  // leave both as they were found
        return "Could not recover the Application Support data left by an interrupted run at " + temp.string() +
               ": " + error.message() + " - Testing cancelled";
    }
    jtkRemoveAsideRecord(appSupport);
    jtkPrintLine("Recovered Application Support data left by an interrupted run");
    if (kept) {
        jtkPrintLine("What was in its place (that run's test data and anything saved there since) is kept at " +
                     kept->string());
    }
    return {};
}

// Fills the (new) Application Support folder with the test data. Returns an
// error text when the run cannot go on.
std::string installTestData(const fs::path& testData, const fs::path& appSupport) {
    std::error_code error;
    fs::create_directories(appSupport, error);
    if (!jtkExistsAt(testData)) {
        jtkPrintLine("Test data folder path was supplied, but no folder exists");
        return {};
    }
    std::vector<fs::path> items;
    for (fs::directory_iterator it(testData, error), end; !error && it != end; it.increment(error)) {
        items.push_back(it->path());
    }
    for (const auto& item : items) {
        if (auto failure = jtkCopyTree(item, appSupport / item.filename(), [] { return jtkStopRequested().load(); })) {
            std::string reason = failure == std::errc::invalid_argument
                                     ? "it holds something that is neither a file, a folder nor a link"
                                 : failure == std::errc::operation_canceled ? "the run was interrupted"
                                                                            : failure.message();
            return "Could not copy the test data item " + item.string() + ": " + reason + " - Testing cancelled";
        }
    }
    return {};
}

// Test code installs the test data again while the run's environment is in
// place: only the test data is replaced.
std::string replaceTestData(const fs::path& testData, const fs::path& appSupport, const fs::path& temp) {
    jtkPrintLine(state().aside ? "Copying the test data in again; the Application Support data stays aside at " +
                                     temp.string()
                               : std::string("Copying the test data in again"));
    if (jtkExistsAt(appSupport)) {
        std::error_code error;
        auto discarded = jtkMoveToDiscard(appSupport, error);
        if (!discarded) {
            return "Could not move the test data at " + appSupport.string() + " out of the way: " + error.message() +
                   " - Testing cancelled";
        }
        jtkDeleteDiscarded(*discarded);
    }
    return installTestData(testData, appSupport);
}

// Moves the user's data aside and installs the test data. Returns an error
// text when the run cannot go on.
std::string prepare(const fs::path& testData, const fs::path& appSupport, const fs::path& temp) {
    auto lock = jtkLockDataFolder(appSupport);
    if (lock.outcome == JTKDataFolderLock::Outcome::busy) {
        return busyMessage(lock, appSupport) + "; this run changed nothing - Testing cancelled";
    }
    if (lock.outcome == JTKDataFolderLock::Outcome::failed) {
        return lockFailedMessage(lock, appSupport, temp) + " - Testing cancelled";
    }
    if (state().movedAside && state().folder == appSupport) return replaceTestData(testData, appSupport, temp);
    state().aside.reset();

    jtkDeleteDiscardedByEarlierRuns(appSupport);
    if (jtkExistsAt(temp)) {
        if (!jtkPutAsideByARun(appSupport, temp)) return notPutAsideByARun(appSupport, temp) + " - Testing cancelled";
        if (auto failure = recoverInterruptedRun(appSupport, temp); !failure.empty()) return failure;
    } else {
        jtkRemoveAsideRecord(appSupport);  // a run killed just before its move or just after its restore
    }
    if (auto identity = jtkIdentityOf(appSupport)) {
        if (auto failure = jtkWriteAsideRecord(appSupport, *identity); !failure.empty()) {
            return "Could not record the move of the Application Support data aside: " + failure +
                   " - Testing cancelled";
        }
        if (auto error = jtkRenameNoReplace(appSupport, temp)) {
            jtkRemoveAsideRecord(appSupport);
            return "Could not move the Application Support data aside to " + temp.string() + ": " + error.message() +
                   " - Testing cancelled";
        }
        state().aside = identity;
    }
    state().movedAside = true;
    state().folder = appSupport;
    return installTestData(testData, appSupport);
}

// Puts this process's folder back in place of the test data; false when it
// stays aside.
bool putBack(const fs::path& appSupport, const fs::path& temp) {
    std::error_code error;
    std::optional<fs::path> discarded;
    auto keptAside = [&] {  // whole in the _Temp folder, where the next run finds it
        jtkPrintLine("Could not put the Application Support data back: " + error.message() + "; it is kept at " +
                     temp.string() + ", where the next run finds it, and " + appSupport.string() +
                     " holds the test data");
        return false;
    };
    if (jtkExistsAt(appSupport) && !(discarded = jtkMoveToDiscard(appSupport, error))) return keptAside();
    if ((error = jtkRenameNoReplace(temp, appSupport))) {
        if (discarded) jtkRenameNoReplace(*discarded, appSupport);
        return keptAside();
    }
    jtkRemoveAsideRecord(appSupport);
    if (discarded) jtkDeleteDiscarded(*discarded);
    return true;
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
        // A run stopped before it moved anything leaves nothing behind, its lock included.
        if (!failure.empty() && !state().movedAside) jtkReleaseDataFolderLock(*appSupport);
    }
    if (!failure.empty()) {
        // A stop signal cut the copy short: the signal watch ends the run.
        while (jtkStopRequested()) std::this_thread::sleep_for(std::chrono::hours(1));
        jtkFatalStop(failure, "JTK/JTKTestEnvironment");
    }
}

void JTKTestSuite::restoreApplicationSupportData() { jtkRestoreApplicationSupportData(); }

bool jtkRestoreApplicationSupportData() {
    std::lock_guard lock(state().mutex);
    // The folder this run moved aside, whatever the name reads now (an
    // executable rebuilt during the run is named "... (deleted)").
    auto appSupport = state().movedAside ? JTKTestSuite::URL(state().folder) : JTKTestSuite::appSupportURL();
    if (!appSupport) return true;
    auto temp = *appSupport;
    temp += "_Temp";
    jtkPrintLine("Restoring Application Support Data");
    const auto aside = std::exchange(state().aside, std::nullopt);  // this process put the user's data there
    const bool ours = aside.has_value(), testDataInPlace = std::exchange(state().movedAside, false);
    const std::string testDataAt = appSupport->string() + " holds the test data";
    if (!jtkExistsAt(temp)) {
        if (ours) jtkPrintLine("The Application Support data this run moved aside is no longer at " + temp.string() +
                               ": nothing was restored, and " + testDataAt);
        jtkReleaseDataFolderLock(*appSupport);  // nothing aside: nothing to lock against either
        return !ours;
    }
    auto folderLock = jtkLockDataFolder(*appSupport);
    if (folderLock.outcome == JTKDataFolderLock::Outcome::busy) {
        jtkPrintLine(busyMessage(folderLock, *appSupport) + "; its data was left as it is");
        return true;  // that run puts its own data back
    }
    if (folderLock.outcome == JTKDataFolderLock::Outcome::failed) {
        jtkPrintLine(lockFailedMessage(folderLock, *appSupport, temp));
        return false;
    }
    bool restored = false;
    if (ours && jtkIdentityOf(temp) == aside) {
        restored = putBack(*appSupport, temp);
    } else if (ours) {
        jtkPrintLine("Could not put the Application Support data back: " + temp.string() + " is no longer the folder "
                     "this run moved aside, so it was left as it is; " + testDataAt + ". Look for your data at " +
                     temp.string());
    } else if (!jtkPutAsideByARun(*appSupport, temp)) {
        jtkPrintLine(testDataInPlace ? temp.string() + " was not put aside by a test run, so it was left as it is; " +
                                           testDataAt
                                     : notPutAsideByARun(*appSupport, temp));
    } else if (auto failure = recoverInterruptedRun(*appSupport, temp); !failure.empty()) {
        jtkPrintLine(failure);  // put aside by an earlier run that never ended
    } else {
        restored = true;
    }
    // While this run's data stays aside, no other run may start.
    if (restored || !ours) jtkReleaseDataFolderLock(*appSupport);
    return restored;
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
