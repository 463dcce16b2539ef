// How the driver reads the test extension: providers found by name in the
// method list, the merged per-test options, the order of the tests, and the
// texts derived from names and the system (test tags, the version tag).
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "JTK/JTKRegistry.h"
#include "JTK/JTKTestOption.h"
#include "JTK/platform/Value.h"

namespace jtk {

using JTKMethodList = std::vector<JTKClassMethod>;
// Test name -> (option -> value).
using JTKTestOptions = std::map<std::string, std::map<JTKTestOption, platform::Value>>;

// The first method, in list order, whose name begins with prefix; null when none.
const JTKClassMethod* jtkFirstMethodWithPrefix(const JTKMethodList& methods, std::string_view prefix);
// The first method whose name is exactly name; null when none.
const JTKClassMethod* jtkMethodNamed(const JTKMethodList& methods, std::string_view name);

// The text result of the first provider with prefix; none when there is no
// such provider or its result is not text.
std::optional<std::string> jtkTextProvider(const JTKMethodList& methods, std::string_view prefix);
// The list-of-texts result of the first provider with prefix; empty when there
// is no such provider or its result is not a list made only of texts.
std::vector<std::string> jtkTextListProvider(const JTKMethodList& methods, std::string_view prefix);

// The options of one provider result: a dictionary of test names to
// dictionaries of option raw values; none when the result has another shape.
// An option whose raw value names no option is left out, and described in
// unknownOptions ("7 of testLogin").
std::optional<JTKTestOptions> jtkTestOptionsFromValue(const platform::Value& value,
                                                     std::vector<std::string>* unknownOptions = nullptr);
// Every provider whose name contains "jtkTestOptions", in list order; a later
// provider's entry for a test replaces an earlier one's whole. Prints one line
// for each unknown option it leaves out.
JTKTestOptions jtkMergeTestOptions(const JTKMethodList& methods);

// The sort key of a test: its integer order option, else 0.
int64_t jtkTestOrder(const JTKTestOptions& options, const std::string& testName);
// The methods whose names begin with "test", stably sorted by their order.
JTKMethodList jtkOrderedTests(const JTKMethodList& methods, const JTKTestOptions& options);

// The test name with every "test" removed: testContestEntry gives ConEntry.
std::string jtkTestTag(const std::string& testName);
// The folder tag of an operating-system version text: "Version 14.2.1
// (Build 23C71)" gives "142"; "unknown" for a text without any version piece.
std::string jtkVersionTag(const std::string& versionText);

// Every occurrence of what in text replaced by with.
std::string jtkReplaceAll(std::string text, std::string_view what, std::string_view with);

// Removes every method registered from file (tests that build their own lists).
void removeRegisteredMethods(const std::string& file);

}  // namespace jtk
