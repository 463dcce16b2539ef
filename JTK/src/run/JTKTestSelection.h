// Which tests a run runs: the filter, the shard, and the names that two
// tests may not share.
//
// A filter is a list of patterns separated by ':', optionally followed by '-'
// and a list of patterns to leave out: "testSave*:testOpen-*Slow". In a
// pattern, '*' matches any run of characters and '?' any one character. An
// empty positive list means every test: "-testSlow" runs all but testSlow.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "run/JTKRunConfiguration.h"

namespace jtk {

// True when the whole name matches the pattern ('*' and '?' as wildcards).
bool jtkNameMatchesPattern(std::string_view name, std::string_view pattern);
// True when the filter chooses the name.
bool jtkFilterChooses(std::string_view filter, std::string_view name);

struct JTKTestSelection {
    JTKMethodList tests;  // in run order
    // Set when the run must not start: the line that says why.
    std::optional<std::string> refusal;
    // Set when the selection is empty for a reason that is no error (a shard
    // beyond the last test): the line to print.
    std::optional<std::string> emptyNote;
};

// The ordered tests, filtered, then every shardCount-th from shardIndex.
JTKTestSelection jtkSelectTests(const JTKMethodList& ordered, std::string_view filter, int shardIndex, int shardCount);

// One line per name that two or more tests share, naming every place
// ("JTK: 2 tests are named testSave: a.cpp:10 and b.cpp:20"); empty when none.
std::vector<std::string> jtkDuplicateTestNames(const JTKMethodList& methods);

// What the runner's options ask before a run may start: options that do not
// parse, tests that share a name and a filter that chooses nothing end the
// process with status 2; a list of the chosen tests ends it with 0 (defined
// with the run's start, JTKTestSuite.cpp; a loader asks it before main).
JTKTestSelection jtkChooseTests(const JTKMethodList& methods, const JTKTestOptions& options);

}  // namespace jtk
