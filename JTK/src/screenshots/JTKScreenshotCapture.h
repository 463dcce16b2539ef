// Screenshots after a test: every view of every window, filed under the
// screenshot root by version tag and test tag.
#pragma once

#include <string>

namespace jtk {

class JTKScreenshotCapture {
public:
    // Main thread only.
    static void captureScreenshots(const std::string& testTag);
};

}  // namespace jtk
