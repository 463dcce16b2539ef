// The viewer on a real X server (a private Xvfb): what the display shows is
// exactly the desktop's own rendering, xdotool's clicks and typing reach the
// application as a person's would, and closing the window quits, during a
// test run with the user's data put back.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <set>

#include <X11/keysym.h>

#include "JTK/imaging/PNG.h"
#include "tests/display/DisplayHarness.h"
#include "tests/support/TestFiles.h"

using namespace displaytest;
using namespace testsupport;

namespace {

// Where the test window's views are: content frame {200, 300, 420, 200} on
// a 900-point-high screen; a view's centre as a window pixel.
constexpr int screenHeight = 900;
std::pair<int, int> pixelOfContentPoint(int x, int y) { return {200 + x, screenHeight - 1 - (300 + y)}; }
const auto pressButton = pixelOfContentPoint(80, 155);
const auto alertButton = pixelOfContentPoint(220, 155);
const auto textField = pixelOfContentPoint(210, 103);

std::optional<jtk::imaging::Image> readPicture(const fs::path& file) {
    auto bytes = readFile(file);
    return jtk::imaging::decodePNG(std::vector<uint8_t>(bytes.begin(), bytes.end()));
}

std::string differenceText(const jtk::imaging::Image& shown, const jtk::imaging::Image& drawn) {
    if (shown.width != drawn.width || shown.height != drawn.height)
        return "display " + std::to_string(shown.width) + "x" + std::to_string(shown.height) + ", rendering " +
               std::to_string(drawn.width) + "x" + std::to_string(drawn.height);
    size_t count = 0;
    std::string first;
    for (uint32_t y = 0; y < shown.height; ++y)
        for (uint32_t x = 0; x < shown.width; ++x)
            if (!std::equal(shown.pixel(x, y), shown.pixel(x, y) + 4, drawn.pixel(x, y)) && count++ == 0)
                first = " first at " + std::to_string(x) + "," + std::to_string(y);
    return std::to_string(count) + " pixels differ" + first;
}

class ViewerOnXvfb : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        xdotoolPath = findOnPath("xdotool");
        if (auto xvfb = findOnPath("Xvfb"); !xvfb.empty()) server = std::make_unique<Xvfb>(xvfb);
    }
    static void TearDownTestSuite() { server.reset(); }

    void SetUp() override {
        if (!server) GTEST_SKIP() << "Xvfb is not installed (scripts/setup.sh installs it): no X server for the viewer";
        if (xdotoolPath.empty()) GTEST_SKIP() << "xdotool is not installed (scripts/setup.sh installs it)";
        ASSERT_FALSE(server->display().empty()) << "Xvfb did not report a display";
        x = std::make_unique<XConnection>(server->display());
        ASSERT_TRUE(x->isOpen()) << "cannot connect to Xvfb on " << server->display();
        // The pointer off the viewer window: its moves would be a person's input.
        xdotool({"mousemove", "1595", "995"});
    }

    std::map<std::string, std::string> environment() const {
        return {{"DISPLAY", server->display()}, {"XDG_DATA_HOME", (home.path / "data").string()},
                {"XDG_CONFIG_HOME", (home.path / "config").string()}, {"XDG_CACHE_HOME", (home.path / "cache").string()},
                {"JTK_VIEWER", ""}, {"WAYLAND_DISPLAY", ""}, {"SDL_VIDEODRIVER", ""}};
    }
    std::string xdotool(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), xdotoolPath);
        return runCommand(arguments, {{"DISPLAY", server->display()}});
    }
    // The viewer window of the application of that name, once it is there.
    unsigned long findViewer(const std::string& application) {
        unsigned long window = 0;
        waitFor([&] {
            window = std::strtoul(xdotool({"search", "--name", "^JTK viewer: " + application + "$"}).c_str(), nullptr, 10);
            return window != 0;
        });
        return window;
    }
    void click(unsigned long window, std::pair<int, int> pixel) {
        xdotool({"mousemove", "--window", std::to_string(window), std::to_string(pixel.first), std::to_string(pixel.second),
                 "click", "1"});
    }
    // The display shows the picture; tried until the viewer has caught up.
    ::testing::AssertionResult showsPicture(unsigned long window, const std::function<std::optional<jtk::imaging::Image>()>& picture) {
        std::string last = "no picture";
        bool same = waitFor([&] {
            auto drawn = picture();
            auto shown = x->capture(window);
            if (!drawn || !shown) return false;
            last = differenceText(*shown, *drawn);
            return *shown == *drawn;
        }, 15s);
        return same ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << last;
    }
    // The application's own rendering of the screen, asked for on its standard input.
    ::testing::AssertionResult showsRendering(Child& app, unsigned long window) {
        auto file = home.path / "rendering.png";
        app.send("render " + file.string());
        if (!app.readUntilLine("rendered")) return ::testing::AssertionFailure() << "no rendering came";
        return showsPicture(window, [&] { return readPicture(file); });
    }

    static inline std::unique_ptr<Xvfb> server;
    static inline std::string xdotoolPath;
    std::unique_ptr<XConnection> x;
    ScratchFolder home;
};

