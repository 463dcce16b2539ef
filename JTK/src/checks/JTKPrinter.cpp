// The printers of the framework's own types, for failure messages.
#include "JTK/JTKPrinter.h"

#include <charconv>
#include <cmath>

#include "JTK/JTKElement.h"

namespace jtk {

std::string detail::quotedText(std::string_view text) {
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + "\"";
}

std::string detail::exactNumber(double number) {
    if (std::isnan(number)) return "nan";
    if (std::isinf(number)) return number < 0 ? "-inf" : "inf";
    char buffer[32];
    auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, number);
    return error == std::errc() ? std::string(buffer, end) : std::to_string(number);
}

std::string JTKPrinter<platform::Point>::print(const platform::Point& point) {
    return "Point{" + detail::exactNumber(point.x) + ", " + detail::exactNumber(point.y) + "}";
}

std::string JTKPrinter<platform::Size>::print(const platform::Size& size) {
    return "Size{" + detail::exactNumber(size.width) + ", " + detail::exactNumber(size.height) + "}";
}

std::string JTKPrinter<platform::Rect>::print(const platform::Rect& rect) {
    return "Rect{" + detail::exactNumber(rect.minX()) + ", " + detail::exactNumber(rect.minY()) + ", " +
           detail::exactNumber(rect.width()) + ", " + detail::exactNumber(rect.height()) + "}";
}

std::string JTKPrinter<platform::Value>::print(const platform::Value& value) { return value.debugText(); }

std::string JTKPrinter<JTKClass>::print(const JTKClass& type) { return "class " + type.name; }

std::string JTKPrinter<JTKElement>::print(const JTKElement& element) {
    std::string text = "element " + detail::quotedText(element.elementLookupDescription());
    return element.view() ? text : text + " (its view has gone)";
}

}  // namespace jtk
