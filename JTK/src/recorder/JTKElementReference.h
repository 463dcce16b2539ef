// The recorder's two questions about elements: which element a press at a
// screen point is recorded on, and how a statement names an element so that
// a replay finds it again. Main thread.
#pragma once

#include <optional>

#include "JTK/JTKElement.h"
#include "recorder/JTKCodeGeneration.h"

namespace jtk {

// The innermost element under the point: of the application's elements
// whose frame on screen holds it (never a status-bar button), views without
// subviews first, and among equally many subviews one that fits inside the
// other first. None when no element is under the point.
std::optional<JTKElement> jtkClickTarget(platform::Point screenPoint);

// The element's own name, or its nearest named ancestor's, or its class
// name; with a position in that lookup's results unless the lookup finds
// exactly one element.
JTKElementReference jtkElementReference(const JTKElement& element);

}  // namespace jtk
