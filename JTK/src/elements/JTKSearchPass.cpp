#include "elements/JTKSearchPass.h"

#include "elements/JTKLookup.h"
#include "elements/JTKReadingOrder.h"
#include "elements/JTKViewTexts.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Window.h"

namespace jtk {

std::vector<std::shared_ptr<platform::View>> JTKSearchPass::windowContentViews() {
    std::vector<std::shared_ptr<platform::View>> views;
    for (const auto& window : platform::sharedApplication()->windows())
        if (auto content = window ? window->contentView() : nullptr) views.push_back(std::move(content));
    return views;
}

JTKSearchPass JTKSearchPass::windowsInReadingOrder() {
    JTKSearchPass pass;
    for (const auto& content : windowContentViews()) pass.addWalk(content);
    pass.sortInReadingOrder();
    return pass;
}

JTKSearchPass JTKSearchPass::applicationElements() {
    JTKSearchPass pass = windowsInReadingOrder();
    // A walked content view therefore occurs twice, the second time at the end.
    for (auto& content : windowContentViews()) pass.add(std::move(content));
    return pass;
}

JTKSearchPass JTKSearchPass::walk(const std::shared_ptr<platform::View>& view) {
    JTKSearchPass pass;
    pass.addWalk(view);
    return pass;
}

void JTKSearchPass::addWalk(const std::shared_ptr<platform::View>& root) {
    // No reserve here: a pass adds one walk per window, and reserving each
    // walk's exact size would move the whole list once per window.
    for (auto& view : jtkAllViews(root)) add(std::move(view));
}

void JTKSearchPass::add(std::shared_ptr<platform::View> view) {
    platform::Rect frame = jtkReadScreenFrame(*view);
    candidates_.push_back({std::move(view), frame});
}

void JTKSearchPass::sortInReadingOrder() {
    std::vector<platform::Rect> frames;
    frames.reserve(candidates_.size());
    for (const auto& candidate : candidates_) frames.push_back(candidate.screenFrame);
    std::vector<Candidate> sorted;
    sorted.reserve(candidates_.size());
    for (size_t index : jtkReadingOrder(frames)) sorted.push_back(std::move(candidates_[index]));
    candidates_ = std::move(sorted);
}

std::vector<std::shared_ptr<platform::View>> JTKSearchPass::views() const {
    std::vector<std::shared_ptr<platform::View>> views;
    views.reserve(candidates_.size());
    for (const auto& candidate : candidates_) views.push_back(candidate.view);
    return views;
}

bool JTKSearchPass::passes(const Candidate& candidate, const std::optional<JTKClass>& type) {
    return !type || jtkTextEquals(jtkReadViewTypeName(*candidate.view), type->name);
}

JTKElement JTKSearchPass::makeElement(const Candidate& candidate, const std::string& name) {
    const platform::Rect& frame = candidate.screenFrame;
    return JTKElement(candidate.view, jtkDefaultLookupDescription(name, {frame.midX(), frame.midY()}));
}

std::vector<JTKElement> JTKSearchPass::elements(const std::optional<JTKClass>& type) const {
    std::vector<JTKElement> elements;
    for (const auto& candidate : candidates_)
        if (passes(candidate, type)) elements.push_back(makeElement(candidate, jtkReadViewName(*candidate.view)));
    return elements;
}

std::vector<JTKElement> JTKSearchPass::matches(const std::string& lookup, const std::optional<JTKClass>& type,
                                               size_t limit) const {
    std::vector<JTKElement> matches;
    for (const auto& candidate : candidates_) {
        if (matches.size() >= limit) break;
        if (!passes(candidate, type)) continue;
        // The name read for the new element's lookup description is the one
        // the lookup test compares first.
        std::string name = jtkReadViewName(*candidate.view);
        JTKElement element = makeElement(candidate, name);
        if (jtkViewMatchesLookup(*candidate.view, name, element.elementLookupDescription(), lookup))
            matches.push_back(std::move(element));
    }
    return matches;
}

}  // namespace jtk
