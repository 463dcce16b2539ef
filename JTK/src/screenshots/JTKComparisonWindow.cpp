#include "screenshots/JTKComparisonWindow.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "JTK/imaging/ImageDifference.h"
#include "JTK/imaging/PNG.h"
#include "JTK/platform/Alert.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Controls.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/Notifications.h"
#include "JTK/platform/Window.h"
#include "run/JTKConsole.h"

namespace jtk {

namespace fs = std::filesystem;

namespace {

// A folder's entries in name order, so that every run shows the same
// sequence; empty when the folder cannot be listed.
std::vector<fs::path> listing(const fs::path& folder, bool skipHidden) {
    std::vector<fs::path> entries;
    std::error_code error;
    for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
        if (skipHidden && it->path().filename().string().starts_with(".")) continue;
        entries.push_back(it->path());
    }
    if (error) return {};
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::shared_ptr<const imaging::Image> readImage(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    if (!stream.good() && !stream.eof()) return nullptr;
    auto image = imaging::decodePNG(bytes);
    return image ? std::make_shared<const imaging::Image>(std::move(*image)) : nullptr;
}

// Moves the new capture over the accepted file, under the accepted name.
void replaceItem(const fs::path& accepted, const fs::path& newCapture) {
    std::error_code ignored;
    fs::rename(newCapture, accepted, ignored);
}

}  // namespace

std::shared_ptr<JTKComparisonWindow> JTKComparisonWindow::shared() {
    // Kept until the process ends, never destroyed under a run loop's feet.
    static auto* controller = new std::shared_ptr<JTKComparisonWindow>(make());
    return *controller;
}

std::shared_ptr<JTKComparisonWindow> JTKComparisonWindow::make(std::string interface) {
    return std::make_shared<JTKComparisonWindow>(std::move(interface));
}

JTKComparisonWindow::JTKComparisonWindow(std::string interface) : interface_(std::move(interface)) {}

JTKComparisonWindow::~JTKComparisonWindow() {
    if (eventMonitor_) platform::sharedApplication()->removeMonitor(eventMonitor_);
    if (closeObservation_) platform::defaultNotificationCenter().removeObserver(closeObservation_);
}

void JTKComparisonWindow::showComparisons(const fs::path& versionFolder) {
    platform::sharedApplication()->activateIgnoringOtherApps(true);
    if (!showWindow()) return;
    comparisons = scanComparisons(versionFolder);
    bool anyPair = std::any_of(comparisons.begin(), comparisons.end(), [](const auto& test) { return !test.pairs.empty(); });
    if (anyPair)
        showNextComparison();
    else
        close();
}

JTKComparisonWindow::Comparisons JTKComparisonWindow::scanComparisons(const fs::path& versionFolder) {
    Comparisons result;
    for (const auto& entry : listing(versionFolder, true)) {
        std::error_code error;
        if (fs::exists(fs::symlink_status(entry / "temp", error)))
            result.push_back({entry.filename().string(), pairImages(entry, entry / "temp")});
    }
    return result;
}

std::vector<JTKComparisonWindow::ImagePair> JTKComparisonWindow::pairImages(const fs::path& testFolder,
                                                                            const fs::path& tempFolder) {
    std::error_code error;
    if (!fs::is_directory(tempFolder, error) || !fs::is_directory(testFolder, error)) return {};
    auto newCaptures = listing(tempFolder, false);
    auto accepted = listing(testFolder, false);
    std::vector<ImagePair> pairs;
    for (const auto& capture : newCaptures) {
        auto match = std::find_if(accepted.begin(), accepted.end(),
                                  [&](const fs::path& file) { return file.filename() == capture.filename(); });
        if (match != accepted.end()) pairs.emplace_back(*match, capture);
    }
    return pairs;
}

void JTKComparisonWindow::showNextComparison() {
    compositedImage = nullptr;
    if (comparisons.empty()) return;
    auto& test = comparisons.front();
    if (auto field = testName.lock()) platform::setStringValue(*field, "Test: " + test.testTag);
    if (!test.pairs.empty()) {
        const auto& [accepted, newCapture] = test.pairs.front();
        goodImageURL = accepted;
        originalImage = readImage(accepted);
        compositedImage = originalImage;
        testImageURL = newCapture;
        badImage = readImage(newCapture);
        if (badImage)
            compositedImage = originalImage ? std::make_shared<const imaging::Image>(
                                                  imaging::imageDifference(*originalImage, *badImage))
                                            : nullptr;
    }
    show(compositedImage);
    if (!test.pairs.empty()) test.pairs.erase(test.pairs.begin());
    if (test.pairs.empty()) comparisons.erase(comparisons.begin());
}

void JTKComparisonWindow::acceptCurrentImage() {
    if (goodImageURL && testImageURL) replaceItem(*goodImageURL, *testImageURL);
}

void JTKComparisonWindow::acceptImage() {
    acceptCurrentImage();
    if (!comparisons.empty()) {
        showNextComparison();
        return;
    }
    if (testImageURL) {
        std::error_code ignored;
        fs::remove_all(testImageURL->parent_path(), ignored);
    }
    close();
}

void JTKComparisonWindow::acceptAll() {
    auto alert = platform::makeAlert();
    alert->setMessageText(acceptAllMessage);
    alert->addButtonWithTitle("Ok");
    alert->addButtonWithTitle("Cancel");
    if (alert->runModal() != 1000) return;
    acceptCurrentImage();
    for (const auto& test : comparisons) {
        for (const auto& [accepted, newCapture] : test.pairs) replaceItem(accepted, newCapture);
        if (!test.pairs.empty()) {
            std::error_code ignored;
            fs::remove_all(test.pairs.front().first.parent_path() / "temp", ignored);
        }
    }
    close();
}

void JTKComparisonWindow::connectOutlet(const std::string& outlet, const std::shared_ptr<platform::View>& view) {
    if (outlet == "currentImage") currentImage = view;
    if (outlet == "testName") testName = view;
}

void JTKComparisonWindow::performAction(const std::string& action, const std::shared_ptr<platform::View>&) {
    if (action == "AcceptImage:") acceptImage();
    if (action == "AcceptAll:") acceptAll();
}

bool JTKComparisonWindow::showWindow() {
    if (!window_) {
        auto loaded = platform::loadInterface(interface_, shared_from_this());
        if (!loaded.window) {
            jtkPrintLine("JTK: The comparison window cannot be shown: " + loaded.error +
                         ". The new captures stay in the temp folders.");
            return false;
        }
        window_ = loaded.window;
        windowDidLoad();
    } else if (!eventMonitor_) {
        windowDidLoad();  // shown again after a close: the mouse handling comes back with it
    }
    window_->makeKeyAndOrderFront();
    return true;
}

// Holding the mouse down on the picture shows the new capture; letting go
// shows the difference picture again. Events always go on unchanged.
void JTKComparisonWindow::windowDidLoad() {
    using platform::EventType;
    std::weak_ptr<JTKComparisonWindow> weakSelf = weak_from_this();
    uint64_t mask = platform::eventMaskBit(EventType::leftMouseDown) | platform::eventMaskBit(EventType::leftMouseUp);
    eventMonitor_ = platform::sharedApplication()->addLocalMonitorForEvents(
        mask, [weakSelf](std::shared_ptr<platform::Event> event) {
            auto self = weakSelf.lock();
            auto picture = self ? self->currentImage.lock() : nullptr;
            if (picture && platform::pointInRect(platform::locationInWindow(*event), picture->frame()))
                self->show(event->type == EventType::leftMouseUp ? self->compositedImage : self->badImage);
            return event;
        });
    if (!closeObservation_)
        closeObservation_ = platform::defaultNotificationCenter().addObserver(
            platform::windowWillCloseNotification, platform::Value(window_), platform::DeliveryQueue::postingThread,
            [weakSelf](const platform::Notification&) {
                if (auto self = weakSelf.lock()) self->windowWillClose();
            });
}

void JTKComparisonWindow::windowWillClose() {
    if (!eventMonitor_) return;
    platform::sharedApplication()->removeMonitor(eventMonitor_);
    eventMonitor_ = 0;
}

void JTKComparisonWindow::close() {
    if (window_) window_->close();
}

void JTKComparisonWindow::show(const std::shared_ptr<const imaging::Image>& image) {
    if (auto view = currentImage.lock()) platform::setImage(*view, image);
}

}  // namespace jtk
