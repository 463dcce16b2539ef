// While a recording is under way the actions hand themselves to the
// recorder and do nothing else: no events, no cursor move, no activation,
// no scrolling, no menu.
#include <mutex>

#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using Arguments = std::vector<JTKStringConvertable>;

struct Handed {
    const JTKElement* element;
    std::string lookup, signature;
    Arguments arguments;
    bool chained;
    bool operator==(const Handed&) const = default;
};

class FakeRecorder : public JTKTestRecorder {
public:
    void record(const JTKElement* element, const std::string& signature, const Arguments& arguments,
                bool chained) override {
        std::lock_guard lock(mutex);
        handed.push_back({element, element ? element->elementLookupDescription() : "", signature, arguments, chained});
    }
    std::mutex mutex;
    std::vector<Handed> handed;
};

using InputRecorder = DesktopTest;

TEST_F(InputRecorder, everyActionIsHandedOverAndNothingIsPosted) {
    auto button = add<desktop::Button>(makeWindow({100, 100, 400, 300})->desktopContentView(), Rect{20, 20, 80, 24}, "Go");
    int pressed = 0;
    button->setAction([&](desktop::Button&) { ++pressed; });
    desktop::WindowServer::shared().moveCursor({5, 6});
    auto recorder = std::make_shared<FakeRecorder>();
    JTKTestSuite::setRecorder(recorder);
    const JTKElement* clicked = nullptr;
    onQueue([&] {
        JTKElement element(button);
        element.setElementLookupDescription("Go");
        clicked = &element;
        EXPECT_EQ(&element.click({1, 2}, command, true, false), &element);
        element.click();
        element.drag({3, -4});
        element.clickMenuItem("Open", shift);
        JTKTestSuite::typeText("Hello");
        JTKTestSuite::typeKey(36, control, true);
    });
    JTKTestSuite::setRecorder(nullptr);

    const std::string click = "click(offset:modifierFlags:doubleClick:mouseUp:)";
    // mouseUp and keyUp are not handed over.
    const std::vector<Handed> expected{
        {clicked, "Go", click, {Point{1, 2}, JTKEventFlags{command}, true}, false},
        {clicked, "Go", click, {Point{0, 0}, JTKEventFlags{0}, false}, false},
        {clicked, "Go", "drag(offset:)", {Point{3, -4}}, true},
        {clicked, "Go", "clickMenuItem(title:flags:)", {std::string("Open"), JTKEventFlags{shift}}, true},
        {nullptr, "", "typeText(_:)", {std::string("Hello")}, false},
        {nullptr, "", "typeKey(_:flags:keyUp:)", {JTKKeyCode{36}, JTKEventFlags{control}}, false},
    };
    ASSERT_EQ(recorder->handed.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) EXPECT_TRUE(recorder->handed[i] == expected[i]) << i;
    EXPECT_TRUE(desktop::WindowServer::eventLog().empty());
    EXPECT_EQ(desktop::WindowServer::shared().cursorLocation(), (Point{5, 6}));
    EXPECT_FALSE(desktop::Application::shared()->isActive());
    EXPECT_EQ(pressed, 0);
    EXPECT_EQ(JTKElement::currentOpenMenu(), nullptr);
}

}  // namespace
