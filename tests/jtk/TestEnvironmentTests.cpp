// The data environment of a run: the Application Support folder moved aside,
// filled with test data and put back; a folder left by an interrupted run;
// test user defaults. XDG_DATA_HOME and XDG_CONFIG_HOME point into a fresh
// temporary folder for every test.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/UserDefaults.h"

using namespace jtk;

namespace fs = std::filesystem;

namespace {

void writeFile(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << text;
}

std::string readFile(const fs::path& path) {
    std::ifstream in(path);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Every file below folder as "relative/path=content", sorted.
std::vector<std::string> contents(const fs::path& folder) {
    std::vector<std::string> entries;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            entries.push_back(fs::relative(entry.path(), folder).string() + "=" + readFile(entry.path()));
        }
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

class DataEnvironment : public testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/jtk-environment-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        root = pattern;
        for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME"}) {
            const char* value = std::getenv(name);
            saved.emplace_back(name, value ? std::optional<std::string>(value) : std::nullopt);
        }
        setenv("XDG_DATA_HOME", (root / "data").c_str(), 1);
        setenv("XDG_CONFIG_HOME", (root / "config").c_str(), 1);
        appSupport = root / "data" / platform::sharedApplication()->name();
        temp = root / "data" / (platform::sharedApplication()->name() + "_Temp");
        testData = root / "testdata";
        fs::create_directories(testData);
        JTKTestSuite::setJtkTestDataURL(testData);
    }

    void TearDown() override {
        JTKTestSuite::setJtkTestDataURL(std::nullopt);
        JTKTestSuite::setJtkTestUserDefaultsURL(std::nullopt);
        platform::resetStandardUserDefaults();
        for (const auto& [name, value] : saved) {
            if (value) {
                setenv(name.c_str(), value->c_str(), 1);
            } else {
                unsetenv(name.c_str());
            }
        }
        std::error_code error;
        fs::remove_all(root, error);
    }

    std::string copyCapturingOutput() {
        testing::internal::CaptureStdout();
        JTKTestSuite::copyTestDataToApplicationSupport();
        return testing::internal::GetCapturedStdout();
    }

    std::string restoreCapturingOutput() {
        testing::internal::CaptureStdout();
        JTKTestSuite::restoreApplicationSupportData();
        return testing::internal::GetCapturedStdout();
    }

    fs::path root, appSupport, temp, testData;
    std::vector<std::pair<std::string, std::optional<std::string>>> saved;
};

}  // namespace

TEST_F(DataEnvironment, testDataReplacesTheUsersDataUntilTheRestore) {
    EXPECT_EQ(JTKTestSuite::appSupportURL(), appSupport);
    EXPECT_EQ(JTKTestSuite::tempAppSupportURL(), temp);
    writeFile(appSupport / "user.txt", "mine");
    writeFile(appSupport / "settings" / "deep.txt", "deep");
    writeFile(testData / "sub" / "inner" / "a.txt", "A");
    writeFile(testData / ".hidden", "H");
    writeFile(testData / "top.txt", "T");

    EXPECT_EQ(copyCapturingOutput(), "");
    EXPECT_EQ(contents(appSupport), (std::vector<std::string>{".hidden=H", "sub/inner/a.txt=A", "top.txt=T"}));
    EXPECT_EQ(contents(temp), (std::vector<std::string>{"settings/deep.txt=deep", "user.txt=mine"}));

    writeFile(appSupport / "written-by-a-test.txt", "x");
    EXPECT_EQ(restoreCapturingOutput(), "Restoring Application Support Data\n");
    EXPECT_EQ(contents(appSupport), (std::vector<std::string>{"settings/deep.txt=deep", "user.txt=mine"}));
    EXPECT_FALSE(fs::exists(temp));
    EXPECT_EQ(restoreCapturingOutput(), "Restoring Application Support Data\n") << "a second restore only prints";
    EXPECT_EQ(contents(appSupport), (std::vector<std::string>{"settings/deep.txt=deep", "user.txt=mine"}));
}

TEST_F(DataEnvironment, applicationWithoutAFolderKeepsTheTestDataAfterTheRestore) {
    writeFile(testData / "a.txt", "A");
    EXPECT_EQ(copyCapturingOutput(), "");
    EXPECT_EQ(contents(appSupport), std::vector<std::string>{"a.txt=A"});
    EXPECT_FALSE(fs::exists(temp));
    EXPECT_EQ(restoreCapturingOutput(), "Restoring Application Support Data\n");
    EXPECT_EQ(contents(appSupport), std::vector<std::string>{"a.txt=A"});
}

