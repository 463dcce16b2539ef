#include "run/JTKConsole.h"

#include <cstdio>
#include <iostream>
#include <mutex>

namespace jtk {

void jtkPrintLine(const std::string& line) {
    // One lock for the whole line, so lines of different threads never mix.
    static std::mutex mutex;
    std::lock_guard lock(mutex);
    std::cout.flush();
    std::string text = line + "\n";
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

}  // namespace jtk
