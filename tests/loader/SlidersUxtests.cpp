// UI tests of Qt's sliders example, a program built without JTK, through the
// loader. The example links a slider, a scroll bar and a dial to three spin
// boxes (minimum, maximum and current value, top to bottom). A spin box's
// number is read from the line edit inside it, the text a person sees.
#include <JTK/JTK.h>

#include <algorithm>
#include <string>

#include "LoadedProgramPaths.h"

JTK_PROVIDER(jtkTestDataPath) { return loaded::testDataFolder("sliders"); }
JTK_PROVIDER(jtkScreenshotsPath) { return loaded::screenshotsFolder("sliders"); }

namespace {

using jtk::JTKTestSuite;

enum class Box { minimum, maximum, current };

// The spin box's line edit; the boxes are found top to bottom.
jtk::JTKElement spinBoxText(Box box) {
    auto boxes = JTKTestSuite::elements("QSpinBox");
    JTK_CHECK_EQ(boxes.size(), 3u);
    std::sort(boxes.begin(), boxes.end(), [](auto& a, auto& b) { return a.frame().origin.y > b.frame().origin.y; });
    return boxes[static_cast<size_t>(box)].subElement("QLineEdit");
}

// Types a number into a spin box as a person would: select all, type, Return.
void typeInto(Box box, const std::string& number) {
    spinBoxText(box).click();
    JTKTestSuite::typeKey("a", jtk::command);
    JTKTestSuite::typeText(number + "\n");
}

// Drags the slider's handle from its left end by the given distance.
void dragSliderFromTheLeftEnd(double distance) {
    auto slider = JTKTestSuite::element("QSlider");
    double halfWidth = slider.frame().size.width / 2;
    slider.click({.offset = {-halfWidth + 4, 0}, .mouseUp = false}).drag({distance, 0});
}

}  // namespace

JTK_TEST(testDraggingTheSliderPastItsEndReachesTheMaximum) {
    typeInto(Box::current, "0");
    dragSliderFromTheLeftEnd(1000);
    JTK_CHECK_EQ(spinBoxText(Box::current).value(), spinBoxText(Box::maximum).value());
}

JTK_TEST(testATypedMaximumBelowTheValueLowersTheValue) {
    typeInto(Box::current, "15");
    typeInto(Box::maximum, "5");
    JTK_CHECK_EQ(spinBoxText(Box::maximum).value(), "5");
    JTK_CHECK_EQ(spinBoxText(Box::current).value(), "5");
}
