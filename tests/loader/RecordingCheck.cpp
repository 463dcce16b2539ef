// A person's session on a program, recorded and replayed: the program runs
// on a private X server in a recording session (--jtk-record), under a
// loader or built with JTK; xdotool clicks the recorder's status item, works
// in the program and clicks the status item again, as a person would. The
// recorded C++ statements must be exactly the session's, one per action; the
// test source file they went into is then built again (into the tests
// library, or into the program built with it) and replayed, and the program
// must show what it showed the person. Four programs: Debian's Qt
// calculator example (keys found by title and class, the display a program's
// own text), a small Qt notes program of ours (a field that empties itself
// on Return, an F5 shortcut, a menu-bar command without a shortcut chosen
// with the mouse and the keyboard in the open menu) and its GTK 4 twin built
// with JTK (the same, the menu command chosen with the mouse, and a button),
// and GNOME's calculator, unmodified, under the GTK loader.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "tests/display/DisplayHarness.h"

using namespace displaytest;
namespace fs = std::filesystem;

namespace {

constexpr int screenWidth = 1280, screenHeight = 800;

// One thing the person does: click a place the tests reported (by its
// title), type text, or press keys (xdotool key names). line is the
// statement it records, if it records one of its own; a click's is its
// element reference, completed with the click's offset, a choice's (a click
// on a menu item) the whole statement.
struct Step {
    enum Kind { click, choose, type, keys } kind;
    std::string what;
    std::string line;
};

struct Session {
    const char* label;
    const char* program;  // environment variables of the program, its tests library (none: built with JTK), its template
    const char* library;
    const char* source;
    const char* templateFile;
    const char* target;      // what is built again with the recording
    const char* windowName;  // xdotool's pattern for the program's windows
    const char* loader;      // environment variable of the loader; none for a program built with JTK
    const char* platform;    // the toolkit's choice of the X server
    std::vector<Step> steps;
    const char* shows;  // what the program shows after the steps
    friend void PrintTo(const Session& s, std::ostream* out) { *out << s.label; }
};

Step press(const std::string& key) { return {Step::click, key, "element(\"" + key + "\", jtk::JTKClass{\"Button\"})"}; }
// A key of a program whose interface file names its keys: found by that name.
Step pressNamed(const std::string& key, const std::string& name) { return {Step::click, key, "element(\"" + name + "\")"}; }

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string shellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string outputOf(const std::string& command) {
    std::string output;
    if (FILE* pipe = ::popen(command.c_str(), "r")) {
        char chunk[256];
        while (size_t count = std::fread(chunk, 1, sizeof chunk, pipe)) output.append(chunk, count);
        ::pclose(pipe);
    }
    while (!output.empty() && output.back() == '\n') output.pop_back();
    return output;
}

void xdotool(const std::string& arguments) { [[maybe_unused]] int status = std::system(("xdotool " + arguments).c_str()); }

// A whole number as the recorder writes an offset's coordinate.
std::string coordinate(double value) { return std::to_string(static_cast<long>(value)) + ".0"; }

// Where a key is, and the statement a click on the given pixel of it records.
struct Key {
    double x = 0, y = 0;  // centre on screen, points, y up
    int pixelX() const { return static_cast<int>(std::floor(x)); }
    int pixelY() const { return screenHeight - 1 - static_cast<int>(std::floor(y)); }
    // A click on pixelX, pixelY: the offset from the centre, rounded half away from zero.
    std::string click() const {
        double dx = std::round(std::floor(x) - x), dy = std::round(std::floor(y) - y);
        return dx == 0 && dy == 0 ? "click()" : "click({.offset = {" + coordinate(dx) + ", " + coordinate(dy) + "}})";
    }
};

// The lines of the first recording method in the file, without its braces.
std::vector<std::string> recordedLines(const fs::path& file, bool& closed) {
    std::ifstream in(file);
    std::vector<std::string> lines;
    bool inside = false;
    closed = false;
    for (std::string line; std::getline(in, line);) {
        if (!inside) {
            inside = line == "JTK_TEST(testRecording) {";
            continue;
        }
        if (line == "}") {
            closed = true;
            break;
        }
        lines.push_back(line);
    }
    return lines;
}

class LoadedProgramRecording : public ::testing::TestWithParam<Session> {
protected:
    void SetUp() override {
        program = environment(GetParam().program);
        if (GetParam().library) library = environment(GetParam().library);
        if (program.empty() || !fs::exists(program))
            GTEST_SKIP() << "no " << GetParam().label << " program (qtbase5-examples installs the calculator; the GTK one needs GTK 4)";
        if (std::system("command -v Xvfb >/dev/null && command -v xdotool >/dev/null") != 0)
            GTEST_SKIP() << "Xvfb or xdotool is not installed (scripts/setup.sh installs both)";
        char folder[] = "/tmp/jtk-recording-XXXXXX";
        ASSERT_NE(::mkdtemp(folder), nullptr);
        home = folder;
        xvfb = std::make_unique<Child>(std::vector<std::string>{
            "/bin/bash", "-c",
            "exec Xvfb -displayfd 1 -screen 0 " + std::to_string(screenWidth) + "x" + std::to_string(screenHeight) +
                "x24 -nolisten tcp -noreset 2>/dev/null"});
        std::string number = xvfb->readLine().value_or("");
        ASSERT_FALSE(number.empty()) << "Xvfb did not report a display";
        display = ":" + number;
        for (const char* sub : {"data", "config", "cache", "runtime", "Screenshots"}) fs::create_directories(home / sub);
        fs::permissions(home / "runtime", fs::perms::owner_all);
        ::setenv("DISPLAY", display.c_str(), 1);
        ::unsetenv("WAYLAND_DISPLAY");
        ::unsetenv("JTK_OPTIONS");
    }
    void TearDown() override {
        xvfb.reset();
        if (!home.empty()) fs::remove_all(home);
    }

