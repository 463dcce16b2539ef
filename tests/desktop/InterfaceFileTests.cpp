// Interface files: a window built from JSON with its outlets and actions
// connected to the owner, found by name, and faulty files that load nothing.
#include <gtest/gtest.h>

#include "JTK/desktop/InterfaceFiles.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/platform/Interface.h"
#include "tests/support/DesktopFixtures.h"
#include "tests/support/TestFiles.h"

using namespace testsupport;

namespace {

struct RecordingOwner : platform::InterfaceOwner {
    void connectOutlet(const std::string& outlet, const std::shared_ptr<platform::View>& view) override {
        outlets[outlet] = view;
    }
    void performAction(const std::string& action, const std::shared_ptr<platform::View>& sender) override {
        actions.push_back(action + " from " + sender->className());
    }
    std::map<std::string, std::shared_ptr<platform::View>> outlets;
    std::vector<std::string> actions;
};

constexpr const char* twoButtons = R"({"window": {"title": "Two", "contentRect": [100, 100, 300, 200], "subviews": [
    {"class": "Box", "frame": [10, 10, 280, 180], "title": "Group", "outlet": "group", "subviews": [
        {"class": "Button", "frame": [10, 10, 100, 30], "title": "Go", "action": "go:", "name": "Go Button"}]},
    {"class": "Label", "frame": [10, 190, 100, 10], "text": "Hello", "outlet": "greeting"}]}})";

class InterfaceFile : public DesktopTest {
protected:
    std::shared_ptr<RecordingOwner> owner = std::make_shared<RecordingOwner>();
};

TEST_F(InterfaceFile, buildsTheWindowHiddenAndSendsOutletsAndActionsToTheOwner) {
    auto loaded = desktop::loadInterfaceText(twoButtons, "Two", owner);
    ASSERT_TRUE(loaded.window) << loaded.error;
    EXPECT_FALSE(loaded.window->isVisible());
    EXPECT_EQ(loaded.window->title(), "Two");
    EXPECT_EQ(loaded.window->frame(), (Rect{100, 100, 300, 222})) << "the content rectangle plus the title bar";
    ASSERT_EQ(owner->outlets.size(), 2u);
    EXPECT_EQ(owner->outlets["greeting"]->accessibilityValue(), platform::Value("Hello"));
    EXPECT_EQ(owner->outlets["group"]->subviews().size(), 1u);

    loaded.window->makeKeyAndOrderFront();
    auto button = std::dynamic_pointer_cast<desktop::Button>(owner->outlets["group"]->subviews()[0]);
    EXPECT_EQ(button->performSelector("hbViewName"), platform::Value("Go Button"));
    pressAt(centerOnScreen(*button));
    pumpMainLoop(0.05);
    EXPECT_EQ(owner->actions, std::vector<std::string>{"go: from Button"});

    std::weak_ptr<RecordingOwner> gone = owner;
    owner.reset();
    ASSERT_TRUE(gone.expired()) << "the window holds its owner weakly";
    pressAt(centerOnScreen(*button));
    pumpMainLoop(0.05);  // a click after the owner has gone does nothing
}

TEST_F(InterfaceFile, isFoundByNameInTheAddedFoldersBeforeTheResources) {
    ScratchFolder folder;
    writeFile(folder.path / "Two.json", twoButtons);
    desktop::addInterfaceFolder(folder.path);
    auto loaded = platform::loadInterface("Two", owner);
    ASSERT_TRUE(loaded.window) << loaded.error;
    EXPECT_EQ(loaded.window->title(), "Two");
    EXPECT_TRUE(platform::loadInterface("JTKComparisonWindow", owner).window) << "the desktop's own resources";

    auto missing = platform::loadInterface("Nowhere", owner);
    EXPECT_FALSE(missing.window);
    EXPECT_NE(missing.error.find("no interface file named Nowhere in " + folder.path.string()), std::string::npos)
        << missing.error;
}

struct FaultyFile {
    const char* text;
    const char* message;
};

class FaultyInterfaceFile : public InterfaceFile, public testing::WithParamInterface<FaultyFile> {};

TEST_P(FaultyInterfaceFile, loadsNothingLeavesNoWindowAndSaysWhere) {
    size_t windowsBefore = desktop::Application::shared()->windows().size();
    auto loaded = desktop::loadInterfaceText(GetParam().text, "Faulty", owner);
    EXPECT_FALSE(loaded.window);
    EXPECT_NE(loaded.error.find(std::string("interface file Faulty: ") + GetParam().message), std::string::npos)
        << loaded.error;
    EXPECT_EQ(desktop::Application::shared()->windows().size(), windowsBefore);
    EXPECT_TRUE(owner->outlets.empty()) << "outlets are told only when the whole window stands";
}

INSTANTIATE_TEST_SUITE_P(
    Table, FaultyInterfaceFile,
    testing::Values(FaultyFile{"{\"window\": ", "[json.exception.parse_error"},
                    FaultyFile{"[]", "the file has no \"window\""},
                    FaultyFile{R"({"window": {"contentRect": [0, 0, 10]}})", "the window: \"contentRect\" is not four numbers"},
                    FaultyFile{R"({"window": {"contentRect": [0, 0, 10, 10], "title": 7}})", "the window: \"title\" is not a text"},
                    FaultyFile{R"({"window": {"contentRect": [0, 0, 10, 10], "subviews": [
                        {"class": "Label", "frame": [0, 0, 5, 5], "outlet": "early"},
                        {"class": "Box", "frame": [0, 0, 5, 5], "subviews": [{"class": "Slab", "frame": [0, 0, 1, 1]}]}]}})",
                               "the window view 2 view 1: unknown class \"Slab\""},
                    FaultyFile{R"({"window": {"contentRect": [0, 0, 10, 10], "subviews": [{"class": "View"}]}})",
                               "the window view 1 has no \"frame\""}));

}  // namespace
