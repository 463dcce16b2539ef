// Ends of a test run caused by element searches, run in a child process
// (tests/programs/ElementScenarios): the exact message, the exit status, and
// the user's Application Support data put back in place.
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

TEST_F(ElementStop, waitThatRunsOutPrintsRestoresAndExitsZero) {
    auto result = run("waitTimeout");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(hasLine(result, "waitForExistence timeout while looking for element: Nothing")) << result.errors;
    EXPECT_TRUE(hasLine(result, "Restoring Application Support Data"));
    EXPECT_FALSE(hasLine(result, "scenario returned"));
    // Timeout 0.05: a search at once, one sleep, a second search, then the end.
    ASSERT_EQ(result.searches.size(), 2u);
    EXPECT_GE(result.searches[1] - result.searches[0], 95);
    expectUserDataRestored(result);
}

TEST_F(ElementStop, elementWaitsOneSecondThenEndsTheRun) {
    auto result = run("elementTimeout");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(hasLine(result, "waitForExistence timeout while looking for element: Nothing"));
    ASSERT_GE(result.searches.size(), 2u);
    // The first search of element() and the first of its wait are made at once;
    // polls follow every 100 ms for a little over a second.
    EXPECT_GE(result.searches.back() - result.searches.front(), 1000);
    EXPECT_LE(result.searches.size(), 12u);
    expectUserDataRestored(result);
}

TEST_F(ElementStop, missingSubElementIsAFatalStop) {
    auto result = run("subElement");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(hasLine(result, "subElement matching \"Missing\" doesn't exist"));
    EXPECT_NE(result.errors.find("JTK/JTKElement"), std::string::npos) << result.errors;
    EXPECT_FALSE(hasLine(result, "scenario returned"));
    expectUserDataRestored(result);
}

TEST_F(ElementStop, missingSubElementOfTypeNamesTheClass) {
    auto result = run("subElementType");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(hasLine(result, "subElement matching type of \"ImageView\" doesn't exist"));
    EXPECT_NE(result.errors.find("JTK/JTKElement"), std::string::npos);
    expectUserDataRestored(result);
}

TEST_F(ElementStop, missingWindowNamesTheTitleWithoutQuotes) {
    auto result = run("appWindow");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(hasLine(result, "window matching Nowhere doesn't exist"));
    EXPECT_NE(result.errors.find("JTK/JTKTestSuite"), std::string::npos);
    expectUserDataRestored(result);
}

TEST_F(ElementStop, elementWhoseViewIsGoneNamesItsLookupDescription) {
    auto result = run("goneView");
    EXPECT_EQ(result.status, 1);
    // The button's centre is (150, 120) on screen; it has no name.
    EXPECT_TRUE(hasLine(result, "Element \"150120\" no longer has a view (frameOnScreen)"));
    EXPECT_NE(result.errors.find("JTK/JTKElement"), std::string::npos);
    expectUserDataRestored(result);
}

TEST_F(ElementStop, keyWindowWithoutAnyWindowStops) {
    auto result = run("noWindow");
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(hasLine(result, "keyWindow: the application has no window"));
    expectUserDataRestored(result);
}

TEST_F(ElementStop, foundElementLetsTheBodyGoOn) {
    auto result = run("found");
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(hasLine(result, "found 150120"));
    EXPECT_TRUE(hasLine(result, "scenario returned"));
    EXPECT_EQ(result.searches.size(), 1u) << "a lookup that matches at once does not sleep";
    expectUserDataRestored(result);
}

}  // namespace
