#include "elements/JTKReadingOrder.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "run/JTKMainThread.h"
#include "JTK/platform/Window.h"

namespace jtk {

namespace {

using ViewList = std::vector<std::shared_ptr<platform::View>>;

constexpr int64_t rowBand = 20;

// Sort keys that order every double, not-a-number included: a top edge that
// is not a number counts as the lowest, a left edge as the rightmost.
double topKey(double maxY) { return std::isnan(maxY) ? -std::numeric_limits<double>::infinity() : maxY; }
double leftKey(double minX) { return std::isnan(minX) ? std::numeric_limits<double>::infinity() : minX; }

}  // namespace

ViewList jtkAllViews(const std::shared_ptr<platform::View>& view) {
    return jtkOnMainThread([&] {
        ViewList walked;
        if (!view || view->isHidden() || !view->superview()) return walked;
        // An explicit stack keeps deep hierarchies off the call stack.
        ViewList pending{view};
        while (!pending.empty()) {
            auto current = std::move(pending.back());
            pending.pop_back();
            if (!current || current->isHidden()) continue;
            auto subviews = current->subviews();
            walked.push_back(std::move(current));
            for (auto it = subviews.rbegin(); it != subviews.rend(); ++it) pending.push_back(std::move(*it));
        }
        return walked;
    });
}

platform::Rect jtkReadScreenFrame(const platform::View& view) {
    platform::Rect inWindow = view.convertRectToWindow(view.bounds());
    auto window = view.window();
    return window ? window->convertRectToScreen(inWindow) : platform::Rect{};
}

platform::Rect jtkScreenFrame(const std::shared_ptr<platform::View>& view) {
    if (!view) return {};
    return jtkOnMainThread([&] { return jtkReadScreenFrame(*view); });
}

int64_t jtkTruncatedCoordinate(double value, int64_t nanValue) {
    if (std::isnan(value)) return nanValue;
    // 2^63 is exactly representable; every double below it truncates into range.
    constexpr double limit = 9223372036854775808.0;
    if (value >= limit) return std::numeric_limits<int64_t>::max();
    if (value < -limit) return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(value);  // the conversion truncates toward zero
}

std::vector<size_t> jtkReadingOrder(const std::vector<platform::Rect>& frames) {
    std::vector<size_t> order(frames.size());
    for (size_t index = 0; index < order.size(); ++index) order[index] = index;
    // Highest top edge first.
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return topKey(frames[a].maxY()) > topKey(frames[b].maxY()); });

    std::vector<size_t> sorted;
    sorted.reserve(order.size());
    auto rowStart = order.begin();
    auto sortRow = [&](std::vector<size_t>::iterator end) {
        std::stable_sort(rowStart, end,
                         [&](size_t a, size_t b) { return leftKey(frames[a].minX()) < leftKey(frames[b].minX()); });
        sorted.insert(sorted.end(), rowStart, end);
    };
    // A top edge that is not a number belongs to the lowest row.
    constexpr int64_t lowest = std::numeric_limits<int64_t>::min();
    int64_t key = 0;
    for (auto it = order.begin(); it != order.end(); ++it) {
        int64_t top = jtkTruncatedCoordinate(frames[*it].maxY(), lowest);
        if (it == order.begin()) {
            key = top;
            continue;
        }
        // top <= key - 20, written so that neither side can overflow.
        bool opensRow = key >= lowest + rowBand && top <= key - rowBand;
        if (opensRow) {
            sortRow(it);
            rowStart = it;
            key = top;
        }
    }
    sortRow(order.end());
    return sorted;
}

ViewList jtkSortedInReadingOrder(ViewList views) {
    return jtkOnMainThread([&] {
        std::vector<platform::Rect> frames;
        frames.reserve(views.size());
        for (const auto& view : views) frames.push_back(view ? jtkReadScreenFrame(*view) : platform::Rect{});
        ViewList sorted;
        sorted.reserve(views.size());
        for (size_t index : jtkReadingOrder(frames)) sorted.push_back(std::move(views[index]));
        return sorted;
    });
}

}  // namespace jtk
