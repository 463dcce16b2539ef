// The Sample application's UI tests and their configuration: test data, the
// screenshot folder inside the source tree, test user defaults, shell
// commands around the run, and per-test options from two providers.
#include <string>

#include "JTK/JTKProcessEnd.h"
#include "JTK/JTKRegistry.h"
#include "JTK/JTKTestOption.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/JTKViewTexts.h"
#include "desktop/controls/Box.h"
#include "desktop/controls/PopUpButton.h"
#include "desktop/controls/Slider.h"

using platform::Value;
using platform::ValueDictionary;

namespace {

const std::string sourceFolder = JTK_SAMPLE_SOURCE_DIR;

// A test has no result of its own: a check that fails stops the run with a
// failure status (the user's data is restored first).
void check(bool condition, const std::string& what) {
    if (!condition) jtkFatalStop("Sample check failed: " + what, "examples/Sample/SampleTests.cpp");
}

void expectValue(const std::string& lookup, const std::string& expected) {
    std::string actual = viewValue(JTKTestSuite::element(lookup).view());
    check(actual == expected, lookup + " shows \"" + actual + "\", expected \"" + expected + "\"");
}

Value options(JTKTestOption option, Value value) {
    return ValueDictionary{{Value(static_cast<int64_t>(option)), std::move(value)}};
}

}  // namespace

JTK_PROVIDER(jtkTestDataPath) { return sourceFolder + "/TestData"; }
JTK_PROVIDER(jtkScreenshotsPath) { return sourceFolder + "/Screenshots"; }
JTK_PROVIDER(jtkUserDefaultsPath) { return sourceFolder + "/TestDefaults.plist"; }
JTK_PROVIDER(jtkLaunchShellCommands) { return platform::ValueList{"echo Sample test data installed"}; }
JTK_PROVIDER(jtkTeardownShellCommands) { return platform::ValueList{"echo Sample tests finished"}; }

// The first tests check what the application shows at launch; the last one
// looks at the whole application after everything else has run.
JTK_PROVIDER(jtkTestOptionsOrder) {
    return ValueDictionary{
        {"testLaunchShowsTestData", options(JTKTestOption::order, -2)},
        {"testFindsViewsEveryWay", options(JTKTestOption::order, -1)},
        {"testPrintsTheViewTree", options(JTKTestOption::order, 10)},
    };
}

// Only a few tests need their windows photographed.
JTK_PROVIDER(jtkTestOptionsScreenshots) {
    ValueDictionary skip;
    for (const char* test : {"testFindsViewsEveryWay", "testWaitsForTheDetailsPanel", "testClicksCountUp",
                             "testDoubleAndModifierClicks", "testTypesNamesWithShiftTabAndReturn",
                             "testDragsTheVolumeSlider", "testChoosesColoursFromThePopUp",
                             "testMainMenuShortcut", "testPrintsTheViewTree"})
        skip.emplace_back(test, options(JTKTestOption::skipScreenshots, true));
    return skip;
}

JTK_METHOD(jtkSetup) { JTKTestSuite::copyTestUserDefaultsToPrefs(); }

JTK_TEST(testLaunchShowsTestData) {
    expectValue("Greeting", "Hello from the Sample test data");
    expectValue("Notes", "Notes: 2");
    expectValue("User", "User: Tester");
}

