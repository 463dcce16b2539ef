// The status-bar control of recordings: one item that starts a recording
// into the test source file and stops it again, and that shows the progress
// of a test run in its title meanwhile.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "JTK/platform/StatusBar.h"

namespace jtk {

class JTKRecorderController {
public:
    static constexpr const char* recordTitle = "Record UX Test";
    static constexpr const char* stopTitle = "Stop Recording...";

    // The one controller of the process. Made on first use, it follows the
    // run's status notifications with its title for as long as the process lives.
    static JTKRecorderController& shared();

    // Gives the item its action and title and sets the file recordings go into (main thread).
    void configure(const std::filesystem::path& filePath);
    const std::optional<std::filesystem::path>& recordingFile() const { return recordingFile_; }
    // The item's action (main thread): ends the recording under way, or begins one.
    void toggleRecording();
    // Sets the item's title on the main thread; the item is made on first use.
    void setStatusTitle(const std::string& title);
    std::shared_ptr<platform::StatusItem> recordMenuItem();

private:
    JTKRecorderController();
    void beginRecording();
    void endRecording();

    std::shared_ptr<platform::StatusItem> recordMenuItem_;
    std::optional<std::filesystem::path> recordingFile_;
};

}  // namespace jtk
