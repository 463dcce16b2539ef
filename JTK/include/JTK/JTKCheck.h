// Checks for test code. A check that fails prints which test failed, where
// (file and line), the expression and the values it compared, then puts the
// user's data back and ends the run with status 1:
//
//   JTK_CHECK(element("Save").exists());
//   JTK_CHECK_EQ(element("Count").value(), "Count: 2");
#pragma once

#include <concepts>
#include <ostream>
#include <source_location>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>

namespace jtk::detail {

// Prints the failure and ends the run; never returns.
[[noreturn]] void failCheck(std::string_view expression, std::string_view values, std::source_location where);

// A value as a failure message shows it: texts quoted, others as they print.
template <class T>
std::string describeValue(const T& value) {
    if constexpr (std::is_convertible_v<const T&, std::string_view>) {
        std::string text = "\"";
        for (char c : std::string_view(value)) {
            if (c == '"' || c == '\\') text += '\\';
            text += c;
        }
        return text + "\"";
    } else if constexpr (std::is_same_v<T, bool>) {
        return value ? "true" : "false";
    } else if constexpr (requires(std::ostream& out) { out << value; }) {
        std::ostringstream out;
        out << value;
        return out.str();
    } else {
        return "(a value that cannot be printed)";
    }
}

inline void check(bool passed, std::string_view expression, std::source_location where) {
    if (!passed) failCheck(expression, {}, where);
}

template <class Left, class Right, class Compare>
void checkCompare(const Left& left, const Right& right, Compare compare, std::string_view expression,
                  std::source_location where) {
    if (compare(left, right)) return;
    failCheck(expression, "left:  " + describeValue(left) + "\nright: " + describeValue(right), where);
}

}  // namespace jtk::detail

#define JTK_CHECK(condition) \
    ::jtk::detail::check(static_cast<bool>(condition), "JTK_CHECK(" #condition ")", std::source_location::current())

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
