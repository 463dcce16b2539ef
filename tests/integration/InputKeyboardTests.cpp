// Keys and text through the real window server, key dispatch and field
// editor: the posted key streams, shift for capitals, Tab and Return, the
// Unicode-text fallback, and modifier holds.
#include <unistd.h>

#include "InputFixture.h"
#include "JTK/desktop/controls/TextField.h"

using namespace jtk;

namespace {

using platform::EventType;

class InputKeyboardTest : public InputFixture {
protected:
    void SetUp() override {
        InputFixture::SetUp();
        window = makeWindow(100, 100, 400, 300);
        first = add<desktop::TextField>(window->desktopContentView(), platform::Rect{20, 200, 200, 24});
        second = add<desktop::TextField>(window->desktopContentView(), platform::Rect{20, 150, 200, 24});
        first->setNextKeyView(second);
    }
    std::string text(const std::shared_ptr<desktop::TextField>& field) {
        return jtkOnMainThread([&] { return field->stringValue(); });
    }

    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::TextField> first, second;
};

TEST_F(InputKeyboardTest, TextGoesIntoTheFieldWithShiftTabAndReturn) {
    onQueue([&] {
        elementOf(first).click();
        desktop::WindowServer::clearEventLog();
        JTKTestSuite::typeText("Hi\tYo\r");
    });
    EXPECT_EQ(text(first), "Hi");
    EXPECT_EQ(text(second), "Yo");
    EXPECT_EQ(jtkOnMainThread([&] { return window->firstResponder(); }), nullptr) << "Return ended the editing";

    auto keys = keyEvents();
    ASSERT_EQ(keys.size(), 12u);
    const std::vector<std::pair<uint16_t, uint64_t>> presses{{4, shift}, {34, 0}, {48, 0}, {16, shift}, {31, 0}, {36, 0}};
    for (size_t i = 0; i < presses.size(); ++i) {
        const auto& press = keys[2 * i];
        const auto& release = keys[2 * i + 1];
        EXPECT_EQ(press.event.type, EventType::keyDown) << i;
        EXPECT_EQ(press.event.keyCode, presses[i].first) << i;
        EXPECT_EQ(press.event.flags, presses[i].second) << i;
        EXPECT_TRUE(press.event.unicodeText.empty()) << i;
        EXPECT_EQ(release.event.type, EventType::keyUp) << i;
        EXPECT_EQ(release.event.keyCode, presses[i].first) << i;
        EXPECT_EQ(release.event.flags, 0u) << "the release keeps the source's flags";
        for (const auto* entry : {&press, &release}) {
            EXPECT_EQ(entry->target, desktop::WindowServer::Target::pid);
            EXPECT_EQ(entry->pid, ::getpid());
        }
    }
}

TEST_F(InputKeyboardTest, DigitsPunctuationAndAccentsAreTypedAsTheirOwnText) {
    onQueue([&] {
        elementOf(first).click();
        desktop::WindowServer::clearEventLog();
        JTKTestSuite::typeText("Ann\u00E9e 2024: ok!");
    });
    EXPECT_EQ(text(first), "Ann\u00E9e 2024: ok!");
    auto keys = keyEvents();
    ASSERT_EQ(keys.size(), 2u * 15);
    // The accented letter: key code 0, no flags, the character as its text.
    for (size_t i : {6u, 7u}) {
        EXPECT_EQ(keys[i].event.keyCode, 0) << i;
        EXPECT_EQ(keys[i].event.flags, 0u) << i;
        EXPECT_EQ(keys[i].event.unicodeText, "\u00E9") << i;
    }
    EXPECT_EQ(keys[12].event.unicodeText, "2");
}

TEST_F(InputKeyboardTest, EmptyTextActivatesTheApplicationAndTypesNothing) {
    auto app = desktop::Application::shared();
    app->deactivate();
    onQueue([&] { JTKTestSuite::typeText(""); });
    EXPECT_TRUE(app->isActive());
    EXPECT_TRUE(keyEvents().empty());
}

TEST_F(InputKeyboardTest, TypeKeyPostsPressAndReleaseWhateverKeyUpSays) {
    onQueue([&] { JTKTestSuite::typeKey(36, 0, false); });
    auto keys = keyEvents();
    ASSERT_EQ(typesOf(keys), (std::vector{EventType::keyDown, EventType::keyUp}));
    EXPECT_EQ(keys[0].event.keyCode, 36);
    EXPECT_EQ(keys[1].event.keyCode, 36);
}

TEST_F(InputKeyboardTest, AModifierHoldIsSeenByKeysAndItsReleaseRepostsTheSameEvent) {
    onQueue([&] {
        auto hold = JTKTestSuite::beginModifierKeyHold(command | shift);
        ASSERT_NE(hold, nullptr);
        EXPECT_EQ(platform::currentModifierFlags(), command | shift);
        JTKTestSuite::typeKey(0, alternate, true);
        JTKTestSuite::releaseModifierKeys(hold);
        EXPECT_EQ(platform::currentModifierFlags(), 0u);
        EXPECT_EQ(hold->type, EventType::flagsChanged);
        EXPECT_EQ(hold->flags, 0u);
    });
    auto flagEvents = posted({EventType::flagsChanged});
    ASSERT_EQ(flagEvents.size(), 2u);
    EXPECT_EQ(flagEvents[0].event.flags, command | shift);
    EXPECT_EQ(flagEvents[1].event.flags, 0u);
    for (auto& entry : flagEvents) {
        EXPECT_EQ(entry.target, desktop::WindowServer::Target::hid);
        EXPECT_EQ(entry.event.keyCode, platform::noKeyCode);
    }
    auto keys = keyEvents();
    ASSERT_EQ(keys.size(), 2u);
    EXPECT_EQ(keys[0].event.flags, alternate) << "the press has the given flags";
    EXPECT_EQ(keys[1].event.flags, command | shift) << "the release has the held ones";
}

}  // namespace