TEST_F(DataEnvironment, missingTestDataFolderLeavesAnEmptyFolder) {
    writeFile(appSupport / "user.txt", "mine");
    JTKTestSuite::setJtkTestDataURL(root / "no-such-folder");
    EXPECT_EQ(copyCapturingOutput(), "Test data folder path was supplied, but no folder exists\n");
    EXPECT_TRUE(fs::is_directory(appSupport));
    EXPECT_TRUE(fs::is_empty(appSupport));
    restoreCapturingOutput();
    EXPECT_EQ(contents(appSupport), std::vector<std::string>{"user.txt=mine"});
}

TEST_F(DataEnvironment, withoutATestDataURLNothingMoves) {
    writeFile(appSupport / "user.txt", "mine");
    JTKTestSuite::setJtkTestDataURL(std::nullopt);
    EXPECT_EQ(copyCapturingOutput(), "");
    EXPECT_EQ(contents(appSupport), std::vector<std::string>{"user.txt=mine"});
    EXPECT_FALSE(fs::exists(temp));
}

TEST_F(DataEnvironment, dataLeftByAnInterruptedRunIsRecoveredNotDeleted) {
    // An interrupted run left its test data in place and the user's data aside.
    writeFile(appSupport / "old-test-data.txt", "old");
    writeFile(temp / "user.txt", "mine");
    writeFile(testData / "a.txt", "A");
    EXPECT_EQ(copyCapturingOutput(), "Recovered Application Support data left by an interrupted run\n");
    EXPECT_EQ(contents(appSupport), std::vector<std::string>{"a.txt=A"});
    EXPECT_EQ(contents(temp), std::vector<std::string>{"user.txt=mine"});
    restoreCapturingOutput();
    EXPECT_EQ(contents(appSupport), std::vector<std::string>{"user.txt=mine"});
    EXPECT_FALSE(fs::exists(temp));
}

TEST_F(DataEnvironment, uncopyableItemEndsTheRunAfterRestoring) {
    GTEST_FLAG_SET(death_test_style, "fast");  // the child must see this fixture's folders
    writeFile(appSupport / "user.txt", "mine");
    writeFile(testData / "a.txt", "A");
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
                                              " - Testing cancelled\nRestoring Application Support Data\n");
    EXPECT_EQ(contents(appSupport), std::vector<std::string>{"user.txt=mine"});
    EXPECT_FALSE(fs::exists(temp));
}

TEST_F(DataEnvironment, userDefaultsFromAPropertyList) {
    auto& defaults = platform::standardUserDefaults();
    defaults.setObject(platform::Value("kept"), "gamma");
    defaults.setObject(platform::Value("old"), "alpha");
    defaults.synchronize();
    writeFile(root / "defaults.plist",
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<plist version=\"1.0\"><dict><key>alpha</key><string>one</string>"
              "<key>beta</key><integer>2</integer></dict></plist>\n");
    JTKTestSuite::setJtkTestUserDefaultsURL(root / "defaults.plist");
    JTKTestSuite::copyTestUserDefaultsToPrefs();
    auto& after = platform::standardUserDefaults();
    EXPECT_EQ(after.objectForKey("alpha"), platform::Value("one"));
    EXPECT_EQ(after.objectForKey("beta"), platform::Value(2));
    EXPECT_EQ(after.objectForKey("gamma"), platform::Value("kept"));
}

TEST_F(DataEnvironment, unreadableUserDefaultsStoreNothing) {
    auto& defaults = platform::standardUserDefaults();
    defaults.setObject(platform::Value("before"), "alpha");
    writeFile(root / "broken.plist", "<?xml version=\"1.0\"?><plist><dict><key>alpha</key><string>after");
    JTKTestSuite::setJtkTestUserDefaultsURL(root / "broken.plist");
    testing::internal::CaptureStdout();
    JTKTestSuite::copyTestUserDefaultsToPrefs();
    auto output = testing::internal::GetCapturedStdout();
    EXPECT_NE(output.find("could not be read"), std::string::npos) << output;
    EXPECT_NE(output.find("broken.plist"), std::string::npos) << output;
    EXPECT_EQ(platform::standardUserDefaults().objectForKey("alpha"), platform::Value("before"));
}
