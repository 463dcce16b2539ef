// A person's interactions, posted as real events into a small window while a
// recorder records, and the statements they leave in the test source file,
// in each of the three languages.
#include "JTK/desktop/MenuBar.h"
#include "JTK/desktop/MenuItem.h"
#include "JTK/desktop/StatusBar.h"
#include "recorder/JTKRecorder.h"
#include "tests/support/DesktopFixtures.h"
#include "tests/support/PostedGestures.h"
#include "tests/support/TestFiles.h"

using namespace testsupport;

namespace {

constexpr uint64_t commandFlag = platform::eventFlags::command;

// The window a person works in, and the gestures the cases are made of.
struct Scene {
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::View> ok, rows[3], toolButton, field, volume, plainSlider, colour;

    static Scene make() {
        Scene s;
        s.window = testsupport::makeWindow({100, 100, 500, 400}, "Scene");
        auto content = s.window->desktopContentView();
        s.ok = name(addView<desktop::Button>(content, Rect{20, 340, 80, 24}, "OK"), "OK");
        for (int i = 0; i < 3; ++i) s.rows[i] = name(addView<desktop::Button>(content, Rect{20.0 + 90 * i, 300, 80, 24}), "Row");
        auto toolbar = name(addView<desktop::View>(content, Rect{300, 290, 180, 40}), "Toolbar");
        s.toolButton = addView<desktop::Button>(toolbar, Rect{10, 8, 60, 24});
        s.field = name(addView<desktop::TextField>(content, Rect{20, 240, 150, 24}), "Field");
        s.volume = name(addView<desktop::Slider>(content, Rect{20, 200, 200, 20}, 0, 100, 0), "Volume");
        s.plainSlider = addView<desktop::Slider>(content, Rect{250, 200, 100, 20}, 0, 100, 0);
        auto colours = desktop::Menu::make("Colour");
        for (const char* title : {"Red", "Green"}) colours->addItem(desktop::MenuItem::make(title));
        s.colour = name(addView<desktop::PopUpButton>(content, Rect{20, 150, 150, 26}, colours), "Colour");

        auto mainMenu = desktop::Menu::make("Main");
        auto file = desktop::MenuItem::make("File");
        auto fileMenu = desktop::Menu::make("File");
        fileMenu->addItem(desktop::MenuItem::make("Save", {}, "s", commandFlag));
        fileMenu->addItem(desktop::MenuItem::make("Plain", {}, "", 0));
        fileMenu->addItem(desktop::MenuItem::make("One", {}, "=", commandFlag));
        fileMenu->addItem(desktop::MenuItem::make("Save As", {}, "S", commandFlag));
        file->setSubmenu(fileMenu);
        mainMenu->addItem(file);
        desktop::Application::shared()->setMainMenu(mainMenu);
        return s;
    }
};

Point centre(const std::shared_ptr<desktop::View>& view) { return centerOnScreen(*view); }
Point plus(Point p, double dx, double dy = 0) { return {p.x + dx, p.y + dy}; }
// A row of the File menu as it opens below its title in the menu bar.
Point fileRow(int row) {
    auto titles = desktop::menuBarTitles(desktop::Application::shared()->name(),
                                         std::dynamic_pointer_cast<desktop::Menu>(desktop::Application::shared()->mainMenu()).get());
    Rect title = titles.at(1).frameOnScreen;
    return {title.minX() + 30, title.minY() - desktop::Menu::rowHeight * (row + 0.5)};
}
Point fileTitle() { return plus(fileRow(0), 0, desktop::Menu::rowHeight / 2 + desktop::menuBarHeight / 2); }
void drag(Point from, double dx) {
    postMouseAt(EventType::leftMouseDown, from);
    postMouseAt(EventType::leftMouseDragged, from);
    postMouseAt(EventType::leftMouseDragged, plus(from, dx));
    postMouseAt(EventType::leftMouseUp, plus(from, dx));
}

// Each gesture is checked in one language; what every language makes of the
// same call is the code generator's own test. A click at the centre, a double
// click, typed text with quotes, backslashes and an emoji, ended by Tab and by
// Return, are in the recorded Sample session (tests/roundtrip), whose Swift
// and Objective-C files are compared with the expected ones.
struct CaptureCase {
    const char* label;
    std::function<void(Scene&)> gestures;
    JTKDialect dialect;
    std::vector<std::string> statements;
    friend void PrintTo(const CaptureCase& c, std::ostream* out) { *out << c.label; }
};

constexpr auto swift = JTKDialect::swift, objectiveC = JTKDialect::objectiveC, cpp = JTKDialect::cpp;

const std::vector<CaptureCase> captureCases = {
    {"offsetRoundsHalvesAwayFromZero",
     [](Scene& s) {
         for (double dx : {0.4, 0.5, -0.5}) pressAt(plus(centre(s.ok), dx));
     },
     cpp,
     {"element(\"OK\").click();", "element(\"OK\").click({.offset = {1.0, 0.0}});",
      "element(\"OK\").click({.offset = {-1.0, 0.0}});"}},
    {"doubleClickOnTwoElementsKeepsBoth",
     [](Scene& s) {
         pressAt(centre(s.ok), 1);
         pressAt(centre(s.rows[0]), 2);
     },
     swift, {"element(\"OK\").click()", "elements(\"Row\")[0].click(doubleClick: true)"}},
    {"namedAncestorListAndClassName",
     [](Scene& s) {
         pressAt(plus(centre(s.toolButton), 2, 1));
         pressAt(centre(s.rows[2]));
         pressAt(centre(s.plainSlider));
     },
     objectiveC,
     {"[[self element:@\"Toolbar\"] clickWithOffset: NSMakePoint(2.0,1.0)];", "[[self elements:@\"Row\"][2] click];",
      "[[self elements:@\"Slider\"][1] click];"}},
    {"dragOfThreePointsIsAClickOfFiveADrag",
     [](Scene& s) {
         drag(centre(s.volume), 3);
         drag(centre(s.volume), -5);
     },
     objectiveC,
     {"[[self element:@\"Volume\"] click];", "[[[self element:@\"Volume\"] click] dragWithOffset: NSMakePoint(-5.0,0.0)];"}},
    {"aClickFlushesTheTypedTextFirst",
     [](Scene& s) {
         pressAt(centre(s.field));
         typeCharacters("abc");
         pressAt(centre(s.ok));
     },
     objectiveC, {"[[self element:@\"Field\"] click];", "[self typeText: @\"abc\"];", "[[self element:@\"OK\"] click];"}},
    {"menuBarCommandsAreTheirShortcuts",
     [](Scene& s) {
         pressKey(1, commandFlag);   // Save: command-S
         pressKey(24, commandFlag);  // One: "=" has no key code
         auto fileMenu = desktop::Application::shared()->mainMenu()->itemArray()[0]->submenu();
         fileMenu->performActionForItemAtIndex(1);  // Plain: no shortcut
         pressAt(centre(s.ok));
     },
     cpp, {"typeKey(\"s\", jtk::command);", "element(\"OK\").click();"}},
    // Chosen with the mouse in the menu bar: recorded as chosen with the keyboard.
    {"menuBarChoiceWithTheMouseIsItsShortcut",
     [](Scene&) {
         postMouseAt(EventType::leftMouseDown, fileTitle());
         postMouseAt(EventType::leftMouseDragged, fileRow(0));
         postMouseAt(EventType::leftMouseUp, fileRow(0));  // Save
         pressAt(fileTitle());
         pressAt(fileRow(1));  // Plain: no shortcut
     },
     cpp, {"typeKey(\"s\", jtk::command);"}},
    // The replay must reach the same state: an upper-case key implies Shift,
    {"upperCaseShortcutKeepsItsShift", [](Scene&) { pressKey(1, commandFlag | platform::eventFlags::shift); }, cpp,
     {"typeKey(\"s\", jtk::command | jtk::shift);"}},
    // a field typed into again is selected first, not added to,
    {"aFieldEditedTwiceIsReplacedTheSecondTime",
     [](Scene& s) {
         for (const char* text : {"Ada", "X"}) {
             pressAt(centre(s.field));
             typeCharacters(text);
             pressKey(36);
         }
     },
     cpp,
     {"element(\"Field\").click();", "typeText(\"Ada\\r\");", "element(\"Field\").click();", "typeKey(\"a\", jtk::command);",
      "typeText(\"AdaX\\r\");"}},
    // and a click written against a named ancestor is measured from its centre.
    {"namedAncestorOffsetFromItsCentre", [](Scene& s) { pressAt(plus(centre(s.toolButton), 2, 1)); }, cpp,
     {"element(\"Toolbar\").click({.offset = {-48.0, 1.0}});"}},
    {"popUpChoiceChainsOntoItsClick",
     [](Scene& s) {
         auto menu = std::dynamic_pointer_cast<desktop::PopUpButton>(s.colour)->menu();
         menu->performActionForItemAtIndex(0);  // no element clicked yet: not recorded
         auto rect = s.window->convertRectToScreen(s.colour->convertRectToWindow(s.colour->bounds()));
         pressAt(centre(s.colour));
         pressAt({rect.minX() + 20, rect.minY() - desktop::Menu::rowHeight * 1.5});  // Green
     },
     cpp, {"element(\"Colour\").click().clickMenuItem(\"Green\");"}},
};

class RecorderCapture : public DesktopTest, public testing::WithParamInterface<CaptureCase> {
protected:
    // The recorded statements: the lines between the method's opening line and the marker.
    std::vector<std::string> record(const std::function<void(Scene&)>& gestures, JTKDialect dialect, bool backdate = true) {
        const char* names[] = {"Recorded.swift", "Recorded.m", "Recorded.cpp"};
        auto file = folder.path / names[static_cast<int>(dialect)];
        writeFile(file, "begin {\n    " + std::string(jtkMarkerText(dialect)) + "\n}\n");
        auto scene = Scene::make();
        auto recorder = JTKRecorder::make(file);
        JTKTestSuite::setRecorder(recorder);
        if (backdate) recorder->backdateStart(JTKRecorder::startDelay);
        gestures(scene);
        drainEvents();
        recorder->stop();
        std::vector<std::string> statements;
        std::istringstream lines(readFile(file));
        std::string line;
        for (std::getline(lines, line); std::getline(lines, line) && line != "}";) {
            EXPECT_TRUE(line.starts_with("    ")) << line;
            statements.push_back(line.substr(4));
        }
        return statements;
    }
    ScratchFolder folder;
};

TEST_P(RecorderCapture, writesOneStatementPerInteraction) {
    EXPECT_EQ(record(GetParam().gestures, GetParam().dialect), GetParam().statements);
}

INSTANTIATE_TEST_SUITE_P(Gestures, RecorderCapture, testing::ValuesIn(captureCases),
                         [](const auto& info) { return std::string(info.param.label); });

using RecorderCaptureRules = RecorderCapture;

TEST_F(RecorderCaptureRules, eventsInTheFirstSecondAreNotRecorded) {
    auto statements = record(
        [](Scene& s) {
            pressAt(centre(s.ok));
            drainEvents();
            std::dynamic_pointer_cast<JTKRecorder>(JTKTestSuite::recorder())->backdateStart(JTKRecorder::startDelay);
            pressAt(centre(s.rows[1]));
        },
        JTKDialect::swift, false);
    EXPECT_EQ(statements, (std::vector<std::string>{"elements(\"Row\")[1].click()"}));
}

TEST_F(RecorderCaptureRules, theStatusItemIsNeverATarget) {
    int chosen = 0;
    auto item = platform::statusItemWithLength(platform::variableStatusItemLength);
    item->setTitle("Item");
    item->setAction([&] { ++chosen; });
    auto button = std::dynamic_pointer_cast<desktop::View>(item->button());
    auto statements = record(
        [&](Scene& s) {
            pressAt(centre(button));
            pressAt(centre(s.ok));
        },
        JTKDialect::cpp);
    EXPECT_EQ(statements, (std::vector<std::string>{"element(\"OK\").click();"}));
    EXPECT_EQ(chosen, 1);
    item->setAction({});
}

TEST_F(RecorderCaptureRules, aFileThatCannotBeReadStartsNoRecording) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(JTKRecorder::make(folder.path / "missing.cpp"), nullptr);
    EXPECT_NE(testing::internal::GetCapturedStdout().find("cannot read the test source file"), std::string::npos);
}

}  // namespace
