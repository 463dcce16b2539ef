// The settings of JTKScreenshots, kept under a mutex (a test on the test queue
// may set them while nothing else runs; a capture reads them on the main
// thread), and their use by one capture.
#include "screenshots/JTKScreenshotPlan.h"

#include <algorithm>
#include <cmath>
#include <mutex>

#include "JTK/JTKScreenshots.h"
#include "JTK/platform/Process.h"
#include "elements/JTKSearchPass.h"
#include "run/JTKMainThread.h"
#include "screenshots/JTKScreenshotNames.h"

namespace jtk {

namespace {

struct Lookup {
    std::string text;
    std::optional<JTKClass> type;
};

struct Settings {
    std::mutex mutex;
    std::optional<int64_t> sizeThreshold;
    std::vector<Lookup> leftOut, masked;
};

Settings& settings() {
    static Settings shared;
    return shared;
}

// The views the lookups match now, as a test's elements() would find them.
std::vector<std::shared_ptr<platform::View>> viewsMatching(const std::vector<Lookup>& lookups) {
    std::vector<std::shared_ptr<platform::View>> views;
    if (lookups.empty()) return views;
    auto pass = JTKSearchPass::applicationElements();
    for (const auto& lookup : lookups)
        for (const auto& element : pass.matches(lookup.text, lookup.type))
            if (auto view = element.view()) views.push_back(std::move(view));
    return views;
}

bool holds(const std::vector<std::shared_ptr<platform::View>>& views, const platform::View& view) {
    return std::any_of(views.begin(), views.end(), [&](const auto& held) { return held.get() == &view; });
}

// Whether inner is outer or lies inside it.
bool isWithin(const platform::View& inner, const platform::View& outer) {
    if (&inner == &outer) return true;
    for (auto up = inner.superview(); up; up = up->superview())
        if (up.get() == &outer) return true;
    return false;
}

bool isFinite(const platform::Rect& rect) {
    return std::isfinite(rect.minX()) && std::isfinite(rect.minY()) && std::isfinite(rect.maxX()) &&
           std::isfinite(rect.maxY());
}

}  // namespace

void JTKScreenshots::setSizeThreshold(std::optional<int64_t> bytes) {
    std::lock_guard lock(settings().mutex);
    settings().sizeThreshold = bytes;
}

int64_t JTKScreenshots::sizeThreshold() {
    std::optional<int64_t> fromCode;
    {
        std::lock_guard lock(settings().mutex);
        fromCode = settings().sizeThreshold;
    }
    return jtkFileSizeThreshold(platform::processArguments(), fromCode);
}

void JTKScreenshots::leaveOut(const std::string& lookup, std::optional<JTKClass> type) {
    std::lock_guard lock(settings().mutex);
    settings().leftOut.push_back({lookup, std::move(type)});
}

void JTKScreenshots::mask(const std::string& lookup, std::optional<JTKClass> type) {
    std::lock_guard lock(settings().mutex);
    settings().masked.push_back({lookup, std::move(type)});
}

void JTKScreenshots::reset() {
    std::lock_guard lock(settings().mutex);
    settings().sizeThreshold.reset();
    settings().leftOut.clear();
    settings().masked.clear();
}

JTKScreenshotPlan JTKScreenshotPlan::current() {
    std::vector<Lookup> leftOut, masked;
    {
        std::lock_guard lock(settings().mutex);
        leftOut = settings().leftOut;
        masked = settings().masked;
    }
    // The lookups run without the lock: a search may wait for the main thread.
    return jtkOnMainThread([&] { return JTKScreenshotPlan(viewsMatching(leftOut), viewsMatching(masked)); });
}

JTKScreenshotPlan::JTKScreenshotPlan(std::vector<std::shared_ptr<platform::View>> leftOut,
                                     std::vector<std::shared_ptr<platform::View>> masked)
    : leftOut_(std::move(leftOut)), masked_(std::move(masked)) {}

bool JTKScreenshotPlan::photographs(const platform::View& view) const {
    for (const auto& left : leftOut_)
        if (isWithin(view, *left)) return false;
    for (const auto& mask : masked_)
        if (&view != mask.get() && isWithin(view, *mask)) return false;
    return true;
}

bool JTKScreenshotPlan::isMasked(const platform::View& view) const { return holds(masked_, view); }

void JTKScreenshotPlan::paintMasks(const platform::View& view, imaging::Image& picture) const {
    if (masked_.empty() || picture.width == 0 || picture.height == 0) return;
    // The picture shows the view's bounds; both rectangles in window
    // coordinates (y up), scaled to the picture's pixels (rows down).
    platform::Rect shown = view.convertRectToWindow(view.bounds());
    if (shown.isEmpty() || !isFinite(shown)) return;
    double scaleX = picture.width / shown.width(), scaleY = picture.height / shown.height();
    for (const auto& mask : masked_) {
        if (!isWithin(*mask, view)) continue;
        // Only what is not clipped away: a mask never covers what lies
        // outside the scroll view that shows part of the masked view.
        platform::Rect area = mask->convertRectToWindow(mask->visibleRect());
        if (area.isEmpty() || !isFinite(area)) continue;
        // Whole pixels that the area touches, inside the picture.
        auto column = [&](double x) { return std::clamp((x - shown.minX()) * scaleX, 0.0, double(picture.width)); };
        auto row = [&](double y) { return std::clamp((shown.maxY() - y) * scaleY, 0.0, double(picture.height)); };
        auto left = static_cast<uint32_t>(std::floor(column(area.minX())));
        auto right = static_cast<uint32_t>(std::ceil(column(area.maxX())));
        auto top = static_cast<uint32_t>(std::floor(row(area.maxY())));
        auto bottom = static_cast<uint32_t>(std::ceil(row(area.minY())));
        for (uint32_t y = top; y < bottom; ++y) {
            for (uint32_t x = left; x < right; ++x) {
                uint8_t* pixel = picture.pixel(x, y);
                pixel[0] = pixel[1] = pixel[2] = jtkMaskGrey;
                pixel[3] = 0xFF;
            }
        }
    }
}

}  // namespace jtk
