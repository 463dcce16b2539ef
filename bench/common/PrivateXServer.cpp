#include "PrivateXServer.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace jtk::bench {

namespace {

// Reads the display number Xvfb writes to the pipe once it accepts
// connections ("5\n"); empty when it wrote none within the time.
std::string readDisplayNumber(int descriptor, int milliseconds) {
    std::string number;
    pollfd ready{descriptor, POLLIN, 0};
    while (::poll(&ready, 1, milliseconds) > 0) {
        char byte = 0;
        if (::read(descriptor, &byte, 1) != 1) break;
        if (byte == '\n') return number;
        number += byte;
    }
    return {};
}

}  // namespace

PrivateXServer::PrivateXServer() {
    if (const char* given = std::getenv("DISPLAY"); given && *given) {
        display_ = given;
        return;
    }
    int pipeEnds[2];
    if (::pipe2(pipeEnds, O_CLOEXEC) != 0) {
        why_ = "no pipe for Xvfb";
        return;
    }
    // Xvfb writes to the inherited write end; no other copy stays open in it.
    std::string writeEnd = std::to_string(pipeEnds[1]);
    const char* arguments[] = {"Xvfb", "-displayfd", writeEnd.c_str(), "-screen", "0", "1280x1024x24", "-nolisten",
                               "tcp", "-noreset", nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], pipeEnds[1]);  // clears close-on-exec
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    int failed = ::posix_spawnp(&server_, "Xvfb", &actions, nullptr, const_cast<char**>(arguments), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(pipeEnds[1]);
    if (failed) {
        server_ = -1;
        why_ = "Xvfb could not be started (scripts/setup.sh installs it), and DISPLAY names no display";
    } else if (std::string number = readDisplayNumber(pipeEnds[0], 10000); !number.empty()) {
        display_ = ":" + number;
    } else {
        why_ = "Xvfb did not start";
    }
    ::close(pipeEnds[0]);
}

PrivateXServer::~PrivateXServer() {
    if (server_ <= 0) return;
    ::kill(server_, SIGTERM);
    int status = 0;
    while (::waitpid(server_, &status, 0) < 0 && errno == EINTR) {
    }
}

}  // namespace jtk::bench
