// Screenshots after a test: every view of every window, filed under the
// screenshot root by version tag and test tag. A capture that matches its
// accepted image byte for byte leaves no trace; a view without an accepted
// image gets one; a view that looks different gets its new image in the test
// folder's "temp" folder. Main thread only.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "JTK/platform/View.h"

namespace jtk {

// How the captures of a run went, for the closing summary line.
struct JTKScreenshotCounts {
    int storedAsNew = 0;
    int matched = 0;
    int differed = 0;
};

class JTKScreenshotCapture {
public:
    enum class WriteResult { written, noCapture, failed };

    // Captures every view of every window into root/versionTag/testTag.
    static void captureScreenshots(const std::string& testTag);
    // The view's PNG bytes; none when the view cannot be drawn or its PNG is
    // smaller than the file size threshold.
    static std::optional<std::vector<uint8_t>> capturePNG(const std::shared_ptr<platform::View>& view);
    // Captures the view afresh and writes it into the folder (made with its
    // parents), replacing a file of the same name. A folder or file that cannot
    // be written is reported in one line.
    static WriteResult writeCapture(const std::filesystem::path& folder, const std::shared_ptr<platform::View>& view);

    // The counts since the process started (or the last reset).
    static JTKScreenshotCounts counts();
    static void resetCounts();
    // "JTK: Screenshots: N stored as new, N matched, N differed; look in FOLDER".
    static std::string summaryLine(const JTKScreenshotCounts& counts, const std::filesystem::path& versionFolder);
};

}  // namespace jtk
