// User defaults: the property-list file of the application's domain, values
// a property list cannot hold, unreadable or unwritable files, and reading
// XML and binary property lists made by libplist.
#include <gtest/gtest.h>
#include <plist/plist.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <thread>

#include "JTK/desktop/UserDefaults.h"
#include "JTK/platform/Object.h"
#include "JTK/platform/UserDefaults.h"

using namespace jtk;

namespace fs = std::filesystem;
using platform::Value;
using platform::ValueDictionary;
using platform::ValueList;

namespace {

std::string readAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void writeAll(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
}

// Builds a property list with libplist itself, so reading is checked against
// files our own writer did not make.
struct PlistBuilder {
    plist_t root = plist_new_dict();
    ~PlistBuilder() { plist_free(root); }
    void set(const char* key, plist_t item) { plist_dict_set_item(root, key, item); }
    void writeXml(const fs::path& path) const {
        char* bytes = nullptr;
        uint32_t length = 0;
        plist_to_xml(root, &bytes, &length);
        writeAll(path, std::string(bytes, length));
        plist_to_xml_free(bytes);
    }
    void writeBinary(const fs::path& path) const {
        char* bytes = nullptr;
        uint32_t length = 0;
        plist_to_bin(root, &bytes, &length);
        writeAll(path, std::string(bytes, length));
        plist_to_bin_free(bytes);
    }
};

// Every test gets its own configuration folder and application name; the
// real home is never touched.
class ServicesUserDefaults : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "services-defaults-XXXXXX").string();
        ASSERT_TRUE(::mkdtemp(pattern.data()));
        folder_ = pattern;
        if (const char* old = std::getenv("XDG_CONFIG_HOME")) oldConfigHome_ = old;
        ::setenv("XDG_CONFIG_HOME", (folder_ / "config").c_str(), 1);
        desktop::setUserDefaultsApplicationName("ServicesTestApp");
        platform::resetStandardUserDefaults();
    }
    void TearDown() override {
        platform::resetStandardUserDefaults();
        if (oldConfigHome_)
            ::setenv("XDG_CONFIG_HOME", oldConfigHome_->c_str(), 1);
        else
            ::unsetenv("XDG_CONFIG_HOME");
        fs::remove_all(folder_);
    }
    fs::path defaultsFile() const { return folder_ / "config" / "ServicesTestApp" / "defaults.plist"; }

    fs::path folder_;
    std::optional<std::string> oldConfigHome_;
};

ValueDictionary sampleValues() {
    return {{"flag", true},
            {"count", -42},
            {"big", int64_t{1} << 40},
            {"ratio", 0.1},
            {"name", "Grüße <&> \"quoted\""},
            {"list", ValueList{1, "two", ValueList{3.5}}},
            {"nested", ValueDictionary{{"inner", false}, {"empty", ValueList{}}}}};
}

}  // namespace

TEST_F(ServicesUserDefaults, OnlySynchronizeWritesAnXmlPlistThatTheNextUseReadsBack) {
    auto& defaults = platform::standardUserDefaults();
    for (const auto& [key, value] : sampleValues()) defaults.setObject(value, *key.text());
    EXPECT_EQ(desktop::standardUserDefaultsPath(), defaultsFile());
    ASSERT_TRUE(defaults.synchronize());
    EXPECT_EQ(readAll(defaultsFile()).rfind("<?xml", 0), 0u);
    // Only the file: no temporary file left beside it.
    EXPECT_EQ(std::distance(fs::directory_iterator(defaultsFile().parent_path()), fs::directory_iterator()), 1);

    defaults.setObject("unsaved", "flag");
    defaults.removeObject("count");
    platform::resetStandardUserDefaults();
    for (const auto& [key, value] : sampleValues()) EXPECT_EQ(defaults.objectForKey(*key.text()), value) << key.debugText();
    defaults.removeObject("count");
    defaults.setObject(Value(), "name");  // none removes as well
    ASSERT_TRUE(defaults.synchronize());
    platform::resetStandardUserDefaults();
    EXPECT_TRUE(defaults.objectForKey("count").isNone());
    EXPECT_TRUE(defaults.objectForKey("name").isNone());
}

