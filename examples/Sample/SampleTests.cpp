// The Sample application's UI tests and their configuration: test data, the
// screenshot folder inside the source tree (or $SAMPLE_SCREENSHOTS_DIR, so that
// checks can run against a copy), test user defaults, shell commands around
// the run, and per-test options from two providers.
#include <JTK/JTK.h>

#include <cstdlib>
#include <string>

namespace {

const std::string sourceFolder = JTK_SAMPLE_SOURCE_DIR;

}  // namespace

JTK_PROVIDER(jtkTestDataPath) { return sourceFolder + "/TestData"; }
JTK_PROVIDER(jtkScreenshotsPath) {
    if (const char* folder = std::getenv("SAMPLE_SCREENSHOTS_DIR"); folder && *folder) return std::string(folder);
    return sourceFolder + "/Screenshots";
}
JTK_PROVIDER(jtkUserDefaultsPath) { return sourceFolder + "/TestDefaults.plist"; }
JTK_PROVIDER(jtkLaunchShellCommands) { return jtk::platform::ValueList{"echo Sample test data installed"}; }
JTK_PROVIDER(jtkTeardownShellCommands) { return jtk::platform::ValueList{"echo Sample tests finished"}; }
// This file: the status item's "Record UX Test" records a person's session
// into it as a new test, right after this line.
JTK_PROVIDER(jtkThisFilePath) { return __FILE__; }

// The first tests check what the application shows at launch; the last one
// looks at the whole application after everything else has run.
JTK_PROVIDER(jtkTestOptionsOrder) {
    return jtk::testOptions({
        {"testLaunchShowsTestData", {.order = -2}},
        {"testFindsViewsEveryWay", {.order = -1}},
        {"testPrintsTheViewTree", {.order = 10}},
    });
}

// Only a few tests need their windows photographed. The launch test only
// reads, and may take less than the millisecond below which no screenshots
// are taken: it skips them so that every run photographs the same tests.
JTK_PROVIDER(jtkTestOptionsScreenshots) {
    const jtk::JTKOptions skip{.skipScreenshots = true};
    return jtk::testOptions({
        {"testLaunchShowsTestData", skip},
        {"testFindsViewsEveryWay", skip},
        {"testWaitsForTheDetailsPanel", skip},
        {"testClicksCountUp", skip},
        {"testDoubleAndModifierClicks", skip},
        {"testTypesNamesWithShiftTabAndReturn", skip},
        {"testDragsTheVolumeSlider", skip},
        {"testChoosesColoursFromThePopUp", skip},
        {"testMainMenuShortcut", skip},
        {"testPrintsTheViewTree", skip},
    });
}

JTK_METHOD(jtkSetup) { copyTestUserDefaultsToPrefs(); }

JTK_TEST(testLaunchShowsTestData) {
    JTK_CHECK_EQ(element("Greeting").value(), "Hello from the Sample test data");
    JTK_CHECK_EQ(element("Notes").value(), "Notes: 2");
    JTK_CHECK_EQ(element("User").value(), "User: Tester");
}

JTK_TEST(testFindsViewsEveryWay) {
    // By title, by name, by value and by lookup description.
    auto add = element("Add");
    JTK_CHECK(element("Count: 0") == element("Count"));
    JTK_CHECK(element(add.elementLookupDescription()) == add);
    // Below an element, by type, and through ancestors.
    auto main = appWindow("Sample");
    JTK_CHECK_EQ(main.subElementWithType(jtk::JTKClass{"Slider"}).name(), "Volume");
    JTK_CHECK_EQ(main.subElements("Row 25").size(), 1u);
    JTK_CHECK(add.superElement() == main);
    // Across the application, in reading order.
    JTK_CHECK_EQ(elements("Selected: none").size(), 1u);
    auto boxes = elementsWhere(jtk::JTKClass{"Box"}, "Dark mode");
    JTK_CHECK_EQ(boxes.size(), 1u);
    JTK_CHECK_EQ(boxes[0].title(), "Settings");
    JTK_CHECK_EQ(appWindows().size(), 3u);  // with the status item's window
    auto status = element("Status");
    JTK_CHECK_EQ(status.value(), "Ready");
    JTK_CHECK(status.modelOject() != nullptr);
    JTK_CHECK(!elementExists("Details ready"));
}

JTK_TEST(testWaitsForTheDetailsPanel) {
    element("Show Details").click();
    auto details = waitForExistence("Details ready", {.timeout = 3});
    JTK_CHECK_EQ(details.name(), "DetailsStatus");
    JTK_CHECK(appWindow("Details").subElement("Details ready") == details);
    appWindow("Sample").click();  // back to the main window
}

JTK_TEST(testClicksCountUp) {
    auto add = element("Add");
    add.click().click();
    JTK_CHECK_EQ(element("Count").value(), "Count: 2");
}

JTK_TEST(testDoubleAndModifierClicks) {
    element("Open").click({.doubleClick = true});
    JTK_CHECK_EQ(element("DoubleClicks").value(), "Double clicks: 1");
    element("Select").click({.modifierFlags = jtk::shift});
    JTK_CHECK_EQ(element("Selection").value(), "Selection: extended");
    // A held modifier reaches the first press; the given flags the release.
    auto hold = beginModifierKeyHold(jtk::shift);
    element("Select").click();
    releaseModifierKeys(hold);
    JTK_CHECK_EQ(element("Selection").value(), "Selection: single");
}

JTK_TEST(testTypesNamesWithShiftTabAndReturn) {
    element("FirstName").click();
    typeText("Ada\tLovelace 1815\r");
    JTK_CHECK_EQ(element("FullName").value(), "Full name: Ada Lovelace 1815");
    JTK_CHECK_EQ(element("LastName").value(), "Lovelace 1815");
}

JTK_TEST(testDragsTheVolumeSlider) {
    // Press at the left end, then drag half the slider's width to the right.
    element("Volume").click({.offset = {-99, 0}, .mouseUp = false}).drag({100, 0});
    JTK_CHECK_EQ(element("Volume").value(), "50");
}

JTK_TEST(testScrollsARowIntoViewAndClicksIt) {
    element("Row 25").click();
    JTK_CHECK_EQ(element("SelectedRow").value(), "Selected: Row 25");
}

JTK_TEST(testTogglesTheDarkModeSetting) {
    element("Dark mode").click();
    JTK_CHECK_EQ(element("Theme").value(), "Theme: dark");
}

JTK_TEST(testChoosesColoursFromThePopUp) {
    element("Colour").clickMenuItem("Green");
    JTK_CHECK_EQ(element("ColourChoice").value(), "Colour: Green");
    element("Colour").clickMenuItem("Teal");  // in the More submenu
    JTK_CHECK_EQ(element("ColourChoice").value(), "Colour: Teal");
}

JTK_TEST(testMainMenuShortcut) {
    typeKey("n", jtk::command);
    JTK_CHECK_EQ(element("Documents").value(), "Documents: 1");
}

JTK_TEST(testPrintsTheViewTree) {
    appWindow("Inspector").click();
    printAllViewNames();
    sleepUntilIdle();
}

JTK_METHOD(tearDown) { appWindow("Sample").click(); }
