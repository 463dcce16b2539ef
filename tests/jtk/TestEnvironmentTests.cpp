// The data environment of a run: the Application Support folder moved aside,
// filled with test data and put back; a folder left by an interrupted run;
// test user defaults. XDG_DATA_HOME and XDG_CONFIG_HOME point into a fresh
// temporary folder for every test.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <sstream>

#include "JTK/JTKTestSuite.h"
#include "JTK/platform/Application.h"
#include "JTK/platform/UserDefaults.h"
#include "run/JTKDataFolderLock.h"
#include "run/JTKFileTree.h"
#include "tests/support/TestFiles.h"

using namespace jtk;
using namespace testsupport;
using Strings = std::vector<std::string>;

namespace {

class DataEnvironment : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(root.empty());
        fs::create_directories(testData);
        JTKTestSuite::setJtkTestDataURL(testData);
    }

    void TearDown() override {
        JTKTestSuite::setJtkTestDataURL(std::nullopt);
        JTKTestSuite::setJtkTestUserDefaultsURL(std::nullopt);
        platform::resetStandardUserDefaults();
    }

    static Strings contents(const fs::path& folder) { return filesBelow(folder, true); }
    // The user's file and one test data file, for a child that sees this fixture's folders.
    void userAndTestDataForAChild() {
        GTEST_FLAG_SET(death_test_style, "fast");
        writeFile(appSupport / "user.txt", "mine");
        writeFile(testData / "a.txt", "A");
    }
    // Runs step in a child process as an ordinary user (nobody when the tests
    // run as root, who may ignore permissions); returns its standard output.
    template <class Step>
    std::string asAnOrdinaryUser(int status, Step step) {
        const uid_t nobody = 65534;
        for (const auto& entry : fs::recursive_directory_iterator(root))
            EXPECT_EQ(geteuid() == 0 ? lchown(entry.path().c_str(), nobody, nobody) : 0, 0);
        EXPECT_EQ(geteuid() == 0 ? chown(root.c_str(), nobody, nobody) : 0, 0);
        EXPECT_EXIT(
            {
                if (geteuid() == 0 && (setgid(nobody) != 0 || setuid(nobody) != 0)) std::_Exit(8);
                if (!std::freopen((root / "out.txt").c_str(), "w", stdout)) std::_Exit(9);
                step();
                std::_Exit(0);
            },
            testing::ExitedWithCode(status), "");
        return readFile(root / "out.txt");
    }
    std::string copyCapturingOutput() { return capturedStdout(JTKTestSuite::copyTestDataToApplicationSupport); }
    std::string restoreCapturingOutput() { return capturedStdout(JTKTestSuite::restoreApplicationSupportData); }

    ScratchFolder scratch;
    fs::path root = scratch.path;
    ScopedEnvironment data{"XDG_DATA_HOME", (root / "data").c_str()}, config{"XDG_CONFIG_HOME", (root / "config").c_str()};
    fs::path appSupport = root / "data" / platform::sharedApplication()->name();
    fs::path temp = root / "data" / (platform::sharedApplication()->name() + "_Temp");
    fs::path testData = root / "testdata";
};

}  // namespace

// The user's folder (when there is one) and a test data folder copied in, or
// copied again, and put back by one or two restores. A test writes a file
// between the steps where it marks so; "TEMP" in the copy's output stands for
// the aside folder.
struct Flow {
    const char* name;
    bool userFolder;
    const char* dataFolder;  // below the scratch folder; nullptr: no test data URL
    int copies, restores;
    bool testWrites;
    std::string copyOutput;
    Strings afterCopy, asideAfterCopy, afterRestore;
};

const Strings user{"settings/deep.txt=deep", "user.txt=mine"}, test{".hidden=H", "sub/inner/a.txt=A", "top.txt=T"};

class DataFlow : public DataEnvironment, public testing::WithParamInterface<Flow> {};

TEST_P(DataFlow, putsTheUsersDataBack) {
    const Flow& flow = GetParam();
    if (flow.userFolder) writeFile(appSupport / "user.txt", "mine"), writeFile(appSupport / "settings" / "deep.txt", "deep");
    for (auto [file, text] : {std::pair{"sub/inner/a.txt", "A"}, {".hidden", "H"}, {"top.txt", "T"}}) writeFile(testData / file, text);
    JTKTestSuite::setJtkTestDataURL(flow.dataFolder ? std::optional(root / flow.dataFolder) : std::nullopt);
    std::string output;
    for (int copy = 0; copy < flow.copies; ++copy) {
        if (copy > 0 && flow.testWrites) writeFile(appSupport / "written-by-a-test.txt", "x");
        output = copyCapturingOutput();
    }
    auto expected = flow.copyOutput;
    if (auto at = expected.find("TEMP"); at != std::string::npos) expected.replace(at, 4, temp.string());
    EXPECT_EQ(output, expected);
    EXPECT_EQ(contents(appSupport), flow.afterCopy);
    EXPECT_EQ(contents(temp), flow.asideAfterCopy);
    if (flow.testWrites) writeFile(appSupport / "written-by-a-test.txt", "x");
    for (int restore = 0; restore < flow.restores; ++restore)
        EXPECT_EQ(restoreCapturingOutput(), "Restoring Application Support Data\n") << "restore " << restore;
    EXPECT_EQ(contents(appSupport), flow.afterRestore);
    EXPECT_FALSE(fs::exists(temp));
}