TEST_F(ServicesUserDefaults, ValuesAPropertyListCannotHoldAreRefusedAndTheOldValueKept) {
    auto& defaults = platform::standardUserDefaults();
    defaults.setObject("safe", "key");
    testing::internal::CaptureStderr();
    defaults.setObject(Value(std::make_shared<platform::Object>()), "key");
    defaults.setObject(ValueDictionary{{1, "numeric key"}}, "key");
    defaults.setObject(ValueList{Value()}, "key");
    std::string messages = testing::internal::GetCapturedStderr();
    EXPECT_NE(messages.find("not storing the value for \"key\""), std::string::npos) << messages;
    EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), 3);
    EXPECT_EQ(defaults.objectForKey("key"), Value("safe"));
    EXPECT_TRUE(defaults.synchronize());
}

TEST_F(ServicesUserDefaults, TheApplicationNameChoosesTheFileAndBadNamesAreRefused) {
    auto& defaults = platform::standardUserDefaults();
    defaults.setObject(1, "which");
    ASSERT_TRUE(defaults.synchronize());

    desktop::setUserDefaultsApplicationName("OtherApp");
    EXPECT_EQ(desktop::standardUserDefaultsPath(), folder_ / "config" / "OtherApp" / "defaults.plist");
    EXPECT_TRUE(defaults.objectForKey("which").isNone());  // another application's domain
    defaults.setObject(2, "which");
    ASSERT_TRUE(defaults.synchronize());

    testing::internal::CaptureStderr();
    desktop::setUserDefaultsApplicationName("../escape");
    desktop::setUserDefaultsApplicationName("");
    EXPECT_NE(testing::internal::GetCapturedStderr().find("keeping \"OtherApp\""), std::string::npos);
    EXPECT_EQ(desktop::userDefaultsApplicationName(), "OtherApp");

    desktop::setUserDefaultsApplicationName("ServicesTestApp");
    EXPECT_EQ(defaults.objectForKey("which"), Value(1));
}

TEST_F(ServicesUserDefaults, AnUnreadableDefaultsFileIsKeptAsideInsteadOfOverwritten) {
    fs::create_directories(defaultsFile().parent_path());
    writeAll(defaultsFile(), "this is not a property list");
    auto& defaults = platform::standardUserDefaults();
    testing::internal::CaptureStderr();
    EXPECT_TRUE(defaults.objectForKey("anything").isNone());
    defaults.setObject("fresh", "value");
    EXPECT_TRUE(defaults.synchronize());
    std::string messages = testing::internal::GetCapturedStderr();
    EXPECT_NE(messages.find("not a readable property-list dictionary"), std::string::npos) << messages;

    auto aside = defaultsFile();
    aside += ".unreadable";
    EXPECT_EQ(readAll(aside), "this is not a property list");
    platform::resetStandardUserDefaults();
    EXPECT_EQ(defaults.objectForKey("value"), Value("fresh"));
}

TEST_F(ServicesUserDefaults, AFailedSynchronizeReportsAndKeepsTheValuesInMemory) {
    // A file where the configuration folder should be.
    writeAll(folder_ / "blocker", "x");
    ::setenv("XDG_CONFIG_HOME", (folder_ / "blocker").c_str(), 1);
    auto& defaults = platform::standardUserDefaults();
    defaults.setObject(5, "value");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_NE(testing::internal::GetCapturedStderr().find("cannot write"), std::string::npos);
    EXPECT_EQ(defaults.objectForKey("value"), Value(5));
    EXPECT_EQ(readAll(folder_ / "blocker"), "x");

    // Without any configuration folder at all.
    std::optional<std::string> home;
    if (const char* old = std::getenv("HOME")) home = old;
    ::unsetenv("XDG_CONFIG_HOME");
    ::unsetenv("HOME");
    testing::internal::CaptureStderr();
    EXPECT_FALSE(defaults.synchronize());
    EXPECT_NE(testing::internal::GetCapturedStderr().find("no folder"), std::string::npos);
    if (home) ::setenv("HOME", home->c_str(), 1);
    EXPECT_EQ(defaults.objectForKey("value"), Value(5));
}

