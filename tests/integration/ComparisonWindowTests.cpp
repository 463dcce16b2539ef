// The comparison window over a version folder on disk, driven by real clicks:
// the pairing of temp captures, the order and the "Test: " line, accepting one
// image and all of them (with the confirming alert), and the picture that
// flips to the new capture while the mouse is held on it.
#include <gtest/gtest.h>

#include "JTK/desktop/Alert.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ImageView.h"
#include "JTK/desktop/controls/TextField.h"
#include "JTK/imaging/ImageDifference.h"
#include "JTK/imaging/PNG.h"
#include "JTK/platform/Controls.h"
#include "screenshots/JTKComparisonWindow.h"
#include "tests/support/DesktopFixtures.h"
#include "tests/support/TestFiles.h"

using namespace testsupport;

namespace {

imaging::Image solid(uint32_t width, uint32_t height, std::array<uint8_t, 4> rgba) {
    imaging::Image image(width, height);
    for (size_t i = 0; i < image.pixels.size(); ++i) image.pixels[i] = rgba[i % 4];
    return image;
}

std::string png(const imaging::Image& image) {
    auto bytes = imaging::encodePNG(image);
    return {bytes.begin(), bytes.end()};
}

const imaging::Image grey = solid(8, 6, {128, 128, 128, 255});
const imaging::Image blue = solid(8, 6, {0, 0, 255, 255});
const imaging::Image green = solid(8, 6, {0, 255, 0, 255});

class ComparisonWindow : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        controller = JTKComparisonWindow::make();
    }
    void TearDown() override {
        controller.reset();
        DesktopTest::TearDown();
    }

    fs::path version() const { return scratch.path / "Version 12.0 (Build 6.1)"; }
    // Writes the accepted image and, when given, a new capture in the test's temp folder.
    void capture(const std::string& test, const std::string& file, const imaging::Image& accepted,
                 std::optional<imaging::Image> newCapture = {}) {
        writeFile(version() / test / file, png(accepted));
        if (newCapture) writeFile(version() / test / "temp" / file, png(*newCapture));
    }
    void show() {
        onMain([&] { controller->showComparisons(version()); });
    }
    bool windowIsOpen() {
        return onMain([&] { return controller->window() && controller->window()->isVisible(); });
    }
    std::string testLine() {
        return onMain([&] { return std::dynamic_pointer_cast<desktop::TextField>(controller->testName.lock())->stringValue(); });
    }
    std::shared_ptr<const imaging::Image> shown() {
        return onMain([&] { return platform::image(*controller->currentImage.lock()); });
    }
    // A real click on a button of the window (or of the alert), made as a test does.
    void press(const std::string& title) {
        onQueue([&] { JTKTestSuite::element(title).click(); });
    }
    // Answers the confirming alert with the button at that index once it is up.
    void answerAlertWith(int index) {
        platform::dispatchAfterMain(0.05, [index] {
            if (auto* alert = desktop::Alert::current()) {
                alertText = alert->messageText();
                alert->pressButton(index);
            }
        });
    }

    ScratchFolder scratch;
    std::shared_ptr<JTKComparisonWindow> controller;
    static inline std::string alertText;
};

TEST_F(ComparisonWindow, pairsOnlyTempFilesWithAnAcceptedCounterpartAndClosesAtOnceWithoutAny) {
    capture("testA", "button.png", grey);
    writeFile(version() / "testA" / "temp" / "orphan.png", png(blue));
    writeFile(version() / "testB" / "temp" / "other.png", png(blue));  // no accepted images at all
    writeFile(version() / ".hidden" / "temp" / "button.png", png(blue));
    auto before = readFile(version() / "testA" / "button.png");

    auto scanned = JTKComparisonWindow::scanComparisons(version());
    ASSERT_EQ(scanned.size(), 2u) << "hidden folders are skipped";
    EXPECT_EQ(scanned[0].testTag, "testA");
    EXPECT_TRUE(scanned[0].pairs.empty());
    EXPECT_TRUE(JTKComparisonWindow::scanComparisons(scratch.path / "missing").empty());

    show();
    EXPECT_FALSE(windowIsOpen()) << "nothing to compare: the window closes at once";
    EXPECT_TRUE(onMain([&] { return controller->window() != nullptr; })) << "but it was loaded and shown";
    EXPECT_EQ(readFile(version() / "testA" / "button.png"), before);
}

