// The texts of the screenshot store: a view's file name, the numbers in it,
// and the smallest PNG that is stored (the fileSizeThresh= launch argument,
// else the tests' own setting).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "JTK/platform/Geometry.h"
#include "JTK/platform/View.h"

namespace jtk {

// The shortest decimal text that reads back as the same double, always with a
// fractional part: 20 gives "20.0", 12.5 gives "12.5", 0.1 gives "0.1".
std::string jtkScreenshotNumber(double value);

// The name and value part of a file name is at most this many bytes: with
// the geometry, ".png" and a temporary file's suffix it stays well within a
// file name's 255 bytes.
inline constexpr size_t jtkScreenshotTextLimit = 120;

// name_value_subviewCount_(x, y)(width, height) with every "/" removed and
// control characters (line feeds) as spaces. A name and value longer than
// jtkScreenshotTextLimit keep their start and end in "~" and 8 hexadecimal
// digits of a hash of the whole text.
std::string jtkScreenshotFileName(const std::string& name, const std::string& value, size_t subviewCount,
                                  platform::Point origin, platform::Size size);
// The file name of a view (without extension): its name and value texts, its
// number of direct subviews, its frame origin taken as a point of its own
// coordinates and converted to window coordinates measured from the content
// view's origin (the content view is at (0, 0)), and its frame size.
std::string screenshotFileName(const std::shared_ptr<platform::View>& view);
// The same without the value text, for a masked view: what it shows changes
// from run to run, its name must not.
std::string maskedScreenshotFileName(const std::shared_ptr<platform::View>& view);

inline constexpr int64_t jtkDefaultFileSizeThreshold = 30000;
// The threshold that these launch arguments set: the first argument that
// contains "fileSizeThresh=", with every occurrence of that removed, read as
// a decimal integer (optional sign, digits, nothing else); none when there is
// no such argument or its rest is not such an integer.
std::optional<int64_t> jtkFileSizeThresholdArgument(const std::vector<std::string>& arguments);
// The threshold in force: the launch arguments', else the one the tests' code
// set (JTKScreenshots::setSizeThreshold), else 30000.
int64_t jtkFileSizeThreshold(const std::vector<std::string>& arguments, std::optional<int64_t> fromCode = std::nullopt);
// The threshold in force for this process (JTKScreenshots::sizeThreshold).
int64_t fileSizeThreshold();

}  // namespace jtk
