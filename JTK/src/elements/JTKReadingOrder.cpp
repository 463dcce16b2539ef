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

platform::Rect jtkScreenFrame(const std::shared_ptr<platform::View>& view) {
    if (!view) return {};
    return jtkOnMainThread([&] {
        platform::Rect inWindow = view->convertRectToWindow(view->bounds());
        auto window = view->window();
        return window ? window->convertRectToScreen(inWindow) : platform::Rect{};
    });
}

int64_t jtkTruncatedCoordinate(double value, int64_t nanValue) {
    if (std::isnan(value)) return nanValue;
    // 2^63 is exactly representable; every double below it truncates into range.
    constexpr double limit = 9223372036854775808.0;
    if (value >= limit) return std::numeric_limits<int64_t>::max();
    if (value < -limit) return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(value);  // the conversion truncates toward zero
}

ViewList jtkSortedInReadingOrder(ViewList views) {
    return jtkOnMainThread([&] {
        // Highest top edge first. The frames are converted again in every
        // comparison: the order follows the live geometry, nothing is cached.
        std::stable_sort(views.begin(), views.end(), [](const auto& a, const auto& b) {
            return topKey(jtkScreenFrame(a).maxY()) > topKey(jtkScreenFrame(b).maxY());
        });

        ViewList sorted;
        sorted.reserve(views.size());
        auto rowStart = views.begin();
        auto sortRow = [&](ViewList::iterator end) {
            std::stable_sort(rowStart, end, [](const auto& a, const auto& b) {
                return leftKey(jtkScreenFrame(a).minX()) < leftKey(jtkScreenFrame(b).minX());
            });
            std::move(rowStart, end, std::back_inserter(sorted));
        };
        // A top edge that is not a number belongs to the lowest row.
        constexpr int64_t lowest = std::numeric_limits<int64_t>::min();
        int64_t key = 0;
        for (auto it = views.begin(); it != views.end(); ++it) {
            int64_t top = jtkTruncatedCoordinate(jtkScreenFrame(*it).maxY(), lowest);
            if (it == views.begin()) {
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
        sortRow(views.end());
        return sorted;
    });
}

}  // namespace jtk
