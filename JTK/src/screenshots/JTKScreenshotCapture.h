// Screenshots after a test: every view of every window, filed under the
// screenshot root by version tag and test tag. A capture that matches its
// accepted image byte for byte leaves no trace; a view without an accepted
// image gets one; a view that looks different gets its new image in the test
// folder's "temp" folder. What the pictures take in (the size threshold,
// views left out, masks) is what the tests' code set through JTKScreenshots,
// read once per capture (JTKScreenshotPlan). Main thread only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "JTK/platform/View.h"

namespace jtk {

// How the captures of one test went.
struct JTKCaptureReport {
    int storedAsNew = 0;
    int matched = 0;
    int differed = 0;
    int underThreshold = 0;  // PNGs smaller than the file size threshold: not stored
    int notStored = 0;       // captures that could not be written
    std::vector<std::filesystem::path> differing;  // the new images in temp/, for the results
};

// Each test folder records the file names its last capture produced, one a
// line, so that accepted images no test produces any more can be found.
inline constexpr const char* jtkCapturedListName = ".jtk-captured";

class JTKScreenshotCapture {
public:
    enum class WriteResult { written, noCapture, failed };

    // Captures every view of every window into root/versionTag/testTag and
    // records the captured names there.
    static JTKCaptureReport captureScreenshots(const std::string& testTag);
    // The view's PNG bytes; none when the view cannot be drawn or its PNG is
    // smaller than the file size threshold.
    static std::optional<std::vector<uint8_t>> capturePNG(const std::shared_ptr<platform::View>& view);
    // Captures the view afresh and writes it into the folder (made with its
    // parents), replacing a file of the same name. A folder or file that cannot
    // be written is reported in one line.
    static WriteResult writeCapture(const std::filesystem::path& folder, const std::shared_ptr<platform::View>& view);
};

}  // namespace jtk
