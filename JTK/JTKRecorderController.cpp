#include "JTKRecorderController.h"

JTKRecorderController& JTKRecorderController::shared() {
    static JTKRecorderController controller;
    return controller;
}

void JTKRecorderController::configure(const std::filesystem::path& filePath) { recordingFile_ = filePath; }
