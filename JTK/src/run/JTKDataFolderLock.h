// One test run per application data folder at a time: an advisory lock on a
// file beside the folder, held until the run has put the data back or the
// process ends. The kernel releases it with the process, so a run that
// crashed never blocks the next one.
#pragma once

#include <filesystem>
#include <string>

namespace jtk {

struct JTKDataFolderLock {
    enum class Outcome { held, busy, failed };
    Outcome outcome = Outcome::failed;
    // busy: who holds the lock, "process <id>", or "an unknown process" when
    // the file names no live process of this system (another PID namespace,
    // a process id used again, a file a run could not write);
    // failed: why the lock file could not be locked.
    std::string detail;
};

// The lock file of a data folder: ".<name>.jtk-lock" beside it.
std::filesystem::path jtkLockFileFor(const std::filesystem::path& dataFolder);

// Takes the lock of dataFolder without waiting, or confirms that this process
// holds it already. Holding the lock of another folder lets that one go. A
// lock file this user may read but not write (left by a run started as root)
// is locked all the same: locking needs no write access.
JTKDataFolderLock jtkLockDataFolder(const std::filesystem::path& dataFolder);

// Lets the lock of dataFolder go and removes its file, so that a run leaves
// nothing behind; does nothing when this process does not hold it. Safe
// against a run that opened the file just before: a lock taken on a file
// that is no longer at its path does not count (see jtkLockDataFolder).
void jtkReleaseDataFolderLock(const std::filesystem::path& dataFolder);

}  // namespace jtk
