// Running jtk-review as a build script does: a child process without a
// display, its exit status, standard output and standard error.
#pragma once

#include <sys/wait.h>

#include <string>

#include "tests/support/TestFiles.h"

namespace testsupport {

struct ToolRun {
    int status = -1;
    std::string out, err;
};

// Runs jtk-review with the arguments (a shell text; {root} stands for the folder, quoted).
inline ToolRun runReview(const fs::path& folder, std::string arguments) {
    for (auto at = arguments.find("{root}"); at != std::string::npos; at = arguments.find("{root}"))
        arguments.replace(at, 6, quoted(folder.string()));
    ScratchFolder streams;
    auto out = streams.path / "out", err = streams.path / "err";
    std::string command = quoted((binDirectory() / "jtk-review").string()) + " " + arguments + " >" +
                          quoted(out.string()) + " 2>" + quoted(err.string()) + " </dev/null";
    int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readFile(out), readFile(err)};
}

}  // namespace testsupport
