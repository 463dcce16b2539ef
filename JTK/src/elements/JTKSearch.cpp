// The application-wide searches of JTKTestSuite: windows, the views of all
// windows in reading order, and the elements matching a lookup string.
#include <optional>

#include "elements/JTKLookup.h"
#include "run/JTKMainThread.h"
#include "run/JTKProcessEnd.h"
#include "elements/JTKReadingOrder.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Window.h"

namespace jtk {

namespace {

constexpr const char* suiteLocation = "JTK/JTKTestSuite";

// The content views of all windows in window-list order. A window without a
// content view has nothing to search and is left out.
std::vector<std::shared_ptr<platform::View>> contentViews() {
    return jtkOnMainThread([] {
        std::vector<std::shared_ptr<platform::View>> views;
        for (const auto& window : platform::sharedApplication()->windows())
            if (auto content = window ? window->contentView() : nullptr) views.push_back(std::move(content));
        return views;
    });
}

// The class argument narrows a search by the type-name rule; none keeps all.
bool passesType(const JTKElement& element, const std::optional<JTKClass>& type) {
    return !type || jtkPassesTypeRule(element.view(), *type);
}

// Whether the sub-element search of the candidate finds a match. The search
// starts with the candidate's own view, so a box whose own title matches
// counts. The subtree is wrapped in one step and each view tested in its own;
// a view that went away meanwhile matches nothing.
bool subtreeHasMatch(const JTKElement& candidate, const std::string& lookup) {
    auto subtree = jtkOnMainThread([&] {
        std::vector<JTKElement> elements;
        for (const auto& view : jtkAllViews(candidate.view())) elements.emplace_back(view);
        return elements;
    });
    for (const auto& element : subtree)
        if (jtkOnMainThread([&] { return element.view() && element.matchesLookup(lookup); })) return true;
    return false;
}

}  // namespace

JTKElement JTKTestSuite::keyWindow() {
    auto content = jtkOnMainThread([]() -> std::optional<std::shared_ptr<platform::View>> {
        auto application = platform::sharedApplication();
        auto window = application->keyWindow();
        if (!window) {
            auto windows = application->windows();
            if (windows.empty()) return std::nullopt;
            window = windows.front();
        }
        return window ? window->contentView() : nullptr;
    });
    if (!content) jtkFatalStop("keyWindow: the application has no window", suiteLocation);
    if (!*content) jtkFatalStop("keyWindow: the window has no content view", suiteLocation);
    return JTKElement(*content);
}

std::vector<JTKElement> JTKTestSuite::appWindows() {
    // The content views are read on the main thread; the elements are made
    // on the calling thread, each with its own steps.
    std::vector<JTKElement> elements;
    for (const auto& view : contentViews()) elements.emplace_back(view);
    return elements;
}

JTKElement JTKTestSuite::appWindow(const std::string& title) {
    auto found = jtkOnMainThread([&]() -> std::optional<JTKElement> {
        for (auto& element : appWindows()) {
            auto view = element.view();
            auto window = view ? view->window() : nullptr;
            if (window && jtkTextEquals(window->title(), title)) return element;
        }
        return std::nullopt;
    });
    if (!found) jtkFatalStop("window matching " + title + " doesn't exist", suiteLocation);
    return *found;
}

std::vector<std::shared_ptr<platform::View>> JTKTestSuite::appViews() {
    return jtkOnMainThread([] {
        std::vector<std::shared_ptr<platform::View>> views;
        for (const auto& window : appWindows()) {
            auto walked = jtkAllViews(window.view());
            views.insert(views.end(), std::make_move_iterator(walked.begin()), std::make_move_iterator(walked.end()));
        }
        return jtkSortedInReadingOrder(std::move(views));
    });
}

std::vector<JTKElement> JTKTestSuite::appElements() {
    return jtkOnMainThread([] {
        std::vector<JTKElement> elements;
        for (const auto& view : appViews()) elements.emplace_back(view);
        // Window elements come last, so a walked content view occurs twice.
        for (auto& window : appWindows()) elements.push_back(std::move(window));
        return elements;
    });
}

std::vector<JTKElement> JTKTestSuite::elements(const std::string& lookup) { return elements(lookup, std::nullopt); }

std::vector<JTKElement> JTKTestSuite::elements(const std::string& lookup, std::optional<JTKClass> where) {
    auto candidates = appElements();
    // One step per candidate: the application may change its views between
    // them, and a candidate whose view has gone meanwhile is not a match.
    std::vector<JTKElement> matches;
    for (auto& candidate : candidates) {
        bool keep = jtkOnMainThread(
            [&] { return candidate.view() && passesType(candidate, where) && candidate.matchesLookup(lookup); });
        if (keep) matches.push_back(std::move(candidate));
    }
    return matches;
}

JTKElement JTKTestSuite::element(const std::string& lookup) { return element(lookup, std::nullopt); }

JTKElement JTKTestSuite::element(const std::string& lookup, std::optional<JTKClass> where) {
    auto first = jtkOnMainThread([&]() -> std::optional<JTKElement> {
        auto found = elements(lookup, where);
        if (found.empty()) return std::nullopt;
        return found.front();
    });
    if (first) return *first;
    return waitForExistence(lookup, where, 1.0);
}

std::vector<JTKElement> JTKTestSuite::elementsWhere(const JTKClass& type, const std::string& contains) {
    auto candidates = jtkOnMainThread([&] {
        std::vector<JTKElement> elements;
        for (const auto& view : appViews())
            if (jtkPassesTypeRule(view, type)) elements.emplace_back(view);
        return elements;
    });
    std::vector<JTKElement> kept;
    for (auto& candidate : candidates)
        if (subtreeHasMatch(candidate, contains)) kept.push_back(std::move(candidate));
    return kept;
}

}  // namespace jtk
