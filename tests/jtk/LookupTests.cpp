// Lookup matching: text equality under canonical equivalence, the texts that
// name a view (name, value, title, type name), visibility and the type rule.
#include "elements/JTKLookup.h"
#include "elements/JTKViewTexts.h"
#include "tests/support/DesktopFixtures.h"
#include "tests/support/TestFiles.h"

using namespace testsupport;
using platform::Value;

namespace other {
class SaveButton {};
}  // namespace other

namespace {


class SaveButton : public desktop::Button {
public:
    using Button::Button;
};

struct TextPair {
    const char *a, *b;
    bool equal;
    friend void PrintTo(const TextPair& c, std::ostream* out) { *out << escaped(c.a) << " / " << escaped(c.b); }
};

class LookupTextEquality : public testing::TestWithParam<TextPair> {};

TEST_P(LookupTextEquality, comparesUnderCanonicalEquivalenceOnly) {
    EXPECT_EQ(jtkTextEquals(GetParam().a, GetParam().b), GetParam().equal) << GetParam().a << " / " << GetParam().b;
}

INSTANTIATE_TEST_SUITE_P(Texts, LookupTextEquality,
                         testing::Values(TextPair{"Caf\u00e9", "Cafe\u0301", true},              // combining mark
                                         TextPair{"\u212a", "K", true},                          // Kelvin sign
                                         TextPair{"\ud55c", "\u1112\u1161\u11ab", true},         // Hangul jamo
                                         TextPair{"q\u0307\u0323", "q\u0323\u0307", true},       // mark order
                                         TextPair{"OK", "ok", false}, TextPair{"OK", "OK ", false},
                                         TextPair{"\ufb01", "fi", false},                        // compatibility only
                                         TextPair{"e\u0301", "e", false},
                                         TextPair{"\xff\xfe", "\xff\xfe", true},                 // malformed: bytes
                                         TextPair{"\xff", "\xfe", false}, TextPair{"\xff", "\xef\xbf\xbd", false}));

// One view and the four texts the framework reads from it: name, value, title, type name.
struct TextsCase {
    const char* label;
    std::function<std::shared_ptr<desktop::View>()> make;
    std::vector<std::string> texts;
    friend void PrintTo(const TextsCase& c, std::ostream* out) { *out << c.label; }
};

template <class V = desktop::View, class... Args>
std::function<std::shared_ptr<desktop::View>()> view(const char* selector, Value answer, Args... args) {
    return [=] {
        auto made = std::make_shared<V>(args...);
        if (*selector) made->addMethod(selector, [answer](platform::Object&, const Value&) { return answer; });
        return std::static_pointer_cast<desktop::View>(made);
    };
}

class ViewTexts : public DesktopTest, public testing::WithParamInterface<TextsCase> {};

TEST_P(ViewTexts, areReadFromTheViewsMethodsAndValues) {
    auto made = GetParam().make();
    EXPECT_EQ((std::vector{viewName(made), viewValue(made), viewTitle(made), viewTypeName(made)}), GetParam().texts);
}

INSTANTIATE_TEST_SUITE_P(
    Views, ViewTexts,
    testing::Values(
        TextsCase{"plain", view("", {}), {"", "", "", "View"}},
        TextsCase{"named", view("hbViewName", "Volume"), {"Volume", "", "", "View"}},
        TextsCase{"nameNotText", view("hbViewName", 7), {"", "", "", "View"}},
        TextsCase{"integerValue", view("hbViewValue", 3), {"", "3", "", "View"}},
        TextsCase{"realValue", view("hbViewValue", 0.5), {"", "0.5", "", "View"}},
        TextsCase{"emptyValueWins", view<desktop::TextField>("hbViewValue", "", Rect{}, "abc"), {"", "", "", "TextField"}},
        TextsCase{"noneValueFallsBack", view<desktop::TextField>("hbViewValue", {}, Rect{}, "abc"), {"", "abc", "", "TextField"}},
        TextsCase{"numericAccessibilityValue", view<desktop::Slider>("", {}, Rect{}, 0, 10, 5), {"", "", "", "Slider"}},
        TextsCase{"box", view<desktop::Box>("", {}, Rect{}, "Options"), {"", "", "Options", "Box"}},
        TextsCase{"labelHasNoTitle", view<desktop::Label>("", {}, Rect{}, "Caption"), {"", "Caption", "", "Label"}},
        TextsCase{"titleNotText", view("title", 4), {"", "", "", "View"}},
        TextsCase{"subclass", view<SaveButton>("", {}, Rect{}, "Save"), {"", "", "Save", "SaveButton"}}),
    [](const auto& info) { return std::string(info.param.label); });

class LookupMatching : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        content = makeWindow({0, 0, 400, 300})->desktopContentView();
    }
    std::shared_ptr<desktop::View> content;
};

