// Console output of the run driver: one message a line on standard output,
// flushed at once so that a process that ends right after loses nothing.
#pragma once

#include <string>

namespace jtk {

void jtkPrintLine(const std::string& line);

}  // namespace jtk
