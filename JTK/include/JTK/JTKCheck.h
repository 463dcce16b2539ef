// Checks for test code. A check that fails prints which test failed, where
// (file and line), the expression and the values it compared, then puts the
// user's data back and ends the run with status 1:
//
//   JTK_CHECK(element("Save").exists());
//   JTK_CHECK_EQ(element("Count").value(), "Count: 2");
//   JTK_CHECK_MSG(rows.size() > 2, "the list shows " + std::to_string(rows.size()) + " rows");
//   JTK_CHECK_NEAR(element("Box").frame(), (Rect{20, 40, 200, 100}), 0.5);
//   if (!loggedIn) JTK_FAIL("the log-in window never closed");
//
// JTK_CHECK_NEAR compares numbers, points, sizes and rectangles, each
// coordinate within the tolerance. (A braced argument needs parentheses, as
// in any macro.)
//
// Values print through jtk::JTKPrinter (JTK/JTKPrinter.h): the framework's
// types print readably, and specialising JTKPrinter<YourType> teaches every
// check your own type.
#pragma once

#include <cmath>
#include <source_location>
#include <string>
#include <string_view>
#include <type_traits>

#include "JTK/JTKPrinter.h"

namespace jtk::detail {

// Prints the failure and ends the run; never returns.
[[noreturn]] void failCheck(std::string_view expression, std::string_view values, std::source_location where);

// A value as a failure message shows it.
template <class T>
std::string describeValue(const T& value) {
    return jtkPrint(value);
}

// A message is shown as written; anything else that is not text, as a value.
template <class T>
std::string messageText(const T& message) {
    if constexpr (std::is_convertible_v<const T&, std::string_view>)
        return std::string(std::string_view(message));
    else
        return jtkPrint(message);
}

// The values lines of a failed comparison.
template <class Left, class Right>
std::string comparedValues(const Left& left, const Right& right) {
    return "left:  " + describeValue(left) + "\nright: " + describeValue(right);
}

inline void check(bool passed, std::string_view expression, std::source_location where) {
    if (!passed) failCheck(expression, {}, where);
}

// The message is made only when the check fails.
template <class Message>
void checkWithMessage(bool passed, const Message& message, std::string_view expression, std::source_location where) {
    if (!passed) failCheck(expression, "message: " + messageText(message()), where);
}

template <class Left, class Right, class Compare>
void checkCompare(const Left& left, const Right& right, Compare compare, std::string_view expression,
                  std::source_location where) {
    if (compare(left, right)) return;
    failCheck(expression, comparedValues(left, right), where);
}

// Within the tolerance, coordinate by coordinate; a NaN is near nothing.
inline bool isNear(double left, double right, double tolerance) { return std::fabs(left - right) <= tolerance; }
inline bool isNear(platform::Point left, platform::Point right, double tolerance) {
    return isNear(left.x, right.x, tolerance) && isNear(left.y, right.y, tolerance);
}
inline bool isNear(platform::Size left, platform::Size right, double tolerance) {
    return isNear(left.width, right.width, tolerance) && isNear(left.height, right.height, tolerance);
}
inline bool isNear(const platform::Rect& left, const platform::Rect& right, double tolerance) {
    return isNear(left.origin, right.origin, tolerance) && isNear(left.size, right.size, tolerance);
}

template <class Left, class Right>
void checkNear(const Left& left, const Right& right, double tolerance, std::string_view expression,
               std::source_location where) {
    if constexpr (std::is_arithmetic_v<Left> && std::is_arithmetic_v<Right>) {
        if (isNear(static_cast<double>(left), static_cast<double>(right), tolerance)) return;
    } else {
        if (isNear(left, right, tolerance)) return;
    }
    failCheck(expression, comparedValues(left, right) + "\ntolerance: " + describeValue(tolerance), where);
}

}  // namespace jtk::detail

#define JTK_CHECK(condition) \
    ::jtk::detail::check(static_cast<bool>(condition), "JTK_CHECK(" #condition ")", std::source_location::current())

#define JTK_CHECK_MSG(condition, message)                                                                   \
    ::jtk::detail::checkWithMessage(static_cast<bool>(condition), [&] { return (message); },                \
                                    "JTK_CHECK_MSG(" #condition ", " #message ")", std::source_location::current())

#define JTK_FAIL(message)                                                                                     \
    ::jtk::detail::failCheck("JTK_FAIL(" #message ")", "message: " + ::jtk::detail::messageText(message),      \
                             std::source_location::current())

#define JTK_CHECK_NEAR(left, right, tolerance)                                                              \
    ::jtk::detail::checkNear((left), (right), static_cast<double>(tolerance),                               \
                             "JTK_CHECK_NEAR(" #left ", " #right ", " #tolerance ")", std::source_location::current())

#define JTK_INTERNAL_CHECK_COMPARE(macro, op, left, right)                                                   \
    ::jtk::detail::checkCompare(                                                                              \
        (left), (right), [](const auto& a, const auto& b) { return static_cast<bool>(a op b); },            \
        #macro "(" #left ", " #right ")", std::source_location::current())

#define JTK_CHECK_EQ(left, right) JTK_INTERNAL_CHECK_COMPARE(JTK_CHECK_EQ, ==, left, right)
#define JTK_CHECK_NE(left, right) JTK_INTERNAL_CHECK_COMPARE(JTK_CHECK_NE, !=, left, right)
#define JTK_CHECK_LT(left, right) JTK_INTERNAL_CHECK_COMPARE(JTK_CHECK_LT, <, left, right)
#define JTK_CHECK_LE(left, right) JTK_INTERNAL_CHECK_COMPARE(JTK_CHECK_LE, <=, left, right)
#define JTK_CHECK_GT(left, right) JTK_INTERNAL_CHECK_COMPARE(JTK_CHECK_GT, >, left, right)
#define JTK_CHECK_GE(left, right) JTK_INTERNAL_CHECK_COMPARE(JTK_CHECK_GE, >=, left, right)
