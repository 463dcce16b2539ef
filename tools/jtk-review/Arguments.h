// jtk-review's command line: which command, its options and its operands.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "JTK/review/ScreenshotStore.h"

namespace jtk::review {

enum class Command { window, list, accept, discard, prune, report, help };

struct Arguments {
    Command command = Command::window;
    std::optional<std::string> version;
    std::filesystem::path root;
    Selection selection;                       // accept, discard, prune
    bool listOnly = false;                     // prune --list
    std::optional<std::filesystem::path> junit;   // report --junit FILE
    std::filesystem::path output;              // report's OUTPUT.html
};

extern const char* const usageText;

// The arguments, or none with a one-line message in error.
std::optional<Arguments> parseArguments(int argc, char** argv, std::string& error);

}  // namespace jtk::review
