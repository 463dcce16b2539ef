// File mapping, decoding in parallel, comparing and writing the picture.
#include "JTK/imaging/FileDifference.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <span>
#include <thread>
#include <vector>

#include "JTK/imaging/ImageDifference.h"
#include "JTK/imaging/PNG.h"

namespace jtk::imaging {

namespace {

using Bytes = std::span<const uint8_t>;

// A file's bytes, mapped read-only: no copy and no buffer to fault in,
// which is most of the cost of answering two byte-identical files.
class MappedFile {
public:
    static std::unique_ptr<MappedFile> open(const std::string& path, std::string* error) {
        int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (file < 0) {
            *error = path + ": " + std::strerror(errno);
            return nullptr;
        }
        struct stat status {};
        if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
            *error = path + ": not a regular file";
            ::close(file);
            return nullptr;
        }
        auto mapped = std::unique_ptr<MappedFile>(new MappedFile);
        mapped->size_ = static_cast<size_t>(status.st_size);
        if (mapped->size_ > 0) {
            void* address = ::mmap(nullptr, mapped->size_, PROT_READ, MAP_PRIVATE | MAP_POPULATE, file, 0);
            if (address == MAP_FAILED) {
                *error = path + ": " + std::strerror(errno);
                ::close(file);
                return nullptr;
            }
            mapped->address_ = address;
        }
        ::close(file);
        return mapped;
    }
    ~MappedFile() {
        if (address_) ::munmap(address_, size_);
    }
    std::span<const uint8_t> bytes() const { return {static_cast<const uint8_t*>(address_), size_}; }

private:
    MappedFile() = default;
    void* address_ = nullptr;
    size_t size_ = 0;
};

// Writes beside the target and renames over it, so that a reader sees the
// old file or the whole new one, never a part.
bool writeWholeFile(const std::string& path, const std::vector<uint8_t>& bytes, std::string* error) {
    std::string temporary = path + ".XXXXXX";
    int file = ::mkstemp(temporary.data());
    if (file < 0) {
        *error = path + ": " + std::strerror(errno);
        return false;
    }
    size_t done = 0;
    while (done < bytes.size()) {
        ssize_t wrote = ::write(file, bytes.data() + done, bytes.size() - done);
        if (wrote < 0 && errno == EINTR) continue;
        if (wrote <= 0) break;
        done += static_cast<size_t>(wrote);
    }
    int savedErrno = errno;
    bool written = done == bytes.size() && ::fchmod(file, 0644) == 0;
    if (::close(file) != 0 && written) written = false, savedErrno = errno;
    if (written && ::rename(temporary.c_str(), path.c_str()) != 0) written = false, savedErrno = errno;
    if (!written) {
        ::unlink(temporary.c_str());
        *error = path + ": " + std::strerror(savedErrno ? savedErrno : EIO);
    }
    return written;
}

FileDifference badInput(std::string error) {
    FileDifference result;
    result.error = std::move(error);
    return result;
}

template <typename AnImage, typename Decode>
FileDifference compareDecoded(const Bytes& acceptedBytes, const Bytes& newBytes, const std::string& acceptedPath,
                              const std::string& newPath, const std::optional<std::string>& differencePath,
                              Decode decode) {
    std::optional<AnImage> accepted, newImage;
    std::string acceptedError, newError;
    std::thread other([&] {
        try {
            newImage = decode(newBytes, &newError);
        } catch (const std::exception& failure) {
            newError = failure.what();
        }
    });
    try {
        accepted = decode(acceptedBytes, &acceptedError);
    } catch (const std::exception& failure) {
        acceptedError = failure.what();
    }
    other.join();
    if (!accepted) return badInput(acceptedPath + ": " + acceptedError);
    if (!newImage) return badInput(newPath + ": " + newError);

    FileDifference result;
    if (accepted->width != newImage->width || accepted->height != newImage->height) {
        result.sizes = std::to_string(accepted->width) + "x" + std::to_string(accepted->height) + " and " +
                       std::to_string(newImage->width) + "x" + std::to_string(newImage->height);
    }
    // Counting costs a small part of making the picture (under a tenth), so
    // equal pixels in other bytes are answered without encoding anything.
    result.differingPixels = countDifferingPixels(*accepted, *newImage);
    bool differs = result.differingPixels > 0 || !result.sizes.empty();
    if (differs && differencePath) {
        auto picture = imageDifferencePNG(*accepted, *newImage);
        std::string error;
        if (picture.empty()) return badInput(*differencePath + ": the picture cannot be encoded");
        if (!writeWholeFile(*differencePath, picture, &error)) return badInput(error);
    }
    result.outcome = differs ? FileDifference::Outcome::different : FileDifference::Outcome::equal;
    return result;
}

}  // namespace

FileDifference compareImageFiles(const std::string& acceptedPath, const std::string& newPath,
                                 const std::optional<std::string>& differencePath) {
    std::string error;
    auto acceptedFile = MappedFile::open(acceptedPath, &error);
    if (!acceptedFile) return badInput(error);
    auto newFile = MappedFile::open(newPath, &error);
    if (!newFile) return badInput(error);
    Bytes acceptedBytes = acceptedFile->bytes(), newBytes = newFile->bytes();
    // The headers are checked even for identical bytes, so that two copies
    // of something that is not a PNG file are not called equal pictures.
    auto acceptedHeader = readPNGHeader(acceptedBytes, &error);
    if (!acceptedHeader) return badInput(acceptedPath + ": " + error);
    auto newHeader = readPNGHeader(newBytes, &error);
    if (!newHeader) return badInput(newPath + ": " + error);
    if (std::ranges::equal(acceptedBytes, newBytes)) {
        FileDifference same;
        same.outcome = FileDifference::Outcome::equal;
        return same;
    }
    if (acceptedHeader->bitDepth == 16 || newHeader->bitDepth == 16) {
        return compareDecoded<Image16>(acceptedBytes, newBytes, acceptedPath, newPath, differencePath,
                                       [](const Bytes& bytes, std::string* why) { return decodePNG16(bytes, why); });
    }
    return compareDecoded<Image>(acceptedBytes, newBytes, acceptedPath, newPath, differencePath,
                                 [](const Bytes& bytes, std::string* why) { return decodePNG(bytes, why); });
}

}  // namespace jtk::imaging
