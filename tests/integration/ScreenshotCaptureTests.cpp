// Screenshots of a small window on the embedded desktop, filed in a
// temporary screenshot root: the first capture stores, the second of the same
// window writes nothing, a changed view lands in temp, and folders or files
// that cannot be written are reported while the other views go on.
#include <gmock/gmock.h>

#include <map>

#include "JTK/imaging/PNG.h"
#include "JTK/services/ProcessInfo.h"
#include "screenshots/JTKScreenshotCapture.h"
#include "screenshots/JTKScreenshotNames.h"
#include "tests/support/DesktopFixtures.h"
#include "tests/support/TestFiles.h"

using namespace testsupport;

namespace {

// The file names and bytes below a folder, with their modification times.
struct FileState {
    std::string bytes;
    fs::file_time_type modified;
    bool operator==(const FileState&) const = default;
};
using Tree = std::map<std::string, FileState>;

Tree treeOf(const fs::path& folder) {
    Tree tree;
    if (!fs::exists(folder)) return tree;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file())
            tree[fs::relative(entry.path(), folder).string()] = {readFile(entry.path()), entry.last_write_time()};
    }
    return tree;
}

}  // namespace

class ScreenshotCapture : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        // Small views must count: the threshold comes from the launch arguments.
        static char program[] = "integration_tests", threshold[] = "fileSizeThresh=300";
        static char* arguments[] = {program, threshold};
        services::setProcessArguments(2, arguments);
        ASSERT_EQ(fileSizeThreshold(), 300) << "the threshold was read before this fixture set it";

        JTKTestSuite::setJtkScreenshotsURL(root);
        testFolder = root / JTKTestSuite::jtkTestVersion() / "Small";

        window = makeWindow({100, 100, 320, 160}, "Small");
        auto content = window->desktopContentView();
        box = add<desktop::Box>(content, Rect{10, 10, 300, 90}, "Options");
        label = add<desktop::Label>(box, Rect{10, 40, 200, 24}, "Hello there");
        add<desktop::Button>(box, Rect{10, 8, 120, 30}, "Apply");
        add<desktop::TextField>(content, Rect{10, 120, 200, 24}, "typed text");
        tiny = add<desktop::View>(content, Rect{250, 120, 4, 4});
    }

    void TearDown() override {
        services::setProcessArguments(0, nullptr);
        JTKTestSuite::setJtkScreenshotsURL(std::nullopt);
        DesktopTest::TearDown();
    }

    // Captures as a test run does; returns the lines printed meanwhile.
    std::string capture() { return capturedStdout([this] { report = JTKScreenshotCapture::captureScreenshots("Small"); }); }

    ScratchFolder scratch;
    JTKCaptureReport report;
    fs::path root = scratch.path, testFolder;
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::Box> box;
    std::shared_ptr<desktop::Label> label;
    std::shared_ptr<desktop::View> tiny;
};

