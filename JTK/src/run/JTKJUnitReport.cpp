#include "run/JTKJUnitReport.h"

#include <cstdio>

#include <unicode/utf8.h>

namespace jtk {

namespace fs = std::filesystem;

std::string jtkXmlEscaped(const std::string& text) {
    std::string escaped;
    escaped.reserve(text.size());
    int32_t length = static_cast<int32_t>(text.size());
    for (int32_t i = 0; i < length;) {
        int32_t start = i;
        UChar32 c;
        U8_NEXT(text.data(), i, length, c);
        bool allowed = c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
                       (c >= 0x10000 && c <= 0x10FFFF);
        if (!allowed) {
            escaped += '?';
            continue;
        }
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            case '\'': escaped += "&apos;"; break;
            case '\n': escaped += "&#10;"; break;
            case '\r': escaped += "&#13;"; break;
            case '\t': escaped += "&#9;"; break;
            default: escaped.append(text, static_cast<size_t>(start), static_cast<size_t>(i - start));
        }
    }
    return escaped;
}

namespace {

std::string seconds(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", value);
    return text;
}

// Character data keeps its line feeds, which attributes cannot.
std::string textContent(const std::string& text) {
    std::string escaped = jtkXmlEscaped(text);
    std::string result;
    for (size_t i = 0; i < escaped.size();) {
        if (escaped.compare(i, 5, "&#10;") == 0) {
            result += '\n';
            i += 5;
        } else {
            result += escaped[i++];
        }
    }
    return result;
}

}  // namespace

std::string jtkJUnitXml(const std::string& suiteName, const std::vector<JTKTestResult>& tests, double totalSeconds,
                        const std::string& timestamp) {
    int failures = 0, errors = 0, skipped = 0;
    for (const auto& test : tests) {
        if (test.status == JTKTestStatus::failed) ++failures;
        if (test.status == JTKTestStatus::running) ++errors;
        if (test.status == JTKTestStatus::notRun) ++skipped;
    }
    std::string suite = jtkXmlEscaped(suiteName);
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    std::string counts = " tests=\"" + std::to_string(tests.size()) + "\" failures=\"" + std::to_string(failures) +
                         "\" errors=\"" + std::to_string(errors) + "\" skipped=\"" + std::to_string(skipped) +
                         "\" time=\"" + seconds(totalSeconds) + "\"";
    xml += "<testsuites name=\"" + suite + "\"" + counts + ">\n";
    xml += "  <testsuite name=\"" + suite + "\"" + counts + " timestamp=\"" + jtkXmlEscaped(timestamp) + "\">\n";
    for (const auto& test : tests) {
        xml += "    <testcase name=\"" + jtkXmlEscaped(test.name) + "\" classname=\"" + suite + "\" time=\"" +
               seconds(test.seconds) + "\" file=\"" + jtkXmlEscaped(test.file) + "\" line=\"" +
               std::to_string(test.line) + "\"";
        bool hasBody = test.status != JTKTestStatus::passed || !test.attachments.empty();
        if (!hasBody) {
            xml += "/>\n";
            continue;
        }
        xml += ">\n";
        switch (test.status) {
            case JTKTestStatus::notRun: xml += "      <skipped message=\"not run\"/>\n"; break;
            case JTKTestStatus::running:
                xml += "      <error message=\"the run ended while this test was running\"/>\n";
                break;
            case JTKTestStatus::failed:
                xml += "      <failure message=\"" + jtkXmlEscaped(test.failure) + "\">" +
                       textContent(test.failureDetail) + "</failure>\n";
                break;
            case JTKTestStatus::passed: break;
        }
        if (!test.attachments.empty()) {
            xml += "      <system-out>\n";
            for (const auto& file : test.attachments) xml += "[[ATTACHMENT|" + textContent(file.string()) + "]]\n";
            xml += "      </system-out>\n";
        }
        xml += "    </testcase>\n";
    }
    xml += "  </testsuite>\n</testsuites>\n";
    return xml;
}

}  // namespace jtk
