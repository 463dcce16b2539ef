#include "PeerBenchmark.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

#include "PrivateXServer.h"

extern char** environ;

namespace jtk::bench {

namespace {

// This process's environment with the given entries replacing those of the
// same names, made before the fork (the child may only call exec).
std::vector<std::string> childEnvironment(const std::vector<std::string>& changes) {
    std::vector<std::string> entries;
    for (char** entry = environ; *entry; ++entry) {
        std::string text = *entry;
        std::string name = text.substr(0, text.find('=') + 1);
        bool replaced = false;
        for (const auto& change : changes) replaced = replaced || change.compare(0, name.size(), name) == 0;
        if (!replaced) entries.push_back(text);
    }
    entries.insert(entries.end(), changes.begin(), changes.end());
    return entries;
}

}  // namespace

std::string runPeerBenchmark(const std::string& program, int argc, char** argv,
                             const std::vector<std::string>& environment) {
    std::error_code error;
    if (!std::filesystem::exists(program, error)) return {};
    char pattern[] = "/tmp/jtk-bench-XXXXXX";
    int descriptor = ::mkstemp(pattern);
    if (descriptor < 0) return {};
    ::close(descriptor);
    std::string out = std::string("--benchmark_out=") + pattern;
    std::vector<char*> arguments{const_cast<char*>(program.c_str())};
    for (int i = 1; i < argc; ++i) arguments.push_back(argv[i]);
    arguments.push_back(out.data());
    arguments.push_back(const_cast<char*>("--benchmark_out_format=json"));
    arguments.push_back(nullptr);
    std::vector<std::string> entries = childEnvironment(environment);
    std::vector<char*> environmentPointers;
    for (auto& entry : entries) environmentPointers.push_back(entry.data());
    environmentPointers.push_back(nullptr);
    std::fflush(stdout);
    pid_t child = ::fork();
    if (child == 0) {
        ::execve(program.c_str(), arguments.data(), environmentPointers.data());
        std::_Exit(127);
    }
    int status = 0;
    bool ran = child > 0 && ::waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    std::stringstream text;
    if (ran) text << std::ifstream(pattern).rdbuf();
    std::filesystem::remove(pattern, error);
    return text.str();
}

std::vector<PeerReport> runPeerBenchmarks(const std::vector<PeerProgram>& peers, const char* what, int argc,
                                          char** argv) {
    std::vector<PeerReport> reports;
    for (const auto& peer : peers) {
        std::printf("\nThe same %s on the %s backend:\n", what, peer.backend.c_str());
        std::string json, why = peer.program;
        if (peer.needsXServer) {
            PrivateXServer server;  // ended when this peer has run
            if (server.display().empty())
                why = server.why();
            else
                json = runPeerBenchmark(peer.program, argc, argv, {"DISPLAY=" + server.display(), "GDK_BACKEND=x11"});
        } else {
            json = runPeerBenchmark(peer.program, argc, argv);
        }
        if (json.empty())
            std::printf("(the %s benchmark did not run: %s)\n", peer.backend.c_str(), why.c_str());
        else
            reports.push_back({peer.backend, std::move(json)});
    }
    std::fflush(stdout);
    return reports;
}

}  // namespace jtk::bench
