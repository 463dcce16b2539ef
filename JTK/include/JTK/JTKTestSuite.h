// The framework's class-level interface: entry and the test run, the data
// environment, the end of a run, the application-wide searches and waits,
// the keyboard, and the idle wait. No instance carries state.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <source_location>
#include <string>
#include <string_view>
#include <vector>

#include "JTK/JTKClass.h"
#include "JTK/JTKElement.h"
#include "JTK/JTKTestRecorder.h"
#include "JTK/platform/Events.h"
#include "JTK/platform/View.h"

namespace jtk {

// The options of a wait, as named fields, so that a call says what it waits
// for: waitForExistence("Details ready", {.timeout = 3}).
struct JTKWaitOptions {
    // Only views of this class; none: any class.
    std::optional<JTKClass> type = std::nullopt;
    // Seconds before the run gives up (as a single-result search does by itself).
    double timeout = 1;
};

class JTKTestSuite {
public:
    JTKTestSuite() = delete;
    using URL = std::optional<std::filesystem::path>;

    // Entry and configuration.
    static void runTests();
    static bool isTesting();
    static URL jtkTestDataURL();
    static void setJtkTestDataURL(URL url);
    static URL jtkTestUserDefaultsURL();
    static void setJtkTestUserDefaultsURL(URL url);
    static URL jtkScreenshotsURL();
    static void setJtkScreenshotsURL(URL url);
    static std::shared_ptr<JTKTestRecorder> recorder();
    static void setRecorder(std::shared_ptr<JTKTestRecorder> recorder);
    static bool recording();
    // Records into the test source file until the recording is stopped (from
    // the status item, or by another rec): stops a recording under way,
    // starts one on the file and waits for it to end. A C++ recording method
    // needs no call: the status item starts its recording.
    static void rec(const std::string& filePath);
    static std::string jtkTestVersion();
    // The trust poll's tick.
    static void requestTimer();

    // The data environment.
    static URL appSupportURL();
    static URL tempAppSupportURL();
    static void copyTestUserDefaultsToPrefs();
    static void copyTestDataToApplicationSupport();
    static void restoreApplicationSupportData();

    // The end of a run.
    [[noreturn]] static void endTests();
    [[noreturn]] static void timeout();

    // Application-wide searches.
    static JTKElement keyWindow();
    static std::vector<JTKElement> appWindows();
    static JTKElement appWindow(const std::string& title);
    static std::vector<std::shared_ptr<platform::View>> appViews();
    static std::vector<JTKElement> appElements();
    static std::vector<JTKElement> elements(const std::string& lookup);
    static std::vector<JTKElement> elements(const std::string& lookup, std::optional<JTKClass> where);
    // call: where the test calls it, named when the search fails (given by the compiler).
    static JTKElement element(const std::string& lookup, std::source_location call = std::source_location::current());
    static JTKElement element(const std::string& lookup, std::optional<JTKClass> where,
                              std::source_location call = std::source_location::current());
    // Elements of the views of class type that hold a match for lookup in their own subtree.
    static std::vector<JTKElement> elementsWhere(const JTKClass& type, const std::string& contains);

    // Waiting.
    // Polls every 0.1 seconds until an element matches; when the timeout runs
    // out the run ends (the user's data goes back first).
    static JTKElement waitForExistence(const std::string& lookup, const JTKWaitOptions& options = {},
                                       std::source_location call = std::source_location::current());
    static JTKElement waitForExistence(const std::string& lookup, std::optional<JTKClass> type, double timeout,
                                       std::source_location call = std::source_location::current());
    static bool elementExists(const std::string& lookup, std::optional<JTKClass> type = std::nullopt);

    // Diagnostics.
    static void printAllViewNames();
    static void printAllViewTypes();

    // Keyboard.
    static void typeText(const std::string& text);
    // Presses and releases the key; keyUp changes nothing and is kept for the
    // operation's full form.
    static void typeKey(uint16_t keyCode, uint64_t flags = 0, bool keyUp = false);
    // The key by the character it types or its name, as keyCodeMap names it:
    // typeKey("n", jtk::command), typeKey("3", jtk::command), typeKey("F5").
    static void typeKey(std::string_view key, uint64_t flags = 0);
    static std::shared_ptr<platform::Event> beginModifierKeyHold(uint64_t flags);
    static void releaseModifierKeys(const std::shared_ptr<platform::Event>& event);
    static const std::map<std::string, uint16_t>& keyCodeMap();

    // Idle.
    static void sleepUntilIdle();
};

}  // namespace jtk
