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
// exactly one element. In C++ an element without a name of its own but with
// a title is named by its title narrowed to its class, before any ancestor:
// element("7", jtk::JTKClass{"Button"}), which a replay finds again whatever
// the other views show meanwhile.
JTKElementReference jtkElementReference(const JTKElement& element, JTKDialect dialect);

}  // namespace jtk
