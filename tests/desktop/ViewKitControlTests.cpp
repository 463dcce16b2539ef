// The standard controls as the framework reads them: runtime class names,
// titles through the method named "title", accessibility values, and the
// behaviour of clicks and changes.
#include <gtest/gtest.h>

#include "JTK/desktop/Menu.h"
#include "JTK/desktop/MenuItem.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/ImageView.h"
#include "JTK/desktop/controls/Label.h"
#include "JTK/desktop/controls/PopUpButton.h"
#include "JTK/desktop/controls/ScrollView.h"
#include "JTK/desktop/controls/Slider.h"
#include "JTK/desktop/controls/TextField.h"
#include "tests/desktop/ViewKitTestSupport.h"

using namespace jtk;

using platform::Rect;
using platform::Value;

namespace {

// An application's own button class.
class SaveButton : public desktop::Button {
public:
    using Button::Button;
};

}  // namespace

using ViewKitControls = ViewKitTest;

TEST_F(ViewKitControls, ClassNamesComeFromTheRuntimeTypeWithoutNamespace) {
    EXPECT_EQ(std::make_shared<desktop::View>()->className(), "View");
    EXPECT_EQ(std::make_shared<desktop::Button>()->className(), "Button");
    EXPECT_EQ(std::make_shared<SaveButton>()->className(), "SaveButton");
    EXPECT_EQ(std::make_shared<desktop::Label>()->className(), "Label");
    EXPECT_EQ(std::make_shared<desktop::TextField>()->className(), "TextField");
    auto scroll = std::make_shared<desktop::ScrollView>(Rect{0, 0, 10, 10});
    EXPECT_EQ(scroll->className(), "ScrollView");
    ASSERT_EQ(scroll->subviews().size(), 1u);
    EXPECT_EQ(scroll->subviews()[0]->className(), "ClipView");
    EXPECT_EQ(scroll->subviews()[0]->superview(), scroll);
    EXPECT_NE(scroll->description().find("<ScrollView: 0x"), std::string::npos);
}

TEST_F(ViewKitControls, TitlesAreReadThroughTheTitleMethod) {
    auto button = std::make_shared<desktop::Button>(Rect{0, 0, 80, 24}, "Save");
    auto subclass = std::make_shared<SaveButton>(Rect{}, "Save As…");
    auto box = std::make_shared<desktop::Box>(Rect{}, "Options");
    auto field = std::make_shared<desktop::TextField>(Rect{}, "abc");
    EXPECT_EQ(button->performSelector("title"), Value("Save"));
    EXPECT_EQ(subclass->performSelector("title"), Value("Save As…"));
    EXPECT_EQ(box->performSelector("title"), Value("Options"));
    button->setTitle("Saved");
    EXPECT_EQ(button->performSelector("title"), Value("Saved"));
    // Text fields and plain views have no title.
    EXPECT_FALSE(field->respondsToSelector("title"));
    EXPECT_TRUE(field->performSelector("title").isNone());
    EXPECT_FALSE(std::make_shared<desktop::ImageView>()->respondsToSelector("title"));
}

TEST_F(ViewKitControls, AccessibilityValuesOfTextSliderAndCheckbox) {
    auto field = std::make_shared<desktop::TextField>(Rect{}, "Hello");
    EXPECT_EQ(field->accessibilityValue(), Value("Hello"));
    field->setStringValue("");
    EXPECT_EQ(field->accessibilityValue(), Value(""));
    EXPECT_EQ(std::make_shared<desktop::Label>(Rect{}, "Name:")->accessibilityValue(), Value("Name:"));

    auto slider = std::make_shared<desktop::Slider>(Rect{}, 0, 10, 2.5);
    ASSERT_EQ(slider->accessibilityValue().kind(), Value::Kind::real);
    EXPECT_EQ(slider->accessibilityValue(), Value(2.5));

    auto push = std::make_shared<desktop::Button>(Rect{}, "OK");
    EXPECT_TRUE(push->accessibilityValue().isNone());
    auto check = std::make_shared<desktop::Button>(Rect{}, "Bold", desktop::Button::Type::checkbox);
    EXPECT_EQ(check->accessibilityValue(), Value(0));
    check->setState(desktop::Button::onState);
    EXPECT_EQ(check->accessibilityValue(), Value(1));
    EXPECT_TRUE(std::make_shared<desktop::View>()->accessibilityValue().isNone());
}

