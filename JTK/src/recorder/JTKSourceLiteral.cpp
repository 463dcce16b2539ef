#include "recorder/JTKSourceLiteral.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <utility>

#include "JTK/platform/Events.h"

namespace jtk {

namespace {

// The four modifier bits, in the order every dialect writes them.
struct FlagNames {
    uint64_t bit;
    const char* swift;
    const char* objectiveC;
    const char* cpp;
};
constexpr std::array<FlagNames, 4> flagNames{{
    {platform::eventFlags::command, ".maskCommand,", "kCGEventFlagMaskCommand | ", "jtk::command"},
    {platform::eventFlags::shift, ".maskShift,", "kCGEventFlagMaskShift | ", "jtk::shift"},
    {platform::eventFlags::alternate, ".maskAlternate,", "kCGEventFlagMaskAlternate | ", "jtk::alternate"},
    // Two blanks before the bar: the Objective-C text is written exactly so.
    {platform::eventFlags::control, ".maskControl,", "kCGEventFlagMaskControl  | ", "jtk::control"},
}};

std::string replaceAll(std::string text, std::string_view from, std::string_view to) {
    for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

std::string flagsLiteral(uint64_t flags, JTKDialect dialect) {
    std::string text;
    switch (dialect) {
        case JTKDialect::swift:
            for (const auto& name : flagNames)
                if (flags & name.bit) text += name.swift;
            return replaceAll("[" + text + "]", ",]", "]");
        case JTKDialect::objectiveC:
            for (const auto& name : flagNames)
                if (flags & name.bit) text += name.objectiveC;
            return replaceAll("(" + text + ")", " | )", ")");
        case JTKDialect::cpp:
            for (const auto& name : flagNames) {
                if (!(flags & name.bit)) continue;
                if (!text.empty()) text += " | ";
                text += name.cpp;
            }
            return text.empty() ? "0" : text;
    }
    return {};
}

std::string pointLiteral(platform::Point point, JTKDialect dialect) {
    std::string x = jtkNumberLiteral(point.x), y = jtkNumberLiteral(point.y);
    switch (dialect) {
        case JTKDialect::swift: return "NSPoint(" + x + "," + y + ")";
        case JTKDialect::objectiveC: return "NSMakePoint(" + x + "," + y + ")";
        case JTKDialect::cpp: return "{" + x + ", " + y + "}";
    }
    return {};
}

std::string textLiteral(const std::string& text, JTKDialect dialect) {
    std::string quoted = "\"" + jtkEscapedText(text, dialect) + "\"";
    return dialect == JTKDialect::objectiveC ? "@" + quoted : quoted;
}

// The default of each argument type, as its no-argument initialiser makes it.
JTKStringConvertable defaultOfSameType(const JTKStringConvertable& value) {
    return std::visit([](const auto& held) -> JTKStringConvertable { return std::decay_t<decltype(held)>{}; }, value);
}

}  // namespace

JTKDialect jtkDialectOfFile(const std::filesystem::path& file) {
    std::string extension = file.extension().string();
    if (extension == ".swift") return JTKDialect::swift;
    for (const char* cpp : {".cpp", ".cc", ".cxx", ".c++", ".hpp", ".hh"})
        if (extension == cpp) return JTKDialect::cpp;
    return JTKDialect::objectiveC;
}

std::string jtkNumberLiteral(double value) {
    std::array<char, 64> buffer{};
    auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    std::string text(buffer.data(), error == std::errc{} ? end : buffer.data());
    if (text.find_first_of(".eni") == std::string::npos) text += ".0";  // not for 1e+20, inf, nan
    return text;
}

std::string jtkEscapedText(std::string_view text, JTKDialect dialect) {
    std::string escaped;
    escaped.reserve(text.size());
    for (char c : text) {
        auto byte = static_cast<unsigned char>(c);
        switch (c) {
            case '"': escaped += "\\\""; continue;
            case '\\': escaped += "\\\\"; continue;
            case '\n': escaped += "\\n"; continue;
            case '\r': escaped += "\\r"; continue;
            case '\t': escaped += "\\t"; continue;
            default: break;
        }
        if (byte >= 0x20 && byte != 0x7f) {
            escaped += c;  // printable ASCII and every byte of a UTF-8 sequence
            continue;
        }
        std::array<char, 16> code{};
        // Swift has no octal escapes; C and C++ read at most three octal
        // digits, so a digit that follows cannot join the escape.
        if (dialect == JTKDialect::swift)
            std::snprintf(code.data(), code.size(), "\\u{%X}", byte);
        else
            std::snprintf(code.data(), code.size(), "\\%03o", byte);
        escaped += code.data();
    }
    return escaped;
}

std::string sourceLiteral(const JTKStringConvertable& value, JTKDialect dialect) {
    if (const auto* point = std::get_if<platform::Point>(&value)) return pointLiteral(*point, dialect);
    if (const auto* boolean = std::get_if<bool>(&value)) return *boolean ? "true" : "false";
    if (const auto* text = std::get_if<std::string>(&value)) return textLiteral(*text, dialect);
    if (const auto* flags = std::get_if<JTKEventFlags>(&value)) return flagsLiteral(flags->flags, dialect);
    if (const auto* key = std::get_if<JTKKeyCode>(&value)) {
        std::string number = std::to_string(key->code);
        return dialect == JTKDialect::objectiveC ? "@" + number : number;
    }
    return {};
}

bool isDefaultValue(const JTKStringConvertable& value) {
    return sourceLiteral(value, JTKDialect::swift) == sourceLiteral(defaultOfSameType(value), JTKDialect::swift);
}

}  // namespace jtk
