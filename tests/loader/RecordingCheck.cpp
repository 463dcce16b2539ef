// A person's session on an unmodified Qt program, recorded and replayed: the
// calculator example runs under the loader on a private X server in a
// recording session (--jtk-record); xdotool clicks the recorder's status
// item, the keys 7 + 8 = × 2 =, and the status item again, as a person
// would. The recorded C++ statements must name each key by its title and
// class, once per click; the test source file they went into is then built
// into its tests library again and replayed, and the display must show what
// it showed the person.
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
const std::vector<std::string> session = {"7", "+", "8", "=", "\u00D7", "2", "="};

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
    std::string statement(const std::string& title) const {
        // The offset from the centre, rounded half away from zero.
        double dx = std::round(std::floor(x) - x), dy = std::round(std::floor(y) - y);
        std::string click = dx == 0 && dy == 0 ? "click()" : "click({.offset = {" + coordinate(dx) + ", " + coordinate(dy) + "}})";
        return "    element(\"" + title + "\", jtk::JTKClass{\"Button\"})." + click + ";";
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

class LoadedCalculatorRecording : public ::testing::Test {
protected:
    void SetUp() override {
        calculator = environment("JTK_CALCULATOR");
        if (calculator.empty() || !fs::exists(calculator))
            GTEST_SKIP() << "the calculator example (qtbase5-examples) is not installed";
        if (std::system("command -v Xvfb >/dev/null && command -v xdotool >/dev/null") != 0)
            GTEST_SKIP() << "Xvfb or xdotool is not installed (scripts/setup.sh installs both)";
        char folder[] = "/tmp/jtk-recording-XXXXXX";
        ASSERT_NE(::mkdtemp(folder), nullptr);
        home = folder;
        xvfb = std::make_unique<Child>(std::vector<std::string>{
            "/bin/bash", "-c",
            "exec Xvfb -displayfd 1 -screen 0 " + std::to_string(screenWidth) + "x" + std::to_string(screenHeight) +
                "x24 -nolisten tcp 2>/dev/null"});
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

    // The calculator under the loader with the recording tests library and these options.
    std::unique_ptr<Child> launch(const std::string& options) {
        std::string command = "cd " + shellQuoted(home.string()) + " && exec env HOME=" + shellQuoted(home.string()) +
                              " XDG_DATA_HOME=" + shellQuoted((home / "data").string()) +
                              " XDG_CONFIG_HOME=" + shellQuoted((home / "config").string()) +
                              " XDG_CACHE_HOME=" + shellQuoted((home / "cache").string()) +
                              " XDG_RUNTIME_DIR=" + shellQuoted((home / "runtime").string()) +
                              " JTK_LOADED_SCREENSHOTS_DIR=" + shellQuoted((home / "Screenshots").string()) +
                              " QT_QPA_PLATFORM=xcb LD_PRELOAD=" + shellQuoted(environment("JTK_LOADER")) + " " +
                              shellQuoted(calculator) + " uxtest --jtk-tests=" +
                              shellQuoted(environment("JTK_RECORDING_LIBRARY")) + " " + options + " 2>&1";
        return std::make_unique<Child>(std::vector<std::string>{"/bin/bash", "-c", command});
    }

    void clickStatusItem() { xdotool("mousemove " + std::to_string(screenWidth - 20) + " 11 click 1"); }

    std::string calculator, display;
    fs::path home;
    std::unique_ptr<Child> xvfb;
};

TEST_F(LoadedCalculatorRecording, replaysToTheDisplayThePersonSaw) {
    fs::path source = environment("JTK_RECORDING_SOURCE");
    fs::copy_file(environment("JTK_RECORDING_TEMPLATE"), source, fs::copy_options::overwrite_existing);

    // The person's session.
    auto program = launch("--jtk-record --jtk-filter=testShowsTheKeysAndWhatThePersonSaw");
    std::map<std::string, Key> keys;
    ASSERT_TRUE(program->readUntil([&](const std::string& line) {
        std::istringstream words(line);
        std::string check, kind, title;
        Key key;
        if (words >> check >> kind >> key.x >> key.y && check == "check:" && kind == "key" && std::getline(words >> std::ws, title))
            keys[title] = key;
        return line == "check: keys shown";
    }, 60s)) << program->transcript();
    for (const auto& title : session) ASSERT_TRUE(keys.count(title)) << "no key " << title << "\n" << program->transcript();
    clickStatusItem();
    ASSERT_TRUE(program->readUntilLine("check: recording", 20s)) << program->transcript();
    std::this_thread::sleep_for(1800ms);  // the recorder lets the first second go by
    std::vector<std::string> expected;
    for (const auto& title : session) {
        const Key& key = keys[title];
        xdotool("mousemove " + std::to_string(key.pixelX()) + " " + std::to_string(key.pixelY()) + " click 1");
        expected.push_back(key.statement(title));
        std::this_thread::sleep_for(500ms);
    }
    clickStatusItem();
    std::string seen;
    ASSERT_TRUE(program->readUntil([&](const std::string& line) {
        if (!line.starts_with("check: the display shows ")) return false;
        seen = line.substr(std::string("check: the display shows ").size());
        return true;
    }, 20s)) << program->transcript();
    EXPECT_FALSE(seen.empty() || seen == "0") << "the keys did not reach the calculator";

    // The program stays for more recordings until it is closed.
    ASSERT_TRUE(program->readUntil([](const std::string& line) { return line.starts_with("JTK: ready to record: "); }, 60s))
        << program->transcript();
    // As a window manager asks: the program's windows (the status item's too, which does not keep it running).
    std::istringstream windows(outputOf("xdotool search --name '^calculator$'"));
    XConnection x(display);
    int asked = 0;
    for (unsigned long window; windows >> window; ++asked) x.askToClose(window);
    ASSERT_GT(asked, 0) << "no calculator window on " << display;
    EXPECT_EQ(program->wait(30s), 0) << program->transcript();
    EXPECT_NE(program->transcript().find("JTK: the recording session ended: the program quit with status 0"), std::string::npos);

    bool closed = false;
    auto recorded = recordedLines(source, closed);
    EXPECT_TRUE(closed) << "no recording method in " << source;
    EXPECT_EQ(recorded, expected) << "recorded into " << source;

    // The replay: the recorded file built into the tests library again.
    std::string build = shellQuoted(environment("JTK_CMAKE")) + " --build " + shellQuoted(environment("JTK_BUILD_DIR")) +
                        " --target calculator_recording_uxtests 2>&1";
    std::string built = outputOf(build + "; echo \"status $?\"");
    ASSERT_TRUE(built.ends_with("status 0")) << built;
    auto replay = launch("--jtk-ci --jtk-filter=testRecording:testReportsTheDisplay");
    ASSERT_TRUE(replay->readUntilLine("check: the display shows " + seen, 90s)) << replay->transcript();
    EXPECT_EQ(replay->wait(60s), 0) << replay->transcript();
}

}  // namespace
