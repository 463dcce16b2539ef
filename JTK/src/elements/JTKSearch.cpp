// The application-wide searches of JTKTestSuite: windows, the views of all
// windows in reading order, and the elements matching a lookup string.
#include <optional>

#include "elements/JTKLookup.h"
#include "run/JTKMainThread.h"
#include "run/JTKProcessEnd.h"
#include "elements/JTKSearchPass.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Window.h"

namespace jtk {

namespace {

constexpr const char* suiteLocation = "JTK/JTKTestSuite";

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
    for (const auto& view : jtkOnMainThread([] { return JTKSearchPass::windowContentViews(); }))
        elements.emplace_back(view);
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

// Each search below runs as one main-thread step: the windows are walked,
// each view read once, sorted, wrapped and tested at one moment, rather than
// in one hop from the test queue per candidate.

std::vector<std::shared_ptr<platform::View>> JTKTestSuite::appViews() {
    return jtkOnMainThread([] { return JTKSearchPass::windowsInReadingOrder().views(); });
}

std::vector<JTKElement> JTKTestSuite::appElements() {
    return jtkOnMainThread([] { return JTKSearchPass::applicationElements().elements(); });
}

std::vector<JTKElement> JTKTestSuite::elements(const std::string& lookup) { return elements(lookup, std::nullopt); }

std::vector<JTKElement> JTKTestSuite::elements(const std::string& lookup, std::optional<JTKClass> where) {
    return jtkOnMainThread([&] { return JTKSearchPass::applicationElements().matches(lookup, where); });
}

JTKElement JTKTestSuite::element(const std::string& lookup) { return element(lookup, std::nullopt); }

JTKElement JTKTestSuite::element(const std::string& lookup, std::optional<JTKClass> where) {
    auto first = jtkOnMainThread([&] { return JTKSearchPass::applicationElements().matches(lookup, where, 1); });
    if (!first.empty()) return first.front();
    return waitForExistence(lookup, where, 1.0);
}

std::vector<JTKElement> JTKTestSuite::elementsWhere(const JTKClass& type, const std::string& contains) {
    return jtkOnMainThread([&] {
        auto pass = JTKSearchPass::windowsInReadingOrder();  // keeps the views alive meanwhile
        std::vector<JTKElement> kept;
        for (auto& candidate : pass.elements(type)) {
            // The walk below the candidate starts with its own view, so a box
            // whose own title matches is kept too.
            if (!JTKSearchPass::walk(candidate.view()).matches(contains, std::nullopt, 1).empty())
                kept.push_back(std::move(candidate));
        }
        return kept;
    });
}

}  // namespace jtk