TEST_F(ComparisonWindow, twoCapturesOfOneTestAreShownInTurnAndAcceptedOneByOne) {
    capture("testA", "a.png", grey, blue);
    capture("testA", "b.png", grey, green);
    capture("testB", "c.png", grey);  // matched: no temp folder
    show();
    ASSERT_TRUE(windowIsOpen());
    EXPECT_EQ(testLine(), "Test: testA");
    EXPECT_EQ(*shown(), imaging::imageDifference(grey, blue));

    press("Accept");
    EXPECT_EQ(readFile(version() / "testA" / "a.png"), png(blue)) << "the new capture replaced the accepted one";
    EXPECT_FALSE(fs::exists(version() / "testA" / "temp" / "a.png"));
    EXPECT_EQ(testLine(), "Test: testA");
    EXPECT_EQ(*shown(), imaging::imageDifference(grey, green));
    EXPECT_TRUE(windowIsOpen());

    press("Accept");
    EXPECT_EQ(readFile(version() / "testA" / "b.png"), png(green));
    EXPECT_FALSE(fs::exists(version() / "testA" / "temp")) << "the last accept removes the temp folder";
    EXPECT_FALSE(windowIsOpen());
}

TEST_F(ComparisonWindow, acceptAllAsksFirstAndCancelChangesNoFile) {
    capture("testA", "a.png", grey, blue);
    capture("testB", "b.png", grey, green);
    capture("testB", "c.png", grey, blue);
    show();
    auto accepted = readFile(version() / "testB" / "b.png");

    answerAlertWith(1);  // "Cancel"
    press("Accept All");
    EXPECT_EQ(alertText, JTKComparisonWindow::acceptAllMessage);
    EXPECT_EQ(readFile(version() / "testB" / "b.png"), accepted);
    EXPECT_TRUE(fs::exists(version() / "testA" / "temp" / "a.png"));
    EXPECT_TRUE(windowIsOpen());

    answerAlertWith(0);  // "Ok"
    press("Accept All");
    EXPECT_EQ(readFile(version() / "testA" / "a.png"), png(blue)) << "the pair on screen";
    EXPECT_EQ(readFile(version() / "testB" / "b.png"), png(green));
    EXPECT_EQ(readFile(version() / "testB" / "c.png"), png(blue));
    EXPECT_FALSE(fs::exists(version() / "testB" / "temp"));
    EXPECT_FALSE(windowIsOpen());
}

TEST_F(ComparisonWindow, holdingTheMouseOnThePictureShowsTheNewCaptureUntilRelease) {
    capture("testA", "a.png", grey, blue);
    show();
    auto difference = shown();
    auto [picture, outside] = onMain([&] {
        auto view = std::dynamic_pointer_cast<desktop::View>(controller->currentImage.lock());
        auto label = std::dynamic_pointer_cast<desktop::View>(controller->testName.lock());
        return std::pair{centerOnScreen(*view), centerOnScreen(*label)};
    });

    postMouseAt(EventType::leftMouseDown, outside);
    postMouseAt(EventType::leftMouseUp, outside);
    onQueue([] { drainEvents(); });
    EXPECT_EQ(shown(), difference) << "a press outside the picture changes nothing";

    postMouseAt(EventType::leftMouseDown, picture);
    onQueue([] { drainEvents(); });
    EXPECT_EQ(*shown(), blue);
    postMouseAt(EventType::leftMouseUp, picture);
    onQueue([] { drainEvents(); });
    EXPECT_EQ(shown(), difference);

    onMain([&] { controller->window()->close(); });
    postMouseAt(EventType::leftMouseDown, picture);
    onQueue([] { drainEvents(); });
    EXPECT_EQ(shown(), difference) << "closing the window removed the monitor";
    EXPECT_TRUE(fs::exists(version() / "testA" / "temp" / "a.png")) << "closing accepts nothing";
}

}  // namespace
