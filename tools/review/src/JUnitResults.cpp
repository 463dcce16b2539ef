// A JUnit reader on expat: a stream of element starts, ends and text, of
// which only testsuite, testcase, failure, error, skipped, system-out and
// system-err matter; everything else is passed over.
#include "JTK/review/JUnitResults.h"

#include <expat.h>

#include <charconv>
#include <cstring>
#include <memory>

#include "JTK/review/AtomicFile.h"

namespace jtk::review {

namespace {

using Result = JUnitCase::Result;

struct Reader {
    JUnitResults results;
    std::vector<std::string> path;  // the open elements
    std::string suite;
    std::optional<JUnitCase> current;
    std::string* text = nullptr;  // where character data goes, while inside a captured element
    std::string output;           // the current system-out or system-err
    std::string badRoot;

    static const char* attribute(const XML_Char** attributes, const char* name) {
        for (int i = 0; attributes[i]; i += 2)
            if (std::strcmp(attributes[i], name) == 0) return attributes[i + 1];
        return "";
    }

    void start(const char* element, const XML_Char** attributes) {
        std::string name = element;
        if (path.empty() && name != "testsuites" && name != "testsuite") badRoot = name;
        path.push_back(name);
        if (name == "testsuite") {
            suite = attribute(attributes, "name");
        } else if (name == "testcase") {
            current = JUnitCase{};
            current->suite = suite;
            current->name = attribute(attributes, "name");
            current->classname = attribute(attributes, "classname");
            const char* time = attribute(attributes, "time");
            std::from_chars(time, time + std::strlen(time), current->seconds);
        } else if (current && (name == "failure" || name == "error" || name == "skipped")) {
            Result result = name == "failure" ? Result::failed : name == "error" ? Result::error : Result::skipped;
            // The first failure or error decides; a skip never hides one.
            if (current->result == Result::passed || (current->result == Result::skipped && result != Result::skipped)) {
                current->result = result;
                current->message = attribute(attributes, "message");
                current->details.clear();
            }
            if (current->result == result) text = &current->details;
        } else if (current && (name == "system-out" || name == "system-err")) {
            output.clear();
            text = &output;
        }
    }

    void end() {
        const std::string name = path.back();
        path.pop_back();
        if (!current) return;
        if (name == "testcase") {
            results.cases.push_back(std::move(*current));
            current.reset();
        } else if (name == "system-out" || name == "system-err") {
            for (auto& file : attachmentsIn(output)) current->attachments.push_back(std::move(file));
            text = nullptr;
        } else if (name == "failure" || name == "error" || name == "skipped") {
            text = nullptr;
        }
    }
};

std::string position(XML_Parser parser) {
    return std::to_string(XML_GetCurrentLineNumber(parser)) + ":" + std::to_string(XML_GetCurrentColumnNumber(parser) + 1);
}

}  // namespace

int JUnitResults::count(Result result) const {
    int n = 0;
    for (const auto& testCase : cases) n += testCase.result == result;
    return n;
}

double JUnitResults::seconds() const {
    double total = 0;
    for (const auto& testCase : cases) total += testCase.seconds;
    return total;
}

std::optional<JUnitResults> parseJUnit(std::string_view xml, std::string* error) {
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(XML_ParserCreate("UTF-8"),
                                                                                        &XML_ParserFree);
    if (!parser) return *error = "out of memory", std::nullopt;
    Reader reader;
    XML_SetUserData(parser.get(), &reader);
    XML_SetElementHandler(
        parser.get(),
        [](void* data, const XML_Char* name, const XML_Char** attributes) {
            static_cast<Reader*>(data)->start(name, attributes);
        },
        [](void* data, const XML_Char*) { static_cast<Reader*>(data)->end(); });
    XML_SetCharacterDataHandler(parser.get(), [](void* data, const XML_Char* text, int length) {
        auto* reader = static_cast<Reader*>(data);
        if (reader->text) reader->text->append(text, size_t(length));
    });
    constexpr size_t chunk = 1 << 20;
    do {
        size_t size = std::min(chunk, xml.size());
        bool last = size == xml.size();
        if (XML_Parse(parser.get(), xml.data(), int(size), last) != XML_STATUS_OK) {
            *error = position(parser.get()) + ": " + XML_ErrorString(XML_GetErrorCode(parser.get()));
            return std::nullopt;
        }
        xml.remove_prefix(size);
        if (!reader.badRoot.empty()) {
            *error = "1:1: not a JUnit results file (its root element is <" + reader.badRoot + ">)";
            return std::nullopt;
        }
    } while (!xml.empty());
    return std::move(reader.results);
}

std::optional<JUnitResults> readJUnitFile(const std::filesystem::path& path, std::string* error) {
    std::string bytes;
    if (!readWholeFile(path, bytes, error)) return std::nullopt;
    auto results = parseJUnit(bytes, error);
    if (!results) *error = path.string() + ":" + *error;
    return results;
}

std::vector<std::string> attachmentsIn(std::string_view text) {
    static constexpr std::string_view open = "[[ATTACHMENT|", close = "]]";
    std::vector<std::string> files;
    for (size_t at = text.find(open); at != std::string_view::npos; at = text.find(open, at)) {
        size_t begin = at + open.size(), end = text.find(close, begin);
        if (end == std::string_view::npos) break;
        size_t newline = text.find('\n', begin);
        if (newline < end) {  // a marker never spans lines
            at = newline;
            continue;
        }
        if (end > begin) files.emplace_back(text.substr(begin, end - begin));
        at = end + close.size();
    }
    return files;
}

const char* resultName(Result result) {
    switch (result) {
        case Result::passed: return "passed";
        case Result::failed: return "failed";
        case Result::error: return "error";
        case Result::skipped: return "skipped";
    }
    return "";
}

}  // namespace jtk::review
