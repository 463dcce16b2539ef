// The run's own configuration folder (see the header). Each run's folder,
// "run-XXXXXX" in the parent, is locked (flock on the folder itself) by its
// process for as long as the process lives; the kernel lets the lock go
// with the process, however it ends. A folder that nobody locks was left by
// a run that is over, and is removed. Making a folder and taking its lock,
// and looking for abandoned folders, happen under a lock on the parent, so
// that no run removes a folder another run has just made but not yet locked.
#include "run/JTKRunSettings.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <utility>
#include <vector>

#include "run/JTKConsole.h"
#include "run/JTKFileTree.h"

namespace jtk {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view folderPrefix = "run-";

struct RunSettings {
    std::mutex mutex;
    std::optional<fs::path> folder;
    int lock = -1;  // the folder's own descriptor, holding its lock
    pid_t owner = 0;  // a child the program forks must not remove its parent's folder
};

RunSettings& runSettings() {
    static auto* settings = new RunSettings;  // never destroyed: the ends of the process read it
    return *settings;
}

// Closes a descriptor when it leaves scope, and with it any lock it holds.
class Descriptor {
public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    int get() const { return descriptor_; }
    int release() { return std::exchange(descriptor_, -1); }

private:
    int descriptor_;
};

// Close-on-exec: a program the run starts must not keep a folder's lock alive.
int openFolder(const fs::path& folder) { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC); }

bool lock(int descriptor, bool wait) {
    int result;
    do {
        result = flock(descriptor, LOCK_EX | (wait ? 0 : LOCK_NB));
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

// Removes every run folder of the parent that no live process locks.
void removeAbandonedFolders(const fs::path& parent) {
    std::error_code error;
    std::vector<fs::path> folders;
    for (fs::directory_iterator it(parent, error), end; !error && it != end; it.increment(error)) {
        if (it->path().filename().string().starts_with(folderPrefix)) folders.push_back(it->path());
    }
    for (const auto& folder : folders) {
        Descriptor descriptor(openFolder(folder));
        if (descriptor.get() >= 0 && lock(descriptor.get(), false)) jtkRemoveTree(folder);
    }
}

std::string copyTestSettings(const fs::path& testSettings, const fs::path& folder) {
    std::error_code error;
    if (!fs::is_directory(testSettings, error)) {
        jtkPrintLine("Test settings folder path was supplied, but no folder exists");
        return {};
    }
    std::vector<fs::path> items;
    for (fs::directory_iterator it(testSettings, error), end; !error && it != end; it.increment(error)) {
        items.push_back(it->path());
    }
    if (error) return "cannot read the test settings folder " + testSettings.string() + ": " + error.message();
    for (const auto& item : items) {
        if (auto failure = jtkCopyTree(item, folder / item.filename())) {
            std::string reason = failure == std::errc::invalid_argument
                                     ? "it holds something that is neither a file, a folder nor a link"
                                     : failure.message();
            return "cannot copy the test settings item " + item.string() + ": " + reason;
        }
    }
    return {};
}

}  // namespace

std::optional<fs::path> jtkRunSettingsParent() {
    if (const char* cache = std::getenv("XDG_CACHE_HOME"); cache && *cache == '/')
        return fs::path(cache) / "jtk" / "run-settings";
    if (const char* home = std::getenv("HOME"); home && *home == '/')
        return fs::path(home) / ".cache" / "jtk" / "run-settings";
    return std::nullopt;
}

std::string jtkMakeRunSettings(const std::optional<fs::path>& testSettings) {
    auto parent = jtkRunSettingsParent();
    if (!parent) return "no folder for the run's settings (neither XDG_CACHE_HOME nor HOME holds an absolute path)";
    auto cannotMake = [&](int number) {
        return "cannot make the run's settings folder in " + parent->string() + ": " + std::strerror(number);
    };
    std::error_code error;
    fs::create_directories(*parent, error);
    Descriptor parentLock(openFolder(*parent));
    if (parentLock.get() < 0 || !lock(parentLock.get(), true)) return cannotMake(errno);
    removeAbandonedFolders(*parent);

    std::string pattern = (*parent / (std::string(folderPrefix) + "XXXXXX")).string();
    if (!mkdtemp(pattern.data())) return cannotMake(errno);
    fs::path folder = pattern;
    Descriptor folderLock(openFolder(folder));
    if (folderLock.get() < 0 || !lock(folderLock.get(), false)) {
        int number = errno;
        jtkRemoveTree(folder);
        return cannotMake(number);
    }
    if (testSettings) {
        if (auto failure = copyTestSettings(*testSettings, folder); !failure.empty()) {
            jtkRemoveTree(folder);
            return failure;
        }
    }
    if (setenv("XDG_CONFIG_HOME", folder.c_str(), 1) != 0) {
        int number = errno;
        jtkRemoveTree(folder);
        return cannotMake(number);
    }
    {
        auto& settings = runSettings();
        std::lock_guard guard(settings.mutex);
        settings.folder = folder;
        settings.lock = folderLock.release();
        settings.owner = getpid();
    }
    // exit() before the run has started (the program ends by itself) ends
    // no run; the run's own ends call jtkRemoveRunSettings themselves.
    static std::once_flag registered;
    std::call_once(registered, [] { std::atexit(jtkRemoveRunSettings); });
    return {};
}

std::optional<fs::path> jtkRunSettingsFolder() {
    auto& settings = runSettings();
    std::lock_guard guard(settings.mutex);
    return settings.folder;
}

void jtkRemoveRunSettings() {
    auto& settings = runSettings();
    std::lock_guard guard(settings.mutex);
    if (!settings.folder || settings.owner != getpid()) return;
    // Removed while still locked: no other run takes it for abandoned halfway.
    jtkRemoveTree(*settings.folder);
    close(settings.lock);
    settings.lock = -1;
    settings.folder.reset();
}

}  // namespace jtk
