// Parsing jtk-review's command line: an optional command word first, then
// options and operands in any order ("--" ends the options).
#include "Arguments.h"

#include <vector>

namespace jtk::review {

const char* const usageText =
    "usage:\n"
    "  jtk-review [--version TAG] ROOT                          the comparison window, in the viewer\n"
    "  jtk-review --list [--version TAG] ROOT                   pending differences, one per line (exit 1 if any)\n"
    "  jtk-review accept [--version TAG] ROOT [TEST [IMAGE]]    pending captures become the accepted images\n"
    "  jtk-review discard [--version TAG] ROOT [TEST [IMAGE]]   pending captures are removed\n"
    "  jtk-review prune [--list] [--version TAG] ROOT [TEST]    accepted images the last run did not capture:\n"
    "                                                           listed (exit 1 if any) or removed\n"
    "  jtk-review report [--version TAG] [--junit FILE] ROOT OUTPUT.html\n"
    "                                                           one self-contained HTML report\n"
    "ROOT is the screenshot root; TAG defaults to this machine's version tag; TEST is a test's\n"
    "name or tag (testSave or Save); IMAGE a pending file name, with or without .png.\n";

namespace {

struct CommandWord {
    const char* word;
    Command command;
    size_t least, most;  // operands
};
constexpr CommandWord commands[] = {{"accept", Command::accept, 1, 3}, {"discard", Command::discard, 1, 3},
                                 {"prune", Command::prune, 1, 2},   {"report", Command::report, 2, 2}};

std::optional<Arguments> failure(std::string& error, const std::string& message) {
    error = message + " (see jtk-review --help)";
    return std::nullopt;
}

}  // namespace

std::optional<Arguments> parseArguments(int argc, char** argv, std::string& error) {
    Arguments arguments;
    size_t least = 1, most = 1;
    int first = 1;
    std::string name = "jtk-review";
    if (argc > 1)
        for (const auto& command : commands)
            if (std::string(argv[1]) == command.word) {
                arguments.command = command.command, least = command.least, most = command.most;
                name += std::string(" ") + command.word;
                first = 2;
            }
    std::vector<std::string> operands;
    bool options = true;
    for (int i = first; i < argc; ++i) {
        std::string argument = argv[i];
        Command command = arguments.command;
        if (!options || !argument.starts_with("-") || argument == "-") {
            operands.push_back(argument);
        } else if (argument == "--") {
            options = false;
        } else if (argument == "--help" || argument == "-h") {
            arguments.command = Command::help;
            return arguments;
        } else if (argument == "--version" || (argument == "--junit" && command == Command::report)) {
            if (i + 1 == argc) return failure(error, argument + " needs " + (argument == "--junit" ? "a file" : "a tag"));
            if (argument == "--junit")
                arguments.junit = argv[++i];
            else
                arguments.version = argv[++i];
        } else if (argument == "--list" && command == Command::window) {
            arguments.command = Command::list;
        } else if (argument == "--list" && command == Command::prune) {
            arguments.listOnly = true;
        } else if (argument == "--viewer" && command == Command::window) {
            // The viewer is always on in window mode; the desktop reads this itself.
        } else {
            return failure(error, "unknown option \"" + argument + "\" for " + name);
        }
    }
    if (operands.empty()) return failure(error, "no screenshot root given to " + name);
    if (operands.size() < least) return failure(error, "no output file given to " + name);
    if (operands.size() > most) return failure(error, "too many operands for " + name + ": \"" + operands[most] + "\"");
    arguments.root = operands[0];
    if (arguments.command == Command::report) arguments.output = operands[1];
    if (operands.size() > 1 && arguments.command != Command::report) arguments.selection.test = operands[1];
    if (operands.size() > 2) arguments.selection.image = operands[2];
    return arguments;
}

}  // namespace jtk::review