JTK_TEST(testFindsViewsEveryWay) {
    // By title, by name, by value and by lookup description.
    auto add = JTKTestSuite::element("Add");
    check(JTKTestSuite::element("Count: 0") == JTKTestSuite::element("Count"), "value and name find the same label");
    check(JTKTestSuite::element(add.elementLookupDescription()) == add, "the lookup description finds the element");
    // Below an element, by type, and through ancestors.
    auto main = JTKTestSuite::appWindow("Sample");
    auto slider = main.subElementWithType(jtkClass<desktop::Slider>());
    check(viewName(slider.view()) == "Volume", "the first slider of the main window is Volume");
    check(main.subElements("Row 25").size() == 1, "one row 25 in the main window");
    check(add.superElement() == main, "the Add button sits in the content view");
    // Across the application, in reading order.
    auto rows = JTKTestSuite::elements("Selected: none");
    check(rows.size() == 1, "one row label");
    auto boxes = JTKTestSuite::elementsWhere(jtkClass<desktop::Box>(), "Dark mode");
    check(boxes.size() == 1 && viewTitle(boxes[0].view()) == "Settings", "the Settings box holds Dark mode");
    check(JTKTestSuite::appWindows().size() == 2, "two windows");
    auto status = JTKTestSuite::element("Status");
    check(viewValue(status.view()) == "Ready" && status.modelOject() != nullptr, "the status view has a model");
    check(!JTKTestSuite::elementExists("Details ready"), "no details panel yet");
}

JTK_TEST(testWaitsForTheDetailsPanel) {
    JTKTestSuite::element("Show Details").click();
    auto details = JTKTestSuite::waitForExistence("Details ready", std::nullopt, 3.0);
    check(viewName(details.view()) == "DetailsStatus", "the panel's label appeared");
    check(JTKTestSuite::appWindow("Details").subElement("Details ready") == details, "it is in the Details window");
    JTKTestSuite::appWindow("Sample").click();  // back to the main window
}

JTK_TEST(testClicksCountUp) {
    auto add = JTKTestSuite::element("Add");
    add.click().click();
    expectValue("Count", "Count: 2");
}

JTK_TEST(testDoubleAndModifierClicks) {
    JTKTestSuite::element("Open").click({0, 0}, true);
    expectValue("DoubleClicks", "Double clicks: 1");
    JTKTestSuite::element("Select").click({0, 0}, platform::eventFlags::shift, false, true);
    expectValue("Selection", "Selection: extended");
    // A held modifier reaches the first press; the given flags the release.
    auto hold = JTKTestSuite::beginModifierKeyHold(platform::eventFlags::shift);
    JTKTestSuite::element("Select").click();
    JTKTestSuite::releaseModifierKeys(hold);
    expectValue("Selection", "Selection: single");
}

JTK_TEST(testTypesNamesWithShiftTabAndReturn) {
    JTKTestSuite::element("FirstName").click();
    JTKTestSuite::typeText("Ada\tLovelace 1815\r");
    expectValue("FullName", "Full name: Ada Lovelace 1815");
    expectValue("LastName", "Lovelace 1815");
}

JTK_TEST(testDragsTheVolumeSlider) {
    // Press at the left end, then drag half the slider's width to the right.
    JTKTestSuite::element("Volume").click({-99, 0}, 0, false, false).drag({100, 0});
    std::string volume = viewValue(JTKTestSuite::element("Volume").view());
    check(volume == "50", "Volume is " + volume + " after the drag, expected 50");
}

JTK_TEST(testScrollsARowIntoViewAndClicksIt) {
    JTKTestSuite::element("Row 25").click();
    expectValue("SelectedRow", "Selected: Row 25");
}

JTK_TEST(testChoosesColoursFromThePopUp) {
    JTKTestSuite::element("Colour").clickMenuItem("Green");
    expectValue("ColourChoice", "Colour: Green");
    JTKTestSuite::element("Colour").clickMenuItem("Teal");  // in the More submenu
    expectValue("ColourChoice", "Colour: Teal");
}

JTK_TEST(testMainMenuShortcut) {
    JTKTestSuite::typeKey(45, platform::eventFlags::command, false);  // command-N
    expectValue("Documents", "Documents: 1");
}

JTK_TEST(testPrintsTheViewTree) {
    JTKTestSuite::appWindow("Inspector").click();
    JTKTestSuite::printAllViewNames();
    JTKTestSuite::sleepUntilIdle();
}

JTK_METHOD(tearDown) { JTKTestSuite::appWindow("Sample").click(); }
