// The GTK sample's UI tests and their configuration: test data, the
// screenshot folder inside the source tree (or $GTKSAMPLE_SCREENSHOTS_DIR, so
// that checks can run against a copy) and test user defaults. The tests
// drive real GTK widgets through the X server, through the same framework
// calls as on any other platform.
#include <JTK/JTK.h>

#include <cstdlib>
#include <string>

namespace {

const std::string sourceFolder = JTK_GTKSAMPLE_SOURCE_DIR;

}  // namespace

JTK_PROVIDER(jtkTestDataPath) { return sourceFolder + "/TestData"; }
JTK_PROVIDER(jtkScreenshotsPath) {
    if (const char* folder = std::getenv("GTKSAMPLE_SCREENSHOTS_DIR"); folder && *folder) return std::string(folder);
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
        {"testWaitsForTheDetailsWindow", skip},
        {"testDoubleAndModifierClicks", skip},
        {"testTypesNamesWithShiftTabAndReturn", skip},
        {"testDragsTheVolumeScale", skip},
        {"testMenuCommandAndItsShortcut", skip},
    });
}

JTK_METHOD(jtkSetup) { copyTestUserDefaultsToPrefs(); }

JTK_TEST(testLaunchShowsTestData) {
    JTK_CHECK_EQ(element("Greeting").value(), "Hello from the GTK sample test data");
    JTK_CHECK_EQ(element("Notes").value(), "Notes: 2");
    JTK_CHECK_EQ(element("User").value(), "User: Tester");
}

JTK_TEST(testFindsViewsEveryWay) {
    // By title, by name (the widget's name), by value and by lookup description.
    auto add = element("Add");
    JTK_CHECK(element("Count: 0") == element("Count"));
    JTK_CHECK(element(add.elementLookupDescription()) == add);
    // A name from the builder id, and from a widget class's properties,
    // which also give its value.
    auto main = appWindow("GTK Sample");
    JTK_CHECK_EQ(main.subElementWithType(jtk::JTKClass{"GtkScale"}).name(), "Volume");
    JTK_CHECK_EQ(element("Status").value(), "Ready");
    JTK_CHECK_EQ(element("Status").typeName(), "StatusBadge");
    // Below an element and through ancestors: the button sits in the
    // window's fixed layout, inside the column below the menu bar.
    JTK_CHECK_EQ(main.subElements("Add").size(), 1u);
    auto fixed = add.superElement();
    JTK_CHECK(fixed && fixed->typeName() == "GtkFixed" && fixed->superElement() == main);
    // The frame holds a box, which holds the label.
    JTK_CHECK_EQ(element("Theme").superElement()->superElement()->title(), "Settings");
    // Across the application.
    JTK_CHECK_EQ(elements("Selection: none").size(), 1u);
    auto frames = elementsWhere(jtk::JTKClass{"GtkFrame"}, "Dark mode");
    JTK_CHECK_EQ(frames.size(), 1u);
    JTK_CHECK_EQ(frames[0].title(), "Settings");
    JTK_CHECK(elementsWhere(jtk::JTKClass{"GtkFrame"}, "Add").empty());
    JTK_CHECK(appWindow("GTK Sample") == main);
    JTK_CHECK(!elementExists("Details ready"));
}

JTK_TEST(testWaitsForTheDetailsWindow) {
    element("Show Details").click();
    auto details = waitForExistence("Details ready", {.timeout = 3});
    JTK_CHECK_EQ(details.name(), "DetailsStatus");
    JTK_CHECK(appWindow("Details").subElement("Details ready") == details);
    // It lies over the main window, centred on it.
    appWindow("Details").subElement("Close").click();
    JTK_CHECK(!elementExists("Details ready"));
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

JTK_TEST(testDragsTheVolumeScale) {
    // Press on the knob at the left end (the theme pads the scale by 12
    // points, the knob's centre 2 more) and drag it; the scale moves one
    // step per point. A drag past the end stops at the maximum.
    auto volume = element("Volume");
    double halfWidth = volume.frame().width() / 2;
    volume.click({.offset = {-halfWidth + 14, 0}, .mouseUp = false}).drag({40, 0});
    JTK_CHECK_EQ(volume.value(), "40");
    volume.click({.offset = {-halfWidth + 54, 0}, .mouseUp = false}).drag({200, 0});
    JTK_CHECK_EQ(volume.value(), "100");
}

JTK_TEST(testTogglesTheDarkModeSetting) {
    element("Dark mode").click();
    JTK_CHECK_EQ(element("Theme").value(), "Theme: dark");
}

JTK_TEST(testChoosesColoursFromTheMenuButton) {
    for (const char* colour : {"Green", "Navy"}) {
        element("Colour").clickMenuItem(colour);
        JTK_CHECK_EQ(element("ColourChoice").value(), std::string("Colour: ") + colour);
        JTK_CHECK_EQ(element("Colour").value(), colour);
    }
}

JTK_TEST(testMenuCommandAndItsShortcut) {
    // The File menu's title is at the left end of the window's menu bar.
    auto bar = appWindow("GTK Sample").subElementWithType(jtk::JTKClass{"GtkPopoverMenuBar"});
    bar.click({.offset = {-bar.frame().width() / 2 + 15, 0}});
    bar.clickMenuItem("New Document");  // in the menu the click opened
    JTK_CHECK_EQ(element("Documents").value(), "Documents: 1");
    typeKey("n", jtk::command);
    JTK_CHECK_EQ(element("Documents").value(), "Documents: 2");
    // Each command wrote a note into the data folder.
    JTK_CHECK_EQ(element("Notes").value(), "Notes: 4");
}

JTK_METHOD(tearDown) { appWindow("GTK Sample").click(); }
