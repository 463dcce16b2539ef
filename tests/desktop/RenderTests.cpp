// The renderer: every view kind in one window, drawn twice and built again in
// another process, gives the same pixels and PNG bytes; captures have the bounds' size and
// show what is there; and the user's font settings change nothing.
#include "JTK/desktop/FieldEditor.h"
#include "JTK/desktop/controls/ImageView.h"
#include "JTK/desktop/render/Rendering.h"
#include "JTK/imaging/PNG.h"
#include "run/JTKShell.h"
#include "tests/support/DesktopFixtures.h"
#include "tests/support/TestFiles.h"

using namespace testsupport;

namespace {

struct Scene {
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::Label> label;
};

// One of every view kind, a field being edited with a selection, a pressed
// default button and a scrolled list.
Scene buildScene() {
    auto window = makeWindow({40, 60, 360, 260}, "Scene");
    auto content = window->desktopContentView();
    auto label = addView<desktop::Label>(content, Rect{10, 226, 300, 24}, "A label with text");
    auto ok = addView<desktop::Button>(content, Rect{10, 190, 100, 30}, "OK");
    ok->setKeyEquivalent("\r");
    auto check = addView<desktop::Button>(content, Rect{120, 190, 120, 30}, "Check",
                                                       desktop::Button::Type::checkbox);
    check->setState(1);
    auto field = addView<desktop::TextField>(content, Rect{10, 156, 200, 24}, "editable");
    addView<desktop::Slider>(content, Rect{10, 126, 200, 20}, 0, 10, 7);
    auto popUp = addView<desktop::PopUpButton>(content, Rect{220, 150, 130, 26});
    popUp->addItemWithTitle("First");
    auto box = addView<desktop::Box>(content, Rect{220, 10, 130, 130}, "Box");
    addView<desktop::ImageView>(box, Rect{10, 10, 48, 48}, "/nonexistent.png");
    auto list = addView<desktop::ScrollView>(content, Rect{10, 10, 200, 100});
    auto rows = std::make_shared<desktop::View>(Rect{0, 0, 184, 300});
    for (int i = 0; i < 10; ++i)
        addView<desktop::Button>(rows, Rect{0, 270.0 - 30 * i, 184, 30}, "Row " + std::to_string(i));
    list->setDocumentView(rows);
    list->scroll({0, 120});
    field->beginEditing();
    desktop::FieldEditor::forWindow(window)->setSelectedRange(1, 3);
    return {window, label};
}

std::vector<uint8_t> png(const std::optional<imaging::Image>& image) {
    return image ? imaging::encodePNG(*image) : std::vector<uint8_t>{};
}

}  // namespace

using Render = DesktopTest;

TEST_F(Render, capturesHaveTheBoundsSizeAndShowTheirViews) {
    auto scene = buildScene();
    auto content = scene.window->desktopContentView();
    auto picture = desktop::renderView(*content);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->width, 360u);
    EXPECT_EQ(picture->height, 260u);
    // The content view paints the window background; a label draws only its text.
    const uint8_t* corner = picture->pixel(359, 259);
    EXPECT_EQ(std::vector<uint8_t>(corner, corner + 4), (std::vector<uint8_t>{236, 236, 236, 255}));
    auto label = desktop::renderView(*scene.label);
    ASSERT_TRUE(label);
    int ink = 0, clear = 0;
    for (size_t i = 0; i < label->pixels.size(); i += 4) {
        if (label->pixels[i + 3] == 0) ++clear;
        if (label->pixels[i + 3] > 200 && label->pixels[i] < 80) ++ink;
    }
    EXPECT_GT(ink, 100) << "dark text";
    EXPECT_GT(clear, static_cast<int>(label->width * label->height) / 2) << "no background";

    // A hidden view is not drawn: the region shows the background alone.
    scene.label->setHidden(true);
    auto withoutLabel = desktop::renderView(*content);
    ASSERT_TRUE(withoutLabel);
    EXPECT_NE(withoutLabel, picture);
    const uint8_t* where = withoutLabel->pixel(20, 260 - 238);
    EXPECT_EQ(std::vector<uint8_t>(where, where + 4), (std::vector<uint8_t>{236, 236, 236, 255}));

    // Fractional bounds round up; empty or absurd bounds give no bitmap.
    scene.label->setFrameSize({10.25, 3.5});
    auto small = desktop::bitmapForView(*scene.label);
    ASSERT_TRUE(small);
    EXPECT_EQ(small->width, 11u);
    EXPECT_EQ(small->height, 4u);
    scene.label->setFrameSize({0, 24});
    EXPECT_FALSE(desktop::bitmapForView(*scene.label));
    scene.label->setFrameSize({1e9, 24});
    EXPECT_FALSE(desktop::bitmapForView(*scene.label));
    scene.label->setFrameSize({std::nan(""), 24});
    EXPECT_FALSE(desktop::bitmapForView(*scene.label));
}

