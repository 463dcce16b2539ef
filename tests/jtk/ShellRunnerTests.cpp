// The shell runner: lines of both streams, status, encoding, large output on
// both streams at once, a shell that cannot start; and the driver's printing.
#include <gtest/gtest.h>

#include <chrono>

#include "run/JTKShell.h"

using namespace jtk;

using Lines = std::vector<std::string>;

TEST(ShellRunner, linesOfBothStreamsAndTheStatus) {
    auto hello = runShellCommand("echo hello");
    EXPECT_EQ(hello.outputLines, Lines{"hello"});
    EXPECT_EQ(hello.errorLines, Lines{""}) << "empty output is one empty line";
    EXPECT_EQ(hello.status, 0);
    EXPECT_EQ(runShellCommand("printf 'a\\n\\nb\\n'").outputLines, (Lines{"a", "", "b"}));
    EXPECT_EQ(runShellCommand("printf '\\n\\r\\nx y\\n\\n'").outputLines, Lines{"x y"}) << "trimmed at both ends only";
    auto failing = runShellCommand("echo oops 1>&2; exit 3");
    EXPECT_EQ(failing.errorLines, Lines{"oops"});
    EXPECT_EQ(failing.status, 3);
    EXPECT_EQ(runShellCommand("kill -TERM $$").status, 15) << "a signal's number";
}

TEST(ShellRunner, invalidUTF8GivesNoLines) {
    auto result = runShellCommand("printf 'ok\\n\\377\\376\\n'; printf 'fine' 1>&2");
    EXPECT_TRUE(result.outputLines.empty());
    EXPECT_EQ(result.errorLines, Lines{"fine"});
    EXPECT_EQ(runShellCommand("printf 'gr\\303\\274n'").outputLines, Lines{"gr\xc3\xbcn"});
}

TEST(ShellRunner, largeOutputOnBothStreamsAtOnce) {
    // 1 MB on each stream, interleaved: a runner that reads one stream to its
    // end before the other would stall on a full pipe.
    auto result = runShellCommand(
        "for i in $(seq 1 16384); do echo 0123456789012345678901234567890123456789012345678901234567890123; "
        "echo abcdefghijabcdefghijabcdefghijabcdefghijabcdefghijabcdefghijabc 1>&2; done");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.outputLines.size(), 16384u);
    EXPECT_EQ(result.errorLines.size(), 16384u);
}

TEST(ShellRunner, aShellThatCannotStartReturnsAtOnceWithTheReason) {
    auto start = std::chrono::steady_clock::now();
    auto result = runShellCommandWith("/nonexistent/bash", "echo never");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(result.status, 127);
    ASSERT_EQ(result.errorLines.size(), 1u);
    for (auto part : {"/nonexistent/bash", "No such file"})
        EXPECT_NE(result.errorLines[0].find(part), std::string::npos) << result.errorLines[0];
}

TEST(ShellListPrinting, eachCommandsOutputAsAQuotedListAfterTheEffectsOfTheOnesBefore) {
    EXPECT_EQ(jtkListNotation({"say \"hi\"", "a\\b"}), "[\"say \\\"hi\\\"\", \"a\\\\b\"]");
    EXPECT_EQ(jtkListNotation({""}), "[\"\"]");
    char folder[] = "/tmp/jtk-shell-XXXXXX";
    ASSERT_NE(mkdtemp(folder), nullptr);
    std::string dir = folder;
    testing::internal::CaptureStdout();
    jtkRunShellCommandList({"touch '" + dir + "/made'", "ls '" + dir + "'", "rm -r '" + dir + "'", "true",
                            "echo oops 1>&2; exit 3", "printf '\\377'", "printf '\\n\\nx'"});
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "[\"made\"]\n[]\n[\"x\"]\n") << "empty output prints nothing";
}
