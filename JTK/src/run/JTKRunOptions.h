// The runner's launch options: what a build server or a developer at a
// terminal asks of a test run besides "uxtest". Every option begins with
// "--jtk-"; they come from the launch arguments and, for programs whose own
// argument parser would reject them, from the JTK_OPTIONS environment
// variable (the same options, separated by spaces). Sharding may also come
// from JTK_SHARD_INDEX and JTK_SHARD_COUNT, as a CI matrix sets them.
//
//   --jtk-list               print the chosen tests in run order and end
//   --jtk-filter=PATTERNS    run the tests whose names match (see JTKTestSelection.h)
//   --jtk-shard-index=I      with --jtk-shard-count=N: run every N-th test from the I-th (0-based)
//   --jtk-strict             exit 0 only when every chosen test passed and no screenshot differed;
//                            a failure fails its test and the run goes on with the next
//   --jtk-ci                 --jtk-strict, and nothing waits for a person (no comparison
//                            window, no final alert)
//   --jtk-junit=FILE         JUnit XML results, rewritten after every test
//   --jtk-results=DIR        where pictures taken at a failure go (else beside the JUnit file)
//   --jtk-timeout=SECONDS    a test that runs longer fails and ends the run
//   --jtk-record             a recording session: only the tests a filter names (none without
//                            one), then the program stays for a person to record until it quits
//   --jtk-tests=LIBRARY      the tests library of a program started through a loader
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace jtk {

struct JTKRunOptions {
    bool list = false;
    std::string filter;  // empty: every test
    int shardIndex = 0;
    int shardCount = 1;
    bool strict = false;
    bool ci = false;
    std::optional<std::filesystem::path> junitFile;
    std::optional<std::filesystem::path> resultsFolder;
    std::optional<double> timeLimit;  // seconds per test
    bool record = false;

    // The folder for failure pictures: the one given, else the JUnit file's
    // folder; none when neither is given (a run nobody asked for results of
    // writes no pictures).
    std::optional<std::filesystem::path> picturesFolder() const;
};

struct JTKRunOptionsResult {
    JTKRunOptions options;
    std::vector<std::string> errors;  // one line each; the run must not start when any
};

// Reads the options from the arguments, then from the environment's
// JTK_OPTIONS and shard variables (an argument wins over the environment).
using JTKEnvironment = std::function<std::optional<std::string>(const char* name)>;
JTKRunOptionsResult jtkParseRunOptions(const std::vector<std::string>& arguments, const JTKEnvironment& environment);

// The options of this process, read once.
const JTKRunOptions& jtkRunOptions();
// Errors in this process's options, for the start of a run.
const std::vector<std::string>& jtkRunOptionErrors();

}  // namespace jtk
