// What a failed check shows: the framework's types printed readably, a type
// of the user's own through its printer, and the tolerance of JTK_CHECK_NEAR.
#include <gtest/gtest.h>

#include <functional>

#include "JTK/JTKCheck.h"
#include "JTK/JTKElement.h"

namespace {

struct Money {
    long cents;
};

}  // namespace

template <>
struct jtk::JTKPrinter<Money> {
    static std::string print(const Money& money) { return std::to_string(money.cents / 100) + " EUR"; }
};

namespace {

using jtk::JTKClass;
using jtk::platform::Point;
using jtk::platform::Rect;
using jtk::platform::Value;

struct Printed {
    const char* what;
    std::function<std::string()> print;
    std::string expected;
};

class CheckPrinting : public testing::TestWithParam<Printed> {};

TEST_P(CheckPrinting, showsTheValue) { EXPECT_EQ(GetParam().print(), GetParam().expected) << GetParam().what; }

INSTANTIATE_TEST_SUITE_P(
    Values, CheckPrinting,
    testing::Values(
        Printed{"two rectangles", [] { return jtk::detail::comparedValues(Rect{0, 0, 100, 20}, Rect{0, 0.5, 100, 21}); },
                "left:  Rect{0, 0, 100, 20}\nright: Rect{0, 0.5, 100, 21}"},
        Printed{"a point", [] { return jtk::jtkPrint(Point{-3, 2.25}); }, "Point{-3, 2.25}"},
        Printed{"a sum that is not 0.3", [] { return jtk::jtkPrint(0.1 + 0.2); }, "0.30000000000000004"},
        Printed{"quotes in a text", [] { return jtk::jtkPrint("say \"hi\""); }, "\"say \\\"hi\\\"\""},
        Printed{"a value list", [] { return jtk::jtkPrint(Value(jtk::platform::ValueList{1, "a"})); }, "[1, \"a\"]"},
        Printed{"an empty optional", [] { return jtk::jtkPrint(std::optional<Rect>()); }, "nullopt"},
        Printed{"a class", [] { return jtk::jtkPrint(std::optional<JTKClass>(JTKClass{"Button"})); }, "class Button"},
        Printed{"texts of a list", [] { return jtk::jtkPrint(std::vector<std::string>{"a", "b"}); }, "[\"a\", \"b\"]"},
        Printed{"an element whose view has gone",
                [] {
                    jtk::JTKElement element(nullptr);
                    element.setElementLookupDescription("Save 10 20");
                    return jtk::jtkPrint(element);
                },
                "element \"Save 10 20\" (its view has gone)"},
        Printed{"the user's own type", [] { return jtk::jtkPrint(Money{1250}); }, "12 EUR"}));

struct Nearness {
    const char* what;
    bool near;
    bool expected;
};

class CheckNear : public testing::TestWithParam<Nearness> {};

TEST_P(CheckNear, comparesEveryCoordinateWithinTheTolerance) {
    EXPECT_EQ(GetParam().near, GetParam().expected) << GetParam().what;
}

using jtk::detail::isNear;
INSTANTIATE_TEST_SUITE_P(
    Coordinates, CheckNear,
    testing::Values(Nearness{"on the tolerance", isNear(1.0, 1.5, 0.5), true},
                    Nearness{"a NaN", isNear(std::nan(""), std::nan(""), 1), false},
                    Nearness{"a point off in y only", isNear(Point{1, 1}, Point{1, 2.1}, 1), false},
                    Nearness{"a rectangle off in height only", isNear(Rect{0, 0, 10, 10}, Rect{0, 0, 10, 12}, 1), false},
                    Nearness{"a rectangle within", isNear(Rect{0, 0, 10, 10}, Rect{0.4, -0.4, 10.4, 9.6}, 0.5), true}));

}  // namespace
