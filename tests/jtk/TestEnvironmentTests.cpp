// The data environment of a run: the Application Support folder moved aside,
// filled with test data and put back; a folder left by an interrupted run;
// test user defaults. XDG_DATA_HOME and XDG_CONFIG_HOME point into a fresh
// temporary folder for every test.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/UserDefaults.h"
#include "tests/support/TestFiles.h"

using namespace jtk;
using namespace testsupport;
using Files = std::vector<std::string>;

namespace {

// Every file below folder as "relative/path=content", sorted.
Files contents(const fs::path& folder) {
    Files entries;
    if (fs::exists(folder))
        for (const auto& entry : fs::recursive_directory_iterator(folder))
            if (entry.is_regular_file())
                entries.push_back(fs::relative(entry.path(), folder).string() + "=" + readFile(entry.path()));
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::string stdoutOf(void (*work)()) {
    testing::internal::CaptureStdout();
    work();
    return testing::internal::GetCapturedStdout();
}

class DataEnvironment : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(testData);
        JTKTestSuite::setJtkTestDataURL(testData);
    }
    void TearDown() override {
        JTKTestSuite::setJtkTestDataURL(std::nullopt);
        JTKTestSuite::setJtkTestUserDefaultsURL(std::nullopt);
        platform::resetStandardUserDefaults();
    }
    static std::string copy() { return stdoutOf(JTKTestSuite::copyTestDataToApplicationSupport); }
    static std::string restore() { return stdoutOf(JTKTestSuite::restoreApplicationSupportData); }

    ScratchFolder scratch;
    fs::path root = scratch.path, testData = root / "testdata";
    ScopedEnvironment dataHome{"XDG_DATA_HOME", (root / "data").c_str()};
    ScopedEnvironment configHome{"XDG_CONFIG_HOME", (root / "config").c_str()};
    std::string name = platform::sharedApplication()->name();
    fs::path appSupport = root / "data" / name, temp = root / "data" / (name + "_Temp");
};

const std::string restoring = "Restoring Application Support Data\n";

TEST_F(DataEnvironment, testDataReplacesTheUsersDataUntilTheRestore) {
    EXPECT_EQ(JTKTestSuite::appSupportURL(), appSupport);
    EXPECT_EQ(JTKTestSuite::tempAppSupportURL(), temp);
    writeFile(appSupport / "user.txt", "mine");
    writeFile(appSupport / "settings" / "deep.txt", "deep");
    writeFile(testData / "sub" / "inner" / "a.txt", "A");
    writeFile(testData / ".hidden", "H");
    EXPECT_EQ(copy(), "");
    EXPECT_EQ(contents(appSupport), (Files{".hidden=H", "sub/inner/a.txt=A"}));
    EXPECT_EQ(contents(temp), (Files{"settings/deep.txt=deep", "user.txt=mine"}));
    writeFile(appSupport / "written-by-a-test.txt", "x");
    EXPECT_EQ(restore(), restoring);
    EXPECT_EQ(contents(appSupport), (Files{"settings/deep.txt=deep", "user.txt=mine"}));
    EXPECT_FALSE(fs::exists(temp));
    EXPECT_EQ(restore(), restoring) << "a second restore only prints";
    EXPECT_EQ(contents(appSupport), (Files{"settings/deep.txt=deep", "user.txt=mine"}));
}

// Where the data starts, what copying prints, and the folder after copying and after restoring.
struct EnvironmentCase {
    const char* label;
    Files userData, leftAside;  // the Application Support folder, the aside folder of an interrupted run
    std::optional<std::string> testDataFolder;
    std::string copyOutput;
    Files afterCopy, afterRestore;
    friend void PrintTo(const EnvironmentCase& c, std::ostream* out) { *out << c.label; }
};

class DataEnvironmentCases : public DataEnvironment, public testing::WithParamInterface<EnvironmentCase> {};