    // The program (under its loader with its recording tests library) with these options.
    std::unique_ptr<Child> launch(const std::string& options) {
        const Session& session = GetParam();
        std::string preload = session.loader ? " LD_PRELOAD=" + shellQuoted(environment(session.loader)) : "";
        std::string tests = library.empty() ? "" : " --jtk-tests=" + shellQuoted(library);
        std::string command = "cd " + shellQuoted(home.string()) + " && exec env HOME=" + shellQuoted(home.string()) +
                              " XDG_DATA_HOME=" + shellQuoted((home / "data").string()) +
                              " XDG_CONFIG_HOME=" + shellQuoted((home / "config").string()) +
                              " XDG_CACHE_HOME=" + shellQuoted((home / "cache").string()) +
                              " XDG_RUNTIME_DIR=" + shellQuoted((home / "runtime").string()) +
                              " JTK_LOADED_SCREENSHOTS_DIR=" + shellQuoted((home / "Screenshots").string()) +
                              " " + session.platform + preload + " " + shellQuoted(program) + " uxtest" + tests + " " +
                              options + " 2>&1";
        return std::make_unique<Child>(std::vector<std::string>{"/bin/bash", "-c", command});
    }

    void clickStatusItem() { xdotool("mousemove " + std::to_string(screenWidth - 20) + " 11 click 1"); }

