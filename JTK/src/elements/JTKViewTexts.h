// The texts through which the framework names a view. Never absent: empty
// when unknown. Each is one main-thread step.
#pragma once

#include <memory>
#include <string>

#include "JTK/platform/View.h"

namespace jtk {

std::string viewName(const std::shared_ptr<platform::View>& view);
std::string viewValue(const std::shared_ptr<platform::View>& view);
std::string viewTitle(const std::shared_ptr<platform::View>& view);
std::string viewTypeName(const std::shared_ptr<platform::View>& view);

}  // namespace jtk
