// How the run driver reads the test extension: provider lookup, option
// merging, test order, registry order, launch arguments and folder tags.
#include <gtest/gtest.h>

#include "JTK/JTKRegistry.h"
#include "run/JTKRunConfiguration.h"

using namespace jtk;

using platform::Value;
using platform::ValueDictionary;

namespace {

JTKClassMethod method(const std::string& name, Value result = {}) {
    return {name, [result] { return result; }, "Extension.cpp", 0};
}

std::vector<std::string> names(const JTKMethodList& methods) {
    std::vector<std::string> result;
    for (const auto& m : methods) result.push_back(m.name);
    return result;
}

Value optionsFor(const std::string& test, ValueDictionary options) {
    return Value(ValueDictionary{{Value(test), Value(std::move(options))}});
}

}  // namespace

TEST(DriverProviders, firstPrefixMatchInListOrderWins) {
    JTKMethodList backupFirst = {method("testA"), method("jtkTestDataPathBackup", "/backup"),
                                 method("jtkTestDataPath", "/data")};
    EXPECT_EQ(jtkTextProvider(backupFirst, "jtkTestDataPath"), "/backup");
    JTKMethodList plainFirst = {method("jtkTestDataPath", "/data"), method("jtkTestDataPathBackup", "/backup")};
    EXPECT_EQ(jtkTextProvider(plainFirst, "jtkTestDataPath"), "/data");
}

TEST(DriverProviders, prefixTestIsCaseSensitiveAndAnchored) {
    JTKMethodList methods = {method("myjtkTestDataPath", "/a"), method("JTKTestDataPath", "/b")};
    EXPECT_EQ(jtkTextProvider(methods, "jtkTestDataPath"), std::nullopt);
}

TEST(DriverProviders, resultOfAnotherTypeIsIgnored) {
    // The first match decides even when its result is unusable: a later good one is not consulted.
    JTKMethodList methods = {method("jtkTestDataPath", int64_t(3)), method("jtkTestDataPathOld", "/old")};
    EXPECT_EQ(jtkTextProvider(methods, "jtkTestDataPath"), std::nullopt);
    EXPECT_EQ(jtkTextProvider({method("jtkTestDataPath")}, "jtkTestDataPath"), std::nullopt);
}

