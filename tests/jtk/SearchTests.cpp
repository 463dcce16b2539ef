// The searches on real desktop windows, made from a test queue as a test run
// makes them: the reading order, the application-wide and below-element
// searches (with the view walk under them), and the listings of the views.
// The searches read a whole tree in one main-thread step; their answers must
// be those of the element-by-element rule (each view wrapped on its own and
// tested with matchesLookup), and no view may be read off the main thread.
#include <algorithm>
#include <atomic>
#include <cmath>

#include "JTK/desktop/controls/ImageView.h"
#include "elements/JTKReadingOrder.h"
#include "JTK/platform/Dispatch.h"
#include "tests/support/DesktopFixtures.h"

using namespace testsupport;

namespace {

using ViewList = std::vector<std::shared_ptr<platform::View>>;
using Search = DesktopTest;

ViewList viewsOf(const std::vector<JTKElement>& elements) {
    ViewList views;
    for (const auto& element : elements) views.push_back(element.view());
    return views;
}

// Labels by their top edge and left edge on screen, and the order they must read in.
struct ReadingCase {
    const char* label;
    std::vector<std::pair<double, double>> leftAndTop;
    std::vector<int> expected;
    friend void PrintTo(const ReadingCase& c, std::ostream* out) { *out << c.label; }
};

class ReadingOrder : public DesktopTest, public testing::WithParamInterface<ReadingCase> {};

TEST_P(ReadingOrder, rowsTopToBottomThenLeftToRight) {
    auto content = makeWindow({0, -200, 1000, 800})->desktopContentView();
    ViewList views, expected;
    for (auto [x, top] : GetParam().leftAndTop) views.push_back(add<desktop::Label>(content, Rect{x, top + 180, 50, 20}, "l"));
    for (int index : GetParam().expected) expected.push_back(views[index]);
    ViewList sorted;
    onQueue([&] { sorted = jtkSortedInReadingOrder(views); });
    EXPECT_EQ(sorted, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Layouts, ReadingOrder,
    testing::Values(ReadingCase{"withinTwentyPointsShareARow", {{300, 500}, {10, 485}}, {1, 0}},
                    ReadingCase{"twentyPointsBelowIsANewRow", {{10, 480}, {300, 500}}, {1, 0}},
                    // 470 is 30 below the row's first view though only 15 below its neighbour.
                    ReadingCase{"rowKeyIsTheFirstViewsTop", {{10, 470}, {200, 485}, {300, 500}}, {1, 2, 0}},
                    ReadingCase{"truncatedTopsCompare", {{300, 500.1}, {10, 480.9}}, {0, 1}},
                    ReadingCase{"truncationTowardZero", {{300, 9.5}, {10, -10.5}}, {1, 0}},
                    ReadingCase{"tiesKeepTheInputOrder", {{10, 100}, {10, 100}}, {0, 1}}, ReadingCase{"empty", {}, {}},
                    // Edges that are not numbers sort last without harm; infinite ones saturate.
                    ReadingCase{"notNumbersLast", {{10, NAN}, {10, 200}, {10, INFINITY}, {10, -1e300}}, {2, 1, 3, 0}}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(Search, everyWindowShownOrNotIsSearchedAndListed) {
    auto content = makeWindow({0, 0, 400, 300})->desktopContentView();
    name(content, "Main");
    auto top = add<desktop::Button>(content, Rect{10, 250, 80, 20}, "Top");
    auto hidden = makeWindow({500, 0, 400, 300}, "Hidden", false);
    auto later = add<desktop::Button>(hidden->desktopContentView(), Rect{10, 10, 80, 20}, "Later");
    onQueue([&] {
        auto all = JTKTestSuite::appElements();
        auto other = hidden->desktopContentView();
        EXPECT_EQ(viewsOf(all), (ViewList{content, other, top, later, content, other})) << "window elements last";
        EXPECT_EQ(JTKTestSuite::element("Later").view(), later);
        // The listings: one line per view in reading order.
        testing::internal::CaptureStdout();
        JTKTestSuite::printAllViewNames();
        JTKTestSuite::printAllViewTypes();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "Main\n\n\n\nView\nView\nButton\nButton\n");
    });
}

TEST_F(Search, windowsByTitleAndTheKeyWindowFallback) {
    auto first = makeWindow({0, 0, 400, 300}, "Document", false);
    auto second = makeWindow({0, 400, 400, 300}, "Document", false);
    auto accented = makeWindow({500, 0, 400, 300}, "Caf\u00e9", false);
    onQueue([&] {
        EXPECT_EQ(JTKTestSuite::appWindow("Document").view(), first->desktopContentView());
        EXPECT_EQ(JTKTestSuite::appWindow("Cafe\u0301").view(), accented->desktopContentView());
        EXPECT_EQ(JTKTestSuite::appWindows().size(), 3u);
        EXPECT_EQ(JTKTestSuite::keyWindow().view(), first->desktopContentView()) << "no key window: the first";
    });
    second->makeKeyAndOrderFront();
    onQueue([&] { EXPECT_EQ(JTKTestSuite::keyWindow().view(), second->desktopContentView()); });
}

TEST_F(Search, belowAnElementTheWalkOrderCountsStartingWithItsOwnView) {
    auto content = makeWindow({0, 0, 600, 400})->desktopContentView();
    auto box = add<desktop::Box>(content, Rect{10, 10, 300, 300}, "Options");
    name(box, "Panel");
    auto apply = add<desktop::Button>(box, Rect{10, 250, 80, 20}, "Apply");
    auto inner = add<desktop::Box>(box, Rect{10, 10, 200, 200}, "Inner");
    auto cancel = add<desktop::Button>(inner, Rect{10, 10, 80, 20}, "Cancel");
    auto late = add<desktop::Button>(box, Rect{100, 280, 80, 20}, "Apply");  // higher, but walked last
    auto loose = std::make_shared<desktop::Button>(Rect{0, 0, 10, 10}, "Loose");
    onQueue([&] {
        JTKElement panel(box);
        EXPECT_EQ(viewsOf(panel.subElements("Apply")), (ViewList{apply, late}));
        EXPECT_EQ(panel.subElement("Panel").view(), box);
        EXPECT_EQ(panel.subElement("Cancel").view(), cancel);
        EXPECT_EQ(viewsOf(panel.subElementsWithType(jtkClass<desktop::Button>())), (ViewList{apply, cancel, late}));
        EXPECT_EQ(panel.subElementWithType(jtkClass<desktop::Box>()).view(), box);
        EXPECT_EQ(panel.subElementsWithType(std::nullopt).size(), 5u);
        EXPECT_TRUE(JTKElement(loose).subElements("Loose").empty()) << "a view without a superview is not walked";
        onMain([&] { inner->setHidden(true); });
        EXPECT_TRUE(panel.subElements("Cancel").empty());
    });
}

std::vector<std::string> descriptions(const std::vector<JTKElement>& elements) {
    std::vector<std::string> texts;
    for (const auto& element : elements) texts.push_back(element.elementLookupDescription());
    return texts;
}

struct LookupCase {
    const char* lookup;
    size_t matches;  // in the application below, window elements included
};

class SearchOneStep : public DesktopTest, public ::testing::WithParamInterface<LookupCase> {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        auto content = makeWindow(Rect{0, 0, 500, 400}, "Main")->desktopContentView();
        track(content, "hbViewName", "Main");
        add<desktop::Button>(content, Rect{10, 360, 80, 20}, "OK");
        add<desktop::Label>(content, Rect{200, 350, 80, 20}, "OK");
        box = add<desktop::Box>(content, Rect{10, 10, 300, 300}, "Options");
        add<desktop::Button>(box, Rect{10, 250, 80, 20}, "Apply");
        auto volume = add<desktop::View>(box, Rect{100, 240, 80, 20});
        track(volume, "hbViewName", "Volume");
        track(volume, "hbViewValue", 0.5);
        track(add<desktop::View>(box, Rect{10, 200, 80, 20}), "title", "Caf\u00e9");
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

    static std::vector<JTKElement> wrapped(const ViewList& views) { return {views.begin(), views.end()}; }

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
        EXPECT_EQ(JTKTestSuite::elementExists(lookup), !expected.empty());
        // With no match element() would wait and end the run.
        if (!expected.empty()) { EXPECT_EQ(JTKTestSuite::element(lookup), expected.front()); }

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
        // A class narrows a lookup: of the three OK elements two are buttons.
        EXPECT_EQ(JTKTestSuite::elements("OK", jtkClass<desktop::Button>()).size(), 2u);
        EXPECT_FALSE(JTKTestSuite::elementExists("OK", jtkClass<desktop::ImageView>()));
    });
    EXPECT_FALSE(readOffMain);
}

}  // namespace
