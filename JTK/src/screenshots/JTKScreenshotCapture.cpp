#include "screenshots/JTKScreenshotCapture.h"

namespace jtk {

// Capturing comes with the screenshot store; until then a capture takes none.
void JTKScreenshotCapture::captureScreenshots(const std::string& /*testTag*/) {}

}  // namespace jtk
