// The listings of view names and view types, in reading order.
#include <gtest/gtest.h>

#include "ElementFixture.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/controls/Button.h"

using namespace jtk;

namespace {

using platform::Rect;

class SearchDiagnostics : public ElementFixture {};

TEST_F(SearchDiagnostics, oneLinePerViewForNamesAndTypes) {
    auto window = makeWindow(0, 0, 400, 300);
    auto save = add<desktop::Button>(window->desktopContentView(), Rect{10, 10, 80, 20}, "Save");
    name(save, "Save");
    std::string names, types;
    onQueue([&] {
        testing::internal::CaptureStdout();
        JTKTestSuite::printAllViewNames();
        names = testing::internal::GetCapturedStdout();
        testing::internal::CaptureStdout();
        JTKTestSuite::printAllViewTypes();
        types = testing::internal::GetCapturedStdout();
    });
    EXPECT_EQ(names, "\nSave\n") << "the content view comes first and has no name";
    EXPECT_EQ(types, "View\nButton\n");
}

TEST_F(SearchDiagnostics, windowsNotOnScreenAreListedInReadingOrder) {
    auto low = makeWindow(0, 0, 400, 100, "Low", false);
    auto high = makeWindow(0, 500, 400, 100, "High", false);
    name(low->desktopContentView(), "low");
    name(high->desktopContentView(), "high");
    auto button = add<desktop::Button>(high->desktopContentView(), Rect{10, 10, 80, 20}, "OK");
    name(button, "ok");
    add<desktop::View>(high->desktopContentView(), Rect{10, 50, 80, 20})->setHidden(true);
    std::string names;
    onQueue([&] {
        testing::internal::CaptureStdout();
        JTKTestSuite::printAllViewNames();
        names = testing::internal::GetCapturedStdout();
    });
    EXPECT_EQ(names, "high\nok\nlow\n");
}

}  // namespace
