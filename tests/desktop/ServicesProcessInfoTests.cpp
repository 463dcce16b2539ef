#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string_view>
#include <thread>

#include "JTK/desktop/ProcessInfo.h"
#include "JTK/platform/Process.h"

using namespace jtk;

namespace {

// Sets (or unsets) an environment variable for one scope.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value) : name_(name) {
        if (const char* old = std::getenv(name)) old_ = old;
        if (value)
            ::setenv(name, value, 1);
        else
            ::unsetenv(name);
    }
    ~ScopedEnvironment() {
        if (old_)
            ::setenv(name_, old_->c_str(), 1);
        else
            ::unsetenv(name_);
    }

private:
    const char* name_;
    std::optional<std::string> old_;
};

// True for "Version <n>.<n> (Build <n>[.<n>...])".
bool hasVersionShape(std::string_view text) {
    auto skip = [&text](std::string_view literal) {
        if (!text.starts_with(literal)) return false;
        text.remove_prefix(literal.size());
        return true;
    };
    auto number = [&text] {
        size_t digits = 0;
        while (digits < text.size() && std::isdigit(static_cast<unsigned char>(text[digits]))) ++digits;
        text.remove_prefix(digits);
        return digits > 0;
    };
    if (!skip("Version ") || !number() || !skip(".") || !number() || !skip(" (Build ") || !number()) return false;
    while (skip("."))
        if (!number()) return false;
    return skip(")") && text.empty();
}

}  // namespace

TEST(ServicesProcessInfo, OperatingSystemVersionTextHasTheVersionAndBuildShape) {
    EXPECT_TRUE(hasVersionShape("Version 12.8 (Build 6.1.0)"));
    EXPECT_FALSE(hasVersionShape("Version 12 (Build 6.1.0)"));
    EXPECT_FALSE(hasVersionShape("Version 12.8 (Build 6.1.)"));
    std::string text = platform::operatingSystemVersionString();
    EXPECT_TRUE(hasVersionShape(text)) << text;
}

TEST(ServicesProcessInfo, VersionComesFromOsReleaseWithDebianPointReleasesAndTheKernelsNumbers) {
    using desktop::formatOperatingSystemVersion;
    // Debian keeps its point release in debian_version.
    EXPECT_EQ(formatOperatingSystemVersion("NAME=\"Debian\"\nVERSION_ID=\"12\"\nID=debian\n", "12.8\n", "6.1.0-28-amd64"),
              "Version 12.8 (Build 6.1.0)");
    // A debian_version of another release line or a code name is not a point release.
    EXPECT_EQ(formatOperatingSystemVersion("VERSION_ID=\"22.04\"\n", "bookworm/sid\n", "5.15.0-91-generic"),
              "Version 22.04 (Build 5.15.0)");
    EXPECT_EQ(formatOperatingSystemVersion("VERSION_ID=\"12\"\n", "11.9\n", "6.1.0"), "Version 12.0 (Build 6.1.0)");
    // Unquoted, a major number only, more than two parts.
    EXPECT_EQ(formatOperatingSystemVersion("VERSION_ID=39\n", "", "6.5.6-300.fc39.x86_64"), "Version 39.0 (Build 6.5.6)");
    EXPECT_EQ(formatOperatingSystemVersion("VERSION_ID=3.18.4\n", "", "6.6.7-0-lts"), "Version 3.18 (Build 6.6.7)");
    // Nothing known.
    EXPECT_EQ(formatOperatingSystemVersion("", "", ""), "Version 0.0 (Build 0)");
    EXPECT_EQ(formatOperatingSystemVersion("PRETTY_VERSION_ID=\"9\"\n", "trixie/sid", "custom"), "Version 0.0 (Build 0)");
}

TEST(ServicesProcessInfo, ArgumentsAreTheOnesTheApplicationGaveElseTheProcessCommandLine) {
    char program[] = "/opt/Sample/Sample", test[] = "uxtest", threshold[] = "fileSizeThresh=20";
    char* argv[] = {program, test, threshold, nullptr};
    desktop::setProcessArguments(3, argv);
    EXPECT_EQ(platform::processArguments(), (std::vector<std::string>{"/opt/Sample/Sample", "uxtest", "fileSizeThresh=20"}));

    desktop::setProcessArguments(0, nullptr);
    auto fromKernel = platform::processArguments();
    ASSERT_FALSE(fromKernel.empty());
    EXPECT_EQ(fromKernel, desktop::readCommandLine("/proc/self/cmdline"));
    EXPECT_EQ(std::filesystem::path(fromKernel.front()).filename(),
              std::filesystem::read_symlink("/proc/self/exe").filename());
}

TEST(ServicesProcessInfo, CommandLineFilesSplitAtNulAndKeepEmptyArguments) {
    auto path = std::filesystem::temp_directory_path() / ("services-cmdline-" + std::to_string(::getpid()));
    {
        std::ofstream out(path, std::ios::binary);
        out << std::string_view("app\0with space\0\0last\0", 21);
    }
    EXPECT_EQ(desktop::readCommandLine(path), (std::vector<std::string>{"app", "with space", "", "last"}));
    std::filesystem::remove(path);
    EXPECT_TRUE(desktop::readCommandLine(path).empty());
    EXPECT_EQ(platform::processIdentifier(), static_cast<int>(::getpid()));
}

TEST(ServicesProcessInfo, ApplicationSupportFollowsTheDataHomeRules) {
    {
        ScopedEnvironment data("XDG_DATA_HOME", "/srv/data");
        ScopedEnvironment home("HOME", "/home/tester");
        EXPECT_EQ(platform::applicationSupportDirectory(), std::filesystem::path("/srv/data"));
    }
    {
        ScopedEnvironment data("XDG_DATA_HOME", "relative/data");
        ScopedEnvironment home("HOME", "/home/tester");
        EXPECT_EQ(platform::applicationSupportDirectory(), std::filesystem::path("/home/tester/.local/share"));
    }
    {
        ScopedEnvironment data("XDG_DATA_HOME", nullptr);
        ScopedEnvironment home("HOME", nullptr);
        EXPECT_EQ(platform::applicationSupportDirectory(), std::nullopt);
    }
}

TEST(ServicesProcessInfo, TrustCanBeTakenAwayPromptedForSilentlyAndGrantedFromAnotherThread) {
    EXPECT_TRUE(platform::isProcessTrusted());
    int prompts = desktop::accessibilityPromptCount();
    EXPECT_TRUE(platform::isProcessTrustedWithOptions(true));
    EXPECT_EQ(desktop::accessibilityPromptCount(), prompts);  // trusted: no prompt

    desktop::setAccessibilityTrusted(false);
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_FALSE(platform::isProcessTrustedWithOptions(true));
    EXPECT_FALSE(platform::isProcessTrustedWithOptions(false));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(desktop::accessibilityPromptCount(), prompts + 1);
    EXPECT_FALSE(platform::isProcessTrusted());

    // A poller on another thread sees the grant.
    std::atomic<int> polls{0};
    std::thread poller([&] {
        while (!platform::isProcessTrustedWithOptions(false)) {
            ++polls;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    while (polls.load() < 3) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    desktop::setAccessibilityTrusted(true);
    poller.join();
    EXPECT_TRUE(platform::isProcessTrusted());
}

TEST(ServicesProcessInfo, SystemLogWritesOneLineToStandardError) {
    testing::internal::CaptureStderr();
    platform::systemLog("FakeKey: No event source");
    platform::systemLog("two\nlines");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "FakeKey: No event source\ntwo lines\n");
}
