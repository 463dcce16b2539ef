// The runner's rules that need no run: reading its options, choosing tests
// by filter and shard, names two tests share, and the JUnit text.
#include <gtest/gtest.h>

#include <map>

#include "run/JTKJUnitReport.h"
#include "run/JTKRunOptions.h"
#include "run/JTKTestSelection.h"

using namespace jtk;
using Names = std::vector<std::string>;

namespace {

JTKMethodList methodsNamed(const Names& names, const std::string& file = "a.cpp") {
    JTKMethodList methods;
    int line = 10;
    for (const auto& name : names) methods.push_back({name, {}, file, line++});
    return methods;
}

Names namesOf(const JTKMethodList& methods) {
    Names names;
    for (const auto& method : methods) names.push_back(method.name);
    return names;
}

struct FilterCase {
    std::string filter;
    Names chosen;
};

class RunnerFilter : public testing::TestWithParam<FilterCase> {};

TEST_P(RunnerFilter, choosesTheMatchingTestsInRunOrder) {
    auto all = methodsNamed({"testSave", "testSaveAs", "testOpen", "testOpenSlow", "testQuit"});
    auto selection = jtkSelectTests(all, GetParam().filter, 0, 1);
    if (GetParam().chosen.empty()) {
        ASSERT_TRUE(selection.refusal);
        EXPECT_NE(selection.refusal->find("no test matches the filter \"" + GetParam().filter + "\""),
                  std::string::npos);
    } else {
        EXPECT_EQ(namesOf(selection.tests), GetParam().chosen);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Patterns, RunnerFilter,
    testing::Values(FilterCase{"", {"testSave", "testSaveAs", "testOpen", "testOpenSlow", "testQuit"}},
                    FilterCase{"testSave", {"testSave"}},  // a whole name, not a prefix
                    FilterCase{"testSave*", {"testSave", "testSaveAs"}},
                    FilterCase{"*Open*:testQuit", {"testOpen", "testOpenSlow", "testQuit"}},
                    FilterCase{"test?uit", {"testQuit"}},
                    FilterCase{"*-*Slow:testSaveAs", {"testSave", "testOpen", "testQuit"}},
                    FilterCase{"-testQuit", {"testSave", "testSaveAs", "testOpen", "testOpenSlow"}},
                    FilterCase{"*a*e*", {"testSave", "testSaveAs"}},  // a star that must backtrack
                    FilterCase{"testsave", {}}, FilterCase{"testSave-testSave", {}}));

TEST(RunnerShards, everyTestRunsInExactlyOneShard) {
    Names names;
    for (int i = 0; i < 10; ++i) names.push_back("test" + std::to_string(i));
    auto all = methodsNamed(names);
    std::map<std::string, int> seen;
    for (int shard = 0; shard < 3; ++shard) {
        auto selection = jtkSelectTests(all, "-test7", shard, 3);
        EXPECT_FALSE(selection.refusal);
        for (const auto& test : selection.tests) ++seen[test.name];
    }
    EXPECT_EQ(seen.size(), 9u);
    for (const auto& [name, count] : seen) EXPECT_EQ(count, 1) << name;

    auto beyond = jtkSelectTests(methodsNamed({"testA"}), "", 2, 3);
    EXPECT_TRUE(beyond.tests.empty());
    EXPECT_FALSE(beyond.refusal) << "a shard beyond the last test is no error";
    EXPECT_TRUE(beyond.emptyNote);
}

TEST(RunnerDuplicates, nameEveryPlaceOfATestNameUsedTwice) {
    auto methods = methodsNamed({"testSave", "jtkSetup", "testOpen"}, "a.cpp");
    auto more = methodsNamed({"testSave", "jtkSetup"}, "b.cpp");
    methods.insert(methods.end(), more.begin(), more.end());
    EXPECT_EQ(jtkDuplicateTestNames(methods), Names{"JTK: 2 tests are named testSave: a.cpp:10 and b.cpp:10"});
    EXPECT_TRUE(jtkDuplicateTestNames(methodsNamed({"testSave", "testOpen"})).empty());
}

struct OptionsCase {
    Names arguments;
    std::map<std::string, std::string> environment;
    std::string error;  // a piece of the one error line; empty: no error
};

class RunnerOptions : public testing::TestWithParam<OptionsCase> {
protected:
    JTKRunOptionsResult parse() {
        const auto& environment = GetParam().environment;
        return jtkParseRunOptions(GetParam().arguments, [&](const char* name) -> std::optional<std::string> {
            auto found = environment.find(name);
            if (found == environment.end()) return std::nullopt;
            return found->second;
        });
    }
};

TEST_P(RunnerOptions, refuseWhatDoesNotParseByName) {
    auto result = parse();
    if (GetParam().error.empty()) {
        EXPECT_TRUE(result.errors.empty()) << testing::PrintToString(result.errors);
    } else {
        ASSERT_EQ(result.errors.size(), 1u) << testing::PrintToString(result.errors);
        EXPECT_NE(result.errors[0].find(GetParam().error), std::string::npos) << result.errors[0];
    }
}

INSTANTIATE_TEST_SUITE_P(
    Launches, RunnerOptions,
    testing::Values(
        OptionsCase{{"uxtest", "--jtk-ci", "--jtk-filter=test*", "--jtk-timeout=2.5", "--jtk-tests=lib.so"}, {}, ""},
        OptionsCase{{"uxtest", "--jtk-fliter=testSave"}, {}, "unknown option --jtk-fliter"},
        OptionsCase{{"--jtk-list=yes"}, {}, "--jtk-list takes no value"},
        OptionsCase{{"--jtk-timeout=0"}, {}, "--jtk-timeout needs a number of seconds above 0"},
        OptionsCase{{"--jtk-timeout=soon"}, {}, "not \"soon\""}, OptionsCase{{"--jtk-junit"}, {}, "needs a value"},
        OptionsCase{{"--jtk-shard-index=3", "--jtk-shard-count=3"}, {}, "shard index 3 is not below the shard count 3"},
        OptionsCase{{}, {{"JTK_SHARD_INDEX", "1"}, {"JTK_SHARD_COUNT", "2"}}, ""},
        OptionsCase{{}, {{"JTK_SHARD_COUNT", "two"}}, "JTK_SHARD_COUNT needs a whole number"},
        OptionsCase{{}, {{"JTK_OPTIONS", "--jtk-strict uxtest"}}, "JTK_OPTIONS holds \"uxtest\""},
        OptionsCase{{"--jtk-record=now"}, {}, "--jtk-record takes no value"}));

TEST(RunnerOptionsValues, aRecordingSessionComesFromTheArgumentsOrTheEnvironment) {
    auto none = [](const char*) { return std::optional<std::string>(); };
    auto fromEnvironment = [](const char* name) {
        return std::string(name) == "JTK_OPTIONS" ? std::optional<std::string>("--jtk-record") : std::nullopt;
    };
    EXPECT_TRUE(jtkParseRunOptions({"uxtest", "--jtk-record"}, none).options.record);
    EXPECT_TRUE(jtkParseRunOptions({"uxtest"}, fromEnvironment).options.record);
    EXPECT_FALSE(jtkParseRunOptions({"uxtest", "--jtk-ci"}, none).options.record);
}

TEST(RunnerOptionsValues, argumentsWinOverTheEnvironment) {
    auto result = jtkParseRunOptions({"--jtk-shard-index=0", "--jtk-filter=testA"}, [](const char* name) {
        std::map<std::string, std::string> environment{
            {"JTK_SHARD_INDEX", "1"}, {"JTK_SHARD_COUNT", "4"}, {"JTK_OPTIONS", "--jtk-filter=testB --jtk-ci"}};
        auto found = environment.find(name);
        return found == environment.end() ? std::nullopt : std::optional<std::string>(found->second);
    });
    EXPECT_TRUE(result.errors.empty());
    EXPECT_EQ(result.options.shardIndex, 0);
    EXPECT_EQ(result.options.shardCount, 4);
    EXPECT_EQ(result.options.filter, "testA");
    EXPECT_TRUE(result.options.ci && result.options.strict);
}

TEST(RunnerJUnit, statesAndTextsThatXmlCannotHoldAsTheyAre) {
    std::vector<JTKTestResult> tests(4);
    for (auto [test, name] : {std::pair{0, "testPassed"}, {1, "testFailed"}, {2, "testRunning"}, {3, "testLater"}})
        tests[test].name = name;
    tests[0].file = "a.cpp";
    tests[0].line = 3;
    tests[0].status = JTKTestStatus::passed;
    tests[0].seconds = 1.25;
    tests[1].status = JTKTestStatus::failed;
    tests[1].failure = "check failed: JTK_CHECK_EQ(a, \"<b>\")";
    tests[1].failureDetail = "left:  \"x&y\"\nright: \"\x01\"";
    tests[1].attachments = {"/r/testFailed/window-1.png"};
    tests[2].status = JTKTestStatus::running;
    auto xml = jtkJUnitXml("App \"1\"", tests, 3.5, "2026-01-02T03:04:05");
    for (const char* piece :
         {"<testsuite name=\"App &quot;1&quot;\" tests=\"4\" failures=\"1\" errors=\"1\" skipped=\"1\" time=\"3.500\"",
          "<testcase name=\"testPassed\" classname=\"App &quot;1&quot;\" time=\"1.250\" file=\"a.cpp\" line=\"3\"/>",
          "<failure message=\"check failed: JTK_CHECK_EQ(a, &quot;&lt;b&gt;&quot;)\">left:  &quot;x&amp;y&quot;\nright: "
          "&quot;?&quot;</failure>", "[[ATTACHMENT|/r/testFailed/window-1.png]]",
          "<error message=\"the run ended while this test was running\"/>", "<skipped message=\"not run\"/>"})
        EXPECT_NE(xml.find(piece), std::string::npos) << piece << "\n" << xml;
}

}  // namespace