TEST_F(Render, anOpenMenuShowsItsRowsAndTheHighlight) {
    auto menu = desktop::Menu::make("Menu");
    for (const char* title : {"One", "Two", "Three"}) menu->addItem(desktop::MenuItem::make(title));
    EXPECT_FALSE(desktop::renderMenu(*menu)) << "a closed menu";
    std::optional<imaging::Image> open;
    platform::dispatchAfterMain(0.02, [&] {
        // The pointer over the second row highlights it in the accent colour.
        auto frame = menu->frameOnScreen();
        platform::Event move{};
        move.type = platform::EventType::mouseMoved;
        move.location = desktop::WindowServer::eventPointFromScreenPoint({frame.minX() + 30, frame.maxY() - 30});
        desktop::Menu::handleTrackingEvent(move);
        open = desktop::renderMenu(*menu);
        menu->cancelTracking();
    });
    menu->popUp({100, 500});
    ASSERT_TRUE(open);
    EXPECT_EQ(open->height, 3 * desktop::Menu::rowHeight);
    auto accentPixels = [&](uint32_t row) {
        int count = 0;
        for (uint32_t x = 0; x < open->width; ++x)
            for (uint32_t y = row * 20 + 4; y < row * 20 + 16; ++y)
                if (const uint8_t* p = open->pixel(x, y); p[2] > 200 && p[0] < 40) ++count;
        return count;
    };
    EXPECT_EQ(accentPixels(0), 0);
    EXPECT_GT(accentPixels(1), 500);
}

// Run by the test below in a child process, with the user's font settings.
TEST_F(Render, DISABLED_writesTheSceneForAChildProcess) {
    auto scene = buildScene();
    auto bytes = png(desktop::renderView(*scene.window->desktopContentView()));
    writeFile(std::getenv("RENDER_SCENE_FILE"), std::string(bytes.begin(), bytes.end()));
}

// Drawn twice, and built anew in another process with the user's font
// settings, the same tree gives the same pixels and PNG bytes.
TEST_F(Render, theSameTreeGivesTheSameBytesAgainAndWhateverTheUsersFontSettings) {
    ScratchFolder scratch;
    const fs::path& folder = scratch.path;
    // Full hinting, subpixel colour, no antialiasing and serif for sans.
    std::ofstream(folder / "fonts.conf") << R"(<?xml version="1.0"?>
<fontconfig>
  <dir>/usr/share/fonts</dir>
  <alias><family>DejaVu Sans</family><prefer><family>DejaVu Serif</family></prefer></alias>
  <match target="font">
    <edit name="antialias" mode="assign"><bool>false</bool></edit>
    <edit name="hintstyle" mode="assign"><const>hintfull</const></edit>
    <edit name="rgba" mode="assign"><const>rgb</const></edit>
  </match>
</fontconfig>
)";
    auto result = jtk::runShellCommand(
        "FONTCONFIG_FILE=" + quoted(folder / "fonts.conf") + " HOME=" + quoted(folder) +
        " XDG_CONFIG_HOME=" + quoted(folder) + " RENDER_SCENE_FILE=" + quoted(folder / "scene.png") + " " +
        quoted(fs::read_symlink("/proc/self/exe")) +
        " --gtest_also_run_disabled_tests --gtest_filter=Render.DISABLED_writesTheSceneForAChildProcess");
    ASSERT_EQ(result.status, 0) << testing::PrintToString(result.outputLines);
    buildScene();
    closeAllWindows();  // the tree drawn below is built anew
    auto content = buildScene().window->desktopContentView();
    auto once = desktop::renderView(*content);
    ASSERT_TRUE(once);
    EXPECT_EQ(desktop::renderView(*content), once);
    EXPECT_EQ(png(desktop::renderScreen()), png(desktop::renderScreen()));
    auto bytes = png(once);
    EXPECT_EQ(readFile(folder / "scene.png"), std::string(bytes.begin(), bytes.end()));
}
