// The JUnit reader: the runner's own files, what other writers and XML allow
// (entities, CDATA, several suites, errors beside failures) and what is not
// a JUnit file at all.
#include <gtest/gtest.h>

#include "JTK/review/JUnitResults.h"

using namespace jtk::review;

namespace {

// Each case as "suite/name result seconds 'message' details [attachments]", joined by " | ".
std::string described(std::string_view xml) {
    std::string error;
    auto results = parseJUnit(xml, &error);
    if (!results) return "error " + error;
    std::string text;
    for (const auto& c : results->cases) {
        std::string files;
        for (const auto& file : c.attachments) files += (files.empty() ? "" : ",") + file;
        char seconds[32];
        std::snprintf(seconds, sizeof seconds, "%g", c.seconds);
        text += (text.empty() ? "" : " | ") + c.suite + "/" + c.name + " " + resultName(c.result) + " " + seconds + " '" +
                c.message + "' " + c.details + " [" + files + "]";
    }
    return text;
}

struct ReaderCase {
    const char* name;
    const char* xml;
    const char* described;
};
void PrintTo(const ReaderCase& c, std::ostream* out) { *out << c.name; }


class JUnitReader : public testing::TestWithParam<ReaderCase> {};

TEST_P(JUnitReader, readsEveryCaseWithItsResultAndPictures) {
    EXPECT_EQ(described(GetParam().xml), GetParam().described);
}

INSTANTIATE_TEST_SUITE_P(
    Table, JUnitReader,
    testing::Values(
        ReaderCase{"runnerFile",
                   R"(<?xml version="1.0" encoding="UTF-8"?>
<testsuites><testsuite name="Sample" tests="3" failures="1" errors="0" skipped="1" time="2.5">
<testcase name="testOpen" classname="Sample" time="0.5"/>
<testcase name="testSave" classname="Sample" time="1.234"><failure message="Check failed: &quot;a&quot; == b">at Save.cpp:12</failure>
<system-out>JTK: log line
[[ATTACHMENT|/tmp/fail 1.png]]
[[ATTACHMENT|/s/V/Save/temp/x.png]]</system-out></testcase>
<testcase name="testQuit" classname="Sample" time="0"><skipped message="not run"/></testcase>
</testsuite></testsuites>)",
                   "Sample/testOpen passed 0.5 ''  [] | Sample/testSave failed 1.234 'Check failed: \"a\" == b' at "
                   "Save.cpp:12 [/tmp/fail 1.png,/s/V/Save/temp/x.png] | Sample/testQuit skipped 0 'not run'  []"},
        ReaderCase{"bareSuiteCdataAndErrors",
                   "<testsuite name='A'><testcase name='t1' time='x'><error message='crash'><![CDATA[<stack> & more]]>"
                   "</error><failure message='later'>ignored</failure><system-err>[[ATTACHMENT|/e.png]]</system-err>"
                   "</testcase></testsuite>",
                   "A/t1 error 0 'crash' <stack> & more [/e.png]"},
        ReaderCase{"skipThenFailure", "<testsuites><testsuite name='S'><testcase name='t'><skipped/><failure message='m'>d"
                                      "</failure></testcase></testsuite><testsuite name='T'><testcase name='u'/>"
                                      "</testsuite></testsuites>",
                   "S/t failed 0 'm' d [] | T/u passed 0 ''  []"},
        ReaderCase{"markerAcrossLinesOrUnclosed", "<testsuite><testcase name='t'><system-out>[[ATTACHMENT|/a\n.png]] "
                                                  "[[ATTACHMENT|/b.png]] [[ATTACHMENT|]] [[ATTACHMENT|/c.png</system-out>"
                                                  "</testcase></testsuite>",
                   "/t passed 0 ''  [/b.png]"},
        ReaderCase{"empty", "", "error 1:1: no element found"},
        ReaderCase{"truncated", "<testsuites><testsuite name='S'><testcase name='t'>",
                   "error 1:52: no element found"},
        ReaderCase{"notWellFormed", "<testsuites>\n<testcase name='a' name='b'/></testsuites>",
                   "error 2:20: duplicate attribute"},
        ReaderCase{"otherRoot", "<html><testcase name='t'/></html>",
                   "error 1:1: not a JUnit results file (its root element is <html>)"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(JUnitFile, anUnreadableFileIsNamed) {
    std::string error;
    EXPECT_FALSE(readJUnitFile("/nonexistent/results.xml", &error));
    EXPECT_EQ(error, "/nonexistent/results.xml: No such file or directory");
}

}  // namespace
