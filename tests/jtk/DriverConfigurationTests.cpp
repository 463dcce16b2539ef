// How the run driver reads the test extension: provider lookup, option
// merging, test order, registry order, launch arguments and folder tags.
#include <gtest/gtest.h>

#include "JTK/JTKRegistry.h"
#include "JTK/platform/Process.h"
#include "run/JTKRunConfiguration.h"
#include "tests/support/TestFiles.h"

using namespace jtk;

using platform::Value;
using platform::ValueDictionary;
using platform::ValueList;
using Names = std::vector<std::string>;

namespace {

JTKClassMethod method(const std::string& name, Value result = {}) {
    return {name, [result] { return result; }, "Extension.cpp", 0};
}

Value optionsFor(const std::string& test, ValueDictionary options) {
    return Value(ValueDictionary{{Value(test), Value(std::move(options))}});
}

TEST(DriverProviders, theFirstPrefixMatchInListOrderDecidesEvenWhenItsResultIsUnusable) {
    EXPECT_EQ(jtkTextProvider({method("testA"), method("jtkTestDataPathBackup", "/backup"), method("jtkTestDataPath", "/data")},
                              "jtkTestDataPath"),
              "/backup");
    EXPECT_EQ(jtkTextProvider({method("jtkTestDataPath", "/data"), method("jtkTestDataPathBackup", "/b")}, "jtkTestDataPath"),
              "/data");
    EXPECT_EQ(jtkTextProvider({method("myjtkTestDataPath", "/a"), method("JTKTestDataPath", "/b")}, "jtkTestDataPath"),
              std::nullopt)
        << "anchored and case-sensitive";
    EXPECT_EQ(jtkTextProvider({method("jtkTestDataPath", int64_t(3)), method("jtkTestDataPathOld", "/old")}, "jtkTestDataPath"),
              std::nullopt);
    const char* commands = "jtkLaunchShellCommands";
    EXPECT_EQ(jtkTextListProvider({method(commands, Value(ValueList{"a", "b"}))}, commands), (Names{"a", "b"}));
    EXPECT_TRUE(jtkTextListProvider({method(commands, Value(ValueList{"a", 1}))}, commands).empty());
    EXPECT_TRUE(jtkTextListProvider({method(commands, "echo")}, commands).empty());
}

TEST(DriverOptions, aLaterProviderReplacesATestsOptionsWhollyOtherTestsAccumulateAndUnusableResultsAddNothing) {
    JTKMethodList methods = {
        method("jtkTestOptions", optionsFor("testA", {{Value(int64_t(0)), Value(true)}, {Value(int64_t(1)), Value(4)}})),
        method("testA"),
        method("extrajtkTestOptions", optionsFor("testA", {{Value(int64_t(1)), Value(-2)}})),  // "contains" is enough
        method("jtkTestOptions2", optionsFor("testB", {{Value(int64_t(1)), Value(2)}})),
        method("jtkTestOptionsBad", Value("not options")),
    };
    auto merged = jtkMergeTestOptions(methods);
    EXPECT_EQ(merged["testA"].size(), 1u) << "skipScreenshots of the earlier provider is gone";
    EXPECT_EQ(jtkTestOrder(merged, "testA"), -2);
    EXPECT_EQ(jtkTestOrder(merged, "testB"), 2);
    EXPECT_EQ(jtkTestOptionsFromValue(Value(ValueDictionary{{Value(int64_t(3)), Value(ValueDictionary{})}})), std::nullopt);
}

TEST(DriverOptions, unknownOptionIsDroppedAloneAndNamed) {
    JTKMethodList methods = {
        method("jtkTestOptions", Value(ValueDictionary{
                                     {Value("testA"), Value(ValueDictionary{{Value(int64_t(7)), Value(true)},
                                                                            {Value(int64_t(1)), Value(4)}})},
                                     {Value("testB"), Value(ValueDictionary{{Value("order"), Value(2)}})},
                                     {Value("testC"), Value(ValueDictionary{{Value(int64_t(0)), Value(true)}})},
                                 }))};
    JTKTestOptions merged;
    EXPECT_EQ(testsupport::capturedStdout([&] { merged = jtkMergeTestOptions(methods); }),
              "Ignoring unknown option 7 of testA in jtkTestOptions\n"
              "Ignoring unknown option \"order\" of testB in jtkTestOptions\n");
    EXPECT_EQ(jtkTestOrder(merged, "testA"), 4);
    EXPECT_TRUE(merged.at("testB").empty());
    EXPECT_EQ(merged.at("testC").at(JTKTestOption::skipScreenshots), Value(true));
}

TEST(DriverOrder, stableAscendingWhereAnOrderThatIsNoIntegerCountsAsZero) {
    JTKMethodList methods;
    for (const char* name : {"testA", "jtkTestOptions", "testB", "testC", "testD", "testE", "testF", "notATest", "Test"})
        methods.push_back(method(name));
    JTKTestOptions options;
    options["testB"][JTKTestOption::order] = Value(-1);
    options["testC"][JTKTestOption::order] = Value(5);
    options["testD"][JTKTestOption::order] = Value("-9");
    options["testE"][JTKTestOption::order] = Value(-1);  // ties with testB: keeps list order
    options["testF"][JTKTestOption::order] = Value(-2.0);
    Names ordered;
    for (const auto& test : jtkOrderedTests(methods, options)) ordered.push_back(test.name);
    EXPECT_EQ(ordered, (Names{"testB", "testE", "testA", "testD", "testF", "testC"}));
}

TEST(DriverRegistry, ordersByFileThenLineAndRemovesByFile) {
    auto noResult = [] { return Value(); };
    JTKRegistry::add({"testLate", noResult, "zz-registry-b.cpp", 5});
    JTKRegistry::add({"testSecond", noResult, "zz-registry-a.cpp", 20});
    JTKRegistry::add({"testFirst", noResult, "zz-registry-a.cpp", 3});
    auto ours = [] {
        Names names;
        for (const auto& m : JTKRegistry::methods())
            if (m.file.starts_with("zz-registry-")) names.push_back(m.name);
        return names;
    };
    EXPECT_EQ(ours(), (Names{"testFirst", "testSecond", "testLate"}));
    removeRegisteredMethods("zz-registry-a.cpp");
    removeRegisteredMethods("zz-registry-b.cpp");
    EXPECT_TRUE(ours().empty());
}

TEST(DriverLaunch, uxtestAnywhereInAnArgumentMakesATestLaunch) {
    for (const char* argument : {"-uxtest", "uxtests", "--run-uxtest=1"})
        EXPECT_TRUE(platform::argumentsRequestTesting({"/bin/app", argument})) << argument;
    EXPECT_FALSE(platform::argumentsRequestTesting({"/bin/app", "UXTEST", "ux test", "-ux"}));
    EXPECT_FALSE(platform::argumentsRequestTesting({}));
}

// The system's version text has two components, so point releases of one
// system share their screenshots and another major release gets its own.
TEST(DriverTags, theVersionTagDropsTheLastComponentAndTheTestTagEveryTest) {
    const std::vector<std::pair<std::string, std::string>> versions{
        {"Version 14.2.1 (Build 23C71)", "142"}, {"Version 10.15.7 (Build 19H2)", "1015"},
        {"Version 13.0 (Build 22A380)", "13"},   {"Version 14.2", "14"},
        {"((Version 1.2.3 (x)", "12"},           {"", "unknown"},
        {"((", "unknown"}};
    for (const auto& [text, tag] : versions) EXPECT_EQ(jtkVersionTag(text), tag) << text;
    EXPECT_EQ(jtkTestTag("testLogin"), "Login");
    EXPECT_EQ(jtkTestTag("testContestEntry"), "ConEntry");
    EXPECT_EQ(jtkTestTag("testTest"), "Test");
}

}  // namespace
