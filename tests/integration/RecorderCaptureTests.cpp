// A person's interactions, posted as real events into a small window while a
// recorder records, and the statements they leave in the test source file,
// in each of the three languages.
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
    std::shared_ptr<desktop::View> ok, rows[3], toolButton, field, otherField, volume, plainSlider, colour, hostile;

    static Scene make() {
        Scene s;
        s.window = testsupport::makeWindow({100, 100, 500, 400}, "Scene");
        auto content = s.window->desktopContentView();
        auto named = [](std::shared_ptr<desktop::View> view, const std::string& name) {
            view->addMethod("hbViewName", [name](platform::Object&, const platform::Value&) { return platform::Value(name); });
            return view;
        };
        s.ok = named(addView<desktop::Button>(content, Rect{20, 340, 80, 24}, "OK"), "OK");
        for (int i = 0; i < 3; ++i) s.rows[i] = named(addView<desktop::Button>(content, Rect{20.0 + 90 * i, 300, 80, 24}), "Row");
        auto toolbar = named(addView<desktop::View>(content, Rect{300, 290, 180, 40}), "Toolbar");
        s.toolButton = addView<desktop::Button>(toolbar, Rect{10, 8, 60, 24});
        auto field = addView<desktop::TextField>(content, Rect{20, 240, 150, 24});
        auto otherField = addView<desktop::TextField>(content, Rect{180, 240, 150, 24});
        field->setNextKeyView(otherField);
        s.field = named(field, "Field");
        s.otherField = named(otherField, "Other");
        s.volume = named(addView<desktop::Slider>(content, Rect{20, 200, 200, 20}, 0, 100, 0), "Volume");
        s.plainSlider = addView<desktop::Slider>(content, Rect{250, 200, 100, 20}, 0, 100, 0);
        auto colours = desktop::Menu::make("Colour");
        for (const char* title : {"Red", "Green"}) colours->addItem(desktop::MenuItem::make(title));
        s.colour = named(addView<desktop::PopUpButton>(content, Rect{20, 150, 150, 26}, colours), "Colour");
        s.hostile = named(addView<desktop::Button>(content, Rect{360, 340, 100, 24}), "say \"hi\" \\");

        auto mainMenu = desktop::Menu::make("Main");
        auto file = desktop::MenuItem::make("File");
        auto fileMenu = desktop::Menu::make("File");
        fileMenu->addItem(desktop::MenuItem::make("Save", {}, "s", commandFlag));
        fileMenu->addItem(desktop::MenuItem::make("Plain", {}, "", 0));
        fileMenu->addItem(desktop::MenuItem::make("One", {}, "1", commandFlag));
        file->setSubmenu(fileMenu);
        mainMenu->addItem(file);
        desktop::Application::shared()->setMainMenu(mainMenu);
        return s;
    }
};

Point centre(const std::shared_ptr<desktop::View>& view) {
    auto rect = view->desktopWindow()->convertRectToScreen(view->convertRectToWindow(view->bounds()));
    return {rect.midX(), rect.midY()};
}
Point plus(Point p, double dx, double dy = 0) { return {p.x + dx, p.y + dy}; }
void press(Point at, int64_t clickState = 1) { pressAt(at, clickState); }
void key(uint16_t code, uint64_t flags = 0) { pressKey(code, flags); }
void type(const std::string& text) { typeCharacters(text); }
void drag(Point from, double dx) {
    postMouseAt(EventType::leftMouseDown, from);
    postMouseAt(EventType::leftMouseDragged, from);
    postMouseAt(EventType::leftMouseDragged, plus(from, dx));
    postMouseAt(EventType::leftMouseUp, plus(from, dx));
}

struct CaptureCase {
    const char* label;
    std::function<void(Scene&)> gestures;
    std::vector<std::string> swift, objectiveC, cpp;
};

