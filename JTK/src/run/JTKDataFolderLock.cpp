#include "run/JTKDataFolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <mutex>
#include <sstream>

#include "run/JTKFileTree.h"

namespace jtk {

namespace fs = std::filesystem;

namespace {

struct HeldLock {
    std::mutex mutex;
    fs::path file;
    int descriptor = -1;
};

HeldLock& held() {
    static auto* lock = new HeldLock;  // never destroyed: the lock lives as long as the process
    return *lock;
}

// The inode of this process's PID namespace; 0 when /proc cannot tell.
unsigned long long pidNamespace() {
    struct stat item {};
    return stat("/proc/self/ns/pid", &item) == 0 ? static_cast<unsigned long long>(item.st_ino) : 0;
}

// When a process of this namespace started (field 22 of its stat line, in
// clock ticks since boot); empty when there is no such process.
std::string startTimeOf(const std::string& pid) {
    std::ifstream in("/proc/" + pid + "/stat");
    std::string line;
    std::getline(in, line);
    auto nameEnd = line.rfind(')');  // the command name may hold spaces and parentheses
    if (nameEnd == std::string::npos) return {};
    std::istringstream fields(line.substr(nameEnd + 1));
    std::string field;
    for (int number = 3; number <= 22 && fields >> field; ++number) {
        if (number == 22) return field;
    }
    return {};
}

// What the holder writes into the file: its process id, its PID namespace
// and its start time, so that a reader can tell whether that number names
// a live process of its own namespace.
std::string recordOfThisProcess() {
    std::string pid = std::to_string(getpid());
    return pid + " " + std::to_string(pidNamespace()) + " " + startTimeOf(pid) + "\n";
}

std::string holderOf(int descriptor) {
    char buffer[128] = {};
    ssize_t count = pread(descriptor, buffer, sizeof buffer - 1, 0);
    std::istringstream record(std::string(buffer, count > 0 ? static_cast<size_t>(count) : 0));
    std::string pid, start;
    unsigned long long space = 0;
    bool known = record >> pid >> space >> start && pid.find_first_not_of("0123456789") == std::string::npos &&
                 space != 0 && space == pidNamespace() && startTimeOf(pid) == start;
    return known ? "process " + pid : "an unknown process";
}

JTKDataFolderLock failure(const fs::path& file, const std::string& reason) {
    return {JTKDataFolderLock::Outcome::failed, "cannot lock " + file.string() + ": " + reason};
}

}  // namespace

fs::path jtkLockFileFor(const fs::path& dataFolder) { return jtkSiblingName(dataFolder, ".", ".jtk-lock"); }

JTKDataFolderLock jtkLockDataFolder(const fs::path& dataFolder) {
    auto file = jtkLockFileFor(dataFolder);
    auto& state = held();
    std::lock_guard guard(state.mutex);
    if (state.descriptor >= 0 && state.file == file) return {JTKDataFolderLock::Outcome::held, {}};

    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    int descriptor = -1;
    bool writable = false;
    for (int attempt = 0; descriptor < 0; ++attempt) {
        // Close-on-exec: a command the run starts must not keep the lock alive after the run.
        const int flags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
        descriptor = open(file.c_str(), O_RDWR | O_CREAT | flags, 0644);
        writable = descriptor >= 0;
        if (!writable && (errno == EACCES || errno == EPERM || errno == EROFS)) {
            // A file this user may not write (a run started as root left it):
            // flock needs only an open file, and the holder's record is optional.
            int writeError = errno;
            descriptor = open(file.c_str(), O_RDONLY | flags);
            if (descriptor < 0) errno = writeError;
        }
        if (descriptor < 0) return failure(file, std::strerror(errno));
        struct stat item {};
        if (fstat(descriptor, &item) != 0 || !S_ISREG(item.st_mode)) {
            close(descriptor);
            return failure(file, "it is not a plain file");
        }
        int result;
        do {
            result = flock(descriptor, LOCK_EX | LOCK_NB);
        } while (result != 0 && errno == EINTR);
        if (result != 0) {
            int lockError = errno;
            std::string holder = lockError == EWOULDBLOCK ? holderOf(descriptor) : std::string();
            close(descriptor);
            if (lockError == EWOULDBLOCK) return {JTKDataFolderLock::Outcome::busy, holder};
            return failure(file, std::strerror(lockError));
        }
        // The holder before may have removed the file between our open and our
        // lock: then this lock guards nothing, and the file at the path is the one to lock.
        struct stat atPath {};
        if (stat(file.c_str(), &atPath) != 0 || atPath.st_dev != item.st_dev || atPath.st_ino != item.st_ino) {
            close(descriptor);
            descriptor = -1;
            if (attempt == 100) return failure(file, "it keeps being replaced");
        }
    }
    // Who holds it, for the message another run prints. Best effort: a full
    // disk must not stop the run here, and a file opened for reading keeps
    // the record of an earlier holder, which then names no live process.
    std::string record = recordOfThisProcess();
    if (writable && ftruncate(descriptor, 0) == 0) {
        [[maybe_unused]] auto written = pwrite(descriptor, record.data(), record.size(), 0);
    }

    if (state.descriptor >= 0) close(state.descriptor);
    state.descriptor = descriptor;
    state.file = file;
    return {JTKDataFolderLock::Outcome::held, {}};
}

void jtkReleaseDataFolderLock(const fs::path& dataFolder) {
    auto& state = held();
    std::lock_guard guard(state.mutex);
    if (state.descriptor < 0 || state.file != jtkLockFileFor(dataFolder)) return;
    // Removed while still locked, so that no other run can lock this file after us.
    unlink(state.file.c_str());
    close(state.descriptor);
    state.descriptor = -1;
    state.file.clear();
}

}  // namespace jtk
