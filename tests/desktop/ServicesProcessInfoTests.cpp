// What the desktop tells about the process and the system: the operating
// system's version text, the launch arguments, the Application Support
// folder and accessibility trust.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <regex>
#include <thread>

#include "JTK/desktop/ProcessInfo.h"
#include "JTK/platform/Process.h"
#include "tests/support/TestFiles.h"

using namespace jtk;

namespace {

TEST(ServicesProcessInfo, theVersionComesFromOsReleaseWithDebianPointReleasesAndTheKernelsNumbers) {
    using desktop::formatOperatingSystemVersion;
    EXPECT_TRUE(std::regex_match(platform::operatingSystemVersionString(),
                                 std::regex(R"(Version \d+\.\d+ \(Build \d+(\.\d+)*\))")))
        << platform::operatingSystemVersionString();
    EXPECT_EQ(formatOperatingSystemVersion("NAME=\"Debian\"\nVERSION_ID=\"12\"\n", "12.8\n", "6.1.0-28-amd64"),
              "Version 12.8 (Build 6.1.0)");
    // A debian_version of another release line or a code name is not a point release.
    EXPECT_EQ(formatOperatingSystemVersion("VERSION_ID=\"22.04\"\n", "bookworm/sid\n", "5.15.0-91-generic"),
              "Version 22.04 (Build 5.15.0)");
    EXPECT_EQ(formatOperatingSystemVersion("VERSION_ID=\"12\"\n", "11.9\n", "6.1.0"), "Version 12.0 (Build 6.1.0)");
    EXPECT_EQ(formatOperatingSystemVersion("VERSION_ID=3.18.4\n", "", "6.6.7-0-lts"), "Version 3.18 (Build 6.6.7)");
    EXPECT_EQ(formatOperatingSystemVersion("PRETTY_VERSION_ID=\"9\"\n", "trixie/sid", "custom"), "Version 0.0 (Build 0)");
}

TEST(ServicesProcessInfo, argumentsAreTheOnesTheApplicationGaveElseTheProcessCommandLine) {
    char program[] = "/opt/Sample/Sample", test[] = "uxtest";
    char* argv[] = {program, test, nullptr};
    desktop::setProcessArguments(2, argv);
    EXPECT_EQ(platform::processArguments(), (std::vector<std::string>{"/opt/Sample/Sample", "uxtest"}));
    desktop::setProcessArguments(0, nullptr);
    EXPECT_EQ(std::filesystem::path(platform::processArguments().at(0)).filename(),
              std::filesystem::read_symlink("/proc/self/exe").filename());
    testsupport::ScratchFolder scratch;
    testsupport::writeFile(scratch.path / "cmdline", std::string("app\0with space\0\0last\0", 21));
    EXPECT_EQ(desktop::readCommandLine(scratch.path / "cmdline"), (std::vector<std::string>{"app", "with space", "", "last"}));
    EXPECT_TRUE(desktop::readCommandLine(scratch.path / "missing").empty());
}

TEST(ServicesProcessInfo, applicationSupportFollowsTheDataHomeRules) {
    auto with = [](const char* data, const char* home) {
        testsupport::ScopedEnvironment dataHome("XDG_DATA_HOME", data), homeFolder("HOME", home);
        return platform::applicationSupportDirectory();
    };
    EXPECT_EQ(with("/srv/data", "/home/tester"), std::filesystem::path("/srv/data"));
    EXPECT_EQ(with("relative/data", "/home/tester"), std::filesystem::path("/home/tester/.local/share"));
    EXPECT_EQ(with(nullptr, nullptr), std::nullopt);
}

TEST(ServicesProcessInfo, trustCanBeTakenAwayPromptedForSilentlyAndGrantedFromAnotherThread) {
    int prompts = desktop::accessibilityPromptCount();
    EXPECT_TRUE(platform::isProcessTrustedWithOptions(true));
    EXPECT_EQ(desktop::accessibilityPromptCount(), prompts) << "trusted: no prompt";
    desktop::setAccessibilityTrusted(false);
    testing::internal::CaptureStdout();
    EXPECT_FALSE(platform::isProcessTrustedWithOptions(true));
    EXPECT_FALSE(platform::isProcessTrustedWithOptions(false));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(desktop::accessibilityPromptCount(), prompts + 1);
    std::atomic<int> polls{0};
    std::thread poller([&] {
        while (!platform::isProcessTrustedWithOptions(false)) ++polls;
    });
    while (polls.load() < 3) std::this_thread::yield();
    desktop::setAccessibilityTrusted(true);
    poller.join();
    EXPECT_TRUE(platform::isProcessTrusted());
}

}  // namespace