const std::vector<CaptureCase> captureCases = {
    {"clickAtCentre", [](Scene& s) { press(centre(s.ok)); },
     {"element(\"OK\").click()"}, {"[[self element:@\"OK\"] click];"}, {"element(\"OK\").click();"}},
    {"offsetRoundsHalvesAwayFromZero",
     [](Scene& s) {
         for (double dx : {0.4, 0.5, -0.5}) press(plus(centre(s.ok), dx));
     },
     {"element(\"OK\").click()", "element(\"OK\").click(offset: NSPoint(1.0,0.0))",
      "element(\"OK\").click(offset: NSPoint(-1.0,0.0))"},
     {"[[self element:@\"OK\"] click];", "[[self element:@\"OK\"] clickWithOffset: NSMakePoint(1.0,0.0)];",
      "[[self element:@\"OK\"] clickWithOffset: NSMakePoint(-1.0,0.0)];"},
     {"element(\"OK\").click();", "element(\"OK\").click({.offset = {1.0, 0.0}});",
      "element(\"OK\").click({.offset = {-1.0, 0.0}});"}},
    {"doubleClickReplacesTheFirstPress",
     [](Scene& s) {
         press(centre(s.ok), 1);
         press(centre(s.ok), 2);
     },
     {"element(\"OK\").click(doubleClick: true)"}, {"[[self element:@\"OK\"] clickdoubleClick: true];"},
     {"element(\"OK\").click({.doubleClick = true});"}},
    {"doubleClickOnTwoElementsKeepsBoth",
     [](Scene& s) {
         press(centre(s.ok), 1);
         press(centre(s.rows[0]), 2);
     },
     {"element(\"OK\").click()", "elements(\"Row\")[0].click(doubleClick: true)"},
     {"[[self element:@\"OK\"] click];", "[[self elements:@\"Row\"][0] clickdoubleClick: true];"},
     {"element(\"OK\").click();", "elements(\"Row\").at(0).click({.doubleClick = true});"}},
    {"namedAncestorListAndClassName",
     [](Scene& s) {
         press(plus(centre(s.toolButton), 2, 1));
         press(centre(s.rows[2]));
         press(centre(s.plainSlider));
     },
     {"element(\"Toolbar\").click(offset: NSPoint(2.0,1.0))", "elements(\"Row\")[2].click()",
      "elements(\"Slider\")[1].click()"},
     {"[[self element:@\"Toolbar\"] clickWithOffset: NSMakePoint(2.0,1.0)];", "[[self elements:@\"Row\"][2] click];",
      "[[self elements:@\"Slider\"][1] click];"},
     {"element(\"Toolbar\").click({.offset = {2.0, 1.0}});", "elements(\"Row\").at(2).click();",
      "elements(\"Slider\").at(1).click();"}},
    {"dragOfThreePointsIsAClickOfFiveADrag",
     [](Scene& s) {
         drag(centre(s.volume), 3);
         drag(centre(s.volume), -5);
     },
     {"element(\"Volume\").click()", "element(\"Volume\").click().drag(offset: NSPoint(-5.0,0.0))"},
     {"[[self element:@\"Volume\"] click];", "[[[self element:@\"Volume\"] click] dragWithOffset: NSMakePoint(-5.0,0.0)];"},
     {"element(\"Volume\").click();", "element(\"Volume\").click().drag({-5.0, 0.0});"}},
    {"returnEndsTheTypedText",
     [](Scene& s) {
         press(centre(s.field));
         type("abc");
         key(36);
     },
     {"element(\"Field\").click()", "typeText(\"abc\\r\")"},
     {"[[self element:@\"Field\"] click];", "[self typeText: @\"abc\\r\"];"},
     {"element(\"Field\").click();", "typeText(\"abc\\r\");"}},
    {"tabFlushesTheTextAndIsAKey",
     [](Scene& s) {
         press(centre(s.field));
         type("abc");
         key(48);
         type("de");
         key(36);
     },
     {"element(\"Field\").click()", "typeText(\"abc\")", "typeKey(48)", "typeText(\"de\\r\")"},
     {"[[self element:@\"Field\"] click];", "[self typeText: @\"abc\"];", "[self typeKey: @48];", "[self typeText: @\"de\\r\"];"},
     {"element(\"Field\").click();", "typeText(\"abc\");", "typeKey(\"\\t\");", "typeText(\"de\\r\");"}},
    {"aClickFlushesTheTypedTextFirst",
     [](Scene& s) {
         press(centre(s.field));
         type("abc");
         press(centre(s.ok));
     },
     {"element(\"Field\").click()", "typeText(\"abc\")", "element(\"OK\").click()"},
     {"[[self element:@\"Field\"] click];", "[self typeText: @\"abc\"];", "[[self element:@\"OK\"] click];"},
     {"element(\"Field\").click();", "typeText(\"abc\");", "element(\"OK\").click();"}},
    {"hostileTextsStayValidLiterals",
     [](Scene& s) {
         press(centre(s.hostile));
         press(centre(s.field));
         type("q\"\\\xF0\x9F\x98\x80");
         key(36);
     },
     {"element(\"say \\\"hi\\\" \\\\\").click()", "element(\"Field\").click()", "typeText(\"q\\\"\\\\\xF0\x9F\x98\x80\\r\")"},
     {"[[self element:@\"say \\\"hi\\\" \\\\\"] click];", "[[self element:@\"Field\"] click];",
      "[self typeText: @\"q\\\"\\\\\xF0\x9F\x98\x80\\r\"];"},
     {"element(\"say \\\"hi\\\" \\\\\").click();", "element(\"Field\").click();", "typeText(\"q\\\"\\\\\xF0\x9F\x98\x80\\r\");"}},
    {"menuBarCommandsAreTheirShortcuts",
     [](Scene& s) {
         key(1, commandFlag);   // Save: command-S
         key(18, commandFlag);  // One: its key has no key code
         auto fileMenu = desktop::Application::shared()->mainMenu()->itemArray()[0]->submenu();
         fileMenu->performActionForItemAtIndex(1);  // Plain: no shortcut
         press(centre(s.ok));
     },
     {"typeKey(1, flags: [.maskCommand])", "element(\"OK\").click()"},
     {"[self typeKey: @1 flags: (kCGEventFlagMaskCommand)];", "[[self element:@\"OK\"] click];"},
     {"typeKey(\"s\", jtk::command);", "element(\"OK\").click();"}},
    {"popUpChoiceChainsOntoItsClick",
     [](Scene& s) {
         auto menu = std::dynamic_pointer_cast<desktop::PopUpButton>(s.colour)->menu();
         menu->performActionForItemAtIndex(0);  // no element clicked yet: not recorded
         auto rect = s.window->convertRectToScreen(s.colour->convertRectToWindow(s.colour->bounds()));
         press(centre(s.colour));
         press({rect.minX() + 20, rect.minY() - desktop::Menu::rowHeight * 1.5});  // Green
     },
     {"element(\"Colour\").click().clickMenuItem(title: \"Green\")"},
     {"[[[self element:@\"Colour\"] click] clickMenuItemWithTitle: @\"Green\"];"},
     {"element(\"Colour\").click().clickMenuItem(\"Green\");"}},
};

