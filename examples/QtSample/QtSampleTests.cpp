// The Qt sample's UI tests and their configuration: test data, the screenshot
// folder inside the source tree (or $QTSAMPLE_SCREENSHOTS_DIR, so that checks
// can run against a copy) and test user defaults. The tests drive real Qt
// widgets through the same framework calls as on any other platform.
#include <JTK/JTK.h>

#include <cstdlib>
#include <string>

namespace {

const std::string sourceFolder = JTK_QTSAMPLE_SOURCE_DIR;

}  // namespace

JTK_PROVIDER(jtkTestDataPath) { return sourceFolder + "/TestData"; }
JTK_PROVIDER(jtkScreenshotsPath) {
    if (const char* folder = std::getenv("QTSAMPLE_SCREENSHOTS_DIR"); folder && *folder) return std::string(folder);
    return sourceFolder + "/Screenshots";
}
JTK_PROVIDER(jtkUserDefaultsPath) { return sourceFolder + "/TestDefaults.plist"; }

// The launch test reads what the application showed before anything ran.
JTK_PROVIDER(jtkTestOptionsOrder) {
    return jtk::testOptions({
        {"testLaunchShowsTestData", {.order = -2}},
        {"testFindsViewsEveryWay", {.order = -1}},
    });
}

// A few tests photograph the windows they leave; the others skip it, so
// that every run photographs the same, settled states.
JTK_PROVIDER(jtkTestOptionsScreenshots) {
    const jtk::JTKOptions skip{.skipScreenshots = true};
    return jtk::testOptions({
        {"testLaunchShowsTestData", skip},
        {"testFindsViewsEveryWay", skip},
        {"testWaitsForTheDetailsPanel", skip},
        {"testDoubleAndModifierClicks", skip},
        {"testTypesNamesWithShiftTabAndReturn", skip},
        {"testDragsTheVolumeSlider", skip},
        {"testMenuCommandAndItsShortcut", skip},
    });
}

JTK_METHOD(jtkSetup) { copyTestUserDefaultsToPrefs(); }

JTK_TEST(testLaunchShowsTestData) {
    JTK_CHECK_EQ(element("Greeting").value(), "Hello from the Qt sample test data");
    JTK_CHECK_EQ(element("Notes").value(), "Notes: 2");
    JTK_CHECK_EQ(element("User").value(), "User: Tester");
}

JTK_TEST(testFindsViewsEveryWay) {
    // By title, by name (a dynamic property), by value and by lookup description.
    auto add = element("Add");
    JTK_CHECK(element("Count: 0") == element("Count"));
    JTK_CHECK(element(add.elementLookupDescription()) == add);
    // A name from the objectName, and from a class's Q_PROPERTY with its
    // value from a Q_INVOKABLE.
    auto main = appWindow("Qt Sample");
    JTK_CHECK_EQ(main.subElementWithType(jtk::JTKClass{"QSlider"}).name(), "Volume");
    JTK_CHECK_EQ(element("Status").value(), "Ready");
    JTK_CHECK_EQ(element("Status").typeName(), "StatusBadge");
    // Below an element and through ancestors: the button sits in the
    // window's central widget.
    JTK_CHECK_EQ(main.subElements("Add").size(), 1u);
    auto central = add.superElement();
    JTK_CHECK(central && central->superElement() == main);
    JTK_CHECK_EQ(element("Theme").superElement()->title(), "Settings");
    // Across the application.
    JTK_CHECK_EQ(elements("Selection: none").size(), 1u);
    auto boxes = elementsWhere(jtk::JTKClass{"QGroupBox"}, "Dark mode");
    JTK_CHECK_EQ(boxes.size(), 1u);
    JTK_CHECK_EQ(boxes[0].title(), "Settings");
    JTK_CHECK(elementsWhere(jtk::JTKClass{"QGroupBox"}, "Add").empty());
    JTK_CHECK(appWindow("Qt Sample") == main);
    JTK_CHECK(!elementExists("Details ready"));
}

JTK_TEST(testWaitsForTheDetailsPanel) {
    element("Show Details").click();
    auto details = waitForExistence("Details ready", {.timeout = 3});
    JTK_CHECK_EQ(details.name(), "DetailsStatus");
    JTK_CHECK(appWindow("Details").subElement("Details ready") == details);
    appWindow("Qt Sample").click();  // back to the main window
}

JTK_TEST(testClicksCountUp) {
    element("Add").click().click();
    JTK_CHECK_EQ(element("Count").value(), "Count: 2");
}

JTK_TEST(testDoubleAndModifierClicks) {
    element("Open").click({.doubleClick = true});
    JTK_CHECK_EQ(element("DoubleClicks").value(), "Double clicks: 1");
    element("Open").click();  // one click is not a double click
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
    // Tab moves to the last name (selecting what it holds), Return ends the edit.
    struct Case {
        const char* typed;
        const char* lastName;
        const char* fullName;
    };
    const Case cases[] = {
        {"Ada\tLovelace 1815\r", "Lovelace 1815", "Full name: Ada Lovelace 1815"},
        {"Zoë\tÅngström-Çelik\r", "Ångström-Çelik", "Full name: Zoë Ångström-Çelik"},
    };
    for (const auto& each : cases) {
        element("FirstName").click();
        typeKey("a", jtk::command);  // select all, so that typing replaces it
        typeText(each.typed);
        JTK_CHECK_EQ(element("LastName").value(), each.lastName);
        JTK_CHECK_EQ(element("FullName").value(), each.fullName);
    }
}

JTK_TEST(testDragsTheVolumeSlider) {
    // Press on the handle at the left end and drag it; the slider moves one
    // step per point. A drag past the end stops at the maximum.
    auto volume = element("Volume");
    double halfWidth = volume.frame().width() / 2;
    volume.click({.offset = {-halfWidth + 5, 0}, .mouseUp = false}).drag({40, 0});
    JTK_CHECK_EQ(volume.value(), "40");
    volume.click({.offset = {-halfWidth + 45, 0}, .mouseUp = false}).drag({200, 0});
    JTK_CHECK_EQ(volume.value(), "100");
}

JTK_TEST(testTogglesTheDarkModeSetting) {
    element("Dark mode").click();
    JTK_CHECK_EQ(element("Theme").value(), "Theme: dark");
}

JTK_TEST(testChoosesColoursFromTheComboBox) {
    for (const char* colour : {"Green", "Navy"}) {
        element("Colour").clickMenuItem(colour);
        JTK_CHECK_EQ(element("ColourChoice").value(), std::string("Colour: ") + colour);
        JTK_CHECK_EQ(element("Colour").value(), colour);
    }
}

JTK_TEST(testMenuCommandAndItsShortcut) {
    // The File menu's title is at the left end of the window's menu bar.
    auto bar = appWindow("Qt Sample").subElementWithType(jtk::JTKClass{"QMenuBar"});
    bar.click({.offset = {-bar.frame().width() / 2 + 15, 0}});
    bar.clickMenuItem("New Document");  // in the menu the click opened
    JTK_CHECK_EQ(element("Documents").value(), "Documents: 1");
    typeKey("n", jtk::command);
    JTK_CHECK_EQ(element("Documents").value(), "Documents: 2");
    // Each command wrote a note into the data folder.
    JTK_CHECK_EQ(element("Notes").value(), "Notes: 4");
}

JTK_METHOD(tearDown) { appWindow("Qt Sample").click(); }
