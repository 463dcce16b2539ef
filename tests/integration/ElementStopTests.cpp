// Ends of a test run caused by element searches and actions, run in a child
// process (tests/programs/ElementScenarios): the exact message, the exit
// status, and the user's Application Support data put back in place.
#include <gtest/gtest.h>

#include <unistd.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct ChildResult {
    int status = -1;
    std::vector<std::string> lines;  // standard output
    std::string errors;              // standard error
    fs::path support;                // the child's Application Support folder
    std::vector<long> searches;      // start of each search burst, in ms
};

fs::path binDirectory() {
    if (const char* dir = std::getenv("JTK_BIN_DIR")) return dir;
    return fs::read_symlink("/proc/self/exe").parent_path();
}

std::string readFile(const fs::path& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class ElementStop : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/jtk-element-stop-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        scratch = pattern;
    }
    void TearDown() override {
        std::error_code error;
        fs::remove_all(scratch, error);
    }

    ChildResult run(const std::string& scenario) {
        ChildResult result;
        auto out = scratch / (scenario + ".out"), err = scratch / (scenario + ".err");
        std::string command = "XDG_DATA_HOME='" + (scratch / "data").string() + "' '" +
                              (binDirectory() / "ElementScenarios").string() + "' " + scenario + " '" +
                              scratch.string() + "' >'" + out.string() + "' 2>'" + err.string() + "'";
        int raw = std::system(command.c_str());
        result.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        std::istringstream lines(readFile(out));
        long previous = -1000;
        for (std::string line; std::getline(lines, line);) {
            if (line.rfind("support ", 0) == 0) result.support = line.substr(8);
            if (line.rfind("search ", 0) == 0) {
                long at = std::stol(line.substr(7));
                // Calls more than 50 ms apart belong to different searches.
                if (at - previous > 50) result.searches.push_back(at);
                previous = at;
                continue;
            }
            result.lines.push_back(line);
        }
        result.errors = readFile(err);
        return result;
    }

    // The user's file is back and neither test data nor the aside folder is left.
    static void expectUserDataRestored(const ChildResult& result) {
        ASSERT_FALSE(result.support.empty());
        EXPECT_EQ(readFile(result.support / "user.txt"), "user data");
        EXPECT_FALSE(fs::exists(result.support / "test.txt"));
        EXPECT_FALSE(fs::exists(result.support.string() + "_Temp"));
    }

    static bool hasLine(const ChildResult& result, const std::string& line) {
        for (const auto& l : result.lines)
            if (l == line) return true;
        return false;
    }

    fs::path scratch;
};

// A scenario, how its process ends, and how many searches it made over how long.
struct StopCase {
    const char* scenario;
    int status;
    std::string line;       // a line of standard output
    std::string errorPart;  // a part of standard error
    size_t maxSearches = 0;  // 0: not counted
    long minSearchSpanMs = 0;
};

class ElementStops : public ElementStop, public testing::WithParamInterface<StopCase> {};

TEST_P(ElementStops, printTheMessageEndTheProcessAndPutTheUsersDataBack) {
    const auto& expected = GetParam();
    auto result = run(expected.scenario);
    EXPECT_EQ(result.status, expected.status) << result.errors;
    EXPECT_TRUE(hasLine(result, expected.line)) << testing::PrintToString(result.lines);
    EXPECT_NE(result.errors.find(expected.errorPart), std::string::npos) << result.errors;
    EXPECT_EQ(hasLine(result, "scenario returned"), std::string(expected.scenario) == "found");
    if (expected.maxSearches > 0) {
        ASSERT_FALSE(result.searches.empty());
        EXPECT_LE(result.searches.size(), expected.maxSearches);
        EXPECT_GE(result.searches.back() - result.searches.front(), expected.minSearchSpanMs);
    }
    expectUserDataRestored(result);
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
        StopCase{"found", 0, "found 150120", "", 1, 0}),
    [](const auto& info) { return std::string(info.param.scenario); });

}  // namespace