struct CaptureParam {
    const CaptureCase* capture;
    JTKDialect dialect;
    friend void PrintTo(const CaptureParam& p, std::ostream* out) { *out << p.capture->label << "/" << static_cast<int>(p.dialect); }
};

class RecorderCapture : public DesktopTest, public testing::WithParamInterface<CaptureParam> {
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
        settle();
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
    static void settle() { EXPECT_TRUE(settleEvents()); }
    ScratchFolder folder;
};

TEST_P(RecorderCapture, writesOneStatementPerInteraction) {
    const auto& c = *GetParam().capture;
    const std::vector<std::string>* expected[] = {&c.swift, &c.objectiveC, &c.cpp};
    auto statements = record(c.gestures, GetParam().dialect);
    EXPECT_EQ(statements, *expected[static_cast<int>(GetParam().dialect)]);
}

std::vector<CaptureParam> allCaptureParams() {
    std::vector<CaptureParam> params;
    for (const auto& capture : captureCases)
        for (auto dialect : {JTKDialect::swift, JTKDialect::objectiveC, JTKDialect::cpp}) params.push_back({&capture, dialect});
    return params;
}

std::string captureName(const testing::TestParamInfo<CaptureParam>& info) {
    static const char* const dialects[] = {"Swift", "ObjC", "Cpp"};
    return std::string(info.param.capture->label) + dialects[static_cast<int>(info.param.dialect)];
}

INSTANTIATE_TEST_SUITE_P(Gestures, RecorderCapture, testing::ValuesIn(allCaptureParams()), captureName);

using RecorderCaptureRules = RecorderCapture;

TEST_F(RecorderCaptureRules, eventsInTheFirstSecondAreNotRecorded) {
    auto statements = record(
        [](Scene& s) {
            press(centre(s.ok));
            settle();
            std::dynamic_pointer_cast<JTKRecorder>(JTKTestSuite::recorder())->backdateStart(JTKRecorder::startDelay);
            press(centre(s.rows[1]));
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
            press(centre(button));
            press(centre(s.ok));
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
