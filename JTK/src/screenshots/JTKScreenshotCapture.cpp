#include "screenshots/JTKScreenshotCapture.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "elements/JTKReadingOrder.h"
#include "run/JTKConsole.h"
#include "run/JTKProcessEnd.h"
#include "screenshots/JTKScreenshotNames.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/imaging/PNG.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Images.h"
#include "JTK/platform/Window.h"

namespace jtk {

namespace fs = std::filesystem;

namespace {

JTKScreenshotCounts runCounts;  // main thread only

fs::path captureFile(const fs::path& folder, const std::shared_ptr<platform::View>& view) {
    return folder / (screenshotFileName(view) + ".png");
}

// The whole file, or none when it is missing or cannot be read (a folder of
// that name included).
std::optional<std::vector<uint8_t>> readWholeFile(const fs::path& file) {
    std::FILE* stream = std::fopen(file.c_str(), "rb");
    if (!stream) return std::nullopt;
    std::vector<uint8_t> bytes;
    uint8_t buffer[65536];
    size_t count;
    while ((count = std::fread(buffer, 1, sizeof buffer, stream)) > 0) bytes.insert(bytes.end(), buffer, buffer + count);
    bool failed = std::ferror(stream) != 0;
    std::fclose(stream);
    if (failed) return std::nullopt;
    return bytes;
}

// Writes the bytes in place (not through a temporary file, so that a file
// that may be replaced but not created still is); a write that fails part way
// removes what it left, so no half-written image stays behind.
std::string writeWholeFile(const fs::path& file, const std::vector<uint8_t>& bytes) {
    std::FILE* stream = std::fopen(file.c_str(), "wb");
    if (!stream) return std::strerror(errno);
    bool complete = std::fwrite(bytes.data(), 1, bytes.size(), stream) == bytes.size();
    int error = complete ? 0 : errno;
    if (std::fclose(stream) != 0 && complete) {
        complete = false;
        error = errno;
    }
    if (complete) return {};
    std::error_code ignored;
    fs::remove(file, ignored);
    return std::strerror(error ? error : EIO);
}

}  // namespace

std::optional<std::vector<uint8_t>> JTKScreenshotCapture::capturePNG(const std::shared_ptr<platform::View>& view) {
    if (!view) return std::nullopt;
    auto bitmap = platform::bitmapForCachingDisplay(*view);
    if (!bitmap || !platform::cacheDisplayInBitmap(*view, *bitmap)) return std::nullopt;
    std::vector<uint8_t> png = imaging::encodePNG(*bitmap);  // a failure is zero bytes
    if (static_cast<int64_t>(png.size()) < fileSizeThreshold()) return std::nullopt;
    return png;
}

JTKScreenshotCapture::WriteResult JTKScreenshotCapture::writeCapture(const fs::path& folder,
                                                                     const std::shared_ptr<platform::View>& view) {
    auto png = capturePNG(view);
    if (!png) return WriteResult::noCapture;
    std::error_code error;
    fs::create_directories(folder, error);
    if (error || !fs::is_directory(folder)) {
        if (!error) error = std::make_error_code(std::errc::not_a_directory);
        jtkPrintLine("Could not create the folder \"" + folder.string() + "\": " + error.message());
        return WriteResult::failed;
    }
    fs::path file = captureFile(folder, view);
    if (std::string reason = writeWholeFile(file, *png); !reason.empty()) {
        jtkPrintLine("Could not write the file \"" + file.filename().string() + "\" in the folder \"" +
                     folder.string() + "\": " + reason);
        return WriteResult::failed;
    }
    return WriteResult::written;
}

void JTKScreenshotCapture::captureScreenshots(const std::string& testTag) {
    auto root = JTKTestSuite::jtkScreenshotsURL();
    if (!root) jtkFatalStop("A screen shot storage URL must be provided as an extension to JTKTestSuite", "JTK/screenshots");
    fs::path testFolder = *root / JTKTestSuite::jtkTestVersion() / testTag;

    for (const auto& window : platform::sharedApplication()->windows()) {
        auto content = window ? window->contentView() : nullptr;
        if (!content) continue;
        for (const auto& view : jtkAllViews(content)) {
            auto accepted = readWholeFile(captureFile(testFolder, view));
            if (!accepted) {
                if (writeCapture(testFolder, view) == WriteResult::written) ++runCounts.storedAsNew;
                continue;
            }
            auto capture = capturePNG(view);
            if (capture && *capture == *accepted) {
                ++runCounts.matched;
                continue;
            }
            if (writeCapture(testFolder / "temp", view) == WriteResult::written) ++runCounts.differed;
        }
    }
}

JTKScreenshotCounts JTKScreenshotCapture::counts() { return runCounts; }

void JTKScreenshotCapture::resetCounts() { runCounts = {}; }

std::string JTKScreenshotCapture::summaryLine(const JTKScreenshotCounts& counts, const fs::path& versionFolder) {
    return "JTK: Screenshots: " + std::to_string(counts.storedAsNew) + " stored as new, " +
           std::to_string(counts.matched) + " matched, " + std::to_string(counts.differed) + " differed; look in " +
           versionFolder.string();
}

}  // namespace jtk
