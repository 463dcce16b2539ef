// JTKElement: creation, equality, ancestors, texts, geometry, the searches
// below an element and lookup matching.
#include "JTK/JTKElement.h"

#include "elements/JTKLookup.h"
#include "run/JTKMainThread.h"
#include "run/JTKProcessEnd.h"
#include "elements/JTKReadingOrder.h"
#include "elements/JTKSearchPass.h"
#include "elements/JTKViewTexts.h"
#include "JTK/platform/Window.h"

namespace jtk {

namespace {

constexpr const char* elementLocation = "JTK/JTKElement";

std::vector<JTKElement> wrap(const std::vector<std::shared_ptr<platform::View>>& views) {
    std::vector<JTKElement> elements;
    elements.reserve(views.size());
    for (const auto& view : views) elements.emplace_back(view);
    return elements;
}

}  // namespace

JTKElement::JTKElement(std::shared_ptr<platform::View> view) : view_(view) {
    // Without a view there is no name and no place: the description stays
    // empty and every operation that needs the view stops the run.
    if (!view) return;
    std::string name = viewName(view);
    elementLookupDescription_ = jtkDefaultLookupDescription(name, frameCenterOnScreen());
}

std::shared_ptr<platform::View> JTKElement::requireView(const char* operation) const {
    auto view = view_.lock();
    if (!view)
        jtkFatalStop("Element \"" + elementLookupDescription_ + "\" no longer has a view (" + operation + ")",
                     elementLocation);
    return view;
}

bool JTKElement::isEqual(const JTKElement* other) const {
    auto mine = view_.lock();
    auto theirs = other ? other->view_.lock() : nullptr;
    return mine == theirs;  // both empty, or the same view
}

std::optional<JTKElement> JTKElement::superElement() const {
    auto superview = jtkOnMainThread([&] { return requireView("superElement")->superview(); });
    if (!superview) return std::nullopt;
    return JTKElement(superview);
}

std::vector<JTKElement> JTKElement::superElements() const {
    // The chain is read in one step and held strongly, so each ancestor
    // exists while its element is made.
    auto chain = jtkOnMainThread([&] {
        std::vector<std::shared_ptr<platform::View>> ancestors;
        for (auto view = requireView("superElements")->superview(); view; view = view->superview())
            ancestors.push_back(view);
        return ancestors;
    });
    return wrap(chain);
}

std::shared_ptr<platform::Object> JTKElement::modelOject() const {
    return jtkOnMainThread([&]() -> std::shared_ptr<platform::Object> {
        auto view = requireView("modelOject");
        if (!view->respondsToSelector("hbModelObject")) return nullptr;
        return view->performSelector("hbModelObject").object();
    });
}

std::string JTKElement::description() const {
    auto view = requireView("description");
    return "Name: " + viewName(view) + "\nValue: " + viewValue(view) + "\nType:\" " + view->description();
}

platform::Rect JTKElement::frameInWindow() const {
    return jtkOnMainThread([&] {
        auto view = requireView("frameInWindow");
        return view->convertRectToWindow(view->bounds());
    });
}

platform::Rect JTKElement::frameOnScreen() const {
    return jtkOnMainThread([&] {
        requireView("frameOnScreen");
        return jtkScreenFrame(view());
    });
}

platform::Point JTKElement::frameCenterOnScreen() const {
    return jtkOnMainThread([&] {
        platform::Rect frame = frameOnScreen();
        return platform::Point{frame.midX(), frame.midY()};
    });
}

bool JTKElement::matchesLookup(const std::string& lookup) const {
    return jtkOnMainThread([&] {
        auto view = requireView("matchesLookup");
        return jtkViewMatchesLookup(*view, jtkReadViewName(*view), elementLookupDescription_, lookup);
    });
}

std::vector<JTKElement> JTKElement::subElements(const std::string& lookup) const {
    // The whole search is one main-thread step: the subtree is walked, read
    // and tested at one moment.
    return jtkOnMainThread([&] { return JTKSearchPass::walk(requireView("subElements")).matches(lookup); });
}

JTKElement JTKElement::subElement(const std::string& lookup) const {
    auto first = jtkOnMainThread([&] { return JTKSearchPass::walk(requireView("subElement")).matches(lookup, {}, 1); });
    if (first.empty()) jtkFatalStop("subElement matching \"" + lookup + "\" doesn't exist", elementLocation);
    return first.front();
}

std::vector<JTKElement> JTKElement::subElementsWithType(std::optional<JTKClass> type) const {
    return jtkOnMainThread([&] {
        std::vector<JTKElement> elements;
        for (const auto& view : jtkAllViews(requireView("subElementsWithType")))
            if (!type || jtkPassesTypeRule(view, *type)) elements.emplace_back(view);
        return elements;
    });
}

JTKElement JTKElement::subElementWithType(const JTKClass& type) const {
    auto elements = subElementsWithType(type);
    if (elements.empty()) jtkFatalStop("subElement matching type of \"" + type.name + "\" doesn't exist", elementLocation);
    return elements.front();
}

std::string JTKElement::name() const { return viewName(view()); }
std::string JTKElement::value() const { return viewValue(view()); }
std::string JTKElement::title() const { return viewTitle(view()); }
std::string JTKElement::typeName() const { return viewTypeName(view()); }

}  // namespace jtk
