#include "JTK/services/PropertyList.h"

#include <plist/plist.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>

namespace jtk::services {

namespace {

struct PlistFree {
    void operator()(plist_t node) const { plist_free(node); }
};
using PlistPointer = std::unique_ptr<void, PlistFree>;

// Property-list dates count seconds from 2001-01-01 00:00:00 UTC.
constexpr int64_t referenceDateOffset = 978307200;

using Microseconds = std::chrono::microseconds;

// The time of a date node; libplist keeps whole seconds and microseconds
// from the reference date.
platform::Date dateOf(plist_t node) {
    int32_t seconds = 0, microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    auto sinceEpoch = std::chrono::seconds(int64_t(seconds) + referenceDateOffset) + Microseconds(microseconds);
    return platform::Date{std::chrono::system_clock::time_point(std::chrono::duration_cast<std::chrono::system_clock::duration>(sinceEpoch))};
}

// Microseconds from the reference date, split into whole seconds and the rest.
std::pair<int64_t, int64_t> referenceSecondsOf(const platform::Date& date) {
    auto micros = std::chrono::floor<Microseconds>(date.time.time_since_epoch()).count() - referenceDateOffset * 1000000;
    int64_t seconds = micros >= 0 ? micros / 1000000 : -((-micros + 999999) / 1000000);
    return {seconds, micros - seconds * 1000000};
}

std::optional<platform::Value> toValue(plist_t node);

std::optional<platform::ValueDictionary> toDictionary(plist_t node) {
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    if (!iterator) return std::nullopt;
    std::optional<platform::ValueDictionary> result = platform::ValueDictionary{};
    for (;;) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator, &key, &item);
        if (!item) {
            std::free(key);
            break;
        }
        auto value = toValue(item);
        if (key && value) {
            result->emplace_back(std::string(key), std::move(*value));
        } else {
            result.reset();
        }
        std::free(key);
        if (!result) break;
    }
    std::free(iterator);
    return result;
}

std::optional<platform::Value> toValue(plist_t node) {
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return platform::Value(value != 0);
    }
    case PLIST_UINT: {
        // Stored as 64 bits; property lists write negative integers in two's complement.
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return platform::Value(static_cast<int64_t>(value));
    }
    case PLIST_UID: {
        uint64_t value = 0;
        plist_get_uid_val(node, &value);
        return platform::Value(static_cast<int64_t>(value));
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return platform::Value(value);
    }
    case PLIST_STRING: {
        uint64_t length = 0;
        const char* text = plist_get_string_ptr(node, &length);
        return platform::Value(std::string(text ? text : "", text ? length : 0));
    }
    case PLIST_DATE: return platform::Value(dateOf(node));
    case PLIST_DATA: {
        uint64_t length = 0;
        const auto* bytes = reinterpret_cast<const uint8_t*>(plist_get_data_ptr(node, &length));
        return platform::Value(platform::Data{std::vector<uint8_t>(bytes, bytes ? bytes + length : bytes)});
    }
    case PLIST_ARRAY: {
        platform::ValueList list;
        uint32_t count = plist_array_get_size(node);
        for (uint32_t i = 0; i < count; ++i) {
            auto item = toValue(plist_array_get_item(node, i));
            if (!item) return std::nullopt;
            list.push_back(std::move(*item));
        }
        return platform::Value(std::move(list));
    }
    case PLIST_DICT: {
        auto dictionary = toDictionary(node);
        if (!dictionary) return std::nullopt;
        return platform::Value(std::move(*dictionary));
    }
    default: return std::nullopt;
    }
}

