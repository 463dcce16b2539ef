// The framework on any backend: searches, geometry, clicks, typing, drags,
// waits, gone views and captures, interface files, status items and text
// notifications, against windows built with the toolkit's own controls. Compiled once per backend (see NeutralUi.h); every check
// must hold on each.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <thread>

#include "JTK/JTK.h"
#include "JTK/platform/Dispatch.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/Controls.h"
#include "JTK/platform/Images.h"
#include "JTK/platform/Interface.h"
#include "JTK/platform/Notifications.h"
#include "JTK/platform/StatusBar.h"
#include "JTK/platform/Text.h"
#include "run/JTKMainThread.h"
#include "screenshots/JTKScreenshotNames.h"
#include "tests/neutral/NeutralUi.h"

using namespace jtk;
using namespace neutral;

namespace {

// One window and a control of each kind, in platform coordinates (y up).
class Neutral : public testing::Test {
protected:
    void SetUp() override {
        closeAllWindows();
        window = makeWindow(windowContent, "Neutral");
        auto content = window->contentView();
        save = add(Kind::button, content, {20, 250, 100, 30}, "Save");
        setName(save, "SaveButton");
        count = add(Kind::label, content, {140, 255, 120, 20}, "Count: 0");
        first = add(Kind::textField, content, {20, 200, 150, 24});
        last = add(Kind::textField, content, {200, 200, 150, 24});
        volume = add(Kind::slider, content, {20, 140, 202, 24});
        setName(volume, "Volume");
        pad = add(Kind::pressRecorder, content, {250, 20, 100, 80});
        setName(pad, "Pad");
    }
    void TearDown() override { closeAllWindows(); }

