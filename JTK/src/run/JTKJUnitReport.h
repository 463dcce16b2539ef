// The JUnit XML form of a run's results, the format build servers read, and
// writing it so that a reader never sees half a file.
//
// A test not run yet is <skipped message="not run"/>; the test that is
// running is an <error> saying so, which stays if the run is killed; a
// failed test is a <failure>. Pictures (failure pictures, differing
// screenshots) are named in <system-out> as [[ATTACHMENT|/absolute/path]]
// lines, the convention build servers read for attachments.
#pragma once

#include <string>
#include <vector>

#include "run/JTKTestResults.h"

namespace jtk {

std::string jtkJUnitXml(const std::string& suiteName, const std::vector<JTKTestResult>& tests, double totalSeconds,
                        const std::string& timestamp);

// Text escaped for XML attributes and character data; characters XML 1.0
// cannot hold at all (most control characters, broken UTF-8) become '?'.
std::string jtkXmlEscaped(const std::string& text);

}  // namespace jtk
