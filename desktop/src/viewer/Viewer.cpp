// The viewer's life: attach and detach, and the tick that keeps the window in
// step with the desktop. The tick is a repeating run-loop timer in the common
// modes, so it goes on while a menu tracks or a modal alert runs their own
// loops. Each tick hands the person's input to the window server, then draws
// the screen again when the run loop did other work since the last picture
// (the desktop changes nothing otherwise), at most every framePauseSeconds,
// and shows the rows whose pixels changed.
#include "JTK/desktop/Viewer.h"

#include <SDL.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <utility>

#include "JTK/desktop/Application.h"
#include "JTK/desktop/RunLoop.h"
#include "JTK/desktop/WindowServer.h"
#include "JTK/desktop/render/Rendering.h"
#include "JTK/imaging/PNG.h"
#include "JTK/platform/Process.h"
#include "viewer/ViewerInput.h"
#include "viewer/ViewerWindow.h"

namespace jtk::desktop {

namespace {

// Input is handed over this often.
constexpr double tickSeconds = 1.0 / 60;
// Drawing the screen takes a good part of a tick; pausing this long after
// each picture leaves the main thread to the application, so that events
// posted in a burst (a test's drag) are not held up behind the viewer.
constexpr double framePauseSeconds = 0.05;
// Events waiting in the queue go first, unless the picture is this old.
constexpr double stalePictureSeconds = 0.25;

struct ViewerState {
    std::unique_ptr<ViewerWindow> window;
    ViewerInput input;
    std::shared_ptr<platform::Timer> timer;
    std::optional<imaging::Image> shown;  // the picture on screen
    uint64_t workCountSeen = 0;           // the run loop's count after the last tick
    bool screenChanged = false;           // work ran since the picture was drawn
    Clock::time_point pictureTime;        // when the last picture was drawn
    bool closeRequested = false;
    // When set (JTK_VIEWER_FRAME_FILE), every picture shown is also written
    // there as PNG, so that a test can compare it with the display's pixels.
    std::filesystem::path frameFile;
};

// Main thread only, like SDL. Never destroyed: an exit on another thread
// must not make SDL calls; the window goes with the process.
ViewerState& viewerState() {
    static ViewerState& state = *new ViewerState;
    return state;
}

void writeFrameFile(const std::filesystem::path& file, const imaging::Image& picture) {
    // Written aside and renamed, so a reader never sees half a file.
    auto partial = file;
    partial += ".partial";
    auto bytes = imaging::encodePNG(picture);
    {
        std::ofstream out(partial, std::ios::binary | std::ios::trunc);
        out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
        if (!out) return;
    }
    std::error_code ignored;
    std::filesystem::rename(partial, file, ignored);
}

// The rows [first, end) in which two pictures of one size differ; the whole
// height when the sizes differ, an empty range when nothing does.
std::pair<uint32_t, uint32_t> changedRows(const std::optional<imaging::Image>& before, const imaging::Image& after) {
    if (!before || before->width != after.width || before->height != after.height) return {0, after.height};
    size_t rowBytes = size_t(after.width) * 4;
    auto rowDiffers = [&](uint32_t y) { return !std::equal(after.pixel(0, y), after.pixel(0, y) + rowBytes, before->pixel(0, y)); };
    uint32_t first = 0, end = after.height;
    while (first < end && !rowDiffers(first)) ++first;
    while (end > first && !rowDiffers(end - 1)) --end;
    return {first, end};
}

void show(ViewerState& viewer, imaging::Image picture) {
    auto [first, end] = changedRows(viewer.shown, picture);
    if (first == end) return;
    // The file first: it is slow to write, and once the picture is on screen
    // the file should already say so.
    if (!viewer.frameFile.empty()) writeFrameFile(viewer.frameFile, picture);
    viewer.window->present(picture, first, end);
    viewer.shown = std::move(picture);
}

bool isCloseRequest(const SDL_Event& event) {
    return event.type == SDL_QUIT || (event.type == SDL_WINDOWEVENT && event.window.event == SDL_WINDOWEVENT_CLOSE);
}

// Closing the window is quitting: the application's run ends.
void quit(ViewerState& viewer) {
    viewer.closeRequested = true;
    Application::shared()->terminate(0);
}

void handOverInput(ViewerState& viewer) {
    SDL_Event event;
    while (SDL_PollEvent(&event)) {
        if (viewer.closeRequested) continue;
        if (isCloseRequest(event)) {
            quit(viewer);
        } else if (event.type == SDL_WINDOWEVENT && event.window.event == SDL_WINDOWEVENT_EXPOSED) {
            viewer.window->refresh();
        } else {
            for (const auto& posted : viewer.input.translate(event)) WindowServer::shared().postToHid(posted);
        }
    }
}

void tick() {
    auto& viewer = viewerState();
    if (!viewer.window) return;
    handOverInput(viewer);
    if (!viewer.closeRequested && viewer.window->isLost()) quit(viewer);
    if (viewer.closeRequested) return;
    auto& loop = RunLoop::main();
    // This tick is one piece of work; anything beyond it may have changed the screen.
    if (loop.workCount() != viewer.workCountSeen + 1) viewer.screenChanged = true;
    auto sincePicture = Clock::now() - viewer.pictureTime;
    bool due = sincePicture >= RunLoop::toDuration(framePauseSeconds) &&
               (!loop.hasPendingEvents() || sincePicture >= RunLoop::toDuration(stalePictureSeconds));
    if (viewer.screenChanged && due) {
        show(viewer, renderScreen());
        viewer.screenChanged = false;
        viewer.pictureTime = Clock::now();
    }
    viewer.workCountSeen = loop.workCount();
}

}  // namespace

bool viewerRequestedBy(const std::vector<std::string>& arguments, const char* environmentValue) {
    if (environmentValue && std::string(environmentValue) == "1") return true;
    for (size_t i = 1; i < arguments.size(); ++i)
        if (arguments[i] == "--viewer") return true;
    return false;
}

bool viewerRequested() { return viewerRequestedBy(platform::processArguments(), std::getenv("JTK_VIEWER")); }

bool attachViewer() {
    auto& viewer = viewerState();
    if (viewer.window) return true;
    if (!RunLoop::main().isMainThread()) {
        std::fprintf(stderr, "JTK viewer: attachViewer() must be called on the main thread; the desktop runs headless\n");
        return false;
    }
    auto picture = renderScreen();
    std::string failure;
    viewer.window = ViewerWindow::open("JTK viewer: " + Application::shared()->name(), picture.width, picture.height,
                                       failure);
    if (!viewer.window) {
        std::fprintf(stderr, "JTK viewer: cannot open a window (%s); the desktop runs headless\n", failure.c_str());
        std::fflush(stderr);
        return false;
    }
    viewer.input = ViewerInput();
    viewer.closeRequested = false;
    viewer.shown.reset();
    const char* frameFile = std::getenv("JTK_VIEWER_FRAME_FILE");
    viewer.frameFile = frameFile ? frameFile : "";
    show(viewer, std::move(picture));
    viewer.screenChanged = false;
    viewer.pictureTime = Clock::now();
    auto& loop = RunLoop::main();
    viewer.workCountSeen = loop.workCount();
    viewer.timer = loop.addTimer(tickSeconds, true, [](platform::Timer&) { tick(); }, true);
    return true;
}

bool attachViewerIfRequested() { return viewerRequested() && attachViewer(); }

void detachViewer() {
    auto& viewer = viewerState();
    if (viewer.timer) viewer.timer->invalidate();
    viewer.timer.reset();
    viewer.window.reset();
    viewer.shown.reset();
}

bool isViewerAttached() { return viewerState().window != nullptr; }

}  // namespace jtk::desktop
