// What a program sets on the standard controls: the picture of an image view
// and the text of a text field or label. Main thread only.
#pragma once

#include <memory>
#include <string>

#include "JTK/imaging/Image.h"
#include "JTK/platform/View.h"

namespace jtk::platform {

// Shows the picture (null: none) in an image view; false for other views.
bool setImage(View& imageView, std::shared_ptr<const imaging::Image> image);
// The picture an image view shows, set by setImage; null when none.
std::shared_ptr<const imaging::Image> image(const View& imageView);
// Sets the text of a text field or label; false for other views.
bool setStringValue(View& textField, const std::string& text);

}  // namespace jtk::platform