TEST_F(ServicesUserDefaults, XmlAndBinaryPropertyListsReadIntoValues) {
    PlistBuilder builder;
    builder.set("text", plist_new_string("hello"));
    builder.set("yes", plist_new_bool(1));
    builder.set("negative", plist_new_uint(static_cast<uint64_t>(int64_t{-3})));
    builder.set("real", plist_new_real(2.5));
    plist_t array = plist_new_array();
    plist_array_append_item(array, plist_new_uint(1));
    plist_array_append_item(array, plist_new_string("b"));
    builder.set("array", array);
    plist_t inner = plist_new_dict();
    plist_dict_set_item(inner, "deep", plist_new_bool(0));
    builder.set("dict", inner);
    builder.set("date", plist_new_date(86400, 0));  // one day after 2001-01-01
    builder.set("data", plist_new_data("hi!?", 4));

    ValueDictionary expected{{"array", ValueList{1, "b"}},
                             {"data", "aGkhPw=="},
                             {"date", "2001-01-02T00:00:00Z"},
                             {"dict", ValueDictionary{{"deep", false}}},
                             {"negative", -3},
                             {"real", 2.5},
                             {"text", "hello"},
                             {"yes", true}};
    auto sorted = [](ValueDictionary d) {
        std::sort(d.begin(), d.end(), [](const auto& a, const auto& b) { return *a.first.text() < *b.first.text(); });
        return d;
    };
    builder.writeXml(folder_ / "test.plist");
    builder.writeBinary(folder_ / "test.bplist");
    auto fromXml = platform::readPropertyListDictionary(folder_ / "test.plist");
    auto fromBinary = platform::readPropertyListDictionary(folder_ / "test.bplist");
    ASSERT_TRUE(fromXml);
    ASSERT_TRUE(fromBinary);
    EXPECT_EQ(sorted(*fromXml), expected);
    EXPECT_EQ(sorted(*fromBinary), expected);
}

TEST_F(ServicesUserDefaults, FilesThatAreNotPropertyListDictionariesReadAsNone) {
    EXPECT_FALSE(platform::readPropertyListDictionary(folder_ / "missing.plist"));
    EXPECT_FALSE(platform::readPropertyListDictionary(folder_));  // a folder
    PlistBuilder builder;
    builder.set("a", plist_new_string("b"));
    builder.writeBinary(folder_ / "whole.bplist");
    std::string binary = readAll(folder_ / "whole.bplist");
    for (const std::string& bytes : {std::string(), std::string("<?xml version=\"1.0\"?><plist><dict><key>a</key>"),
                                     std::string("{\"a\": 1}"), binary.substr(0, binary.size() / 2)}) {
        writeAll(folder_ / "bad.plist", bytes);
        EXPECT_FALSE(platform::readPropertyListDictionary(folder_ / "bad.plist")) << bytes;
    }
}

TEST_F(ServicesUserDefaults, ManyThreadsMayReadWriteAndSynchronizeAtOnce) {
    auto& defaults = platform::standardUserDefaults();
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t)
        threads.emplace_back([&defaults, t] {
            for (int i = 0; i < 50; ++i) {
                std::string key = "thread" + std::to_string(t);
                defaults.setObject(i, key);
                EXPECT_EQ(defaults.objectForKey(key), Value(i));
                if (i % 10 == 0) {
                    EXPECT_TRUE(defaults.synchronize());
                }
            }
        });
    for (auto& thread : threads) thread.join();
    ASSERT_TRUE(defaults.synchronize());
    platform::resetStandardUserDefaults();
    for (int t = 0; t < 3; ++t) EXPECT_EQ(defaults.objectForKey("thread" + std::to_string(t)), Value(49));
}
