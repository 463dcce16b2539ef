// User defaults: the property-list file of the application's domain,
// unreadable or unwritable files, and property lists made by libplist.
#include <gtest/gtest.h>
#include <plist/plist.h>

#include <algorithm>
#include <chrono>

#include "JTK/services/UserDefaults.h"
#include "JTK/platform/UserDefaults.h"
#include "tests/support/TestFiles.h"

using namespace jtk;
using namespace testsupport;
using platform::Value;
using platform::ValueDictionary;
using platform::ValueList;

namespace {

// 2001-01-02 00:00:00 UTC (an XML property list keeps whole seconds only).
const platform::Date secondDayOf2001{std::chrono::system_clock::time_point(std::chrono::seconds(978307200 + 86400))};

// Every test gets its own configuration folder and application name; the real home is never touched.
class StandardUserDefaults : public testing::Test {
protected:
    void SetUp() override {
        services::setUserDefaultsApplicationName("ServicesTestApp");
        platform::resetStandardUserDefaults();
    }
    void TearDown() override { platform::resetStandardUserDefaults(); }
    std::string stderrOf(const std::function<void()>& work) {
        testing::internal::CaptureStderr();
        work();
        return testing::internal::GetCapturedStderr();
    }

    ScratchFolder scratch;
    ScopedEnvironment configHome{"XDG_CONFIG_HOME", (scratch.path / "config").c_str()};
    fs::path file = scratch.path / "config" / "ServicesTestApp" / "defaults.plist";
    platform::UserDefaults& defaults = platform::standardUserDefaults();
};

TEST_F(StandardUserDefaults, onlySynchronizeWritesTheFileWhichTheNextUseReadsBack) {
    const ValueDictionary values{{"flag", true}, {"big", int64_t{1} << 40}, {"ratio", 0.1}, {"name", "Grüße <&> \"q\""},
                                 {"nested", ValueDictionary{{"list", ValueList{1, "two"}}, {"empty", ValueList{}}}},
                                 // Dates and data keep their kinds through the file.
                                 {"when", secondDayOf2001}, {"blob", platform::Data{{0, 0xff}}}};
    for (const auto& [key, value] : values) defaults.setObject(value, *key.text());
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(services::standardUserDefaultsPath(), file);
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), fs::directory_iterator()), 1) << "no temporary";
    defaults.setObject("unsaved", "flag");
    platform::resetStandardUserDefaults();
    for (const auto& [key, value] : values) EXPECT_EQ(defaults.objectForKey(*key.text()), value) << key.debugText();
    defaults.removeObject("flag");
    defaults.setObject(Value(), "name");  // none removes as well
    ASSERT_TRUE(defaults.synchronize());
    platform::resetStandardUserDefaults();
    EXPECT_TRUE(defaults.objectForKey("flag").isNone());
    EXPECT_TRUE(defaults.objectForKey("name").isNone());
}

TEST_F(StandardUserDefaults, anUnreadableFileIsKeptAsideAndAFailedWriteKeepsTheValues) {
    writeFile(file, "this is not a property list");
    auto messages = stderrOf([&] {
        EXPECT_TRUE(defaults.objectForKey("anything").isNone());
        defaults.setObject("fresh", "value");
        EXPECT_TRUE(defaults.synchronize());
    });
    EXPECT_NE(messages.find("not a readable property-list dictionary"), std::string::npos) << messages;
    EXPECT_EQ(readFile(file.string() + ".unreadable"), "this is not a property list");
    writeFile(scratch.path / "blocker", "x");  // a file where the configuration folder should be
    ScopedEnvironment blocked("XDG_CONFIG_HOME", (scratch.path / "blocker").c_str());
    EXPECT_NE(stderrOf([&] { EXPECT_FALSE(defaults.synchronize()); }).find("cannot write"), std::string::npos);
    ScopedEnvironment noConfig("XDG_CONFIG_HOME", nullptr), noHome("HOME", nullptr);
    EXPECT_NE(stderrOf([&] { EXPECT_FALSE(defaults.synchronize()); }).find("no folder"), std::string::npos);
    EXPECT_EQ(defaults.objectForKey("value"), Value("fresh"));
    EXPECT_EQ(readFile(scratch.path / "blocker"), "x");
}

std::string plistBytes(plist_t root, bool binary) {
    char* bytes = nullptr;
    uint32_t length = 0;
    binary ? plist_to_bin(root, &bytes, &length) : plist_to_xml(root, &bytes, &length);
    std::string result(bytes, length);
    binary ? plist_to_bin_free(bytes) : plist_to_xml_free(bytes);
    return result;
}

TEST_F(StandardUserDefaults, xmlAndBinaryPropertyListsOfLibplistReadIntoValuesAndOtherFilesIntoNone) {
    plist_t root = plist_new_dict(), array = plist_new_array();
    plist_dict_set_item(root, "negative", plist_new_uint(static_cast<uint64_t>(int64_t{-3})));
    plist_array_append_item(array, plist_new_real(2.5));
    plist_dict_set_item(root, "array", array);
    plist_dict_set_item(root, "date", plist_new_date(86400, 0));  // one day after 2001-01-01
    plist_dict_set_item(root, "data", plist_new_data("hi!?", 4));
    const ValueDictionary expected{
        {"array", ValueList{2.5}}, {"data", platform::Data{{'h', 'i', '!', '?'}}}, {"date", secondDayOf2001}, {"negative", -3}};
    std::string binary = plistBytes(root, true);
    for (const auto& bytes : {plistBytes(root, false), binary}) {
        writeFile(scratch.path / "test.plist", bytes);
        auto read = platform::readPropertyListDictionary(scratch.path / "test.plist");
        ASSERT_TRUE(read);
        std::sort(read->begin(), read->end(), [](auto& a, auto& b) { return *a.first.text() < *b.first.text(); });
        EXPECT_EQ(*read, expected);
    }
    plist_free(root);
    EXPECT_FALSE(platform::readPropertyListDictionary(scratch.path));  // a folder
    for (const std::string& bytes : {std::string(), std::string("<?xml version=\"1.0\"?><plist><dict><key>a</key>"),
                                     std::string("{\"a\": 1}"), binary.substr(0, binary.size() / 2)}) {
        writeFile(scratch.path / "bad.plist", bytes);
        EXPECT_FALSE(platform::readPropertyListDictionary(scratch.path / "bad.plist")) << bytes;
    }
}

}  // namespace
