#include "run/JTKShell.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unicode/utf8.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

#include "run/JTKConsole.h"

extern char** environ;

namespace jtk {

namespace {

bool isValidUTF8(const std::string& bytes) {
    const auto* text = reinterpret_cast<const uint8_t*>(bytes.data());
    int32_t length = static_cast<int32_t>(bytes.size());
    int32_t index = 0;
    while (index < length) {
        UChar32 character;
        U8_NEXT(text, index, length, character);
        if (character < 0) return false;
    }
    return true;
}

// The newline characters a text is trimmed of: LF, VT, FF, CR, NEL, LS, PS.
size_t newlineLengthAt(const std::string& text, size_t index) {
    unsigned char c = static_cast<unsigned char>(text[index]);
    if (c >= 0x0a && c <= 0x0d) return 1;
    if (c == 0xc2 && index + 1 < text.size() && static_cast<unsigned char>(text[index + 1]) == 0x85) return 2;
    if (c == 0xe2 && index + 2 < text.size() && static_cast<unsigned char>(text[index + 1]) == 0x80) {
        unsigned char last = static_cast<unsigned char>(text[index + 2]);
        if (last == 0xa8 || last == 0xa9) return 3;
    }
    return 0;
}

size_t newlineLengthBefore(const std::string& text, size_t end) {
    for (size_t length = 1; length <= 3 && length <= end; ++length) {
        if (newlineLengthAt(text, end - length) == length) return length;
    }
    return 0;
}

std::string trimNewlines(const std::string& text) {
    size_t begin = 0, end = text.size();
    while (begin < end) {
        size_t length = newlineLengthAt(text, begin);
        if (length == 0) break;
        begin += length;
    }
    while (end > begin) {
        size_t length = newlineLengthBefore(text, end);
        if (length == 0) break;
        end -= length;
    }
    return text.substr(begin, end - begin);
}

// Reads both pipes to their end at once, so a command that fills one pipe
// while the other is being read never blocks.
void collect(int outputFd, int errorFd, std::string& output, std::string& error) {
    struct pollfd fds[2] = {{outputFd, POLLIN, 0}, {errorFd, POLLIN, 0}};
    std::string* sinks[2] = {&output, &error};
    int open = 2;
    char buffer[65536];
    while (open > 0) {
        if (poll(fds, 2, -1) < 0) {
            if (errno == EINTR) continue;
            break;
        }
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0) continue;
            ssize_t count = read(fds[i].fd, buffer, sizeof buffer);
            if (count > 0) {
                sinks[i]->append(buffer, static_cast<size_t>(count));
            } else if (count == 0 || errno != EINTR) {
                fds[i].fd = -1;  // poll() skips negative descriptors
                --open;
            }
        }
    }
}

void closeAll(std::initializer_list<int> fds) {
    for (int fd : fds) {
        if (fd >= 0) close(fd);
    }
}

}  // namespace

std::vector<std::string> jtkShellLines(const std::string& bytes) {
    if (!isValidUTF8(bytes)) return {};
    std::string text = trimNewlines(bytes);
    std::vector<std::string> lines;
    size_t start = 0;
    while (true) {
        auto end = text.find('\n', start);
        if (end == std::string::npos) {
            lines.push_back(text.substr(start));
            return lines;
        }
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
}

JTKShellResult runShellCommandWith(const std::string& shellPath, const std::string& command) {
    auto failure = [](const std::string& what, int code) {
        return JTKShellResult{{""}, {what + ": " + std::strerror(code)}, 127};
    };
    int outputPipe[2], errorPipe[2];
    if (pipe2(outputPipe, O_CLOEXEC) != 0) return failure("Could not create a pipe", errno);
    if (pipe2(errorPipe, O_CLOEXEC) != 0) {
        int code = errno;
        closeAll({outputPipe[0], outputPipe[1]});
        return failure("Could not create a pipe", code);
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, outputPipe[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errorPipe[1], STDERR_FILENO);
    std::vector<char*> arguments = {const_cast<char*>(shellPath.c_str()), const_cast<char*>("-c"),
                                    const_cast<char*>(command.c_str()), nullptr};
    // A run ignores SIGPIPE for itself; the commands it starts get the usual default.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    pid_t child = 0;
    int spawnError = posix_spawn(&child, shellPath.c_str(), &actions, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    closeAll({outputPipe[1], errorPipe[1]});
    if (spawnError != 0) {
        closeAll({outputPipe[0], errorPipe[0]});
        return failure("Could not start " + shellPath, spawnError);
    }

    std::string output, error;
    collect(outputPipe[0], errorPipe[0], output, error);
    closeAll({outputPipe[0], errorPipe[0]});

    int waitStatus = 0;
    while (waitpid(child, &waitStatus, 0) < 0 && errno == EINTR) {
    }
    JTKShellResult result;
    result.outputLines = jtkShellLines(output);
    result.errorLines = jtkShellLines(error);
    if (WIFEXITED(waitStatus)) {
        result.status = WEXITSTATUS(waitStatus);
    } else if (WIFSIGNALED(waitStatus)) {
        result.status = WTERMSIG(waitStatus);
    }
    return result;
}

JTKShellResult runShellCommand(const std::string& command) { return runShellCommandWith("/bin/bash", command); }

std::string jtkListNotation(const std::vector<std::string>& lines) {
    std::string text = "[";
    for (size_t i = 0; i < lines.size(); ++i) {
        if (i > 0) text += ", ";
        text += '"';
        for (char c : lines[i]) {
            if (c == '"' || c == '\\') text += '\\';
            text += c;
        }
        text += '"';
    }
    return text + "]";
}

void jtkRunShellCommandList(const std::vector<std::string>& commands) {
    for (const auto& command : commands) {
        auto result = runShellCommand(command);
        if (result.outputLines.size() == 1 && result.outputLines.front().empty()) continue;
        jtkPrintLine(jtkListNotation(result.outputLines));
    }
}

}  // namespace jtk
