#include "run/JTKDataFolderLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <mutex>

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

std::string holderOf(int descriptor) {
    char buffer[32] = {};
    ssize_t count = pread(descriptor, buffer, sizeof buffer - 1, 0);
    std::string text = count > 0 ? std::string(buffer, static_cast<size_t>(count)) : std::string();
    while (!text.empty() && (text.back() == '\n' || text.back() == ' ')) text.pop_back();
    return text.empty() ? "unknown" : text;
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
    for (int attempt = 0; descriptor < 0; ++attempt) {
        // Close-on-exec: a command the run starts must not keep the lock alive after the run.
        descriptor = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0644);
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
    // The holder's process id, for the message another run prints. Best effort:
    // a full disk must not stop the run here.
    std::string pid = std::to_string(getpid()) + "\n";
    if (ftruncate(descriptor, 0) == 0) {
        [[maybe_unused]] auto written = pwrite(descriptor, pid.data(), pid.size(), 0);
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
