// The screenshot settings a tests library makes from its own code
// (JTKScreenshots), on a small job window of the embedded desktop: the size
// threshold and the launch argument that overrides it, views left out, and
// masks that keep a moving progress bar and a changing status out of every
// picture. Each case captures, lets the bar and the status move, and
// captures again.
#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <set>

#include "JTK/JTKScreenshots.h"
#include "JTK/imaging/PNG.h"
#include "JTK/services/ProcessInfo.h"
#include "screenshots/JTKScreenshotCapture.h"
#include "screenshots/JTKScreenshotNames.h"
#include "screenshots/JTKScreenshotPlan.h"
#include "tests/support/DesktopFixtures.h"
#include "tests/support/TestFiles.h"

using namespace testsupport;

namespace {

struct SettingsCase {
    std::string name;
    std::string argument;                  // a launch argument besides the program's name; none when empty
    std::function<void()> settings;        // what the tests' code sets
    std::set<std::string> photographed;    // the views that get a picture of their own
    std::set<std::string> masked;          // those of them named without their value
    int differedAfterMoving, storedAfterMoving;
};

void PrintTo(const SettingsCase& settingsCase, std::ostream* out) { *out << settingsCase.name; }

const std::set<std::string> everyView{"window", "job", "busy", "apply", "status", "log"};

}  // namespace

class ScreenshotSettings : public DesktopTest, public testing::WithParamInterface<SettingsCase> {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        JTKTestSuite::setJtkScreenshotsURL(scratch.path);
        testFolder = scratch.path / JTKTestSuite::jtkTestVersion() / "Job";

        window = makeWindow({100, 100, 320, 200}, "Jobs");
        auto content = window->desktopContentView();
        auto job = add<desktop::Box>(content, Rect{10, 70, 300, 120}, "Job");
        busy = name(add<desktop::Slider>(job, Rect{10, 50, 200, 24}, 0, 100, 30), "Busy");
        auto apply = add<desktop::Button>(job, Rect{10, 8, 120, 30}, "Apply");
        status = name(add<desktop::Label>(content, Rect{10, 40, 200, 24}, "Ready"), "Status");
        auto log = name(add<desktop::TextField>(content, Rect{10, 10, 200, 24}, "Ready"), "Log");
        views = {{"window", content}, {"job", job}, {"busy", busy}, {"apply", apply}, {"status", status}, {"log", log}};
    }

    void TearDown() override {
        JTKScreenshots::reset();
        services::setProcessArguments(0, nullptr);
        JTKTestSuite::setJtkScreenshotsURL(std::nullopt);
        DesktopTest::TearDown();
    }

    void launchWith(std::string argument) {
        static std::string program = "integration_tests", extra;
        extra = std::move(argument);
        static char* arguments[] = {program.data(), extra.data()};
        services::setProcessArguments(extra.empty() ? 1 : 2, arguments);
    }

    JTKCaptureReport capture() { return JTKScreenshotCapture::captureScreenshots("Job"); }
    std::string fileOf(const std::string& view, const std::set<std::string>& masked) {
        return (masked.contains(view) ? maskedScreenshotFileName : screenshotFileName)(views.at(view)) + ".png";
    }

    ScratchFolder scratch;
    fs::path testFolder;
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::Slider> busy;
    std::shared_ptr<desktop::Label> status;
    std::map<std::string, std::shared_ptr<desktop::View>> views;
};

TEST_P(ScreenshotSettings, decideWhatThePicturesTakeIn) {
    const auto& given = GetParam();
    launchWith(given.argument);
    given.settings();

    auto first = capture();
    EXPECT_EQ(first.storedAsNew, static_cast<int>(given.photographed.size()));
    for (const auto& view : everyView)
        EXPECT_EQ(fs::exists(testFolder / fileOf(view, given.masked)), given.photographed.contains(view)) << view;

    // The bar moves and the status changes, as they do while a job runs.
    busy->setDoubleValue(70);
    status->setStringValue("Connecting");
    auto second = capture();
    EXPECT_EQ(second.differed, given.differedAfterMoving);
    EXPECT_EQ(second.storedAsNew, given.storedAfterMoving);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, ScreenshotSettings,
    testing::Values(
        // Moving, the bar changes its picture and those of the box and the
        // window around it; the status gets a new name (its value).
        SettingsCase{"thresholdFromCode", "", [] { JTKScreenshots::setSizeThreshold(300); }, everyView, {}, 3, 1},
        SettingsCase{"launchArgumentOverridesTheCode", "fileSizeThresh=1000000",
                     [] { JTKScreenshots::setSizeThreshold(300); }, {}, {}, 0, 0},
        SettingsCase{"aBoxLeftOutWithItsContents", "fileSizeThresh=300", [] { JTKScreenshots::leaveOut("Job"); },
                     {"window", "status", "log"}, {}, 1, 1},
        // "Ready" is the status's title and the log's value: the class picks the log.
        SettingsCase{"leftOutByLookupAndClass", "fileSizeThresh=300",
                     [] { JTKScreenshots::leaveOut("Ready", JTKClass{"TextField"}); },
                     {"window", "job", "busy", "apply", "status"}, {}, 3, 1},
        SettingsCase{"masksKeepEveryPictureTheSame", "",
                     [] {
                         // A flat grey picture is small: low enough to keep the masked views' own.
                         JTKScreenshots::setSizeThreshold(50);
                         JTKScreenshots::mask("Busy");
                         JTKScreenshots::mask("Status", JTKClass{"Label"});
                     },
                     everyView, {"busy", "status"}, 0, 0}),
    [](const auto& info) { return info.param.name; });

TEST_F(ScreenshotSettings, aMaskIsAFlatGreyBoxInEveryPictureThatShowsTheView) {
    launchWith("fileSizeThresh=300");
    JTKScreenshots::mask("Busy");
    capture();
    // The bar's frame (10, 50, 200, 24) in the box, 120 high: in its picture
    // (rows down) the bar spans rows 46 to 70; row 38 is the box around it.
    std::string bytes = readFile(testFolder / fileOf("job", {}));
    auto picture = imaging::decodePNG(std::vector<uint8_t>(bytes.begin(), bytes.end()));
    ASSERT_TRUE(picture);
    auto pixel = [&](uint32_t x, uint32_t y) {
        return std::vector<uint8_t>(picture->pixel(x, y), picture->pixel(x, y) + 4);
    };
    EXPECT_THAT(pixel(110, 58), testing::ElementsAre(jtkMaskGrey, jtkMaskGrey, jtkMaskGrey, 0xFF));
    EXPECT_NE(pixel(110, 38), pixel(110, 58));
}
