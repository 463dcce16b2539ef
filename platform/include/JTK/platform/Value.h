// The dynamic value that crosses the object runtime: provider results,
// performed-method results, notification objects, user-info dictionaries and
// the user defaults (dates and data included).
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace jtk::platform {

class Object;
class Value;

using ValueList = std::vector<Value>;

// A point in time, as a date in a property list or the user defaults holds it.
struct Date {
    std::chrono::system_clock::time_point time;
    bool operator==(const Date&) const = default;
};

// Raw bytes, as a data item in a property list or the user defaults holds them.
struct Data {
    std::vector<uint8_t> bytes;
    bool operator==(const Data&) const = default;
};

// Ordered pairs: keys may be any value (texts, option numbers, objects).
using ValueDictionary = std::vector<std::pair<Value, Value>>;

class Value {
public:
    enum class Kind { none, boolean, integer, real, text, list, dictionary, object, date, data };

    Value() = default;
    Value(std::nullptr_t) {}
    Value(bool b) : data_(b) {}
    Value(int i) : data_(static_cast<int64_t>(i)) {}
    Value(int64_t i) : data_(i) {}
    Value(double d) : data_(d) {}
    Value(const char* s) : data_(std::string(s)) {}
    Value(std::string s) : data_(std::move(s)) {}
    Value(ValueList l) : data_(std::make_shared<ValueList>(std::move(l))) {}
    Value(ValueDictionary d) : data_(std::make_shared<ValueDictionary>(std::move(d))) {}
    Value(Date d) : data_(d) {}
    Value(Data d) : data_(std::make_shared<const Data>(std::move(d))) {}
    template <class T, class = std::enable_if_t<std::is_base_of_v<Object, T>>>
    Value(std::shared_ptr<T> o) : data_(std::static_pointer_cast<Object>(std::move(o))) {
        if (!std::get<std::shared_ptr<Object>>(data_)) data_ = std::monostate{};
    }

    Kind kind() const { return static_cast<Kind>(data_.index()); }
    bool isNone() const { return kind() == Kind::none; }
    // Booleans, integers and reals are all numbers, as a boxed number is.
    bool isNumber() const { return kind() == Kind::boolean || kind() == Kind::integer || kind() == Kind::real; }

    std::optional<bool> boolean() const;
    std::optional<int64_t> integer() const;  // integers only, never booleans or reals
    std::optional<double> real() const;      // any number
    const std::string* text() const;
    const ValueList* list() const;
    const ValueDictionary* dictionary() const;
    std::shared_ptr<Object> object() const;
    std::optional<Date> date() const;
    const Data* data() const;

    // The value stored under key in a dictionary value; null when absent or not a dictionary.
    const Value* find(const Value& key) const;

    // The number's own description: 3, 0.5, 1 for true. Empty for non-numbers.
    std::string numberDescription() const;
    // A readable rendering for diagnostics.
    std::string debugText() const;

    bool operator==(const Value& other) const;

private:
    // In the order of Kind.
    std::variant<std::monostate, bool, int64_t, double, std::string, std::shared_ptr<ValueList>,
                 std::shared_ptr<ValueDictionary>, std::shared_ptr<Object>, Date, std::shared_ptr<const Data>>
        data_;
};

}  // namespace jtk::platform
