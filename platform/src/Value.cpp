#include "JTK/platform/Value.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <sstream>

#include "JTK/platform/Object.h"

namespace jtk::platform {

std::optional<bool> Value::boolean() const {
    if (auto b = std::get_if<bool>(&data_)) return *b;
    return std::nullopt;
}

std::optional<int64_t> Value::integer() const {
    if (auto i = std::get_if<int64_t>(&data_)) return *i;
    return std::nullopt;
}

std::optional<double> Value::real() const {
    if (auto d = std::get_if<double>(&data_)) return *d;
    if (auto i = std::get_if<int64_t>(&data_)) return static_cast<double>(*i);
    if (auto b = std::get_if<bool>(&data_)) return *b ? 1.0 : 0.0;
    return std::nullopt;
}

const std::string* Value::text() const { return std::get_if<std::string>(&data_); }

const ValueList* Value::list() const {
    auto l = std::get_if<std::shared_ptr<ValueList>>(&data_);
    return l ? l->get() : nullptr;
}

const ValueDictionary* Value::dictionary() const {
    auto d = std::get_if<std::shared_ptr<ValueDictionary>>(&data_);
    return d ? d->get() : nullptr;
}

std::shared_ptr<Object> Value::object() const {
    auto o = std::get_if<std::shared_ptr<Object>>(&data_);
    return o ? *o : nullptr;
}

std::optional<Date> Value::date() const {
    if (auto d = std::get_if<Date>(&data_)) return *d;
    return std::nullopt;
}

const Data* Value::data() const {
    auto d = std::get_if<std::shared_ptr<const Data>>(&data_);
    return d ? d->get() : nullptr;
}

const Value* Value::find(const Value& key) const {
    const ValueDictionary* d = dictionary();
    if (!d) return nullptr;
    for (const auto& [k, v] : *d)
        if (k == key) return &v;
    return nullptr;
}

std::string Value::numberDescription() const {
    if (auto b = boolean()) return *b ? "1" : "0";
    if (auto i = integer()) return std::to_string(*i);
    if (auto d = std::get_if<double>(&data_)) {
        // Shortest text that reads back as the same double: 0.5, 1, 0.1.
        char buffer[40];
        for (int precision = 1; precision <= 17; ++precision) {
            std::snprintf(buffer, sizeof buffer, "%.*g", precision, *d);
            if (std::strtod(buffer, nullptr) == *d) break;
        }
        return buffer;
    }
    return {};
}

std::string Value::debugText() const {
    switch (kind()) {
    case Kind::none: return "none";
    case Kind::boolean:
    case Kind::integer:
    case Kind::real: return numberDescription();
    case Kind::text: return "\"" + *text() + "\"";
    case Kind::list: {
        std::string out = "[";
        for (const auto& v : *list()) out += (out.size() > 1 ? ", " : "") + v.debugText();
        return out + "]";
    }
    case Kind::dictionary: {
        std::string out = "{";
        for (const auto& [k, v] : *dictionary())
            out += (out.size() > 1 ? ", " : "") + k.debugText() + ": " + v.debugText();
        return out + "}";
    }
    case Kind::object: return object()->description();
    case Kind::date: {
        // ISO 8601 in UTC, with the fraction of a second when there is one.
        using namespace std::chrono;
        auto time = date()->time;
        auto seconds = floor<std::chrono::seconds>(time);
        auto micros = duration_cast<microseconds>(time - seconds).count();
        std::time_t whole = system_clock::to_time_t(seconds);
        std::tm parts{};
        char buffer[40] = "";
        if (gmtime_r(&whole, &parts)) std::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%S", &parts);
        std::string out = buffer;
        if (micros) {
            char fraction[32];
            std::snprintf(fraction, sizeof fraction, ".%06lld", static_cast<long long>(micros));
            out += fraction;
        }
        return out + "Z";
    }
    case Kind::data: {
        static const char digits[] = "0123456789abcdef";
        std::string out = "<";
        for (size_t i = 0; i < data()->bytes.size(); ++i) {
            if (i && i % 4 == 0) out += ' ';
            out += digits[data()->bytes[i] >> 4];
            out += digits[data()->bytes[i] & 15];
        }
        return out + ">";
    }
    }
    return {};
}

bool Value::operator==(const Value& other) const {
    if (kind() != other.kind()) return false;
    switch (kind()) {
    case Kind::list: return *list() == *other.list();
    case Kind::dictionary: return *dictionary() == *other.dictionary();
    case Kind::data: return *data() == *other.data();
    default: return data_ == other.data_;  // objects compare by identity
    }
}

}  // namespace jtk::platform