// The value as a new node; values are checked with isPropertyListValue first.
plist_t toNode(const platform::Value& value) {
    using Kind = platform::Value::Kind;
    switch (value.kind()) {
    case Kind::boolean: return plist_new_bool(*value.boolean() ? 1 : 0);
    case Kind::integer: return plist_new_uint(static_cast<uint64_t>(*value.integer()));
    case Kind::real: return plist_new_real(*value.real());
    case Kind::text: return plist_new_string(value.text()->c_str());
    case Kind::date: {
        auto [seconds, microseconds] = referenceSecondsOf(*value.date());
        return plist_new_date(static_cast<int32_t>(seconds), static_cast<int32_t>(microseconds));
    }
    case Kind::data: {
        const auto& bytes = value.data()->bytes;
        return plist_new_data(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    case Kind::list: {
        plist_t array = plist_new_array();
        for (const auto& item : *value.list()) plist_array_append_item(array, toNode(item));
        return array;
    }
    case Kind::dictionary: {
        plist_t dictionary = plist_new_dict();
        for (const auto& [key, item] : *value.dictionary()) plist_dict_set_item(dictionary, key.text()->c_str(), toNode(item));
        return dictionary;
    }
    default: return nullptr;
    }
}

}  // namespace

bool isPropertyListValue(const platform::Value& value, std::string* reason) {
    using Kind = platform::Value::Kind;
    auto fail = [reason](const std::string& why) {
        if (reason) *reason = why;
        return false;
    };
    switch (value.kind()) {
    case Kind::none: return fail("a property list cannot hold an empty value");
    case Kind::object: return fail("a property list cannot hold an object reference (" + value.debugText() + ")");
    case Kind::real:
        if (!std::isfinite(*value.real())) return fail("a property list cannot hold " + value.debugText());
        return true;
    case Kind::text:
        if (value.text()->find('\0') != std::string::npos) return fail("a property-list text cannot hold a NUL character");
        return true;
    case Kind::date: {
        auto seconds = referenceSecondsOf(*value.date()).first;
        if (seconds < std::numeric_limits<int32_t>::min() || seconds > std::numeric_limits<int32_t>::max())
            return fail("a property-list date must lie between 1933 and 2069, not " + value.debugText());
        return true;
    }
    case Kind::list:
        for (const auto& item : *value.list())
            if (!isPropertyListValue(item, reason)) return false;
        return true;
    case Kind::dictionary:
        for (const auto& [key, item] : *value.dictionary()) {
            if (!key.text()) return fail("property-list dictionary keys must be texts, not " + key.debugText());
            if (!isPropertyListValue(key, reason) || !isPropertyListValue(item, reason)) return false;
        }
        return true;
    default: return true;
    }
}

bool writePropertyListDictionary(const std::filesystem::path& path, const platform::ValueDictionary& dictionary,
                                 std::string& error) {
    platform::Value root(dictionary);
    if (!isPropertyListValue(root, &error)) return false;
    PlistPointer node(toNode(root));
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(node.get(), &xml, &length);
    if (!xml) {
        error = "the property list could not be encoded";
        return false;
    }
    std::string bytes(xml, length);
    plist_to_xml_free(xml);

    std::error_code code;
    std::filesystem::create_directories(path.parent_path(), code);
    if (code) {
        error = "cannot create " + path.parent_path().string() + ": " + code.message();
        return false;
    }
    std::string temporary = (path.parent_path() / ("." + path.filename().string() + ".XXXXXX")).string();
    int fd = ::mkstemp(temporary.data());
    if (fd < 0) {
        error = "cannot create a temporary file beside " + path.string() + ": " + std::strerror(errno);
        return false;
    }
    size_t written = 0;
    while (written < bytes.size()) {
        ssize_t n = ::write(fd, bytes.data() + written, bytes.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        written += static_cast<size_t>(n);
    }
    bool complete = written == bytes.size();
    if (!complete) error = "cannot write " + temporary + ": " + std::strerror(errno);
    if (complete && ::fsync(fd) != 0) {
        error = "cannot write " + temporary + ": " + std::strerror(errno);
        complete = false;
    }
    if (::close(fd) != 0 && complete) {
        error = "cannot write " + temporary + ": " + std::strerror(errno);
        complete = false;
    }
    if (complete) {
        std::filesystem::rename(temporary, path, code);
        if (code) {
            error = "cannot replace " + path.string() + ": " + code.message();
            complete = false;
        }
    }
    if (!complete) std::filesystem::remove(temporary, code);
    return complete;
}

}  // namespace jtk::services

namespace jtk::platform {

std::optional<ValueDictionary> readPropertyListDictionary(const std::filesystem::path& path) {
    std::error_code code;
    if (!std::filesystem::is_regular_file(path, code)) return std::nullopt;
    auto size = std::filesystem::file_size(path, code);
    if (code || size == 0 || size > std::numeric_limits<uint32_t>::max()) return std::nullopt;
    std::ifstream in(path, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (!in.good() && !in.eof()) return std::nullopt;
    if (bytes.empty()) return std::nullopt;

    plist_t root = nullptr;
    plist_from_memory(bytes.data(), static_cast<uint32_t>(bytes.size()), &root);
    services::PlistPointer owner(root);
    if (!root || plist_get_node_type(root) != PLIST_DICT) return std::nullopt;
    return services::toDictionary(root);
}

}  // namespace jtk::platform
