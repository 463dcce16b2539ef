// A failed check: the message names the test and the source location, then
// the run ends as any failure does (the user's data goes back first).
#include "JTK/JTKCheck.h"

#include <mutex>
#include <string>

#include "run/JTKProcessEnd.h"
#include "run/JTKTestRun.h"

namespace jtk {

namespace {

std::mutex currentTestLock;
std::string currentTest;

}  // namespace

void jtkSetCurrentTest(std::string name) {
    std::lock_guard lock(currentTestLock);
    currentTest = std::move(name);
}

std::string jtkCurrentTest() {
    std::lock_guard lock(currentTestLock);
    return currentTest;
}

void detail::failCheck(std::string_view expression, std::string_view values, std::source_location where) {
    std::string test = jtkCurrentTest();
    std::string location = std::string(where.file_name()) + ":" + std::to_string(where.line());
    std::string message = "JTK: Check failed" + (test.empty() ? std::string() : " in " + test) + " at " + location;
    message += "\n  " + std::string(expression);
    if (!values.empty()) {
        for (size_t start = 0; start <= values.size();) {
            size_t end = values.find('\n', start);
            if (end == std::string_view::npos) end = values.size();
            message += "\n  " + std::string(values.substr(start, end - start));
            start = end + 1;
        }
    }
    jtkFatalStop(message, location.c_str());
}

}  // namespace jtk
