#include "screenshots/JTKComparisonWindowController.h"

namespace jtk {

JTKComparisonWindowController& JTKComparisonWindowController::shared() {
    static JTKComparisonWindowController controller;
    return controller;
}

// The window comes with the image comparison; until then there is nothing to show.
void JTKComparisonWindowController::showComparisons(const std::filesystem::path& /*versionFolder*/) {}

}  // namespace jtk
