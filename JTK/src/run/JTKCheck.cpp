// A failed check: the message names the test, the source location, the
// expression and the values; the test fails as any failure does.
#include "JTK/JTKCheck.h"

#include <string>

#include "run/JTKTestFailure.h"

namespace jtk {

void detail::failCheck(std::string_view expression, std::string_view values, std::source_location where) {
    std::string location = std::string(where.file_name()) + ":" + std::to_string(where.line());
    std::string detail = std::string(values);
    jtkFailTest("check failed: " + std::string(expression), detail, location, 1);
}

}  // namespace jtk
