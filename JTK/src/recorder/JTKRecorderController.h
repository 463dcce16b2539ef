// The status-bar control of recordings: the item that starts and stops a
// recording into the test source file.
#pragma once

#include <filesystem>
#include <optional>

namespace jtk {

class JTKRecorderController {
public:
    // The one controller of the process (main thread).
    static JTKRecorderController& shared();
    // Sets the test source file that recordings are written into.
    void configure(const std::filesystem::path& filePath);
    const std::optional<std::filesystem::path>& recordingFile() const { return recordingFile_; }

private:
    std::optional<std::filesystem::path> recordingFile_;
};

}  // namespace jtk
