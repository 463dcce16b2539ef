// Whole-file reads and atomic writes.
#include "JTK/review/AtomicFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace jtk::review {

namespace {

bool failed(const std::filesystem::path& path, int code, std::string* error) {
    if (error) *error = path.string() + ": " + std::strerror(code ? code : EIO);
    return false;
}

}  // namespace

bool writeFileAtomically(const std::filesystem::path& path, std::string_view bytes, std::string* error) {
    std::string temporary = path.string() + ".XXXXXX";
    int file = ::mkstemp(temporary.data());
    if (file < 0) return failed(path, errno, error);
    size_t done = 0;
    int code = 0;
    while (done < bytes.size()) {
        ssize_t wrote = ::write(file, bytes.data() + done, bytes.size() - done);
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote <= 0) {
            code = wrote < 0 ? errno : EIO;
            break;
        }
        done += size_t(wrote);
    }
    if (!code && ::fchmod(file, 0644) != 0) code = errno;
    if (::close(file) != 0 && !code) code = errno;
    if (!code && ::rename(temporary.c_str(), path.c_str()) != 0) code = errno;
    if (code) {
        ::unlink(temporary.c_str());
        return failed(path, code, error);
    }
    return true;
}

bool readWholeFile(const std::filesystem::path& path, std::string& bytes, std::string* error) {
    int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return failed(path, errno, error);
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(file);
        if (error) *error = path.string() + ": not a regular file";
        return false;
    }
    bytes.clear();
    char buffer[1 << 16];
    for (;;) {
        ssize_t got = ::read(file, buffer, sizeof buffer);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) {
            int code = errno;
            ::close(file);
            return failed(path, code, error);
        }
        if (got == 0) break;
        bytes.append(buffer, size_t(got));
    }
    ::close(file);
    return true;
}

}  // namespace jtk::review
