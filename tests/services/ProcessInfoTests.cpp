// What the desktop tells about the system: the operating system's version
// text and the Application Support folder. (Launch arguments and the
// accessibility trust are checked by the driver's child-process launches.)
#include <gtest/gtest.h>

#include <regex>

#include "JTK/services/ProcessInfo.h"
#include "JTK/platform/Process.h"
#include "tests/support/TestFiles.h"

using namespace jtk;

namespace {

TEST(ServicesProcessInfo, theVersionComesFromOsReleaseWithDebianPointReleasesAndTheKernelsNumbers) {
    using services::formatOperatingSystemVersion;
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

TEST(ServicesProcessInfo, applicationSupportFollowsTheDataHomeRules) {
    auto with = [](const char* data, const char* home) {
        testsupport::ScopedEnvironment dataHome("XDG_DATA_HOME", data), homeFolder("HOME", home);
        return platform::applicationSupportDirectory();
    };
    EXPECT_EQ(with("/srv/data", "/home/tester"), std::filesystem::path("/srv/data"));
    EXPECT_EQ(with("relative/data", "/home/tester"), std::filesystem::path("/home/tester/.local/share"));
    EXPECT_EQ(with(nullptr, nullptr), std::nullopt);
}

}  // namespace
