#include "run/JTKFileTree.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <vector>

namespace jtk {

namespace fs = std::filesystem;

namespace {

std::error_code lastError() { return {errno, std::generic_category()}; }

// The names in an open folder, read before anything in it changes.
std::vector<std::string> namesIn(int folder, std::error_code& error) {
    std::vector<std::string> names;
    int copy = fcntl(folder, F_DUPFD_CLOEXEC, 0);
    DIR* listing = copy < 0 ? nullptr : fdopendir(copy);
    if (!listing) {
        error = lastError();
        if (copy >= 0) close(copy);
        return names;
    }
    while (dirent* entry = readdir(listing)) {
        std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(std::move(name));
    }
    closedir(listing);
    return names;
}

// Opens a folder below parent without following a link, granting its owner
// access first when it denies it.
int openFolder(int parent, const char* name, mode_t mode) {
    int folder = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0 && errno == EACCES && fchmodat(parent, name, (mode & 07777) | S_IRWXU, 0) == 0) {
        folder = openat(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    }
    return folder;
}

void keepFirst(std::error_code& first, std::error_code error) {
    if (error && !first) first = error;
}

// Empties the open folder (on device), then its entries' folders recursively.
std::error_code removeEntries(int folder, dev_t device) {
    std::error_code first;
    struct stat self {};
    // Removing entries needs write and search permission on the folder itself.
    if (fstat(folder, &self) == 0 && (self.st_mode & S_IRWXU) != S_IRWXU) {
        if (fchmod(folder, (self.st_mode & 07777) | S_IRWXU) != 0) keepFirst(first, lastError());
    }
    for (const auto& name : namesIn(folder, first)) {
        struct stat item {};
        if (fstatat(folder, name.c_str(), &item, AT_SYMLINK_NOFOLLOW) != 0) {
            keepFirst(first, lastError());
            continue;
        }
        if (S_ISDIR(item.st_mode)) {
            if (item.st_dev != device) {  // a mount point: its file system is not ours to empty
                keepFirst(first, std::make_error_code(std::errc::device_or_resource_busy));
                continue;
            }
            int child = openFolder(folder, name.c_str(), item.st_mode);
            if (child < 0) {
                keepFirst(first, lastError());
                continue;
            }
            keepFirst(first, removeEntries(child, device));
            close(child);
            if (unlinkat(folder, name.c_str(), AT_REMOVEDIR) != 0) keepFirst(first, lastError());
        } else if (unlinkat(folder, name.c_str(), 0) != 0) {
            keepFirst(first, lastError());
        }
    }
    return first;
}

constexpr off_t copyChunk = off_t(4) << 20;  // the most copied between two looks at the stop request

// Copies length bytes at offset, in-kernel where the file systems allow it;
// moves end to where the source ends when it is shorter (it shrank meanwhile).
std::error_code copyRange(int source, int target, off_t offset, off_t length, bool& rangeCopy, off_t& end) {
    while (length > 0) {
        ssize_t count = -1;
        if (rangeCopy) {
            off_t in = offset, out = offset;
            count = copy_file_range(source, &in, target, &out, static_cast<size_t>(length), 0);
            if (count < 0 && (errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP)) {
                rangeCopy = false;
                continue;
            }
        } else {
            char buffer[1 << 16];
            auto size = static_cast<size_t>(std::min(length, static_cast<off_t>(sizeof buffer)));
            count = pread(source, buffer, size, offset);
            for (ssize_t written = 0, step; count > 0 && written < count; written += step) {
                step = pwrite(target, buffer + written, static_cast<size_t>(count - written), offset + written);
                if (step < 0 && errno == EINTR) step = 0;
                if (step < 0) return lastError();
            }
        }
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return lastError();
        if (count == 0) {
            end = offset;
            return {};
        }
        offset += count;
        length -= count;
    }
    return {};
}

// Copies a regular file into a new file: only its data, so that its holes
// stay holes, a chunk at a time, so that a stop request ends the copy soon.
// A full disk reports as such.
std::error_code copyFileContent(const fs::path& from, const fs::path& to, const std::function<bool()>& stop) {
    int source = open(from.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (source < 0) return lastError();
    int target = open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (target < 0) {
        auto error = lastError();
        close(source);
        return error;
    }
    std::error_code error;
    struct stat item {};
    if (fstat(source, &item) != 0) error = lastError();
    bool rangeCopy = true;
    for (off_t offset = 0; !error && offset < item.st_size;) {
        // The next stretch of data; a file system that cannot tell has no holes.
        off_t data = lseek(source, offset, SEEK_DATA);
        if (data < 0 && errno == ENXIO) break;  // only a hole up to the end
        off_t hole = data < 0 ? item.st_size : lseek(source, data, SEEK_HOLE);
        if (data < 0) data = offset;
        if (hole < 0) hole = item.st_size;
        hole = std::min(hole, item.st_size);
        for (offset = data; !error && offset < std::min(hole, item.st_size); offset += copyChunk) {
            if (stop && stop()) {
                error = std::make_error_code(std::errc::operation_canceled);
            } else {
                error = copyRange(source, target, offset, std::min(copyChunk, hole - offset), rangeCopy, item.st_size);
            }
        }
        offset = hole;
    }
    // A hole at the end is made by the size alone.
    if (!error && ftruncate(target, item.st_size) != 0) error = lastError();
    close(source);
    if (close(target) != 0 && !error) error = lastError();
    return error;
}

std::error_code setTimes(const fs::path& path, const struct stat& source) {
    const struct timespec times[2] = {source.st_atim, source.st_mtim};
    if (utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW) != 0) return lastError();
    return {};
}

}  // namespace

fs::path jtkSiblingName(const fs::path& item, const std::string& prefix, const std::string& suffix) {
    constexpr size_t longestName = 255;
    std::string name = item.filename().string();
    size_t room = longestName > prefix.size() + suffix.size() ? longestName - prefix.size() - suffix.size() : 0;
    if (name.size() > room) name.resize(room);
    return item.parent_path() / (prefix + name + suffix);
}

std::optional<JTKFileIdentity> jtkIdentityOf(const fs::path& path) {
    struct stat item {};
    if (lstat(path.c_str(), &item) != 0) return std::nullopt;
    return JTKFileIdentity{item.st_dev, item.st_ino};
}

bool jtkExistsAt(const fs::path& path) {
    struct stat item {};
    return lstat(path.c_str(), &item) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

std::error_code jtkRenameNoReplace(const fs::path& from, const fs::path& to) {
    if (syscall(SYS_renameat2, AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
    if (errno != EINVAL && errno != ENOSYS) return lastError();
    // A file system without the flag: check, then rename (the window is ours alone under the run lock).
    if (jtkExistsAt(to)) return std::make_error_code(std::errc::file_exists);
    if (rename(from.c_str(), to.c_str()) != 0) return lastError();
    return {};
}

std::optional<fs::path> jtkRenameToFreeName(const fs::path& from, const fs::path& base, std::error_code& error) {
    for (int attempt = 1; attempt <= 1000; ++attempt) {
        fs::path candidate = attempt > 1 ? jtkSiblingName(base, "", "_" + std::to_string(attempt)) : base;
        error = jtkRenameNoReplace(from, candidate);
        if (!error) return candidate;
        if (error != std::errc::file_exists && error != std::errc::directory_not_empty) return std::nullopt;
    }
    return std::nullopt;
}

std::error_code jtkRemoveTree(const fs::path& path) {
    struct stat item {};
    if (lstat(path.c_str(), &item) != 0) return errno == ENOENT ? std::error_code() : lastError();
    if (!S_ISDIR(item.st_mode)) return unlink(path.c_str()) == 0 ? std::error_code() : lastError();

    std::error_code first;
    // The folder's own entry is removed from its parent, which must grant write access.
    auto parent = path.parent_path().empty() ? fs::path(".") : path.parent_path();
    int parentFolder = open(parent.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (parentFolder < 0) return lastError();
    auto name = path.filename();
    int folder = openFolder(parentFolder, name.c_str(), item.st_mode);
    if (folder < 0) {
        first = lastError();
    } else {
        keepFirst(first, removeEntries(folder, item.st_dev));
        close(folder);
        if (unlinkat(parentFolder, name.c_str(), AT_REMOVEDIR) != 0) keepFirst(first, lastError());
    }
    close(parentFolder);
    return first;
}

std::error_code jtkCopyTree(const fs::path& from, const fs::path& to, const std::function<bool()>& stop) {
    if (stop && stop()) return std::make_error_code(std::errc::operation_canceled);
    struct stat item {};
    if (lstat(from.c_str(), &item) != 0) return lastError();
    std::error_code error;
    if (S_ISLNK(item.st_mode)) {
        auto target = fs::read_symlink(from, error);
        if (error) return error;
        if (symlink(target.c_str(), to.c_str()) != 0) return lastError();
        return setTimes(to, item);
    }
    if (S_ISREG(item.st_mode)) {
        if ((error = copyFileContent(from, to, stop))) return error;
    } else if (S_ISDIR(item.st_mode)) {
        // Made open for its owner while it is filled; its own permissions come last.
        if (mkdir(to.c_str(), S_IRWXU) != 0) return lastError();
        for (fs::directory_iterator it(from, error), end; !error && it != end; it.increment(error)) {
            if (auto failure = jtkCopyTree(it->path(), to / it->path().filename(), stop)) return failure;
        }
        if (error) return error;
    } else {
        return std::make_error_code(std::errc::invalid_argument);
    }
    if (chmod(to.c_str(), item.st_mode & 07777) != 0) return lastError();
    // Last of all: filling a folder changes its time.
    return setTimes(to, item);
}

}  // namespace jtk
