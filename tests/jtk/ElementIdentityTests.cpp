// Element geometry, the default lookup description, equality (also of
// elements whose view has gone), ancestors, the model object and the
// element's description.
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using ElementIdentity = DesktopTest;

// A view's frame in its window, the window's content origin, its name, and the description that follows.
struct DescriptionCase {
    const char* label;
    Rect frame;
    Point windowOrigin;
    std::string name, expected;
    friend void PrintTo(const DescriptionCase& c, std::ostream* out) { *out << c.label; }
};

class DefaultDescription : public DesktopTest, public testing::WithParamInterface<DescriptionCase> {};

TEST_P(DefaultDescription, isTheNameThenTheCentreTruncatedTowardZero) {
    auto window = makeWindow({GetParam().windowOrigin.x, GetParam().windowOrigin.y, 1000, 800});
    auto view = add<desktop::View>(window->desktopContentView(), GetParam().frame);
    if (!GetParam().name.empty()) name(view, GetParam().name);
    onQueue([&] { EXPECT_EQ(JTKElement(view).elementLookupDescription(), GetParam().expected); });
}

INSTANTIATE_TEST_SUITE_P(Centres, DefaultDescription,
                         testing::Values(DescriptionCase{"whole", {20, 30, 100, 40}, {200, 500}, "", "270550"},
                                         DescriptionCase{"fractions", {500, 374.2, 25.5, 20}, {0, 0}, "Save", "Save512384"},
                                         DescriptionCase{"negativeHalves", {89.99, 99, 20, 1}, {0, -100}, "OK", "OK990"},
                                         DescriptionCase{"leftOfTheScreen", {69, 0, 21, 20}, {-100, 0}, "", "-2010"}),
                         [](const auto& info) { return std::string(info.param.label); });

TEST_F(ElementIdentity, geometryIsReadLiveButTheDescriptionIsFixedAtCreation) {
    auto window = makeWindow({200, 500, 400, 300});
    auto button = add<desktop::Button>(window->desktopContentView(), Rect{20, 30, 100, 40}, "Save");
    onQueue([&] {
        JTKElement element(button);
        EXPECT_EQ(element.frameInWindow(), (Rect{20, 30, 100, 40}));
        EXPECT_EQ(element.frameOnScreen(), (Rect{220, 530, 100, 40}));
        onMain([&] { button->setFrameOrigin({50, 50}); });
        EXPECT_EQ(element.frameCenterOnScreen(), (Point{300, 570}));
        EXPECT_EQ(element.elementLookupDescription(), "270550");
        onMain([&] { button->removeFromSuperview(); });
        EXPECT_EQ(element.frameOnScreen(), Rect{}) << "a view in no window";
        EXPECT_EQ(JTKElement(button).elementLookupDescription(), "00");
    });
}

TEST_F(ElementIdentity, elementsAreEqualWhenTheyWrapOneViewEvenAfterItHasGone) {
    auto content = makeWindow({0, 0, 400, 300})->desktopContentView();
    auto button = add<desktop::Button>(content, Rect{10, 10, 80, 20}, "Go");
    auto other = add<desktop::Button>(content, Rect{100, 10, 80, 20}, "Stop");
    onQueue([&] {
        auto first = JTKTestSuite::elements("Go"), second = JTKTestSuite::elements("Go");
        ASSERT_EQ(first.size(), 1u);
        second.at(0).setElementLookupDescription("renamed");
        EXPECT_TRUE(first[0] == second[0]) << "the lookup description plays no part";
        EXPECT_TRUE(first[0].isEqual(&second[0]));
        EXPECT_FALSE(first[0].isEqual(nullptr));
        EXPECT_FALSE(first[0] == JTKElement(other));
        JTKElement gone(button), alsoGone(button);
        onMain([&] {
            button->removeFromSuperview();
            button.reset();
        });
        EXPECT_EQ(gone.view(), nullptr);
        EXPECT_TRUE(gone.isEqual(nullptr));
        EXPECT_TRUE(gone == alsoGone);
        EXPECT_FALSE(gone == JTKElement(other));
        EXPECT_FALSE(JTKElement(other) == gone);
    });
}

TEST_F(ElementIdentity, ancestorsRunUpToTheFrameViewAndTheModelObjectAndDescriptionAreReadFromTheView) {
    auto window = makeWindow({0, 0, 400, 300});
    auto content = window->desktopContentView();
    std::shared_ptr<platform::View> frameView = window->frameView();
    auto model = std::make_shared<desktop::View>();
    auto withObject = add<desktop::View>(content, Rect{});
    answer(withObject, "hbModelObject", platform::Value(model));
    auto withText = add<desktop::View>(content, Rect{});
    answer(withText, "hbModelObject", "model");
    auto button = add<desktop::Button>(content, Rect{0, 0, 10, 10}, "Save");
    name(button, "Save");
    auto field = add<desktop::TextField>(button, Rect{0, 0, 10, 10}, "abc");
    onQueue([&] {
        auto chain = JTKElement(field).superElements();
        ASSERT_EQ(chain.size(), 3u);
        EXPECT_EQ(chain[0].view(), button);
        EXPECT_EQ(chain[1].view(), content);
        EXPECT_EQ(chain[2].view(), frameView);
        EXPECT_EQ(JTKElement(field).superElement()->view(), button);
        EXPECT_FALSE(JTKElement(frameView).superElement().has_value());
        EXPECT_EQ(JTKElement(withObject).modelOject(), model);
        EXPECT_EQ(JTKElement(withText).modelOject(), nullptr) << "only an object result is a model object";
        EXPECT_EQ(JTKElement(button).description(), "Name: Save\nValue: \nType:\" " + button->description());
        EXPECT_EQ(JTKElement(field).description(), "Name: \nValue: abc\nType:\" " + field->description());
        EXPECT_EQ(JTKElement(field).debugDescription(), JTKElement(field).description());
    });
}

}  // namespace
