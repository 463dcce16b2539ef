#include "screenshots/JTKScreenshotCapture.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <algorithm>

#include "elements/JTKReadingOrder.h"
#include "run/JTKConsole.h"
#include "run/JTKAtomicFile.h"
#include "run/JTKProcessEnd.h"
#include "screenshots/JTKScreenshotNames.h"
#include "screenshots/JTKScreenshotPlan.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/imaging/PNG.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Images.h"
#include "JTK/platform/Window.h"

namespace jtk {

namespace fs = std::filesystem;

namespace {

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

namespace {

// The view's picture and its PNG, whatever its size; none when the view
// cannot be drawn.
struct Drawing {
    imaging::Image bitmap;
    std::vector<uint8_t> png;
};

// The masks are painted before encoding, so the bytes never depend on
// what the masked views show.
std::optional<Drawing> drawView(const std::shared_ptr<platform::View>& view, const JTKScreenshotPlan& plan) {
    if (!view) return std::nullopt;
    auto bitmap = platform::bitmapForCachingDisplay(*view);
    if (!bitmap || !platform::cacheDisplayInBitmap(*view, *bitmap)) return std::nullopt;
    plan.paintMasks(*view, *bitmap);
    auto png = imaging::encodePNG(*bitmap);  // a failure is zero bytes
    return Drawing{std::move(*bitmap), std::move(png)};
}

std::string fileNameFor(const std::shared_ptr<platform::View>& view, const JTKScreenshotPlan& plan) {
    return (plan.isMasked(*view) ? maskedScreenshotFileName(view) : screenshotFileName(view)) + ".png";
}

// The same picture: the same bytes, or (an image accepted with another
// encoder) other bytes of the same pixels.
bool showsTheSame(const std::vector<uint8_t>& accepted, const Drawing& drawing) {
    if (accepted == drawing.png) return true;
    auto decoded = imaging::decodePNG(accepted);
    return decoded && *decoded == drawing.bitmap;
}

bool underThreshold(const std::vector<uint8_t>& png, int64_t threshold) {
    return static_cast<int64_t>(png.size()) < threshold;
}

// Makes the folder with its parents; a failure is reported in one line.
bool makeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (!error && fs::is_directory(folder)) return true;
    if (!error) error = std::make_error_code(std::errc::not_a_directory);
    jtkPrintLine("Could not create the folder \"" + folder.string() + "\": " + error.message());
    return false;
}

bool writePNG(const fs::path& folder, const std::string& fileName, const std::vector<uint8_t>& png) {
    if (!makeFolder(folder)) return false;
    if (std::string reason = writeWholeFile(folder / fileName, png); !reason.empty()) {
        jtkPrintLine("Could not write the file \"" + fileName + "\" in the folder \"" + folder.string() + "\": " + reason);
        return false;
    }
    return true;
}

// The names captured, one a line, replacing the list of the last capture.
void writeCapturedList(const fs::path& testFolder, const std::vector<std::string>& names) {
    // No folder: nothing was stored (or it cannot be made, which was said).
    if (!fs::is_directory(testFolder)) return;
    std::string text;
    for (const auto& name : names) text += name + "\n";
    // Unchanged, it is left alone: a run that matches everything writes nothing.
    auto current = readWholeFile(testFolder / jtkCapturedListName);
    if (current && std::string(current->begin(), current->end()) == text) return;
    if (auto error = jtkWriteFileAtomically(testFolder / jtkCapturedListName, text); !error.empty())
        jtkPrintLine("Could not write the list of captured images in \"" + testFolder.string() + "\": " + error);
}

}  // namespace

std::optional<std::vector<uint8_t>> JTKScreenshotCapture::capturePNG(const std::shared_ptr<platform::View>& view) {
    auto drawing = drawView(view, JTKScreenshotPlan::current());
    if (!drawing || underThreshold(drawing->png, fileSizeThreshold())) return std::nullopt;
    return std::move(drawing->png);
}

JTKScreenshotCapture::WriteResult JTKScreenshotCapture::writeCapture(const fs::path& folder,
                                                                     const std::shared_ptr<platform::View>& view) {
    auto plan = JTKScreenshotPlan::current();
    auto drawing = drawView(view, plan);
    if (!drawing || underThreshold(drawing->png, fileSizeThreshold())) return WriteResult::noCapture;
    return writePNG(folder, fileNameFor(view, plan), drawing->png) ? WriteResult::written : WriteResult::failed;
}

JTKCaptureReport JTKScreenshotCapture::captureScreenshots(const std::string& testTag) {
    auto root = JTKTestSuite::jtkScreenshotsURL();
    if (!root) jtkFatalStop("A screen shot storage URL must be provided as an extension to JTKTestSuite", "JTK/screenshots");
    fs::path testFolder = *root / JTKTestSuite::jtkTestVersion() / testTag;

    JTKCaptureReport report;
    std::vector<std::string> captured;
    // The settings made by the tests' code, and the threshold, once for the capture.
    const auto plan = JTKScreenshotPlan::current();
    const int64_t threshold = fileSizeThreshold();
    for (const auto& window : platform::sharedApplication()->windows()) {
        auto content = window ? window->contentView() : nullptr;
        if (!content) continue;
        for (const auto& view : jtkAllViews(content)) {
            if (!plan.photographs(*view)) continue;
            // Drawn and encoded once: the same bytes are compared and written.
            auto drawing = drawView(view, plan);
            if (!drawing) continue;
            const auto* png = &drawing->png;
            if (underThreshold(*png, threshold)) {
                ++report.underThreshold;
                continue;
            }
            std::string fileName = fileNameFor(view, plan);
            if (std::find(captured.begin(), captured.end(), fileName) == captured.end()) captured.push_back(fileName);
            auto accepted = readWholeFile(testFolder / fileName);
            if (accepted && showsTheSame(*accepted, *drawing)) {
                ++report.matched;
            } else if (!writePNG(accepted ? testFolder / "temp" : testFolder, fileName, *png)) {
                ++report.notStored;
            } else if (!accepted) {
                ++report.storedAsNew;
            } else {
                ++report.differed;
                report.differing.push_back(testFolder / "temp" / fileName);
            }
        }
    }
    writeCapturedList(testFolder, captured);
    return report;
}

}  // namespace jtk
