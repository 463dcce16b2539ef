// Lookup matching: text equality under canonical equivalence, the five
// candidate texts, visibility, and the type-name rule.
#include <gtest/gtest.h>

#include <atomic>

#include "ElementFixture.h"
#include "JTK/JTKClass.h"
#include "elements/JTKLookup.h"
#include "JTK/desktop/controls/Button.h"
#include "JTK/desktop/controls/TextField.h"

using namespace jtk;

namespace {

class OkButton : public desktop::Button {
public:
    using Button::Button;
};

}  // namespace

namespace first {
class Widget : public desktop::View {
public:
    using View::View;
};
}  // namespace first
namespace second {
class Widget {};
}  // namespace second

namespace {

TEST(LookupTextEquality, canonicalEquivalenceButNotCaseOrCompatibility) {
    EXPECT_TRUE(jtkTextEquals("Caf\u00e9", "Cafe\u0301")) << "precomposed vs combining mark";
    EXPECT_TRUE(jtkTextEquals("\u212a", "K")) << "the Kelvin sign decomposes to K";
    EXPECT_TRUE(jtkTextEquals("\u212b", "\u00c5"));
    EXPECT_TRUE(jtkTextEquals("\ud55c", "\u1112\u1161\u11ab")) << "Hangul syllable vs its jamo";
    EXPECT_TRUE(jtkTextEquals("q\u0307\u0323", "q\u0323\u0307")) << "combining marks reorder canonically";
    EXPECT_TRUE(jtkTextEquals("", ""));
    EXPECT_FALSE(jtkTextEquals("OK", "ok"));
    EXPECT_FALSE(jtkTextEquals("OK", "OK "));
    EXPECT_FALSE(jtkTextEquals("OK", "O"));
    EXPECT_FALSE(jtkTextEquals("\u00c9", "\u00e9"));
    EXPECT_FALSE(jtkTextEquals("\ufb01", "fi")) << "a compatibility ligature is not canonically equal";
    EXPECT_FALSE(jtkTextEquals("e\u0301", "e"));
}

TEST(LookupTextEquality, malformedTextsCompareByBytes) {
    EXPECT_TRUE(jtkTextEquals("\xff\xfe", "\xff\xfe"));
    EXPECT_FALSE(jtkTextEquals("\xff", "\xfe")) << "two broken texts must not both become replacement characters";
    EXPECT_FALSE(jtkTextEquals("\xff", "\xef\xbf\xbd"));
    EXPECT_FALSE(jtkTextEquals("\xc3", "\u00e9"));
}

class LookupMatching : public ElementFixture {
protected:
    void SetUp() override {
        ElementFixture::SetUp();
        window = makeWindow(0, 0, 400, 300);
        content = window->desktopContentView();
    }
    std::shared_ptr<desktop::Window> window;
    std::shared_ptr<desktop::View> content;
};

TEST_F(LookupMatching, buttonMatchesByTitleAndTypeNameWholeAndCaseSensitive) {
    auto ok = add<desktop::Button>(content, platform::Rect{10, 10, 80, 20}, "OK");
    onQueue([&] {
        JTKElement element(ok);
        EXPECT_TRUE(element.matchesLookup("OK"));
        EXPECT_TRUE(element.matchesLookup("Button"));
        EXPECT_TRUE(element.matchesLookup(element.elementLookupDescription()));
        EXPECT_TRUE(element.matchesLookup("")) << "no name and no value: the empty text matches";
        EXPECT_FALSE(element.matchesLookup("ok"));
        EXPECT_FALSE(element.matchesLookup("OK "));
        EXPECT_FALSE(element.matchesLookup("O"));
        EXPECT_FALSE(element.matchesLookup("View")) << "the superclass name does not match";
    });
}

TEST_F(LookupMatching, hiddenViewMatchesNothing) {
    auto ok = add<desktop::Button>(content, platform::Rect{10, 10, 80, 20}, "OK");
    ok->setHidden(true);
    auto box = add<desktop::View>(content, platform::Rect{10, 100, 80, 80});
    auto inner = add<desktop::Button>(box, platform::Rect{0, 0, 20, 20}, "Inner");
    box->setHidden(true);
    onQueue([&] {
        JTKElement element(ok);
        EXPECT_FALSE(element.matchesLookup("OK"));
        EXPECT_FALSE(element.matchesLookup("Button"));
        EXPECT_FALSE(element.matchesLookup(""));
        EXPECT_TRUE(JTKElement(inner).matchesLookup("Inner")) << "only the view's own flag counts";
    });
}

TEST_F(LookupMatching, valueNameAndSetDescription) {
    auto field = add<desktop::TextField>(content, platform::Rect{10, 10, 80, 20}, "Hello");
    auto slider = add<desktop::View>(content, platform::Rect{10, 50, 80, 20});
    name(slider, "Volume");
    answer(slider, "hbViewValue", 0.5);
    answer(slider, "title", "Level");
    auto composed = add<desktop::Button>(content, platform::Rect{10, 90, 80, 20}, "R\u00e9sum\u00e9");
    onQueue([&] {
        EXPECT_TRUE(JTKElement(field).matchesLookup("Hello"));
        EXPECT_FALSE(JTKElement(field).matchesLookup("Hell"));
        EXPECT_TRUE(JTKElement(slider).matchesLookup("Volume"));
        EXPECT_TRUE(JTKElement(slider).matchesLookup("0.5"));
        EXPECT_FALSE(JTKElement(slider).matchesLookup("")) << "named, titled and valued: the empty text does not match";
        EXPECT_TRUE(JTKElement(composed).matchesLookup("Re\u0301sume\u0301"));

        JTKElement named(field);
        named.setElementLookupDescription("main");
        EXPECT_TRUE(named.matchesLookup("main"));
        EXPECT_FALSE(JTKElement(field).matchesLookup("main")) << "a fresh element carries the default description";
    });
}

TEST_F(LookupMatching, laterTextsAreNotComputedOnceOneMatches) {
    auto view = add<desktop::View>(content, platform::Rect{10, 10, 80, 20});
    name(view, "Named");
    std::atomic<int> valueCalls{0}, titleCalls{0};
    view->addMethod("hbViewValue", [&](platform::Object&, const platform::Value&) {
        ++valueCalls;
        return platform::Value("v");
    });
    view->addMethod("title", [&](platform::Object&, const platform::Value&) {
        ++titleCalls;
        return platform::Value("t");
    });
    onQueue([&] {
        JTKElement element(view);
        EXPECT_TRUE(element.matchesLookup("Named"));
        EXPECT_EQ(titleCalls, 0);
        EXPECT_EQ(valueCalls, 0);
        EXPECT_TRUE(element.matchesLookup("t"));
        EXPECT_EQ(valueCalls, 0);
        EXPECT_TRUE(element.matchesLookup("v"));
        EXPECT_EQ(valueCalls, 1);
    });
}

TEST_F(LookupMatching, typeNameRuleComparesUnqualifiedNamesOnly) {
    auto plain = add<desktop::Button>(content, platform::Rect{10, 10, 80, 20}, "OK");
    auto derived = add<OkButton>(content, platform::Rect{10, 50, 80, 20}, "OK");
    auto widget = add<first::Widget>(content, platform::Rect{10, 90, 80, 20});
    onQueue([&] {
        EXPECT_EQ(jtkClass<OkButton>().name, "OkButton");
        EXPECT_TRUE(jtkPassesTypeRule(plain, jtkClass<desktop::Button>()));
        EXPECT_FALSE(jtkPassesTypeRule(derived, jtkClass<desktop::Button>())) << "a subclass does not pass for its superclass";
        EXPECT_TRUE(jtkPassesTypeRule(derived, jtkClass<OkButton>()));
        EXPECT_FALSE(jtkPassesTypeRule(plain, jtkClass<OkButton>()));
        EXPECT_TRUE(jtkPassesTypeRule(widget, jtkClass<second::Widget>())) << "same unqualified name, other namespace";
        EXPECT_FALSE(jtkPassesTypeRule(nullptr, jtkClass<desktop::Button>()));
    });
}

}  // namespace
