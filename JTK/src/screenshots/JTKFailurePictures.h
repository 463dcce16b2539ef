// Pictures at the point of failure: every window of the application drawn
// whole (frame and content) into the results folder, one PNG a window, so
// that a failure on a build server can be seen, not only read.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace jtk {

// Draws every window into folder/testName/window-N.png (N from 1, in window
// order) and returns the files written. From another thread the drawing is
// a main-thread step that is waited for at most a few seconds: a main thread
// that is stuck (the reason a test may be failing) gives no pictures
// rather than a run that never ends. No size threshold applies.
// No folder: no pictures.
std::vector<std::filesystem::path> jtkTakeFailurePictures(const std::optional<std::filesystem::path>& folder,
                                                          const std::string& testName);

}  // namespace jtk