    const Rect windowContent{40, 60, 420, 320};
    std::shared_ptr<platform::Window> window;
    ViewPtr save, count, first, last, volume, pad;
};

TEST_F(Neutral, everyLookupFormFindsItsViewAndHiddenViewsAreNotFound) {
    const std::vector<std::pair<std::string, ViewPtr>> lookups{
        {"SaveButton", save},                  // name
        {"Save", save},                        // title
        {"Count: 0", count},                   // value
        {className(Kind::slider), volume},     // type name
        {className(Kind::pressRecorder), pad}};
    onQueue([&] {
        for (const auto& [lookup, view] : lookups) EXPECT_EQ(JTKTestSuite::element(lookup).view(), view) << lookup;
        auto saveElement = JTKTestSuite::element("Save");
        EXPECT_EQ(JTKTestSuite::element(saveElement.elementLookupDescription()).view(), save);
        EXPECT_EQ(saveElement.typeName(), className(Kind::button));
        EXPECT_EQ(saveElement.name(), "SaveButton");
        auto main = JTKTestSuite::appWindow("Neutral");
        EXPECT_EQ(main.subElementWithType(JTKClass{className(Kind::slider)}).view(), volume);
        EXPECT_EQ(main.subElements(className(Kind::textField)).size(), 2u);
        EXPECT_TRUE(saveElement.superElement() == main);
        jtkOnMainThread([&] { setHidden(count, true); });
        EXPECT_FALSE(JTKTestSuite::elementExists("Count: 0"));
    });
}

TEST_F(Neutral, framesOnScreenAreThoseTheViewsWereGiven) {
    onQueue([&] {
        EXPECT_EQ(JTKTestSuite::appWindow("Neutral").frame(), windowContent);
        EXPECT_EQ(JTKTestSuite::element("Save").frame(), (Rect{60, 310, 100, 30}));
        // Window coordinates may include the window's own frame: measured from the content view.
        auto content = JTKTestSuite::appWindow("Neutral").frameInWindow();
        auto pad = JTKTestSuite::element("Pad").frameInWindow();
        EXPECT_EQ(offsetRect(pad, -content.minX(), -content.minY()), (Rect{250, 20, 100, 80}));
    });
}

struct ClickCase {
    const char* label;
    JTKClickOptions options;
    std::vector<int> clickCounts;  // 0: not checked (the first press of a double click)
    uint64_t flags;
    friend void PrintTo(const ClickCase& c, std::ostream* out) { *out << c.label; }
};

class NeutralClick : public Neutral, public testing::WithParamInterface<ClickCase> {};

TEST_P(NeutralClick, reachesTheViewWithItsClickCountAndModifiers) {
    onQueue([&] { JTKTestSuite::element("Pad").click(GetParam().options); });
    auto seen = jtkOnMainThread([&] { return presses(pad); });
    ASSERT_EQ(seen.size(), GetParam().clickCounts.size());
    for (size_t i = 0; i < seen.size(); ++i) {
        if (GetParam().clickCounts[i]) {
            EXPECT_EQ(seen[i].clickCount, GetParam().clickCounts[i]) << i;
        }
        EXPECT_EQ(seen[i].flags, GetParam().flags) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Gestures, NeutralClick,
                         testing::Values(ClickCase{"single", {}, {1}, 0},
                                         ClickCase{"shift", {.modifierFlags = shift}, {1}, shift},
                                         ClickCase{"command", {.modifierFlags = command}, {1}, command},
                                         ClickCase{"double", {.doubleClick = true}, {0, 2}, 0}),
                         [](const auto& info) { return std::string(info.param.label); });

// Two clicks one after the other (each with its pause) are two single clicks,
// never a double click.
TEST_F(Neutral, clicksRunAButtonsActionOncePerClickAndTwoClicksAreNoDoubleClick) {
    onQueue([&] {
        JTKTestSuite::element("Save").click().click();
        JTKTestSuite::element("Pad").click().click();
    });
    EXPECT_EQ(jtkOnMainThread([&] { return actionCount(save); }), 2);
    EXPECT_EQ(jtkOnMainThread([&] { return presses(pad); }), (std::vector<Press>{{1, 0}, {1, 0}}));
}

TEST_F(Neutral, aCheckboxsValueIsItsStateAndAClickTogglesIt) {
    auto remember = add(Kind::checkbox, window->contentView(), {20, 100, 150, 24}, "Remember me");
    std::vector<std::string> values;
    onQueue([&] {
        for (int click = 0; click < 2; ++click)
            values.push_back(JTKTestSuite::element("Remember me").click().value());
    });
    EXPECT_EQ(values, (std::vector<std::string>{"1", "0"}));
}

TEST_F(Neutral, typedTextGoesToTheClickedFieldAndTabMovesOn) {
    onQueue([&] {
        JTKTestSuite::element(className(Kind::textField)).click();
        JTKTestSuite::typeText("Ad\u00e9 \"A\"\tL\u00f6we");
    });
    EXPECT_EQ(jtkOnMainThread([&] { return text(first); }), "Ad\u00e9 \"A\"");
    EXPECT_EQ(jtkOnMainThread([&] { return text(last); }), "L\u00f6we");
}

TEST_F(Neutral, aDragMovesTheSliderWithTheMouse) {
    onQueue([&] { JTKTestSuite::element("Volume").click({.offset = {-100, 0}, .mouseUp = false}).drag({100, 0}); });
    double value = jtkOnMainThread([&] { return sliderValue(volume); });
    EXPECT_GT(value, 35);
    EXPECT_LT(value, 65);
}

// Existence is asked once without waiting; element() waits (up to a second)
// and honours the class: the pad also answers to "Late" but is no label.
TEST_F(Neutral, aWaitSeesAViewThatAppearsLaterAndAGoneViewLeavesItsElementEmpty) {
    ViewPtr late;
    setName(pad, "Late");
    platform::dispatchAfterMain(0.3, [&] { late = add(Kind::label, window->contentView(), {20, 20, 80, 20}, "Late"); });
    const JTKClass label{className(Kind::label)};
    onQueue([&] {
        EXPECT_FALSE(JTKTestSuite::elementExists("Late", label));
        auto start = std::chrono::steady_clock::now();
        auto found = JTKTestSuite::element("Late", label);
        EXPECT_GE(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 0.25);
        EXPECT_EQ(found.view(), late);
        jtkOnMainThread([&] { destroy(late); });
        EXPECT_EQ(found.view(), nullptr);
    });
}

// Screenshot names measure from the content view: the window's decorations
// (the headless Qt screen's 2-point frame margins) and its place on screen
// never enter them. The Save button's own origin (20, 250) in the content
// view plus its frame origin gives (40, 500).
TEST_F(Neutral, screenshotNamesMeasureFromTheContentView) {
    EXPECT_THAT(screenshotFileName(window->contentView()), testing::EndsWith("_(0.0, 0.0)(420.0, 320.0)"));
    EXPECT_THAT(screenshotFileName(save), testing::EndsWith("_0_(40.0, 500.0)(100.0, 30.0)"));
}

TEST_F(Neutral, aCaptureIsTheViewsSizeAndTheSameTwice) {
    auto capture = [&] {
        auto bitmap = platform::bitmapForCachingDisplay(*window->contentView());
        EXPECT_TRUE(bitmap && platform::cacheDisplayInBitmap(*window->contentView(), *bitmap));
        return bitmap;
    };
    auto one = jtkOnMainThread(capture), two = jtkOnMainThread(capture);
    ASSERT_TRUE(one && two);
    EXPECT_EQ(one->width, 420u);
    EXPECT_EQ(one->height, 320u);
    EXPECT_TRUE(one->pixels == two->pixels);
    // Something is drawn: not every pixel is the same.
    EXPECT_NE(std::adjacent_find(one->pixels.begin(), one->pixels.end(), std::not_equal_to<>()), one->pixels.end());
}

// The controls the framework's own windows use: an interface file's window
// with its outlets and its key-equivalent action, the setters, and a missing file.
TEST_F(Neutral, anInterfaceFileMakesItsWindowWithOutletsSettersAndActions) {
    struct Owner : platform::InterfaceOwner {
        std::map<std::string, ViewPtr> outlets;
        std::vector<std::string> actions;
        void connectOutlet(const std::string& outlet, const ViewPtr& view) override { outlets[outlet] = view; }
        void performAction(const std::string& action, const ViewPtr&) override { actions.push_back(action); }
    };
    auto owner = std::make_shared<Owner>();
    EXPECT_THAT(platform::loadInterface("NoSuchWindow", owner).error, testing::HasSubstr("no interface file named NoSuchWindow"));
    auto loaded = platform::loadInterface("JTKComparisonWindow", owner);
    ASSERT_TRUE(loaded.window) << loaded.error;
    EXPECT_EQ(loaded.window->title(), "Screenshot Comparison");
    ASSERT_TRUE(owner->outlets["testName"] && owner->outlets["currentImage"]);
    EXPECT_TRUE(platform::setStringValue(*owner->outlets["testName"], "Test: One"));
    auto picture = std::make_shared<const imaging::Image>(4, 3);
    EXPECT_TRUE(platform::setImage(*owner->outlets["currentImage"], picture));
    EXPECT_EQ(platform::image(*owner->outlets["currentImage"]), picture);
    EXPECT_FALSE(platform::setImage(*save, picture)) << "a button shows no picture";
    loaded.window->makeKeyAndOrderFront();
    onQueue([&] {
        EXPECT_EQ(JTKTestSuite::element("Test: One").view(), owner->outlets["testName"]);
        EXPECT_EQ(JTKTestSuite::element("Comparison Image").view(), owner->outlets["currentImage"]);
        JTKTestSuite::typeText("\n");  // Return: the Accept button's key equivalent
    });
    EXPECT_EQ(owner->actions, std::vector<std::string>{"AcceptImage:"});
    loaded.window->close();
}

TEST_F(Neutral, aStatusItemIsAButtonInAWindowOfItsOwnThatSendsItsAction) {
    auto item = platform::statusItemWithLength(platform::variableStatusItemLength);
    ASSERT_TRUE(item);
    int sent = 0;
    item->setAction([&] { ++sent; });
    item->setTitle("Record Now");
    auto button = item->button();
    EXPECT_EQ(button->className(), platform::statusBarButtonClassName);
    auto windows = platform::sharedApplication()->windows();
    EXPECT_NE(std::find(windows.begin(), windows.end(), button->window()), windows.end());
    onQueue([&] { JTKTestSuite::element("Record Now").click(); });
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(item->title(), "Record Now");
}

// The recorder follows typing through these notifications: they name the
// edited field and carry a text object whose string is the field's text.
TEST_F(Neutral, typingPostsTheTextNotificationsWithTheFieldsText) {
    std::vector<std::pair<std::string, std::string>> seen;
    auto& center = platform::defaultNotificationCenter();
    std::vector<uint64_t> observers;
    for (const char* name : {platform::textDidChangeNotification, platform::textDidEndEditingNotification})
        observers.push_back(center.addObserver(name, {}, platform::DeliveryQueue::postingThread, [&, name](const auto& note) {
            const platform::Value* textObject = note.userInfo.find(platform::textObjectKey);
            auto text = textObject && textObject->object() ? platform::textObjectString(*textObject->object()) : std::nullopt;
            if (note.object.object() == first) seen.emplace_back(name, text.value_or("(no text object)"));
        }));
    onQueue([&] {
        JTKTestSuite::element(className(Kind::textField)).click();
        JTKTestSuite::typeText("Ada\t");
    });
    for (uint64_t observer : observers) center.removeObserver(observer);
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.front(), std::make_pair(std::string(platform::textDidChangeNotification), std::string("A")));
    EXPECT_EQ(seen.back(), std::make_pair(std::string(platform::textDidEndEditingNotification), std::string("Ada")));
    EXPECT_FALSE(platform::textObjectString(*save));
}

}  // namespace

int main(int argc, char** argv) {
    return neutral::runOnToolkit(argc, argv, [&] {
        testing::InitGoogleTest(&argc, argv);
        return RUN_ALL_TESTS();
    });
}
