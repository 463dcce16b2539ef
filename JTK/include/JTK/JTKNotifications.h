// Names of the notifications a test run posts to the default notification center.
#pragma once

namespace jtk {

// Object: a progress text ("Running testLogin...", "Capturing screenshots...", "Processing...").
inline constexpr const char* JTKTestSuiteStatusUpdate = "JTKTestSuiteStatusUpdate";
// No object: every test has run and the comparison window has been opened.
inline constexpr const char* JTKTestSuiteAllTestsCompleted = "JTKTestSuiteAllTestsCompleted";

}  // namespace jtk