TEST_P(DataEnvironmentCases, putTheUsersDataBackWheneverItWasMoved) {
    const auto& given = GetParam();
    for (const auto& file : given.userData) writeFile(appSupport / file, "mine");
    for (const auto& file : given.leftAside) writeFile(temp / file, "mine");
    writeFile(testData / "a.txt", "A");
    JTKTestSuite::setJtkTestDataURL(given.testDataFolder ? std::optional(root / *given.testDataFolder) : std::nullopt);
    EXPECT_EQ(copy(), given.copyOutput);
    EXPECT_EQ(contents(appSupport), given.afterCopy);
    EXPECT_EQ(restore(), restoring);
    EXPECT_EQ(contents(appSupport), given.afterRestore);
    EXPECT_FALSE(fs::exists(temp));
}

INSTANTIATE_TEST_SUITE_P(
    Starts, DataEnvironmentCases,
    testing::Values(
        EnvironmentCase{"noUserFolderKeepsTheTestData", {}, {}, "testdata", "", {"a.txt=A"}, {"a.txt=A"}},
        EnvironmentCase{"missingTestDataFolderLeavesAnEmptyFolder", {"user.txt"}, {}, "no-such-folder",
                        "Test data folder path was supplied, but no folder exists\n", {}, {"user.txt=mine"}},
        EnvironmentCase{"noTestDataURLMovesNothing", {"user.txt"}, {}, std::nullopt, "", {"user.txt=mine"},
                        {"user.txt=mine"}},
        // The interrupted run left its test data in place and the user's data aside.
        EnvironmentCase{"interruptedRunIsRecovered", {"old.txt"}, {"user.txt"}, "testdata",
                        "Recovered Application Support data left by an interrupted run\n", {"a.txt=A"}, {"user.txt=mine"}}),
    [](const auto& info) { return std::string(info.param.label); });

TEST_F(DataEnvironment, anUncopyableItemEndsTheRunAfterRestoring) {
    GTEST_FLAG_SET(death_test_style, "fast");  // the child must see this fixture's folders
    writeFile(appSupport / "user.txt", "mine");
    ASSERT_EQ(mkfifo((testData / "pipe").c_str(), 0600), 0);  // not a file a copy can take
    EXPECT_EXIT(
        {
            if (!std::freopen((root / "out.txt").c_str(), "w", stdout)) std::_Exit(8);
            JTKTestSuite::copyTestDataToApplicationSupport();
            std::_Exit(7);
        },
        testing::ExitedWithCode(1), "JTK/JTKTestEnvironment: fatal stop");
    EXPECT_EQ(readFile(root / "out.txt"), "Could not copy the test data item " + (testData / "pipe").string() +
                                              ": it holds something that is neither a file, a folder nor a link"
                                              " - Testing cancelled\n" + restoring);
    EXPECT_EQ(contents(appSupport), Files{"user.txt=mine"});
    EXPECT_FALSE(fs::exists(temp));
}

TEST_F(DataEnvironment, userDefaultsFromAPropertyListAreAddedAndAnUnreadableOneStoresNothing) {
    auto& defaults = platform::standardUserDefaults();
    defaults.setObject(platform::Value("kept"), "gamma");
    defaults.setObject(platform::Value("old"), "alpha");
    defaults.synchronize();
    writeFile(root / "broken.plist", "<?xml version=\"1.0\"?><plist><dict><key>alpha</key><string>after");
    JTKTestSuite::setJtkTestUserDefaultsURL(root / "broken.plist");
    auto output = stdoutOf(JTKTestSuite::copyTestUserDefaultsToPrefs);
    EXPECT_NE(output.find("could not be read"), std::string::npos) << output;
    EXPECT_NE(output.find("broken.plist"), std::string::npos) << output;
    EXPECT_EQ(defaults.objectForKey("alpha"), platform::Value("old"));
    writeFile(root / "defaults.plist",
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict><key>alpha</key>"
              "<string>one</string><key>beta</key><integer>2</integer></dict></plist>\n");
    JTKTestSuite::setJtkTestUserDefaultsURL(root / "defaults.plist");
    JTKTestSuite::copyTestUserDefaultsToPrefs();
    auto& after = platform::standardUserDefaults();
    EXPECT_EQ(after.objectForKey("alpha"), platform::Value("one"));
    EXPECT_EQ(after.objectForKey("beta"), platform::Value(2));
    EXPECT_EQ(after.objectForKey("gamma"), platform::Value("kept"));
}

}  // namespace
