// Shell commands: one command text run through /bin/bash -c, its output and
// error collected whole, and the driver's printing of a command list.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace jtk {

struct JTKShellResult {
    // Standard output decoded as UTF-8, newlines trimmed from both ends, split
    // at every "\n"; empty when the bytes are not valid UTF-8.
    std::vector<std::string> outputLines;
    std::vector<std::string> errorLines;
    // The exit status, or the number of the signal that ended the command;
    // 127 when the shell could not be started.
    int32_t status = 0;
};

// Runs command through /bin/bash -c and waits for it; standard input is inherited.
JTKShellResult runShellCommand(const std::string& command);
// The same with another shell program (for checking a shell that cannot start).
JTKShellResult runShellCommandWith(const std::string& shellPath, const std::string& command);

// The lines of one stream as the runner returns them.
std::vector<std::string> jtkShellLines(const std::string& bytes);
// ["ok", "done"]: every line in double quotes, quotes and backslashes escaped.
std::string jtkListNotation(const std::vector<std::string>& lines);
// Runs each command in order, to completion, and prints its output lines in
// list notation unless they are exactly one empty text.
void jtkRunShellCommandList(const std::vector<std::string>& commands);

}  // namespace jtk
