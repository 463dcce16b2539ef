// Keys and text through the real window server, key dispatch and field
// editor: the posted key streams, shift for capitals, Tab and Return, the
// Unicode-text fallback, and modifier holds.
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

class InputKeyboard : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        window = makeWindow({100, 100, 400, 300});
        first = add<desktop::TextField>(window->desktopContentView(), Rect{20, 200, 200, 24});
        second = add<desktop::TextField>(window->desktopContentView(), Rect{20, 150, 200, 24});
        first->setNextKeyView(second);
    }
    std::vector<Posted> keyEvents() { return posted({EventType::keyDown, EventType::keyUp}); }
    // Clicks the first field, then types text.
    void typeIntoFirst(const std::string& text) {
        onQueue([&] {
            JTKElement(first).click();
            desktop::WindowServer::clearEventLog();
            JTKTestSuite::typeText(text);
        });
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::TextField> first, second;
};

TEST_F(InputKeyboard, textGoesIntoTheFieldWithShiftForCapitalsTabReturnDigitsAndOtherCharactersAsText) {
    typeIntoFirst("Hi\tY\u00f61\r");
    EXPECT_EQ(first->stringValue(), "Hi");
    EXPECT_EQ(second->stringValue(), "Y\u00f61");
    EXPECT_EQ(window->firstResponder(), nullptr) << "Return ended the editing";
    const std::vector<std::tuple<uint16_t, uint64_t, std::string>> presses{
        {4, shift, ""}, {34, 0, ""}, {48, 0, ""}, {16, shift, ""}, {platform::noKeyCode, 0, "\u00f6"}, {18, 0, ""}, {36, 0, ""}};
    auto keys = keyEvents();
    ASSERT_EQ(keys.size(), 2 * presses.size());
    for (size_t i = 0; i < keys.size(); ++i) {
        const auto& entry = keys[i];
        const auto& [keyCode, flags, text] = presses[i / 2];
        bool press = i % 2 == 0;
        EXPECT_EQ(entry.event.type, press ? EventType::keyDown : EventType::keyUp) << i;
        EXPECT_EQ(entry.event.keyCode, keyCode) << i;
        EXPECT_EQ(entry.event.flags, press ? flags : 0u) << "the release keeps the source's flags";
        EXPECT_EQ(entry.event.unicodeText, text) << i;
        EXPECT_EQ(entry.target, desktop::WindowServer::Target::pid);
        EXPECT_EQ(entry.pid, ::getpid());
    }
}

TEST_F(InputKeyboard, anEmptyTextOnlyActivatesAndAModifierHoldIsSeenByKeysUntilItsReleaseIsReposted) {
    onQueue([&] {
        JTKTestSuite::typeText("");
        EXPECT_TRUE(onMain([] { return desktop::Application::shared()->isActive(); }));
        auto hold = JTKTestSuite::beginModifierKeyHold(command | shift);
        ASSERT_NE(hold, nullptr);
        EXPECT_EQ(platform::currentModifierFlags(), command | shift);
        JTKTestSuite::typeKey(0, alternate, false);  // a press and a release whatever keyUp says
        JTKTestSuite::releaseModifierKeys(hold);
        EXPECT_EQ(platform::currentModifierFlags(), 0u);
        EXPECT_EQ(hold->type, EventType::flagsChanged);
    });
    auto flagEvents = posted({EventType::flagsChanged});
    ASSERT_EQ(flagEvents.size(), 2u);
    EXPECT_EQ(flagEvents[0].event.flags, command | shift);
    EXPECT_EQ(flagEvents[1].event.flags, 0u);
    for (auto& entry : flagEvents) EXPECT_EQ(entry.event.keyCode, platform::noKeyCode);
    auto keys = keyEvents();
    ASSERT_EQ(typesOf(keys), (std::vector{EventType::keyDown, EventType::keyUp}));
    EXPECT_EQ(keys[0].event.flags, alternate) << "the press has the given flags";
    EXPECT_EQ(keys[1].event.flags, command | shift) << "the release has the held ones";
}

}  // namespace