TEST_F(ViewKitControls, SliderKeepsItsValueInsideItsRange) {
    desktop::Slider slider(Rect{}, 10, 0, 20);  // limits in either order
    EXPECT_EQ(slider.minValue(), 0);
    EXPECT_EQ(slider.maxValue(), 10);
    EXPECT_EQ(slider.doubleValue(), 10);
    slider.setDoubleValue(-3);
    EXPECT_EQ(slider.doubleValue(), 0);
    slider.setDoubleValue(std::nan(""));
    EXPECT_EQ(slider.doubleValue(), 0);
    slider.setDoubleValue(4);
    slider.setRange(5, 8);
    EXPECT_EQ(slider.doubleValue(), 5);
    slider.setRange(0, std::numeric_limits<double>::infinity());
    EXPECT_EQ(slider.maxValue(), 8);

    int changes = 0;
    slider.setOnChange([&](desktop::Slider& s) { changes += s.doubleValue() == 5 ? 1 : 100; });
    slider.setDoubleValue(5);  // set by the program: no callback
    EXPECT_EQ(changes, 0);
    slider.didChange();
    EXPECT_EQ(changes, 1);
}

TEST_F(ViewKitControls, ClickingACheckboxTogglesBeforeItsActionRuns) {
    auto check = std::make_shared<desktop::Button>(Rect{}, "Bold", desktop::Button::Type::checkbox);
    std::vector<int> statesSeen;
    check->setAction([&](desktop::Button& b) { statesSeen.push_back(b.state()); });
    check->performClick();
    check->performClick();
    EXPECT_EQ(statesSeen, (std::vector<int>{1, 0}));
    check->setEnabled(false);
    check->performClick();
    EXPECT_EQ(statesSeen.size(), 2u);
    EXPECT_EQ(check->state(), 0);
}

TEST_F(ViewKitControls, AnActionMayRemoveItsButtonFromTheWindow) {
    auto window = shownWindow({0, 0, 200, 100});
    std::weak_ptr<desktop::Button> weak;
    int clicks = 0;
    {
        auto button = std::make_shared<desktop::Button>(Rect{10, 10, 80, 24}, "Close");
        button->setAction([&](desktop::Button& b) {
            b.removeFromSuperview();  // drops the last owner while the click runs
            b.setTitle("gone");
            ++clicks;
        });
        window->desktopContentView()->addSubview(button);
        weak = button;
    }
    desktop::Button* button = weak.lock().get();  // only the window owns it now
    button->performClick();
    EXPECT_EQ(clicks, 1);
    EXPECT_TRUE(weak.expired());
    EXPECT_TRUE(window->desktopContentView()->desktopSubviews().empty());
}

TEST_F(ViewKitControls, TextFieldChangeCallbackRunsForEditsOnly) {
    auto field = std::make_shared<desktop::TextField>(Rect{}, "a");
    std::vector<std::string> values;
    field->setOnChange([&](desktop::TextField& f) { values.push_back(f.stringValue()); });
    field->setStringValue("ab");
    EXPECT_TRUE(values.empty());
    field->didChange();
    EXPECT_EQ(values, (std::vector<std::string>{"ab"}));
    EXPECT_TRUE(field->acceptsFirstResponder());
    EXPECT_FALSE(desktop::Label(Rect{}, "x").acceptsFirstResponder());
}

TEST_F(ViewKitControls, PopUpButtonTitleIsTheSelectedItemsTitle) {
    auto menu = desktop::Menu::make();
    menu->addItem(desktop::MenuItem::make("Small"));
    menu->addItem(desktop::MenuItem::make("Large"));
    auto popUp = std::make_shared<desktop::PopUpButton>(Rect{0, 0, 120, 24}, menu);
    EXPECT_EQ(popUp->performSelector("title"), Value(""));
    EXPECT_EQ(popUp->indexOfSelectedItem(), -1);
    popUp->selectItemWithTitle("Large");
    EXPECT_EQ(popUp->performSelector("title"), Value("Large"));
    EXPECT_EQ(popUp->indexOfSelectedItem(), 1);
    EXPECT_EQ(popUp->menu(), menu);
    popUp->selectItemWithTitle("Medium");  // not an item of the menu
    EXPECT_EQ(popUp->indexOfSelectedItem(), -1);
    EXPECT_EQ(popUp->className(), "PopUpButton");
}
