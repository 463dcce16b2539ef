#include "recorder/JTKRecorderController.h"

namespace jtk {

JTKRecorderController& JTKRecorderController::shared() {
    static JTKRecorderController controller;
    return controller;
}

void JTKRecorderController::configure(const std::filesystem::path& filePath) { recordingFile_ = filePath; }

}  // namespace jtk
