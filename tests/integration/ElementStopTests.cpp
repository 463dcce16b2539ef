// Ends of a test run caused by element searches and actions, run in a child
// process (tests/programs/ElementScenarios): the exact message, the exit
// status, how often a wait searched, and the user's Application Support data
// put back in place.
#include <gtest/gtest.h>

#include <algorithm>

#include "run/JTKShell.h"
#include "tests/support/TestFiles.h"

using namespace jtk;
using namespace testsupport;

namespace {

// A scenario, how its process ends, and how many searches it made over how long.
struct StopCase {
    const char* scenario;
    int status;
    std::string line;       // a line of standard output
    std::string errorPart;  // a part of standard error
    size_t maxSearches = 0;  // 0: not counted
    long minSearchSpanMs = 0;
    friend void PrintTo(const StopCase& c, std::ostream* out) { *out << c.scenario; }
};

class ElementStops : public testing::TestWithParam<StopCase> {};

TEST_P(ElementStops, printTheMessageEndTheProcessAndPutTheUsersDataBack) {
    const auto& expected = GetParam();
    ScratchFolder scratch;
    auto child = runShellCommand("XDG_DATA_HOME=" + quoted(scratch.path / "data") + " " +
                                 quoted(binDirectory() / "ElementScenarios") + " " + expected.scenario + " " +
                                 quoted(scratch.path));
    std::string errors;
    for (const auto& line : child.errorLines) errors += line + "\n";
    EXPECT_EQ(child.status, expected.status) << errors;
    auto& lines = child.outputLines;
    EXPECT_NE(std::find(lines.begin(), lines.end(), expected.line), lines.end()) << testing::PrintToString(lines);
    EXPECT_NE(errors.find(expected.errorPart), std::string::npos) << errors;
    if (expected.scenario == std::string("elementTimeout")) {
        // The failure names the line of the test that searched.
        EXPECT_NE(std::find_if(lines.begin(), lines.end(),
                               [](const auto& line) {
                                   return line.starts_with("JTK: no element matches \"Nothing\"") &&
                                          line.find("ElementScenarios.cpp:") != std::string::npos;
                               }),
                  lines.end())
            << testing::PrintToString(lines);
    }
    bool returned = std::find(lines.begin(), lines.end(), "scenario returned") != lines.end();
    EXPECT_EQ(returned, expected.scenario == std::string("found"));
    // "search <ms>" each time a search reads the window: calls more than 50 ms apart are different searches.
    std::vector<long> searches;
    for (long previous = -1000; const auto& line : lines)
        if (line.starts_with("search ")) {
            long at = std::stol(line.substr(7));
            if (at - previous > 50) searches.push_back(at);
            previous = at;
        }
    if (expected.maxSearches > 0) {
        ASSERT_FALSE(searches.empty());
        EXPECT_LE(searches.size(), expected.maxSearches);
        EXPECT_GE(searches.back() - searches.front(), expected.minSearchSpanMs);
    }
    // The user's file is back and neither the test data nor the aside folder is left.
    auto support = scratch.path / "data" / "ElementScenarios";
    EXPECT_EQ(readFile(support / "user.txt"), "user data");
    EXPECT_FALSE(fs::exists(support / "test.txt"));
    EXPECT_FALSE(fs::exists(support.string() + "_Temp"));
}

INSTANTIATE_TEST_SUITE_P(
    Scenarios, ElementStops,
    testing::Values(
        // Time-out 0.05 s: a search at once, one sleep of 100 ms, a second search.
        StopCase{"waitTimeout", 0, "waitForExistence timeout while looking for element: Nothing", "", 2, 95},
        // element() polls every 100 ms for a little over a second.
        StopCase{"elementTimeout", 0, "waitForExistence timeout while looking for element: Nothing", "", 12, 1000},
        StopCase{"subElement", 1, "subElement matching \"Missing\" doesn't exist", "JTK/JTKElement"},
        StopCase{"subElementType", 1, "subElement matching type of \"ImageView\" doesn't exist", "JTK/JTKElement"},
        StopCase{"appWindow", 1, "window matching Nowhere doesn't exist", "JTK/JTKTestSuite"},
        // The button's centre is (150, 120) on screen; it has no name.
        StopCase{"goneView", 1, "Element \"150120\" no longer has a view (frameOnScreen)", "JTK/JTKElement"},
        StopCase{"noWindow", 1, "keyWindow: the application has no window", ""},
        StopCase{"openMenu", 1, "JTK: no menu opened within 5 seconds after clicking 150120", "JTKElement::openMenu"},
        StopCase{"found", 0, "found 150120", "", 1, 0}),  // a lookup that matches at once does not sleep
    [](const auto& info) { return std::string(info.param.scenario); });

}  // namespace
