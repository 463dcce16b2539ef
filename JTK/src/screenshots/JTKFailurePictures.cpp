#include "screenshots/JTKFailurePictures.h"

#include <chrono>
#include <condition_variable>
#include <fstream>
#include <memory>
#include <mutex>

#include "JTK/imaging/PNG.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Images.h"
#include "JTK/platform/Window.h"
#include "run/JTKConsole.h"

namespace jtk {

namespace fs = std::filesystem;

namespace {

constexpr auto mainThreadWait = std::chrono::seconds(5);

// Main thread: the PNG of every window that can be drawn.
std::vector<std::vector<uint8_t>> drawWindows() {
    std::vector<std::vector<uint8_t>> pictures;
    auto application = platform::sharedApplication();
    if (!application) return pictures;
    for (const auto& window : application->windows()) {
        auto frame = window ? window->frameView() : nullptr;
        if (!frame) continue;
        auto bitmap = platform::bitmapForCachingDisplay(*frame);
        if (!bitmap || !platform::cacheDisplayInBitmap(*frame, *bitmap)) continue;
        auto png = imaging::encodePNG(*bitmap);
        if (!png.empty()) pictures.push_back(std::move(png));
    }
    return pictures;
}

struct PendingDrawing {
    std::mutex mutex;
    std::condition_variable done;
    bool finished = false;
    std::vector<std::vector<uint8_t>> pictures;
};

std::vector<std::vector<uint8_t>> drawWindowsFromAnyThread() {
    if (platform::isMainThread()) return drawWindows();
    // Shared with the main-thread work, which may run after this wait gave up.
    auto pending = std::make_shared<PendingDrawing>();
    platform::dispatchAsyncMain([pending] {
        auto pictures = drawWindows();
        std::lock_guard lock(pending->mutex);
        pending->pictures = std::move(pictures);
        pending->finished = true;
        pending->done.notify_all();
    });
    std::unique_lock lock(pending->mutex);
    pending->done.wait_for(lock, mainThreadWait, [&] { return pending->finished; });
    return std::move(pending->pictures);
}

}  // namespace

std::vector<fs::path> jtkTakeFailurePictures(const std::optional<fs::path>& folder, const std::string& testName) {
    std::vector<fs::path> written;
    if (!folder) return written;
    auto pictures = drawWindowsFromAnyThread();
    if (pictures.empty()) return written;
    fs::path testFolder = *folder / testName;
    std::error_code error;
    fs::remove_all(testFolder, error);  // pictures of an earlier run of the test
    fs::create_directories(testFolder, error);
    if (error) {
        jtkPrintLine("JTK: cannot make the folder for failure pictures " + testFolder.string() + ": " + error.message());
        return written;
    }
    for (size_t i = 0; i < pictures.size(); ++i) {
        fs::path file = testFolder / ("window-" + std::to_string(i + 1) + ".png");
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(pictures[i].data()), static_cast<std::streamsize>(pictures[i].size()));
        out.close();
        if (out) written.push_back(file);
        else fs::remove(file, error);
    }
    return written;
}

}  // namespace jtk
