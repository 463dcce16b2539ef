// The viewer on a real X server (a private Xvfb): what the display shows is
// exactly the desktop's own rendering, xdotool's clicks and typing reach the
// application as a person's would, and closing the window quits, during a
// test run with the user's data put back.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "JTK/imaging/PNG.h"
#include "run/JTKShell.h"
#include "tests/display/DisplayHarness.h"
#include "tests/support/TestFiles.h"

using namespace displaytest;
using namespace testsupport;
using jtk::imaging::Image;

namespace {

// The test window's content frame is {200, 300, 420, 200} on a 900-point-high
// screen: a content point as a window pixel.
std::string pixelOf(int x, int y) { return std::to_string(200 + x) + " " + std::to_string(899 - (300 + y)); }
const std::string pressButton = pixelOf(80, 155), alertButton = pixelOf(220, 155), textField = pixelOf(210, 103);

std::optional<Image> decode(const std::string& bytes) {
    return jtk::imaging::decodePNG(std::vector<uint8_t>(bytes.begin(), bytes.end()));
}

class ViewerOnXvfb : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (jtk::runShellCommand("command -v Xvfb && command -v xdotool").status != 0) return;
        xvfb = std::make_unique<Child>(std::vector<std::string>{
            "/bin/bash", "-c", "exec Xvfb -displayfd 1 -screen 0 1600x1000x24 -nolisten tcp 2>/dev/null"});
        display = ":" + xvfb->readLine().value_or("");
    }
    static void TearDownTestSuite() { xvfb.reset(); }

    void SetUp() override {
        if (!xvfb) GTEST_SKIP() << "Xvfb or xdotool is not installed (scripts/setup.sh installs both): no X server for the viewer";
        ASSERT_NE(display, ":") << "Xvfb did not report a display";
        for (auto [name, value] : {std::pair<const char*, std::string>{"DISPLAY", display}, {"JTK_VIEWER", ""},
                                   {"WAYLAND_DISPLAY", ""}, {"SDL_VIDEODRIVER", ""}, {"XDG_DATA_HOME", path("data")},
                                   {"XDG_CONFIG_HOME", path("config")}, {"XDG_CACHE_HOME", path("cache")}})
            environment.push_back(std::make_unique<ScopedEnvironment>(name, value.empty() ? nullptr : value.c_str()));
        x = std::make_unique<XConnection>(display);
        ASSERT_TRUE(x->isOpen()) << "cannot connect to Xvfb on " << display;
        // The pointer off the viewer window: its moves would be a person's input.
        xdotool("mousemove 1595 995");
    }

    std::string path(const std::string& name) const { return (home.path / name).string(); }
    std::string xdotool(const std::string& arguments) {
        auto result = jtk::runShellCommand("xdotool " + arguments);
        return result.outputLines.empty() ? "" : result.outputLines.front();
    }
    // The viewer window of the application of that name, once it is there.
    unsigned long findViewer(const std::string& application) {
        unsigned long window = 0;
        waitFor([&] { return (window = std::stoul("0" + xdotool("search --name '^JTK viewer: " + application + "$'"))) != 0; });
        return window;
    }
    // Clicks and, as a window manager would, gives the window the keyboard focus.
    void click(unsigned long window, const std::string& pixel) {
        xdotool("mousemove --window " + std::to_string(window) + " " + pixel + " click 1 windowfocus " +
                std::to_string(window));
    }
    // The display shows the picture; tried until the viewer has caught up.
    ::testing::AssertionResult shows(unsigned long window, const std::function<std::optional<Image>()>& picture) {
        size_t differing = 0;
        bool same = waitFor([&] {
            auto drawn = picture();
            auto shown = x->capture(window);
            if (!drawn || !shown || shown->pixels.size() != drawn->pixels.size()) return false;
            differing = 0;
            for (size_t i = 0; i < drawn->pixels.size(); i += 4)
                differing += !std::equal(&shown->pixels[i], &shown->pixels[i] + 4, &drawn->pixels[i]);
            return differing == 0;
        }, 30s);
        if (same) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << differing << " pixels differ (or no picture)";
    }
    // The application's own rendering of the screen, asked for on its standard input.
    ::testing::AssertionResult showsRendering(Child& app, unsigned long window) {
        app.send("render " + path("rendering.png"));
        if (!app.readUntilLine("rendered")) return ::testing::AssertionFailure() << "no rendering came";
        return shows(window, [&] { return decode(readFile(path("rendering.png"))); });
    }

    static inline std::unique_ptr<Child> xvfb;
    static inline std::string display;
    ScratchFolder home;
    std::vector<std::unique_ptr<ScopedEnvironment>> environment;
    std::unique_ptr<XConnection> x;
};

