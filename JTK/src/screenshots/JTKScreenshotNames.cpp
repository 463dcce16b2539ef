#include "screenshots/JTKScreenshotNames.h"

#include <charconv>
#include <cstdio>
#include <cmath>
#include <limits>

#include "elements/JTKViewTexts.h"
#include "run/JTKMainThread.h"
#include "run/JTKRunConfiguration.h"
#include "JTK/JTKScreenshots.h"
#include "JTK/platform/Window.h"

namespace jtk {

std::string jtkScreenshotNumber(double value) {
    if (std::isnan(value)) return "nan";
    if (std::isinf(value)) return value < 0 ? "-inf" : "inf";
    // Fixed notation keeps 1000000 from turning into 1e+06; the precision is
    // still the shortest that reads back as the same double.
    char buffer[400];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed);
    std::string text(buffer, result.ptr);
    if (text.find('.') == std::string::npos) text += ".0";
    return text;
}

namespace {

// A text as a file name may hold it: "/" removed, control characters (line
// feeds, tabs) as spaces.
std::string fileNameSafe(std::string text) {
    text = jtkReplaceAll(std::move(text), "/", "");
    for (char& c : text)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = ' ';
    return text;
}

// The longest start of text of at most limit bytes that ends on a whole
// UTF-8 character.
std::string utf8Prefix(const std::string& text, size_t limit) {
    if (text.size() <= limit) return text;
    size_t end = limit;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) --end;
    return text.substr(0, end);
}

// FNV-1a, 32 bits, as 8 hexadecimal digits: the same text gives the same
// digits on every machine and in every run.
std::string shortHash(const std::string& text) {
    uint32_t hash = 2166136261u;
    for (unsigned char c : text) hash = (hash ^ c) * 16777619u;
    char digits[9];
    std::snprintf(digits, sizeof digits, "%08x", hash);
    return digits;
}

}  // namespace

std::string jtkScreenshotFileName(const std::string& name, const std::string& value, size_t subviewCount,
                                  platform::Point origin, platform::Size size) {
    std::string geometry = "_" + std::to_string(subviewCount) + "_(" + jtkScreenshotNumber(origin.x) + ", " +
                           jtkScreenshotNumber(origin.y) + ")(" + jtkScreenshotNumber(size.width) + ", " +
                           jtkScreenshotNumber(size.height) + ")";
    std::string texts = fileNameSafe(name + "_" + value);
    // A long text (a document's whole value) keeps its start and gets the
    // hash of all of it, so that the name stays short, stable and its own.
    if (texts.size() > jtkScreenshotTextLimit)
        texts = utf8Prefix(texts, jtkScreenshotTextLimit - 10) + "~" + shortHash(name + "_" + value);
    return texts + geometry;
}

namespace {

// The origin of the name: the frame origin, taken as a point of the view's
// own coordinates (that is the name's rule) and converted into window
// coordinates measured from the content view's origin. The window's
// decorations (a window manager's borders, a headless screen's frame
// margins) lie outside the content view, so they never enter a name; the
// content view itself is at (0, 0). Where the window sits on screen never
// enters either.
platform::Point nameOrigin(const platform::View& view) {
    platform::Rect frame = view.frame();
    platform::Point origin = view.convertRectToWindow({frame.origin.x, frame.origin.y, 0, 0}).origin;
    auto window = view.window();
    auto content = window ? window->contentView() : nullptr;
    if (!content) return origin;
    if (content.get() == &view) return {0, 0};
    platform::Point contentOrigin = content->convertRectToWindow(content->bounds()).origin;
    return {origin.x - contentOrigin.x, origin.y - contentOrigin.y};
}

std::string fileNameOf(const std::shared_ptr<platform::View>& view, const std::string& value) {
    std::string name = viewName(view);
    return jtkOnMainThread([&] {
        return jtkScreenshotFileName(name, value, view->subviews().size(), nameOrigin(*view), view->frame().size);
    });
}

}  // namespace

std::string screenshotFileName(const std::shared_ptr<platform::View>& view) {
    if (!view) return jtkScreenshotFileName({}, {}, 0, {}, {});
    return fileNameOf(view, viewValue(view));
}

std::string maskedScreenshotFileName(const std::shared_ptr<platform::View>& view) {
    if (!view) return jtkScreenshotFileName({}, {}, 0, {}, {});
    return fileNameOf(view, {});
}

std::optional<int64_t> jtkFileSizeThresholdArgument(const std::vector<std::string>& arguments) {
    constexpr std::string_view key = "fileSizeThresh=";
    for (const auto& argument : arguments) {
        if (argument.find(key) == std::string::npos) continue;
        std::string rest = jtkReplaceAll(argument, key, "");
        std::string_view digits = rest;
        bool negative = false;
        if (!digits.empty() && (digits.front() == '+' || digits.front() == '-')) {
            negative = digits.front() == '-';
            digits.remove_prefix(1);
        }
        // from_chars takes no sign of its own and stops at the first non-digit.
        uint64_t magnitude = 0;
        auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude);
        bool whole = !digits.empty() && error == std::errc() && end == digits.data() + digits.size();
        constexpr auto limit = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
        if (!whole || magnitude > limit + (negative ? 1 : 0)) return std::nullopt;
        if (negative) return magnitude == limit + 1 ? std::numeric_limits<int64_t>::min() : -static_cast<int64_t>(magnitude);
        return static_cast<int64_t>(magnitude);
    }
    return std::nullopt;
}

int64_t jtkFileSizeThreshold(const std::vector<std::string>& arguments, std::optional<int64_t> fromCode) {
    // An explicit launch argument wins, so a person can override the code.
    if (auto argument = jtkFileSizeThresholdArgument(arguments)) return *argument;
    return fromCode.value_or(jtkDefaultFileSizeThreshold);
}

int64_t fileSizeThreshold() { return JTKScreenshots::sizeThreshold(); }

}  // namespace jtk
