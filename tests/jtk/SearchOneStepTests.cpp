// The searches read a whole tree in one main-thread step. Their answers must
// be those of the element-by-element rule (each view wrapped on its own and
// tested with matchesLookup), and no view may be read off the main thread.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>

#include "tests/support/DesktopFixtures.h"
#include "JTK/JTKClass.h"
#include "elements/JTKReadingOrder.h"
#include "JTK/JTKTestSuite.h"
#include "JTK/desktop/controls/Box.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/Label.h"
#include "JTK/platform/Dispatch.h"

using namespace jtk;

namespace {

using platform::Rect;

std::vector<std::string> descriptions(const std::vector<JTKElement>& elements) {
    std::vector<std::string> texts;
    for (const auto& element : elements) texts.push_back(element.elementLookupDescription());
    return texts;
}

struct LookupCase {
    const char* lookup;
    size_t matches;  // in the application below, window elements included
};

class SearchOneStep : public testsupport::DesktopTest, public ::testing::WithParamInterface<LookupCase> {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        auto main = makeWindow(Rect{0, 0, 500, 400}, "Main");
        auto content = main->desktopContentView();
        track(content, "hbViewName", "Main");
        add<desktop::Button>(content, Rect{10, 360, 80, 20}, "OK");
        add<desktop::Label>(content, Rect{200, 350, 80, 20}, "OK");
        box = add<desktop::Box>(content, Rect{10, 10, 300, 300}, "Options");
        add<desktop::Button>(box, Rect{10, 250, 80, 20}, "Apply");
        auto volume = add<desktop::View>(box, Rect{100, 240, 80, 20});
        track(volume, "hbViewName", "Volume");
        track(volume, "hbViewValue", 0.5);
        auto titled = add<desktop::View>(box, Rect{10, 200, 80, 20});
        track(titled, "title", "Caf\u00e9");
        add<desktop::Button>(box, Rect{10, 100, 80, 20}, "OK")->setHidden(true);
        auto hiddenBox = add<desktop::Box>(box, Rect{100, 10, 150, 80}, "Hidden");
        add<desktop::Button>(hiddenBox, Rect{10, 10, 80, 20}, "Deep");
        hiddenBox->setHidden(true);
        // Off the main screen's left edge, so descriptions carry negative numbers.
        auto second = makeWindow(Rect{-120.5, 300.25, 300, 200}, "Second");
        add<desktop::Button>(second->desktopContentView(), Rect{10, 10, 80, 20}, "OK");
        track(add<desktop::View>(second->desktopContentView(), Rect{10.9, 60.9, 30, 30}), "hbViewValue", "");
    }

    // Gives the view a method that answers value and notes a call off the main thread.
    void track(const std::shared_ptr<desktop::View>& view, const std::string& selector, platform::Value value) {
        view->addMethod(selector, [this, value](platform::Object&, const platform::Value&) {
            if (!platform::isMainThread()) readOffMain = true;
            return value;
        });
    }

    static std::vector<JTKElement> matching(const std::vector<JTKElement>& elements, const std::string& lookup) {
        std::vector<JTKElement> kept;
        for (const auto& element : elements)
            if (element.matchesLookup(lookup)) kept.push_back(element);
        return kept;
    }

    static std::vector<JTKElement> wrapped(const std::vector<std::shared_ptr<platform::View>>& views) {
        return std::vector<JTKElement>(views.begin(), views.end());
    }

    std::shared_ptr<desktop::Box> box;
    std::atomic<bool> readOffMain{false};
};

TEST_P(SearchOneStep, answersAsTheElementByElementRule) {
    const std::string lookup = GetParam().lookup;
    onQueue([&] {
        auto expected = matching(JTKTestSuite::appElements(), lookup);
        auto found = JTKTestSuite::elements(lookup);
        EXPECT_EQ(found.size(), GetParam().matches);
        EXPECT_EQ(descriptions(found), descriptions(expected));
        EXPECT_EQ(found, expected);
        EXPECT_EQ(JTKTestSuite::elementExists(lookup), !expected.empty());
        if (!expected.empty()) {  // with no match element() would wait and end the run
            auto first = JTKTestSuite::element(lookup);
            EXPECT_EQ(first, expected.front());
            EXPECT_EQ(first.elementLookupDescription(), expected.front().elementLookupDescription());
        }

        auto below = matching(wrapped(jtkAllViews(box)), lookup);
        EXPECT_EQ(descriptions(JTKElement(box).subElements(lookup)), descriptions(below));

        std::vector<JTKElement> boxes;
        for (const auto& view : JTKTestSuite::appViews())
            if (view->className() == "Box" && !matching(wrapped(jtkAllViews(view)), lookup).empty())
                boxes.emplace_back(view);
        EXPECT_EQ(JTKTestSuite::elementsWhere(jtkClass<desktop::Box>(), lookup), boxes);
    });
    EXPECT_FALSE(readOffMain) << "a search read a view on the test queue's thread";
}

// The two OK buttons and the label that shows OK, not the hidden button; the
// content view twice; every visible view, since each has an empty title; the
// content views and the plain views by type name.
INSTANTIATE_TEST_SUITE_P(Lookups, SearchOneStep,
                         ::testing::Values(LookupCase{"OK", 3}, LookupCase{"Main", 2}, LookupCase{"Apply", 1},
                                           LookupCase{"Volume", 1}, LookupCase{"0.5", 1}, LookupCase{"Cafe\u0301", 1},
                                           LookupCase{"", 12}, LookupCase{"Button", 3}, LookupCase{"View", 7},
                                           LookupCase{"Box", 1}, LookupCase{"Deep", 0}, LookupCase{"nothing", 0}));

TEST_F(SearchOneStep, elementsCarryTheDescriptionsOfElementsMadeOneByOne) {
    onQueue([&] {
        auto views = JTKTestSuite::appViews();
        auto oneByOne = wrapped(views);
        for (auto& window : JTKTestSuite::appWindows()) oneByOne.push_back(window);
        auto all = JTKTestSuite::appElements();
        EXPECT_EQ(descriptions(all), descriptions(oneByOne));
        ASSERT_EQ(all.size(), oneByOne.size());
        for (const auto& element : all) {
            auto found = JTKTestSuite::elements(element.elementLookupDescription());
            EXPECT_NE(std::find(found.begin(), found.end(), element), found.end()) << element.elementLookupDescription();
        }
    });
    EXPECT_FALSE(readOffMain);
}

}  // namespace
