#include "run/JTKAtomicFile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace jtk {

namespace fs = std::filesystem;

std::string jtkWriteFileAtomically(const fs::path& path, const std::string& text) {
    std::error_code error;
    if (path.has_parent_path()) fs::create_directories(path.parent_path(), error);
    fs::path temporary = path;
    temporary += ".tmp" + std::to_string(getpid());
    int fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) return std::strerror(errno);
    size_t written = 0;
    while (written < text.size()) {
        ssize_t count = ::write(fd, text.data() + written, text.size() - written);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) {
            int saved = errno;
            ::close(fd);
            ::unlink(temporary.c_str());
            return std::strerror(saved ? saved : EIO);
        }
        written += static_cast<size_t>(count);
    }
    // Synced before the rename: a power cut leaves the old file or the new, never an empty one.
    bool ok = ::fsync(fd) == 0;
    int saved = errno;
    ok = ::close(fd) == 0 && ok;
    if (ok && ::rename(temporary.c_str(), path.c_str()) == 0) return {};
    saved = errno ? errno : saved;
    ::unlink(temporary.c_str());
    return std::strerror(saved ? saved : EIO);
}

}  // namespace jtk