INSTANTIATE_TEST_SUITE_P(
    Flows, DataFlow,
    testing::Values(Flow{"testDataReplacesTheUsersUntilTheRestoreASecondOnlyPrints", true, "testdata", 1, 2, true, "", test,
                         user, user},
                    Flow{"withoutAFolderTheTestDataStays", false, "testdata", 1, 1, false, "", test, {}, test},
                    Flow{"missingTestDataLeavesAnEmptyFolder", true, "no-such-folder", 1, 1, false,
                         "Test data folder path was supplied, but no folder exists\n", {}, user, user},
                    Flow{"withoutATestDataURLNothingMoves", true, nullptr, 1, 0, false, "", user, {}, user},
                    Flow{"copyingAgainReplacesOnlyTheTestData", true, "testdata", 2, 1, true,
                         "Copying the test data in again; the Application Support data stays aside at TEMP\n", test, user,
                         user}),
    [](const testing::TestParamInfo<Flow>& info) { return std::string(info.param.name); });

TEST_F(DataEnvironment, copiedTestDataKeepsTimesPermissionsAndLinks) {
    writeFile(testData / "folder" / "file.txt", "F");
    writeFile(testData / "locked" / "inner.txt", "I");
    fs::create_symlink("folder/file.txt", testData / "link");
    fs::permissions(testData / "folder" / "file.txt", fs::perms(0640));
    fs::permissions(testData / "locked" / "inner.txt", fs::perms(0400));
    fs::permissions(testData / "locked", fs::perms(0500));  // a read-only folder is filled before it is locked
    auto past = fs::file_time_type::clock::now() - std::chrono::hours(24 * 400);
    for (const char* item : {"folder/file.txt", "folder", "locked/inner.txt"})
        fs::last_write_time(testData / item, past - std::chrono::minutes(std::strlen(item)));
    copyCapturingOutput();
    for (const char* item : {"folder/file.txt", "folder", "locked/inner.txt", "locked"}) {
        EXPECT_EQ(fs::symlink_status(appSupport / item).permissions(), fs::symlink_status(testData / item).permissions()) << item;
        EXPECT_EQ(fs::last_write_time(appSupport / item), fs::last_write_time(testData / item)) << item;
    }
    EXPECT_EQ(fs::read_symlink(appSupport / "link"), "folder/file.txt");
    restoreCapturingOutput();
}

TEST_F(DataEnvironment, readOnlyFoldersATestLeavesDoNotKeepTheUsersDataAside) {
    userAndTestDataForAChild();
    EXPECT_EQ(asAnOrdinaryUser(0, [&] {
                  JTKTestSuite::copyTestDataToApplicationSupport();
                  writeFile(appSupport / "locked" / "deeper" / "made-by-a-test.txt", "x");
                  for (const char* folder : {"locked/deeper", "locked"}) chmod((appSupport / folder).c_str(), 0500);
                  JTKTestSuite::restoreApplicationSupportData();
              }),
              "Restoring Application Support Data\n");
    EXPECT_EQ(contents(appSupport), Strings{"user.txt=mine"});
    EXPECT_EQ(namesIn(root / "data"), Strings{platform::sharedApplication()->name()}) << "nothing beside it";
}

// A lock file its user may not write (as a run started as root and killed
// leaves it) is locked all the same; one it may not read stops the run, which
// says where the data waits.
TEST_F(DataEnvironment, aLockFileOfAnotherUserNeitherBlocksTheRunNorHidesTheData) {
    userAndTestDataForAChild();
    asAnOrdinaryUser(0, JTKTestSuite::copyTestDataToApplicationSupport);  // and killed: the data stays aside
    auto lock = jtkLockFileFor(appSupport);
    fs::permissions(lock, fs::perms::none);
    EXPECT_EQ(asAnOrdinaryUser(1, JTKTestSuite::copyTestDataToApplicationSupport),
              "Could not make sure that no other test run uses " + appSupport.string() + ": cannot lock " + lock.string() +
                  ": Permission denied. Nothing was changed: your Application Support data, put aside by a run that did not "
                  "end, is waiting at " + temp.string() + ". If no test run is under way, remove " + lock.string() +
                  " and start again - Testing cancelled\n");
    fs::permissions(lock, fs::perms(0444));
    asAnOrdinaryUser(0, [] { JTKTestSuite::copyTestDataToApplicationSupport(), JTKTestSuite::restoreApplicationSupportData(); });
    EXPECT_EQ(contents(appSupport), Strings{"user.txt=mine"});
    EXPECT_FALSE(jtkExistsAt(lock));
}