TEST_F(ViewerOnXvfb, showsTheRenderingAndTakesClicksAndTyping) {
    Child app({(binDirectory() / "viewerTestApp").string(), "--viewer"});
    ASSERT_TRUE(app.readUntilLine("ready viewer=1"));
    auto window = findViewer("viewerTestApp");
    ASSERT_NE(window, 0u) << "no viewer window";
    EXPECT_TRUE(showsRendering(app, window));

    click(window, pressButton);
    EXPECT_TRUE(app.readUntilLine("pressed"));
    click(window, textField);
    x->bindKeysymToFreeKey(XK_eacute);  // a character beyond the layout's keys
    xdotool("type --delay 20 'Hi \xC3\xA9!'");
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

TEST_F(ViewerOnXvfb, staysLiveDuringAModalAlertAndQuitsWhenItsWindowIsDestroyed) {
    ScopedEnvironment viewer("JTK_VIEWER", "1");
    Child app({(binDirectory() / "viewerTestApp").string()});
    ASSERT_TRUE(app.readUntilLine("ready viewer=1"));
    auto window = findViewer("viewerTestApp");
    ASSERT_NE(window, 0u);
    click(window, alertButton);
    EXPECT_TRUE(showsRendering(app, window));  // drawn and shown while the alert's modal loop runs
    xdotool("key Return");
    EXPECT_TRUE(app.readUntilLine("alert answered 1000"));

    xdotool("windowclose " + std::to_string(window));
    EXPECT_TRUE(app.readUntil([](const std::string& line) { return line.starts_with("ended text: "); }));
    EXPECT_EQ(app.wait(), 0);
}

// The Sample's test run with the viewer, its user data in the scratch folder.
class SampleOnXvfb : public ViewerOnXvfb {
protected:
    void SetUp() override {
        ViewerOnXvfb::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        if (!fs::exists(binDirectory() / "Sample")) GTEST_SKIP() << "the Sample is not built";
        writeFile(home.path / "data/Sample/greeting.txt", "the user's own greeting\n");
        writeFile(home.path / "data/Sample/Documents/mine.txt", "a note of the user\n");
    }
    std::unique_ptr<Child> startRun() {
        environment.push_back(std::make_unique<ScopedEnvironment>("SAMPLE_SCREENSHOTS_DIR", path("Screenshots").c_str()));
        environment.push_back(std::make_unique<ScopedEnvironment>("JTK_VIEWER_FRAME_FILE", path("frame.png").c_str()));
        return std::make_unique<Child>(
            std::vector<std::string>{(binDirectory() / "Sample").string(), "uxtest", "fileSizeThresh=1000", "--viewer"});
    }
    void expectUserDataBack() {
        EXPECT_EQ(readFile(home.path / "data/Sample/greeting.txt"), "the user's own greeting\n");
        EXPECT_EQ(readFile(home.path / "data/Sample/Documents/mine.txt"), "a note of the user\n");
        EXPECT_EQ(std::distance(fs::recursive_directory_iterator(home.path / "data"), {}), 4) << "nothing else is left";
    }
};

TEST_F(SampleOnXvfb, aTestRunShowsTheSamplesWindowsAndEndsNormally) {
    auto run = startRun();
    ASSERT_TRUE(run->readUntilLine("JTK: Running test testClicksCountUp", 60s)) << run->transcript();
    auto window = findViewer("Sample");
    ASSERT_NE(window, 0u);
    // The picture the viewer last showed, read before and after the display's
    // pixels so that both belong to one moment.
    std::optional<Image> shown;
    EXPECT_TRUE(shows(window, [&]() -> std::optional<Image> {
        auto before = readFile(path("frame.png"));
        shown = x->capture(window);
        return readFile(path("frame.png")) == before ? decode(before) : std::nullopt;
    }));
    ASSERT_TRUE(shown);
    std::set<uint32_t> colours;
    for (size_t i = 0; i < shown->pixels.size(); i += 4)
        colours.insert(shown->pixels[i] << 16 | shown->pixels[i + 1] << 8 | shown->pixels[i + 2]);
    EXPECT_GT(colours.size(), 100u) << "the display looks blank";

    // The whole run, which a sanitizer build on a busy machine makes slow.
    EXPECT_EQ(run->wait(180s), 0) << run->transcript();
    EXPECT_TRUE(run->transcript().ends_with("Restoring Application Support Data\n"));
    expectUserDataBack();
}

TEST_F(SampleOnXvfb, closingTheViewerDuringARunPutsTheUsersDataBack) {
    auto run = startRun();
    ASSERT_TRUE(run->readUntil([](const std::string& line) { return line.starts_with("JTK: Running test "); }, 60s))
        << run->transcript();
    auto window = findViewer("Sample");
    ASSERT_NE(window, 0u);
    ASSERT_TRUE(fs::exists(home.path / "data/Sample_Temp")) << "the run has put the user's data aside";
    x->askToClose(window);
    EXPECT_EQ(run->wait(), 0);
    // The test that was running fails with the reason; the summary follows.
    EXPECT_NE(run->transcript().find("Run ended early: the process exited with status 0\n["), std::string::npos)
        << run->transcript();
    EXPECT_NE(run->transcript().find("): the process exited with status 0 during this test\n"),
              std::string::npos);
    EXPECT_TRUE(run->transcript().ends_with("Restoring Application Support Data\n"));
    expectUserDataBack();
}

}  // namespace

// jtk-review over a copied screenshot folder: a click on "Accept" in the
// viewer moves the new capture into place, and the review ends with its window.
TEST_F(ViewerOnXvfb, jtkReviewAcceptsAnImageOnAClickAndEndsWithItsWindow) {
    auto png = [](uint8_t red) {
        Image image(6, 4);
        for (size_t i = 0; i < image.pixels.size(); i += 4) image.pixels[i] = red, image.pixels[i + 3] = 255;
        auto bytes = jtk::imaging::encodePNG(image);
        return std::string(bytes.begin(), bytes.end());
    };
    auto test = home.path / "Screenshots" / "V1" / "testA";
    writeFile(test / "button.png", png(0));
    writeFile(test / "temp" / "button.png", png(200));
    Child review({(binDirectory() / "jtk-review").string(), "--version", "V1", path("Screenshots")});
    auto window = findViewer("jtk-review");
    ASSERT_NE(window, 0u) << review.transcript();
    click(window, "1140 748");  // the Accept button: content point (920, 31) of the window at (220, 120)
    EXPECT_EQ(review.wait(), 0) << review.transcript();
    EXPECT_EQ(readFile(test / "button.png"), png(200));
    EXPECT_FALSE(fs::exists(test / "temp")) << "the last accept removes the temp folder";
}
