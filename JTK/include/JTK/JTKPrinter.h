// How a failed check shows a value: the one place to teach the checks a type.
//
// The checks print a value with jtk::JTKPrinter<T>::print. The framework's
// own types print as they are written (Point{10, 20}, Rect{0, 0, 100, 20},
// a Value as its contents, an element by its lookup description); texts are
// quoted, numbers exact, an optional as its value or nullopt, a range as a
// list. A type that can be written to a std::ostream prints as it writes.
//
// For a type of your own, specialise the printer (at namespace scope, before
// the check that uses it):
//
//   template <>
//   struct jtk::JTKPrinter<Money> {
//       static std::string print(const Money& money) { return money.text(); }
//   };
//
// or give the type an operator<< that ADL finds. The specialisation wins.
#pragma once

#include <concepts>
#include <cstddef>
#include <optional>
#include <ostream>
#include <ranges>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>

#include "JTK/JTKClass.h"
#include "JTK/platform/Geometry.h"
#include "JTK/platform/Value.h"

namespace jtk {

class JTKElement;

namespace detail {

// Quoted, with quotes and backslashes escaped, so that "a" and "a " differ visibly.
std::string quotedText(std::string_view text);
// The shortest text that reads back as the same number: 0.1 + 0.2 shows as
// 0.30000000000000004, not as 0.3 beside a 0.3 it does not equal.
std::string exactNumber(double number);

template <class T>
concept Streamable = requires(std::ostream& out, const T& value) { out << value; };

}  // namespace detail

// The customisation point; the primary template handles what the standard
// library can describe.
template <class T>
struct JTKPrinter {
    static std::string print(const T& value) {
        if constexpr (std::is_convertible_v<const T&, std::string_view>) {
            if constexpr (std::is_pointer_v<T>)
                if (!value) return "nullptr";
            return detail::quotedText(value);
        } else if constexpr (std::is_same_v<T, bool>) {
            return value ? "true" : "false";
        } else if constexpr (std::is_same_v<T, std::nullptr_t>) {
            return "nullptr";
        } else if constexpr (std::is_same_v<T, std::nullopt_t>) {
            return "nullopt";
        } else if constexpr (std::is_floating_point_v<T>) {
            return detail::exactNumber(static_cast<double>(value));
        } else if constexpr (std::is_same_v<T, char> || std::is_same_v<T, signed char> ||
                             std::is_same_v<T, unsigned char>) {
            return std::to_string(static_cast<int>(value));
        } else if constexpr (std::is_enum_v<T> && !detail::Streamable<T>) {
            return std::to_string(static_cast<std::underlying_type_t<T>>(value));
        } else if constexpr (detail::Streamable<T>) {
            std::ostringstream out;
            out << value;
            return out.str();
        } else if constexpr (std::ranges::input_range<const T>) {
            std::string text = "[";
            for (const auto& item : value) {
                if (text.size() > 1) text += ", ";
                text += JTKPrinter<std::remove_cvref_t<decltype(item)>>::print(item);
            }
            return text + "]";
        } else {
            return "(a value that cannot be printed: specialise jtk::JTKPrinter for it)";
        }
    }
};

template <class T>
struct JTKPrinter<std::optional<T>> {
    static std::string print(const std::optional<T>& value) {
        return value ? JTKPrinter<T>::print(*value) : "nullopt";
    }
};

template <>
struct JTKPrinter<platform::Point> {
    static std::string print(const platform::Point& point);
};

template <>
struct JTKPrinter<platform::Size> {
    static std::string print(const platform::Size& size);
};

template <>
struct JTKPrinter<platform::Rect> {
    static std::string print(const platform::Rect& rect);
};

template <>
struct JTKPrinter<platform::Value> {
    static std::string print(const platform::Value& value);
};

template <>
struct JTKPrinter<JTKClass> {
    static std::string print(const JTKClass& type);
};

// By lookup description, read without a trip to the main thread; an element
// whose view has gone says so.
template <>
struct JTKPrinter<JTKElement> {
    static std::string print(const JTKElement& element);
};

// The text a failure message shows for a value.
template <class T>
std::string jtkPrint(const T& value) {
    return JTKPrinter<std::remove_cvref_t<T>>::print(value);
}

}  // namespace jtk
