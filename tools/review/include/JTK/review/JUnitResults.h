// The JUnit XML file of a run, as the report shows it: every test case with
// its result, time, failure message and details, and the pictures attached
// to it (lines "[[ATTACHMENT|/absolute/path.png]]" in its system-out or
// system-err, the convention CI servers read).
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace jtk::review {

struct JUnitCase {
    enum class Result { passed, failed, error, skipped };
    std::string suite;  // the enclosing testsuite's name
    std::string name;
    std::string classname;
    double seconds = 0;
    Result result = Result::passed;
    std::string message;  // the failure's, error's or skip's message attribute
    std::string details;  // their text
    std::vector<std::string> attachments;
};

struct JUnitResults {
    std::vector<JUnitCase> cases;  // in file order
    int count(JUnitCase::Result result) const;
    double seconds() const;  // the sum of the cases' times
};

// The results in the XML text; none with "LINE:COLUMN: reason" in error when
// it is not well-formed XML or its root is not testsuites or testsuite.
std::optional<JUnitResults> parseJUnit(std::string_view xml, std::string* error);

// The same for a file; the error then begins with its path.
std::optional<JUnitResults> readJUnitFile(const std::filesystem::path& path, std::string* error);

// The paths of the "[[ATTACHMENT|PATH]]" markers in a text, in order.
std::vector<std::string> attachmentsIn(std::string_view text);

const char* resultName(JUnitCase::Result result);

}  // namespace jtk::review