TEST_F(LookupMatching, eachTextMatchesWholeAndCaseSensitivelyAHiddenViewNothingAndTypesByUnqualifiedName) {
    auto ok = add<desktop::Button>(content, Rect{10, 10, 80, 20}, "OK");
    auto slider = add<desktop::View>(content, Rect{10, 50, 80, 20});
    name(slider, "Volume");
    std::atomic<int> valueCalls{0};
    slider->addMethod("hbViewValue", [&](platform::Object&, const Value&) {
        ++valueCalls;
        return Value(0.5);
    });
    answer(slider, "title", "Level");
    auto save = add<SaveButton>(content, Rect{10, 50, 80, 20}, "OK");
    auto hidden = add<desktop::Button>(content, Rect{10, 100, 80, 80}, "Box");
    auto inner = add<desktop::Button>(hidden, Rect{0, 0, 20, 20}, "R\u00e9sum\u00e9");
    hidden->setHidden(true);
    onQueue([&] {
        JTKElement element(ok);
        for (auto lookup : {"OK", "Button", "" /* no name, no value */}) EXPECT_TRUE(element.matchesLookup(lookup)) << lookup;
        EXPECT_TRUE(element.matchesLookup(element.elementLookupDescription()));
        for (auto lookup : {"ok", "OK ", "O", "View" /* superclass */}) EXPECT_FALSE(element.matchesLookup(lookup)) << lookup;
        // Later texts are not read once one matches: the title comes before the value.
        for (auto lookup : {"Volume", "Level"}) EXPECT_TRUE(JTKElement(slider).matchesLookup(lookup)) << lookup;
        EXPECT_EQ(valueCalls, 0);
        EXPECT_TRUE(JTKElement(slider).matchesLookup("0.5"));
        EXPECT_EQ(valueCalls, 1);
        EXPECT_FALSE(JTKElement(slider).matchesLookup(""));
        element.setElementLookupDescription("main");
        EXPECT_TRUE(element.matchesLookup("main"));
        EXPECT_FALSE(JTKElement(ok).matchesLookup("main")) << "a fresh element carries the default description";
        for (auto lookup : {"Box", "Button", ""}) EXPECT_FALSE(JTKElement(hidden).matchesLookup(lookup)) << lookup;
        EXPECT_TRUE(JTKElement(inner).matchesLookup("Re\u0301sume\u0301")) << "only the view's own flag counts";
        // The type rule: unqualified names, and a subclass does not pass for its superclass.
        EXPECT_TRUE(jtkPassesTypeRule(ok, jtkClass<desktop::Button>()));
        EXPECT_FALSE(jtkPassesTypeRule(save, jtkClass<desktop::Button>()));
        EXPECT_TRUE(jtkPassesTypeRule(save, jtkClass<other::SaveButton>()));
        EXPECT_FALSE(jtkPassesTypeRule(nullptr, jtkClass<desktop::Button>()));
    });
}

}  // namespace
