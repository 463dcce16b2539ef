// While a recording is under way the actions hand themselves to the
// recorder and do nothing else: no events, no cursor move, no activation,
// no scrolling, no menu.
#include <mutex>

#include "InputFixture.h"
#include "JTK/desktop/controls/Button.h"

using namespace jtk;

namespace {

using platform::Point;

struct Handed {
    const JTKElement* element;
    std::string lookup;
    std::string signature;
    std::vector<JTKStringConvertable> arguments;
    bool chained;
};

class FakeRecorder : public JTKTestRecorder {
public:
    void record(const JTKElement* element, const std::string& signature,
                const std::vector<JTKStringConvertable>& arguments, bool chained) override {
        std::lock_guard lock(mutex);
        handed.push_back({element, element ? element->elementLookupDescription() : "", signature, arguments, chained});
    }
    std::vector<Handed> taken() {
        std::lock_guard lock(mutex);
        return handed;
    }

private:
    std::mutex mutex;
    std::vector<Handed> handed;
};

class InputRecorderTest : public InputFixture {};

TEST_F(InputRecorderTest, EveryActionIsHandedOverAndNothingIsPosted) {
    auto window = makeWindow(100, 100, 400, 300);
    auto button = add<desktop::Button>(window->desktopContentView(), platform::Rect{20, 20, 80, 24}, "Go");
    int pressed = 0;
    button->setAction([&](desktop::Button&) { ++pressed; });
    auto app = desktop::Application::shared();
    app->deactivate();
    desktop::WindowServer::shared().moveCursor({5, 6});
    auto recorder = std::make_shared<FakeRecorder>();
    JTKTestSuite::setRecorder(recorder);

    const JTKElement* clicked = nullptr;
    const JTKElement* returned = nullptr;
    onQueue([&] {
        JTKElement element = elementOf(button);
        element.setElementLookupDescription("Go button");
        clicked = &element;
        returned = &element.click({1, 2}, platform::eventFlags::command, true, false);
        element.click();
        element.drag({3, -4});
        element.clickMenuItem("Open", platform::eventFlags::shift);
        JTKTestSuite::typeText("Hello");
        JTKTestSuite::typeKey(36, platform::eventFlags::control, true);
    });
    JTKTestSuite::setRecorder(nullptr);

    EXPECT_EQ(returned, clicked) << "a click returns its element";
    auto taken = recorder->taken();
    ASSERT_EQ(taken.size(), 6u);
    const std::string clickSignature = "click(offset:modifierFlags:doubleClick:mouseUp:)";
    EXPECT_EQ(taken[0].element, clicked);
    EXPECT_EQ(taken[0].lookup, "Go button");
    EXPECT_EQ(taken[0].signature, clickSignature);
    EXPECT_EQ(taken[0].arguments, (std::vector<JTKStringConvertable>{
                                      Point{1, 2}, JTKEventFlags{platform::eventFlags::command}, true}))
        << "mouseUp is not handed over";
    EXPECT_FALSE(taken[0].chained);
    EXPECT_EQ(taken[1].arguments, (std::vector<JTKStringConvertable>{Point{0, 0}, JTKEventFlags{0}, false}));

    EXPECT_EQ(taken[2].signature, "drag(offset:)");
    EXPECT_EQ(taken[2].arguments, (std::vector<JTKStringConvertable>{Point{3, -4}}));
    EXPECT_TRUE(taken[2].chained);

    EXPECT_EQ(taken[3].signature, "clickMenuItem(title:flags:)");
    EXPECT_EQ(taken[3].lookup, "Go button");
    EXPECT_EQ(taken[3].arguments,
              (std::vector<JTKStringConvertable>{std::string("Open"), JTKEventFlags{platform::eventFlags::shift}}));
    EXPECT_TRUE(taken[3].chained);

    EXPECT_EQ(taken[4].element, nullptr);
    EXPECT_EQ(taken[4].signature, "typeText(_:)");
    EXPECT_EQ(taken[4].arguments, (std::vector<JTKStringConvertable>{std::string("Hello")}));
    EXPECT_FALSE(taken[4].chained);

    EXPECT_EQ(taken[5].element, nullptr);
    EXPECT_EQ(taken[5].signature, "typeKey(_:flags:keyUp:)");
    EXPECT_EQ(taken[5].arguments,
              (std::vector<JTKStringConvertable>{JTKKeyCode{36}, JTKEventFlags{platform::eventFlags::control}}))
        << "keyUp is not handed over";
    EXPECT_FALSE(taken[5].chained);

    EXPECT_TRUE(desktop::WindowServer::eventLog().empty());
    EXPECT_EQ(desktop::WindowServer::shared().cursorLocation(), (Point{5, 6}));
    EXPECT_FALSE(app->isActive());
    EXPECT_EQ(pressed, 0);
    EXPECT_EQ(JTKElement::currentOpenMenu(), nullptr);
}

}  // namespace
