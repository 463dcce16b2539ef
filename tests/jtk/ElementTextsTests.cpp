// The texts through which the framework names a view (name, value, title,
// type name), the model object and the element's description, read from a
// test queue on real desktop views.
#include <gtest/gtest.h>

#include "ElementFixture.h"
#include "elements/JTKViewTexts.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ImageView.h"
#include "JTK/desktop/controls/Label.h"
#include "JTK/desktop/controls/TextField.h"

using namespace jtk;

namespace {

class SaveButton : public desktop::Button {
public:
    using Button::Button;
};

class ElementTexts : public ElementFixture {
protected:
    void SetUp() override {
        ElementFixture::SetUp();
        window = makeWindow(100, 100, 400, 300);
        content = window->desktopContentView();
    }
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::View> content;
};

TEST_F(ElementTexts, viewWithoutMethodsOrTextValueHasEmptyNameAndValue) {
    auto plain = add<desktop::View>(content, platform::Rect{0, 0, 10, 10});
    auto checkbox = add<desktop::Button>(content, platform::Rect{0, 20, 80, 20}, "Bold", desktop::Button::Type::checkbox);
    checkbox->setState(desktop::Button::onState);
    onQueue([&] {
        EXPECT_EQ(viewName(plain), "");
        EXPECT_EQ(viewValue(plain), "");
        // A number from the accessibility value is not converted.
        EXPECT_EQ(viewValue(checkbox), "");
        EXPECT_EQ(viewName(checkbox), "");
    });
}

TEST_F(ElementTexts, nameIsTheTextOfHbViewNameOnly) {
    auto named = add<desktop::View>(content, platform::Rect{0, 0, 10, 10});
    name(named, "Volume");
    auto numbered = add<desktop::View>(content, platform::Rect{0, 0, 10, 10});
    answer(numbered, "hbViewName", 7);
    auto empty = add<desktop::View>(content, platform::Rect{0, 0, 10, 10});
    name(empty, "");
    onQueue([&] {
        EXPECT_EQ(viewName(named), "Volume");
        EXPECT_EQ(viewName(numbered), "");
        EXPECT_EQ(viewName(empty), "");
    });
}

TEST_F(ElementTexts, hbViewValueNumbersTextsAndFallBack) {
    auto three = add<desktop::View>(content, platform::Rect{});
    answer(three, "hbViewValue", 3);
    auto half = add<desktop::View>(content, platform::Rect{});
    answer(half, "hbViewValue", 0.5);
    auto yes = add<desktop::View>(content, platform::Rect{});
    answer(yes, "hbViewValue", true);
    // A field that shows "abc" but names its value itself.
    auto emptyText = add<desktop::TextField>(content, platform::Rect{}, "abc");
    answer(emptyText, "hbViewValue", "");
    auto none = add<desktop::TextField>(content, platform::Rect{}, "abc");
    answer(none, "hbViewValue", platform::Value());
    auto list = add<desktop::TextField>(content, platform::Rect{}, "abc");
    answer(list, "hbViewValue", platform::ValueList{platform::Value(1)});
    auto plainField = add<desktop::TextField>(content, platform::Rect{}, "abc");
    onQueue([&] {
        EXPECT_EQ(viewValue(three), "3");
        EXPECT_EQ(viewValue(half), "0.5");
        EXPECT_EQ(viewValue(yes), "1");
        EXPECT_EQ(viewValue(emptyText), "") << "an empty text is a value: the accessibility value is not consulted";
        EXPECT_EQ(viewValue(none), "abc");
        EXPECT_EQ(viewValue(list), "abc");
        EXPECT_EQ(viewValue(plainField), "abc");
    });
}

TEST_F(ElementTexts, titleOfButtonsAndBoxesButNotOfImagesOrOtherResults) {
    auto button = add<desktop::Button>(content, platform::Rect{}, "Save");
    auto box = add<desktop::Box>(content, platform::Rect{}, "Options");
    auto image = add<desktop::ImageView>(content, platform::Rect{});
    auto numberTitle = add<desktop::View>(content, platform::Rect{});
    answer(numberTitle, "title", 4);
    auto label = add<desktop::Label>(content, platform::Rect{}, "Caption");
    onQueue([&] {
        EXPECT_EQ(viewTitle(button), "Save");
        EXPECT_EQ(viewTitle(box), "Options");
        EXPECT_EQ(viewTitle(image), "");
        EXPECT_EQ(viewTitle(numberTitle), "");
        EXPECT_EQ(viewTitle(label), "") << "a label shows text but has no title method";
        EXPECT_EQ(viewValue(label), "Caption");
    });
}

TEST_F(ElementTexts, typeNameIsTheUnqualifiedRuntimeClass) {
    auto button = add<desktop::Button>(content, platform::Rect{}, "Save");
    auto subclass = add<SaveButton>(content, platform::Rect{}, "Save");
    onQueue([&] {
        EXPECT_EQ(viewTypeName(button), "Button");
        EXPECT_EQ(viewTypeName(subclass), "SaveButton");
        EXPECT_EQ(viewTypeName(content), "View");
    });
}

TEST_F(ElementTexts, modelObjectIsAnObjectResultOnly) {
    auto model = std::make_shared<desktop::View>();
    auto withObject = add<desktop::View>(content, platform::Rect{});
    answer(withObject, "hbModelObject", platform::Value(model));
    auto withText = add<desktop::View>(content, platform::Rect{});
    answer(withText, "hbModelObject", "model");
    auto without = add<desktop::View>(content, platform::Rect{});
    onQueue([&] {
        EXPECT_EQ(JTKElement(withObject).modelOject(), model);
        EXPECT_EQ(JTKElement(withText).modelOject(), nullptr);
        EXPECT_EQ(JTKElement(without).modelOject(), nullptr);
    });
}

TEST_F(ElementTexts, descriptionHasNameValueAndTheViewsOwnDescription) {
    auto button = add<desktop::Button>(content, platform::Rect{0, 0, 10, 10}, "Save");
    name(button, "Save");
    auto field = add<desktop::TextField>(content, platform::Rect{0, 0, 10, 10}, "abc");
    onQueue([&] {
        JTKElement element(button);
        EXPECT_EQ(element.description(), "Name: Save\nValue: \nType:\" " + button->description());
        EXPECT_EQ(element.debugDescription(), element.description());
        EXPECT_EQ(JTKElement(field).description(), "Name: \nValue: abc\nType:\" " + field->description());
    });
}

}  // namespace