TEST_F(ScreenshotCapture, storesOnceMatchesAfterwardsAndFilesAChangedViewInTemp) {
    EXPECT_EQ(capture(), "");
    auto stored = treeOf(root);
    // The content view, the box, the label, the button and the text field,
    // and the list of what was captured; the tiny empty view's PNG is below
    // the threshold.
    EXPECT_EQ(stored.size(), 6u);
    EXPECT_EQ(report.storedAsNew, 5);
    EXPECT_EQ(report.underThreshold, 1);
    EXPECT_THAT(namesIn(testFolder), testing::Contains(jtkCapturedListName));
    EXPECT_NE(readFile(testFolder / jtkCapturedListName).find(screenshotFileName(label) + ".png\n"), std::string::npos);
    EXPECT_TRUE(stored.contains(fs::relative(testFolder / (screenshotFileName(label) + ".png"), root).string()));
    EXPECT_FALSE(fs::exists(testFolder / (screenshotFileName(tiny) + ".png")));
    EXPECT_FALSE(fs::exists(testFolder / "temp"));

    EXPECT_EQ(capture(), "");
    EXPECT_EQ(treeOf(root), stored) << "the second capture of the same window wrote a file";
    EXPECT_EQ(report.matched, 5);
    EXPECT_FALSE(fs::exists(testFolder / "temp"));

    // An accepted image in other bytes of the same pixels (another encoder,
    // here 16 bits a channel) still matches, and stays as it is.
    auto labelFile = testFolder / (screenshotFileName(label) + ".png");
    const std::string acceptedBytes = readFile(labelFile);
    auto pixels = imaging::decodePNG16(
        std::span<const uint8_t>(reinterpret_cast<const uint8_t*>(acceptedBytes.data()), acceptedBytes.size()));
    ASSERT_TRUE(pixels);
    auto wide = imaging::encodePNG(*pixels);
    writeFile(labelFile, std::string(wide.begin(), wide.end()));
    capture();
    EXPECT_EQ(report.matched, 5);
    EXPECT_EQ(readFile(labelFile), std::string(wide.begin(), wide.end()));
    stored = treeOf(root);

    // Same name and value, another look: the label's image and the images of
    // the views that show it (box, content view) land in temp; the accepted
    // images stay as they were.
    label->setEnabled(false);
    EXPECT_EQ(capture(), "");
    EXPECT_THAT(namesIn(testFolder / "temp"),
                testing::UnorderedElementsAre(screenshotFileName(window->desktopContentView()) + ".png",
                                              screenshotFileName(box) + ".png", screenshotFileName(label) + ".png"));
    for (const auto& [name, state] : stored) EXPECT_EQ(treeOf(root).at(name), state) << name;
    EXPECT_EQ(report.differed, 3);
    EXPECT_EQ(report.differing.size(), 3u);

    // New text is a new value, so a new name: a first accepted image of its own.
    label->setStringValue("Goodbye");
    capture();
    EXPECT_TRUE(fs::exists(testFolder / (screenshotFileName(label) + ".png")));
    EXPECT_EQ(report.storedAsNew, 1);
    EXPECT_EQ(readFile(testFolder / jtkCapturedListName).find("Hello there"), std::string::npos)
        << "the list names what the last capture produced";
}

TEST_F(ScreenshotCapture, unwritableFoldersAndFilesAreReportedAndTheLoopGoesOn) {
    // A file where the version folder should be: no folder can be made.
    fs::create_directories(root);
    writeFile(root / JTKTestSuite::jtkTestVersion(), "in the way");
    std::string lines = capture();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 5) << lines;
    EXPECT_NE(lines.find("Could not create the folder \"" + testFolder.string() + "\": "), std::string::npos) << lines;
    fs::remove(root / JTKTestSuite::jtkTestVersion());

    // A folder in place of the label's image: unreadable, so missing; and
    // then it cannot be written. The other views are stored all the same.
    fs::path labelFile = testFolder / (screenshotFileName(label) + ".png");
    fs::create_directories(labelFile);
    lines = capture();
    EXPECT_EQ(lines, "Could not write the file \"" + labelFile.filename().string() + "\" in the folder \"" +
                         testFolder.string() + "\": Is a directory\n");
    EXPECT_EQ(namesIn(testFolder).size(), 6u) << "four images, the folder in the way and the list";
    EXPECT_EQ(report.notStored, 1);
    EXPECT_TRUE(fs::is_directory(labelFile));
}

TEST_F(ScreenshotCapture, twoViewsWithOneFileNameMeetInTheStore) {
    // Same text, place and size: one file name. The later view in walk order
    // is compared with the file the earlier one left, and differs.
    auto content = window->desktopContentView();
    auto twin = add<desktop::Label>(content, Rect{250, 40, 60, 24}, "Twin");
    auto other = add<desktop::Label>(content, Rect{250, 40, 60, 24}, "Twin");
    other->setEnabled(false);
    ASSERT_EQ(screenshotFileName(twin), screenshotFileName(other));
    capture();
    EXPECT_TRUE(fs::exists(testFolder / (screenshotFileName(twin) + ".png")));
    EXPECT_THAT(namesIn(testFolder / "temp"), testing::ElementsAre(screenshotFileName(other) + ".png"));
}
