// The launch test, the same for every backend and for the framework.
#include <algorithm>

#include "JTK/platform/Process.h"

namespace jtk::platform {

bool argumentsRequestTesting(const std::vector<std::string>& arguments) {
    return std::any_of(arguments.begin(), arguments.end(),
                       [](const std::string& argument) { return argument.find("uxtest") != std::string::npos; });
}

}  // namespace jtk::platform
