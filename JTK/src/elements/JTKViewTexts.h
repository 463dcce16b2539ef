// The texts through which the framework names a view. Never absent: empty
// when unknown. Each is one main-thread step.
#pragma once

#include <memory>
#include <string>

#include "JTK/platform/Geometry.h"
#include "JTK/platform/View.h"

namespace jtk {

std::string viewName(const std::shared_ptr<platform::View>& view);
std::string viewValue(const std::shared_ptr<platform::View>& view);
std::string viewTitle(const std::shared_ptr<platform::View>& view);
std::string viewTypeName(const std::shared_ptr<platform::View>& view);

// The same texts read directly, for code that already runs on the main
// thread and reads many views in one step (the searches).
std::string jtkReadViewName(platform::View& view);
std::string jtkReadViewValue(platform::View& view);
std::string jtkReadViewTitle(platform::View& view);
std::string jtkReadViewTypeName(const platform::View& view);

// An element's default lookup description: the name followed by the centre's
// x and y on screen, each truncated toward zero, with nothing between them.
std::string jtkDefaultLookupDescription(const std::string& name, platform::Point centreOnScreen);

}  // namespace jtk