    std::string program, library, display;
    fs::path home;
    std::unique_ptr<Child> xvfb;
};

TEST_P(LoadedProgramRecording, replaysToWhatThePersonSaw) {
    const Session& session = GetParam();
    fs::path source = environment(session.source);
    fs::copy_file(environment(session.templateFile), source, fs::copy_options::overwrite_existing);
    auto build = [&] {
        std::string command = shellQuoted(environment("JTK_CMAKE")) + " --build " + shellQuoted(environment("JTK_BUILD_DIR")) +
                              " --target " + session.target + " 2>&1; echo \"status $?\"";
        return outputOf(command);
    };
    // The library as the file is now: a recording of an earlier check may be in it.
    std::string built = build();
    ASSERT_TRUE(built.ends_with("status 0")) << built;

    // The person's session.
    auto running = launch("--jtk-record --jtk-filter=testShowsWhereToClickAndWhatThePersonSaw");
    std::map<std::string, Key> places;
    ASSERT_TRUE(running->readUntil([&](const std::string& line) {
        std::istringstream words(line);
        std::string check, kind, title;
        Key key;
        if (words >> check >> kind >> key.x >> key.y && check == "check:" && kind == "at" && std::getline(words >> std::ws, title))
            places[title] = key;
        return line == "check: keys shown";
    }, 60s)) << running->transcript();
    std::string windows = std::string("search --onlyvisible --name '") + session.windowName + "'";
    xdotool(windows + " windowfocus");  // as a window manager gives the keyboard
    clickStatusItem();
    ASSERT_TRUE(running->readUntilLine("check: recording", 20s)) << running->transcript();
    std::this_thread::sleep_for(1800ms);  // the recorder lets the first second go by
    std::vector<std::string> expected;
    for (const auto& step : session.steps) {
        if (step.kind == Step::click) {
            ASSERT_TRUE(places.count(step.what)) << "nothing to click titled " << step.what << "\n" << running->transcript();
            const Key& place = places[step.what];
            xdotool("mousemove " + std::to_string(place.pixelX()) + " " + std::to_string(place.pixelY()) + " click 1");
            if (!step.line.empty()) expected.push_back("    " + step.line + "." + place.click() + ";");
        } else if (step.kind == Step::choose) {
            ASSERT_TRUE(places.count(step.what)) << "no menu item titled " << step.what << "\n" << running->transcript();
            const Key& place = places[step.what];
            xdotool("mousemove " + std::to_string(place.pixelX()) + " " + std::to_string(place.pixelY()) + " click 1");
            expected.push_back("    " + step.line);
        } else {
            xdotool(step.kind == Step::type ? "type -- " + shellQuoted(step.what) : "key " + step.what);
            if (!step.line.empty()) expected.push_back("    " + step.line);
        }
        std::this_thread::sleep_for(500ms);
    }
    clickStatusItem();
    std::string seen;
    ASSERT_TRUE(running->readUntil([&](const std::string& line) {
        if (!line.starts_with("check: the display shows ")) return false;
        seen = line.substr(std::string("check: the display shows ").size());
        return true;
    }, 20s)) << running->transcript();
    EXPECT_EQ(seen, session.shows) << "the person's session did not do what it should";

    // The program stays for more recordings until it is closed.
    ASSERT_TRUE(running->readUntil([](const std::string& line) { return line.starts_with("JTK: ready to record: "); }, 60s))
        << running->transcript();
    // As a window manager asks: the program's windows (the status item does not keep it running).
    std::istringstream found(outputOf("xdotool " + windows));
    XConnection x(display);
    int asked = 0;
    for (unsigned long window; found >> window; ++asked) x.askToClose(window);
    ASSERT_GT(asked, 0) << "no window of the program on " << display;
    EXPECT_EQ(running->wait(30s), 0) << running->transcript();
    EXPECT_NE(running->transcript().find("JTK: the recording session ended: the program quit with status 0"), std::string::npos);

    bool closed = false;
    auto recorded = recordedLines(source, closed);
    EXPECT_TRUE(closed) << "no recording method in " << source;
    EXPECT_EQ(recorded, expected) << "recorded into " << source;

    // The replay: the recorded file built into the tests library again.
    built = build();
    ASSERT_TRUE(built.ends_with("status 0")) << built;
    auto replay = launch("--jtk-ci --jtk-filter=testRecording:testReportsTheDisplay");
    ASSERT_TRUE(replay->readUntilLine("check: the display shows " + seen, 90s)) << replay->transcript();
    EXPECT_EQ(replay->wait(60s), 0) << replay->transcript();
}

INSTANTIATE_TEST_SUITE_P(
    Programs, LoadedProgramRecording,
    ::testing::Values(
        // 7 + 8 = × 2 =: each key once, by its title; the display is the program's own text, not typing.
        Session{"calculator", "JTK_CALCULATOR", "JTK_CALCULATOR_LIBRARY", "JTK_CALCULATOR_SOURCE", "JTK_CALCULATOR_TEMPLATE",
                "calculator_recording_uxtests", "^calculator$", "JTK_LOADER", "QT_QPA_PLATFORM=xcb",
                {press("7"), press("+"), press("8"), press("="), press("\u00D7"), press("2"), press("=")},
                "30"},
        // Two notes typed into a field that empties itself on Return, F5, and Edit ▸ Upper Case from the menu bar.
        Session{"notes", "JTK_NOTES", "JTK_NOTES_LIBRARY", "JTK_NOTES_SOURCE", "JTK_NOTES_TEMPLATE", "notes_recording_uxtests",
                "^Notes$", "JTK_LOADER", "QT_QPA_PLATFORM=xcb",
                {{Step::click, "entry", "element(\"entry\")"},
                 {Step::type, "milk", ""},
                 {Step::keys, "Return", "typeText(\"milk\\r\");"},
                 {Step::type, "eggs", ""},
                 {Step::keys, "Return", "typeText(\"eggs\\r\");"},
                 {Step::keys, "F5", "typeKey(\"F5\");"},
                 {Step::click, "Edit", ""},
                 {Step::keys, "Down Return", "element(\"Edit\", jtk::JTKClass{\"QMenuBarItem\"}).clickMenuItem(\"Upper Case\");"}},
                "MILK, EGGS; refreshed 1"},
        // The same on GTK 4, with the Count button, and the menu item clicked
        // (an open popover takes no keys from a bare X server's focus).
        Session{"gtknotes", "JTK_GTK_NOTES", nullptr, "JTK_GTK_NOTES_SOURCE", "JTK_GTK_NOTES_TEMPLATE", "jtk_gtk_notes",
                "^Notes$", nullptr, "GDK_BACKEND=x11",
                {{Step::click, "entry", "element(\"entry\")"},
                 {Step::type, "milk", ""},
                 {Step::keys, "Return", "typeText(\"milk\\r\");"},
                 {Step::type, "eggs", ""},
                 {Step::keys, "Return", "typeText(\"eggs\\r\");"},
                 {Step::keys, "F5", "typeKey(\"F5\");"},
                 {Step::click, "Count", "element(\"Count\", jtk::JTKClass{\"GtkButton\"})"},
                 {Step::click, "Edit", ""},
                 {Step::choose, "Upper Case",
                  "element(\"Edit\", jtk::JTKClass{\"GtkPopoverMenuBarItem\"}).clickMenuItem(\"Upper Case\");"}},
                "MILK, EGGS; refreshed 1; counted 1"},
        // GNOME's calculator (GTK 4, unmodified) under the GTK loader: its keys carry the ids of its
        // interface file; it multiplies before it adds.
        Session{"gnomecalculator", "JTK_GNOME_CALCULATOR", "JTK_GNOME_CALCULATOR_LIBRARY", "JTK_GNOME_CALCULATOR_SOURCE",
                "JTK_GNOME_CALCULATOR_TEMPLATE", "gnome_calculator_recording_uxtests", "^Calculator$", "JTK_GTK_LOADER",
                "GDK_BACKEND=x11",
                {pressNamed("7", "calc_7_button"), pressNamed("+", "calc_add_button"), pressNamed("8", "calc_8_button"),
                 pressNamed("\u00D7", "calc_multiply_button"), pressNamed("2", "calc_2_button"),
                 pressNamed("=", "calc_result_button")},
                "23"}),
    [](const auto& info) { return std::string(info.param.label); });

}  // namespace