TEST(DriverProviders, commandListsMustHoldOnlyTexts) {
    EXPECT_EQ(jtkTextListProvider({method("jtkLaunchShellCommands", Value(platform::ValueList{"a", "b"}))},
                                  "jtkLaunchShellCommands"),
              (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(jtkTextListProvider({method("jtkLaunchShellCommands", Value(platform::ValueList{"a", 1}))},
                                    "jtkLaunchShellCommands")
                    .empty());
    EXPECT_TRUE(jtkTextListProvider({method("jtkLaunchShellCommands", "echo")}, "jtkLaunchShellCommands").empty());
    EXPECT_TRUE(jtkTextListProvider({}, "jtkLaunchShellCommands").empty());
}

TEST(DriverOptions, laterProviderReplacesATestsOptionsWholly) {
    JTKMethodList methods = {
        method("jtkTestOptions", optionsFor("testA", {{Value(int64_t(0)), Value(true)}, {Value(int64_t(1)), Value(4)}})),
        method("testA"),
        // Found by "contains", not "begins with".
        method("extrajtkTestOptions", optionsFor("testA", {{Value(int64_t(1)), Value(-2)}})),
    };
    auto merged = jtkMergeTestOptions(methods);
    ASSERT_EQ(merged.count("testA"), 1u);
    EXPECT_EQ(merged["testA"].size(), 1u) << "skipScreenshots of the earlier provider must be gone";
    EXPECT_EQ(merged["testA"][JTKTestOption::order], Value(-2));
}

TEST(DriverOptions, entriesOfDifferentTestsAccumulate) {
    JTKMethodList methods = {method("jtkTestOptions", optionsFor("testA", {{Value(int64_t(1)), Value(1)}})),
                             method("jtkTestOptions2", optionsFor("testB", {{Value(int64_t(1)), Value(2)}}))};
    auto merged = jtkMergeTestOptions(methods);
    EXPECT_EQ(jtkTestOrder(merged, "testA"), 1);
    EXPECT_EQ(jtkTestOrder(merged, "testB"), 2);
}

TEST(DriverOptions, resultOfAnotherShapeCountsAsEmpty) {
    EXPECT_EQ(jtkTestOptionsFromValue(Value("x")), std::nullopt);
    EXPECT_EQ(jtkTestOptionsFromValue(Value(ValueDictionary{{Value(int64_t(3)), Value(ValueDictionary{})}})),
              std::nullopt);
    JTKMethodList methods = {method("jtkTestOptions", optionsFor("testA", {{Value(int64_t(1)), Value(3)}})),
                             method("jtkTestOptionsBad", Value("not options"))};
    EXPECT_EQ(jtkTestOrder(jtkMergeTestOptions(methods), "testA"), 3) << "an unusable result adds nothing";
}

TEST(DriverOptions, unknownOptionIsDroppedAloneAndNamed) {
    JTKMethodList methods = {
        method("jtkTestOptions", Value(ValueDictionary{
                                     {Value("testA"), Value(ValueDictionary{{Value(int64_t(7)), Value(true)},
                                                                            {Value(int64_t(1)), Value(4)}})},
                                     {Value("testB"), Value(ValueDictionary{{Value("order"), Value(2)}})},
                                     {Value("testC"), Value(ValueDictionary{{Value(int64_t(0)), Value(true)}})},
                                 }))};
    testing::internal::CaptureStdout();
    auto merged = jtkMergeTestOptions(methods);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Ignoring unknown option 7 of testA in jtkTestOptions\n"
              "Ignoring unknown option \"order\" of testB in jtkTestOptions\n");
    EXPECT_EQ(jtkTestOrder(merged, "testA"), 4);
    EXPECT_TRUE(merged.at("testB").empty());
    EXPECT_EQ(merged.at("testC").at(JTKTestOption::skipScreenshots), Value(true));
}

TEST(DriverOrder, stableAscendingWithNegativePositiveAndTextValues) {
    JTKMethodList methods = {method("testA"), method("jtkTestOptions"), method("testB"), method("testC"),
                             method("testD"), method("testE"), method("notATest"), method("Test")};
    JTKTestOptions options;
    options["testB"][JTKTestOption::order] = Value(-1);
    options["testC"][JTKTestOption::order] = Value(5);
    options["testD"][JTKTestOption::order] = Value("-9");  // text: sorted as 0
    options["testE"][JTKTestOption::order] = Value(-1);    // same key as testB: keeps list order
    EXPECT_EQ(names(jtkOrderedTests(methods, options)),
              (std::vector<std::string>{"testB", "testE", "testA", "testD", "testC"}));
}

TEST(DriverOrder, booleanOrRealOrderCountsAsZero) {
    JTKTestOptions options;
    options["testB"][JTKTestOption::order] = Value(true);
    options["testC"][JTKTestOption::order] = Value(-2.0);
    EXPECT_EQ(names(jtkOrderedTests({method("testA"), method("testB"), method("testC")}, options)),
              (std::vector<std::string>{"testA", "testB", "testC"}));
}

TEST(DriverRegistry, ordersByFileThenLineAndRemovesByFile) {
    auto noResult = [] { return Value(); };
    JTKRegistry::add({"testLate", noResult, "zz-driver-registry-b.cpp", 5});
    JTKRegistry::add({"testSecond", noResult, "zz-driver-registry-a.cpp", 20});
    JTKRegistry::add({"testFirst", noResult, "zz-driver-registry-a.cpp", 3});
    std::vector<std::string> ours;
    for (const auto& m : JTKRegistry::methods()) {
        if (m.file.starts_with("zz-driver-registry-")) ours.push_back(m.name);
    }
    EXPECT_EQ(ours, (std::vector<std::string>{"testFirst", "testSecond", "testLate"}));
    removeRegisteredMethods("zz-driver-registry-a.cpp");
    removeRegisteredMethods("zz-driver-registry-b.cpp");
    for (const auto& m : JTKRegistry::methods()) EXPECT_FALSE(m.file.starts_with("zz-driver-registry-"));
}

TEST(DriverLaunch, uxtestAnywhereInAnArgumentMakesATestLaunch) {
    for (const char* argument : {"-uxtest", "uxtests", "--run-uxtest=1", "uxtest"}) {
        EXPECT_TRUE(jtkArgumentsRequestTesting({"/bin/app", argument})) << argument;
    }
    EXPECT_FALSE(jtkArgumentsRequestTesting({"/bin/app", "UXTEST", "ux test", "-ux"}));
    EXPECT_FALSE(jtkArgumentsRequestTesting({}));
}

TEST(DriverTags, versionTagDropsTheLastComponent) {
    EXPECT_EQ(jtkVersionTag("Version 14.2.1 (Build 23C71)"), "142");
    EXPECT_EQ(jtkVersionTag("Version 10.15.7 (Build 19H2)"), "1015");
    EXPECT_EQ(jtkVersionTag("Version 13.0 (Build 22A380)"), "13");
    EXPECT_EQ(jtkVersionTag("Version 14.2"), "14");
    EXPECT_EQ(jtkVersionTag("Version 12.8 (Build 6.1.0)"), "12");
    EXPECT_EQ(jtkVersionTag("((Version 1.2.3 (x)"), "12") << "empty pieces before the first are dropped";
    EXPECT_EQ(jtkVersionTag(""), "unknown");
    EXPECT_EQ(jtkVersionTag("(("), "unknown");
}

TEST(DriverTags, testTagRemovesEveryTest) {
    EXPECT_EQ(jtkTestTag("testLogin"), "Login");
    EXPECT_EQ(jtkTestTag("testContestEntry"), "ConEntry");
    EXPECT_EQ(jtkTestTag("testTest"), "Test");
}
