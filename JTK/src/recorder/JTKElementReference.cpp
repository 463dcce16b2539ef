#include "recorder/JTKElementReference.h"

#include <algorithm>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/StatusBar.h"
#include "elements/JTKViewTexts.h"

namespace jtk {

namespace {

struct Candidate {
    JTKElement element;
    platform::Rect frame;
    size_t subviewCount;
};

}  // namespace

std::optional<JTKElement> jtkClickTarget(platform::Point screenPoint) {
    std::vector<Candidate> kept;
    for (auto& element : JTKTestSuite::appElements()) {
        auto view = element.view();
        // A view that went away meanwhile is no target.
        if (!view || view->className() == platform::statusBarButtonClassName) continue;
        platform::Rect frame = element.frameOnScreen();
        if (platform::pointInRect(screenPoint, frame)) kept.push_back({element, frame, view->subviews().size()});
    }
    // "Narrower and shorter" orders only some pairs, so it is no ordering a
    // library sort may assume: an insertion sort moves each element in front
    // of the ones it fits inside and leaves every other pair as it was.
    auto fitsInside = [](const Candidate& a, const Candidate& b) {
        return a.frame.width() < b.frame.width() && a.frame.height() < b.frame.height();
    };
    for (size_t i = 1; i < kept.size(); ++i)
        for (size_t j = i; j > 0 && fitsInside(kept[j], kept[j - 1]); --j) std::swap(kept[j], kept[j - 1]);
    std::stable_sort(kept.begin(), kept.end(),
                     [](const Candidate& a, const Candidate& b) { return a.subviewCount < b.subviewCount; });
    if (kept.empty()) return std::nullopt;
    return kept.front().element;
}

namespace {

// The element by its title among the views of its class; none when it has
// no title or the search does not find it.
std::optional<JTKElementReference> titleReference(const JTKElement& element, const std::shared_ptr<platform::View>& view) {
    std::string title = viewTitle(view), className = viewTypeName(view);
    if (title.empty() || className.empty()) return std::nullopt;
    auto found = JTKTestSuite::elements(title, JTKClass{className});
    auto position = std::find(found.begin(), found.end(), element);
    if (position == found.end()) return std::nullopt;
    std::optional<size_t> index;
    if (found.size() > 1) index = static_cast<size_t>(position - found.begin());
    return JTKElementReference{title, index, {}, className};
}

}  // namespace

JTKElementReference jtkElementReference(const JTKElement& element, JTKDialect dialect) {
    auto view = element.requireView("record");
    std::string lookup = viewName(view);
    if (lookup.empty() && dialect == JTKDialect::cpp)
        if (auto byTitle = titleReference(element, view)) return *byTitle;
    std::optional<JTKElement> namedAncestor;
    if (lookup.empty()) {
        lookup = viewTypeName(view);
        auto ancestors = element.superElements();  // nearest first
        for (auto it = ancestors.rbegin(); it != ancestors.rend(); ++it) {
            std::string name = viewName(it->view());
            if (name.empty()) continue;
            lookup = name;
            namedAncestor = *it;
        }
    }
    platform::Point shift{};
    if (namedAncestor) {
        platform::Point own = element.frameCenterOnScreen(), named = namedAncestor->frameCenterOnScreen();
        shift = {own.x - named.x, own.y - named.y};
    }
    auto found = JTKTestSuite::elements(lookup);
    if (found.size() == 1) return {lookup, std::nullopt, shift};
    size_t index = 0;
    if (found.size() >= 2) {
        auto position = found.end();
        if (namedAncestor) {
            position = std::find_if(found.begin(), found.end(), [&](const JTKElement& candidate) {
                return candidate.elementLookupDescription() == namedAncestor->elementLookupDescription();
            });
        }
        if (position == found.end())
            position = std::find_if(found.begin(), found.end(), [&](const JTKElement& candidate) { return candidate == element; });
        // Found neither way: the first one, the most likely to be meant.
        if (position != found.end()) index = static_cast<size_t>(position - found.begin());
    }
    return {lookup, index, shift};
}

}  // namespace jtk