TEST_F(ViewerOnXvfb, showsTheRenderingAndTakesClicksAndTyping) {
    Child app({(binDirectory() / "viewerTestApp").string(), "--viewer"}, environment());
    ASSERT_TRUE(app.readUntilLine("ready viewer=1"));
    auto window = findViewer("viewerTestApp");
    ASSERT_NE(window, 0u) << "no viewer window";
    EXPECT_TRUE(showsRendering(app, window));

    click(window, pressButton);
    EXPECT_TRUE(app.readUntilLine("pressed"));
    click(window, textField);
    // Text beyond the keys of the layout reaches the field too.
    ASSERT_TRUE(x->bindKeysym(XK_eacute));
    xdotool({"type", "--delay", "20", "Hi \xC3\xA9!"});
    std::string text;
    EXPECT_TRUE(waitFor([&] {
        app.send("text");
        app.readUntil([&](const std::string& line) { return line.starts_with("text: ") && (text = line, true); });
        return text == "text: Hi \xC3\xA9!";
    })) << text;
    EXPECT_TRUE(showsRendering(app, window));

    x->askToClose(window);
    EXPECT_TRUE(app.readUntilLine("ended text: Hi \xC3\xA9!"));
    EXPECT_EQ(app.wait(), 0);
}

TEST_F(ViewerOnXvfb, keepsShowingWhileAModalAlertRunsAndSurvivesItsWindowBeingDestroyed) {
    Child app({(binDirectory() / "viewerTestApp").string()}, [&] {
        auto env = environment();
        env["JTK_VIEWER"] = "1";
        return env;
    }());
    ASSERT_TRUE(app.readUntilLine("ready viewer=1"));
    auto window = findViewer("viewerTestApp");
    ASSERT_NE(window, 0u);
    click(window, alertButton);
    EXPECT_TRUE(showsRendering(app, window));  // the alert's modal loop runs meanwhile
    xdotool({"key", "Return"});
    EXPECT_TRUE(app.readUntilLine("alert answered 1000"));

    xdotool({"windowclose", std::to_string(window)});
    EXPECT_TRUE(app.readUntil([](const std::string& line) { return line.starts_with("ended text: "); }));
    EXPECT_EQ(app.wait(), 0);
}

// The Sample's test run with the viewer, its user data in a scratch folder.
class SampleOnXvfb : public ViewerOnXvfb {
protected:
    void SetUp() override {
        ViewerOnXvfb::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        if (!fs::exists(binDirectory() / "Sample")) GTEST_SKIP() << "the Sample is not built";
        writeFile(userFolder() / "greeting.txt", "the user's own greeting\n");
        writeFile(userFolder() / "Documents" / "mine.txt", "a note of the user\n");
    }
    fs::path userFolder() const { return home.path / "data" / "Sample"; }
    std::unique_ptr<Child> startRun() {
        auto env = environment();
        env["SAMPLE_SCREENSHOTS_DIR"] = (home.path / "Screenshots").string();
        env["JTK_VIEWER_FRAME_FILE"] = (home.path / "frame.png").string();
        return std::make_unique<Child>(
            std::vector<std::string>{(binDirectory() / "Sample").string(), "uxtest", "fileSizeThresh=1000", "--viewer"}, env);
    }
    void expectUserDataBack() {
        EXPECT_EQ(readFile(userFolder() / "greeting.txt"), "the user's own greeting\n");
        EXPECT_EQ(readFile(userFolder() / "Documents" / "mine.txt"), "a note of the user\n");
        size_t entries = std::distance(fs::recursive_directory_iterator(userFolder()), fs::recursive_directory_iterator());
        EXPECT_EQ(entries, 3u) << "only the user's own files are back";
        EXPECT_FALSE(fs::exists(home.path / "data" / "Sample_Temp"));
    }
};

TEST_F(SampleOnXvfb, aTestRunShowsTheSamplesWindowsAndEndsNormally) {
    auto run = startRun();
    ASSERT_TRUE(run->readUntilLine("JTK: Running test testClicksCountUp", 60s)) << run->transcript();
    auto window = findViewer("Sample");
    ASSERT_NE(window, 0u);
    // The picture the viewer last showed, read twice around the display's so
    // that both belong to one moment.
    auto frameFile = home.path / "frame.png";
    std::optional<jtk::imaging::Image> shown;
    EXPECT_TRUE(showsPicture(window, [&]() -> std::optional<jtk::imaging::Image> {
        auto before = readFile(frameFile);
        shown = x->capture(window);
        if (readFile(frameFile) != before) return std::nullopt;
        return jtk::imaging::decodePNG(std::vector<uint8_t>(before.begin(), before.end()));
    }));
    ASSERT_TRUE(shown);
    std::set<uint32_t> colours;
    for (uint32_t i = 0; i < shown->pixels.size(); i += 4) colours.insert(shown->pixels[i] << 16 | shown->pixels[i + 1] << 8 | shown->pixels[i + 2]);
    EXPECT_GT(colours.size(), 100u) << "the display looks blank";

    EXPECT_EQ(run->wait(60s), 0) << run->transcript();
    auto transcript = run->transcript();
    EXPECT_TRUE(transcript.ends_with("Restoring Application Support Data\n")) << transcript;
    expectUserDataBack();
}

TEST_F(SampleOnXvfb, closingTheViewerDuringARunPutsTheUsersDataBack) {
    auto run = startRun();
    ASSERT_TRUE(run->readUntil([](const std::string& line) { return line.starts_with("JTK: Running test "); }, 60s))
        << run->transcript();
    auto window = findViewer("Sample");
    ASSERT_NE(window, 0u);
    EXPECT_TRUE(fs::exists(home.path / "data" / "Sample_Temp")) << "the run has put the user's data aside";
    x->askToClose(window);
    EXPECT_EQ(run->wait(), 0);
    auto transcript = run->transcript();
    EXPECT_NE(transcript.find("Run ended early: the process exited with status 0\nRestoring Application Support Data\n"),
              std::string::npos) << transcript;
    expectUserDataBack();
}

}  // namespace
