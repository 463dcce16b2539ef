// The application-wide searches of JTKTestSuite, the waits for an element to
// appear, and the diagnostics that print the view tree.
#include <chrono>
#include <optional>
#include <thread>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Window.h"
#include "elements/JTKLookup.h"
#include "elements/JTKSearchPass.h"
#include "elements/JTKViewTexts.h"
#include "run/JTKConsole.h"
#include "run/JTKMainThread.h"
#include "run/JTKProcessEnd.h"
#include "run/JTKTestFailure.h"
#include "run/JTKTestResults.h"

namespace jtk {

// The application-wide searches of JTKTestSuite: windows, the views of all
// windows in reading order, and the elements matching a lookup string.

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

JTKElement JTKTestSuite::element(const std::string& lookup, std::source_location call) {
    return element(lookup, std::nullopt, call);
}

JTKElement JTKTestSuite::element(const std::string& lookup, std::optional<JTKClass> where, std::source_location call) {
    JTKCallSite site(call);
    auto first = jtkOnMainThread([&] { return JTKSearchPass::applicationElements().matches(lookup, where, 1); });
    if (!first.empty()) return first.front();
    return waitForExistence(lookup, where, 1.0, call);
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

// Waiting for an element to appear, and asking once whether one exists.

JTKElement JTKTestSuite::waitForExistence(const std::string& lookup, const JTKWaitOptions& options,
                                          std::source_location call) {
    return waitForExistence(lookup, options.type, options.timeout, call);
}

JTKElement JTKTestSuite::waitForExistence(const std::string& lookup, std::optional<JTKClass> type, double timeout,
                                          std::source_location call) {
    JTKCallSite site(call);
    using Clock = std::chrono::steady_clock;
    constexpr auto pollInterval = std::chrono::microseconds(100000);
    const auto start = Clock::now();
    // Whether the count of matching elements is 0 is all the wait needs, so
    // each poll stops at the first match.
    bool found = elementExists(lookup, type);
    while (!found) {
        // The elapsed time is tested before each sleep: the first search is
        // made at once, and the last may come up to one sleep after the timeout.
        // Written so that a timeout that is not a number gives up at once
        // instead of waiting for ever.
        double elapsed = std::chrono::duration<double>(Clock::now() - start).count();
        if (!(elapsed <= timeout)) {
            jtkPrintLine("waitForExistence timeout while looking for element: " + lookup);
            // Fails the test; a run that ends here puts the user's data back
            // first and ends with status 0, as a run out of time always has.
            jtkFailTest("no element matches \"" + lookup + "\"" +
                            (type ? " of class " + type->name : std::string()) + " after waiting " +
                            jtkDurationText(timeout),
                        {}, {}, 0);
        }
        std::this_thread::sleep_for(pollInterval);
        found = elementExists(lookup, type);
    }
    return element(lookup, type);
}

bool JTKTestSuite::elementExists(const std::string& lookup, std::optional<JTKClass> type) {
    return jtkOnMainThread([&] { return !JTKSearchPass::applicationElements().matches(lookup, type, 1).empty(); });
}

// Listings of every view the application-wide searches can see, in reading
// order, for choosing lookup strings while writing a test.

namespace {

// One line per view of appViews; a view without the text prints an empty line,
// so the two listings correspond line by line.
template <class Text>
void printAllViews(Text text) {
    jtkOnMainThread([&] {
        for (const auto& view : JTKTestSuite::appViews()) jtkPrintLine(text(view));
    });
}

}  // namespace

void JTKTestSuite::printAllViewNames() { printAllViews(viewName); }

void JTKTestSuite::printAllViewTypes() { printAllViews(viewTypeName); }

}  // namespace jtk