// A busy lock names its holder only when the lock file names a live process
// of this PID namespace that started when the file says.
TEST_F(DataEnvironment, aBusyLockNamesOnlyAHolderThatIsThere) {
    auto lock = jtkLockFileFor(appSupport), other = root / "data" / "Other";
    ASSERT_EQ(jtkLockDataFolder(appSupport).outcome, JTKDataFolderLock::Outcome::held);
    std::string record = readFile(lock), pid, space, start, unknown = "an unknown process";
    std::istringstream(record) >> pid >> space >> start;
    jtkLockDataFolder(other);  // lets the first go; its file stays, held by another open file below
    int holder = open(lock.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(holder, LOCK_EX | LOCK_NB), 0);
    for (const auto& [written, named] : {std::pair{record, "process " + std::to_string(getpid())}, {"2 " + space + "1 " + start, unknown},
                                         {pid + " " + space + " 1" + start, unknown}, {std::string("2\n"), unknown}}) {
        writeFile(lock, written);  // as written, from another PID namespace, a process id in use again, no namespace
        EXPECT_EQ(jtkLockDataFolder(appSupport).detail, named) << written;
    }
    close(holder), jtkReleaseDataFolderLock(other);
}

// A sparse file is copied with its holes; a stop ends a large file's copy early.
TEST_F(DataEnvironment, copiesKeepHolesAndStopWithinALargeFile) {
    auto sparse = testData / "sparse", copy = root / "copy", large = testData / "large", partial = root / "partial";
    writeFile(sparse, "head");
    std::fstream(sparse, std::ios::in | std::ios::out | std::ios::binary).seekp(1 << 29) << "middle";
    fs::resize_file(sparse, 1 << 30);
    ASSERT_EQ(jtkCopyTree(sparse, copy), std::error_code());
    struct stat from {}, to {};
    ASSERT_EQ(stat(sparse.c_str(), &from) | stat(copy.c_str(), &to), 0);
    EXPECT_EQ(to.st_size, from.st_size);
    EXPECT_LE(to.st_blocks, from.st_blocks + 64) << "blocks of 512 bytes";
    writeFile(large, std::string(12 << 20, 'x'));
    auto started = [&] { return fs::exists(partial) && fs::file_size(partial) > 0; };
    EXPECT_EQ(jtkCopyTree(large, partial, started), std::make_error_code(std::errc::operation_canceled));
    EXPECT_LT(fs::file_size(partial), fs::file_size(large));
}

// The end of a run cannot put the user's data back (a copy replaced the
// folder it put aside): one line says where it is, and the status is 1.
TEST_F(DataEnvironment, aFailedRestoreSaysWhereTheDataIsAndEndsWithAFailure) {
    userAndTestDataForAChild();
    auto output = asAnOrdinaryUser(1, [&] {
        JTKTestSuite::copyTestDataToApplicationSupport();
        fs::copy(temp, root / "copy", fs::copy_options::recursive), fs::remove_all(temp), fs::rename(root / "copy", temp);
        JTKTestSuite::endTests();
    });
    EXPECT_EQ(output, "Restoring Application Support Data\nCould not put the Application Support data back: " + temp.string() +
                          " is no longer the folder this run moved aside, so it was left as it is; " + appSupport.string() +
                          " holds the test data. Look for your data at " + temp.string() + "\n");
    EXPECT_EQ(contents(temp), Strings{"user.txt=mine"});
}

TEST_F(DataEnvironment, uncopyableItemEndsTheRunAfterRestoring) {
    userAndTestDataForAChild();
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
    EXPECT_EQ(contents(appSupport), Strings{"user.txt=mine"});
    EXPECT_FALSE(fs::exists(temp));
}

// Test defaults are stored over the user's; an unreadable file stores nothing.
TEST_F(DataEnvironment, userDefaultsFromAPropertyListAndNothingFromAnUnreadableOne) {
    auto& defaults = platform::standardUserDefaults();
    defaults.setObject(platform::Value("kept"), "gamma");
    defaults.setObject(platform::Value("old"), "alpha");
    defaults.synchronize();
    writeFile(root / "defaults.plist", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict><key>alpha</key>"
                                       "<string>one</string><key>beta</key><integer>2</integer></dict></plist>\n");
    JTKTestSuite::setJtkTestUserDefaultsURL(root / "defaults.plist");
    JTKTestSuite::copyTestUserDefaultsToPrefs();
    auto& after = platform::standardUserDefaults();
    EXPECT_EQ(after.objectForKey("alpha"), platform::Value("one"));
    EXPECT_EQ(after.objectForKey("beta"), platform::Value(2));
    EXPECT_EQ(after.objectForKey("gamma"), platform::Value("kept"));

    writeFile(root / "broken.plist", "<?xml version=\"1.0\"?><plist><dict><key>alpha</key><string>after");
    JTKTestSuite::setJtkTestUserDefaultsURL(root / "broken.plist");
    auto output = capturedStdout(JTKTestSuite::copyTestUserDefaultsToPrefs);
    EXPECT_NE(output.find("could not be read"), std::string::npos) << output;
    EXPECT_NE(output.find("broken.plist"), std::string::npos) << output;
    EXPECT_EQ(platform::standardUserDefaults().objectForKey("alpha"), platform::Value("one"));
}
